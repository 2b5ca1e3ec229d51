#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace desktop {

//! \brief Stores tokens in the keyring of the system.
//!
//! Each function returns at once. Its callback is called later from the event loop, unless the vault is deleted before.
class TokenVault
{
public:
    TokenVault() = default;
    virtual ~TokenVault() = default;
    TokenVault(const TokenVault &) = delete;
    TokenVault &operator=(const TokenVault &) = delete;

    //! Creates a vault that uses the keyring of the system; null if the program was built without it.
    static std::unique_ptr<TokenVault> ofSystem();

    //! \param onEnd called with true if the token has been stored
    virtual void write(const QString &id, const QString &token,
                       const std::function<void(bool isKept)> &onEnd) = 0;

    //! \param onEnd called with the token, or with an empty string if it does not exist or cannot be read
    virtual void read(const QString &id,
                      const std::function<void(const QString &token)> &onEnd) = 0;

    virtual void remove(const QString &id) = 0;
};

} // namespace desktop
