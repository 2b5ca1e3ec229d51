#pragma once

#include <desktop/signin/SavedConnection.h>

#include <QList>
#include <QString>

#include <optional>

namespace desktop {

//! \brief The saved connections, in a file that only the user can read, because it holds the tokens.
//!
//! On Windows the folder of the user's settings keeps other users out.
class ConnectionStore
{
public:
    //! \param path of the file; made by the first save()
    explicit ConnectionStore(const QString &path) : m_path(path) {}

    QList<SavedConnection> connections() const;

    //! The one that was used last, if there is one.
    std::optional<SavedConnection> last() const;

    //! Adds \a connection, or changes the one with its identifier or with its address, user and project, and makes it the last one.
    //! \return its identifier; empty if the file cannot be written or made private
    QString save(SavedConnection connection);

    //! Forgets the connection \a id and its token. \return whether the file could be written
    bool remove(const QString &id);

    //! Copies the authority's certificate \a pem beside the file. \return the path; empty if it cannot be written
    QString keepAuthority(const QByteArray &pem, const QString &fingerprint) const;

private:
    bool write(const QList<SavedConnection> &connections, const QString &lastId) const;

    const QString m_path;
};

} // namespace desktop
