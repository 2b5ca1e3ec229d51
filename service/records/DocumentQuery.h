#pragma once

#include <service/records/Document.h>

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>

namespace service {

class Database;

//! \brief What a list of documents is asked for.
struct DocumentQuery
{
    QString projectId;
    QJsonObject where; //!< field to value, or to an object of operators
    QString category; //!< "recycle" for the recycle bin
    bool isDeep = false; //!< all below parentId, not its children alone
    QList<int> recordTypes; //!< only what the user has marked so, with each of them
    QString order; //!< keys parted by blanks, "-" for descending; empty for the default
    qint64 limit = 0; //!< 0 or less: no limit
    qint64 skip = 0;
};

//! \brief Runs list queries. Functions throw HttpError 400 for a field, operator, value or sort key that
//! the query language does not have.
class DocumentLister
{
public:
    DocumentLister(Database &database, const QString &userId);

    QList<Document> list(const DocumentQuery &query);
    qint64 count(const DocumentQuery &query);

    //! Of those linked to the entity, in the order of their names.
    QList<Document> linkedTo(const QString &projectId, const QString &entityId);

private:
    QList<Document> run(const QString &sql, const QVariantList &values);

    Database &m_database;
    const QString m_userId;
};

} // namespace service
