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

//! \brief The saved connections in a file that only the user can read.
//!
//! The file contains the tokens, unless there is a vault.
//! On Windows other users have no access to the folder of the settings.
class ConnectionStore
{
public:
    //! \param path the path of the file, which is created by the first save()
    //! \param vault for the tokens; null for none
    explicit ConnectionStore(const QString &path, std::unique_ptr<TokenVault> vault = nullptr);
    ~ConnectionStore();
    Q_DISABLE_COPY(ConnectionStore)

    QList<SavedConnection> connections() const;

    //! Returns the connection that was used last, if there is one.
    std::optional<SavedConnection> last() const;

    //! Calls \a use with \a connection and its token: at once, or when the vault has returned it.
    void withToken(const SavedConnection &connection,
                   const std::function<void(const SavedConnection &)> &use);

    //! Adds \a connection, or replaces the one with the same identifier or with the same address, user and project, and makes it
    //! the last one.
    //! \return its identifier; empty if the file cannot be written or made private
    QString save(SavedConnection connection);

    //! Removes the connection \a id and its token. \return true if the file could be written
    bool remove(const QString &id);

    //! Writes the certificate \a pem of an authority next to the file. \return the path; empty if it cannot be written
    QString saveAuthority(const QByteArray &pem, const QString &fingerprint) const;

private:
    bool write(const QList<SavedConnection> &connections, const QString &lastId) const;

    void leaveToken(const QString &id, const QString &token);

    const QString m_path;
    const std::unique_ptr<TokenVault> m_vault;
    QHash<QString, QString> m_vaultTokens; // known tokens, by connection
};

} // namespace desktop
