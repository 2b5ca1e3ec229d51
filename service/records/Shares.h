#pragma once

#include <service/records/Document.h>

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace service {

class Database;

//! A set of documents that everybody who has the code may look at.
struct Share
{
    QString id;
    QString projectId;
    bool allowsDownload = false;
    std::optional<qint64> expiredAt; //!< none: never
    qint64 createdAt = 0;
    QString createdBy;
};

//! \brief The shares. Changes belong inside a Transaction of the caller.
class Shares
{
public:
    explicit Shares(Database &database);

    //! \return the code; only its hash is kept
    QString insert(const Share &share, const QStringList &documentIds);

    std::optional<Share> findByCode(const QString &code);
    std::optional<Share> find(const QString &id);
    //! Those of a project, or of all with an empty \a projectId; those of one user, or of all with an empty
    //! \a userId. Newest first; those that have ended are among them.
    QList<Share> list(const QString &projectId, const QString &userId);
    //! Ends a share. \return false without one
    bool remove(const QString &id);

    //! What was shared itself; what has gone into the recycle bin since is left out.
    //! \param limit how many at the most; below 0 all \param skip how many come before them
    QList<Document> documents(const Share &share, int limit = -1, int skip = 0);
    QList<Document> children(const Document &folder, int limit, int skip);

    //! The document, when it was shared or lies below a folder that was.
    std::optional<Document> findDocument(const Share &share, const QString &documentId);

private:
    Database &m_database;
};

} // namespace service
