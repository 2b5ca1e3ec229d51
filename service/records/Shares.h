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
    qint64 expiredAt = 0; //!< 0: never
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

    //! What was shared itself; what has gone into the recycle bin since is left out.
    QList<Document> documents(const Share &share);
    QList<Document> children(const Document &folder);

    //! The document, when it was shared or lies below a folder that was.
    std::optional<Document> find(const Share &share, const QString &documentId);

private:
    Database &m_database;
};

} // namespace service
