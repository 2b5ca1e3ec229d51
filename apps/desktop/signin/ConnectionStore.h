#pragma once

#include <desktop/signin/SavedConnection.h>
#include <desktop/signin/TokenVault.h>

#include <QHash>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace desktop {

//! \brief The saved connections, in a file that only the user can read.
//!
//! It holds the tokens, unless there is a vault that takes them.
//! On Windows the folder of the user's settings keeps other users out.
class ConnectionStore
{
public:
    //! \param path of the file; made by the first save()
    //! \param vault for the tokens; null for none
    explicit ConnectionStore(const QString &path, std::unique_ptr<TokenVault> vault = nullptr);
    ~ConnectionStore();
    Q_DISABLE_COPY(ConnectionStore)

    QList<SavedConnection> connections() const;

    //! The one that was used last, if there is one.
    std::optional<SavedConnection> last() const;

    //! Calls \a use with \a connection and its token: at once, or when the vault has brought it.
    void withToken(const SavedConnection &connection,
                   const std::function<void(const SavedConnection &)> &use);

    //! Adds \a connection, or changes the one with its identifier or with its address, user and project, and makes it the last one.
    //! \return its identifier; empty if the file cannot be written or made private
    QString save(SavedConnection connection);

    //! Forgets the connection \a id and its token. \return whether the file could be written
    bool remove(const QString &id);

    //! Copies the authority's certificate \a pem beside the file. \return the path; empty if it cannot be written
    QString keepAuthority(const QByteArray &pem, const QString &fingerprint) const;

private:
    bool write(const QList<SavedConnection> &connections, const QString &lastId) const;

    void leaveToken(const QString &id, const QString &token);

    const QString m_path;
    const std::unique_ptr<TokenVault> m_vault;
    QHash<QString, QString> m_vaultTokens; // that are known to be there, by connection
};

} // namespace desktop
