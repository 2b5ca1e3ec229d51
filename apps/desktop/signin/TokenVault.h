#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace desktop {

//! \brief Keeps tokens outside of files: in the keyring of the system.
//!
//! Each function returns at once. What it is given is called later from the event loop, unless the vault is deleted before.
class TokenVault
{
public:
    TokenVault() = default;
    virtual ~TokenVault() = default;
    TokenVault(const TokenVault &) = delete;
    TokenVault &operator=(const TokenVault &) = delete;

    //! The keyring of the system; null if the program was built without one.
    static std::unique_ptr<TokenVault> ofSystem();

    //! \param onEnd gets whether the token is kept
    virtual void write(const QString &id, const QString &token,
                       const std::function<void(bool isKept)> &onEnd) = 0;

    //! \param onEnd gets the token; an empty one if it is not there or may not be read
    virtual void read(const QString &id,
                      const std::function<void(const QString &token)> &onEnd) = 0;

    virtual void remove(const QString &id) = 0;
};

} // namespace desktop
