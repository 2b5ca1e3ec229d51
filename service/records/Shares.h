#pragma once

#include <service/records/Document.h>

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace service {

class Database;

//! A set of documents that everybody with the code can see.
struct Share
{
    QString id;
    QString projectId;
    bool allowsDownload = false;
    std::optional<qint64> expiredAt; //!< none: never
    qint64 createdAt = 0;
    QString createdBy;
};

//! \brief The table of shares. Changes require a Transaction.
class Shares
{
public:
    explicit Shares(Database &database);

    //! \return the code; only its hash is stored
    QString insert(const Share &share, const QStringList &documentIds);

    std::optional<Share> findByCode(const QString &code);
    std::optional<Share> find(const QString &id);
    //! Lists the shares of a project, or of all projects if \a projectId is empty; of a user, or of all users if \a userId is empty.
    //! Newest first, including those that have ended.
    QList<Share> list(const QString &projectId, const QString &userId);
    //! Ends a share. \return false if it does not exist
    bool remove(const QString &id);

    //! Returns the documents that were shared themselves, except those in the recycle bin.
    //! \param limit the maximum number; below 0 for all \param skip the number of documents before them
    QList<Document> documents(const Share &share, int limit = -1, int skip = 0);
    //! Returns those of all shares of list(projectId, userId), by the id of the share; only with id, name and type.
    QHash<QString, QList<Document>> documentsOfList(const QString &projectId,
                                                    const QString &userId);
    QList<Document> children(const Document &folder, int limit, int skip);

    //! Returns the document if it was shared, or is below a folder that was shared.
    std::optional<Document> findDocument(const Share &share, const QString &documentId);

private:
    Database &m_database;
};

} // namespace service
