#pragma once

#include <service/records/Document.h>

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QVariantList>

#include <functional>

namespace service {

class Database;

//! \brief What a list of documents is asked for.
struct DocumentQuery
{
    QString projectId;
    QJsonObject where; //!< field to value, or to an object of operators
    QString category; //!< "recycle" for the recycle bin
    bool isDeep = false; //!< all below parentId, not its children alone
    QList<int> markTypes; //!< only what the user has marked so, with each of them
    QString order; //!< keys separated by spaces, "-" for descending; empty for the default
    qint64 limit = 0; //!< 0 or less: no limit
    qint64 skip = 0;
};

//! \brief Runs list queries. Functions throw ServiceError for a field, operator, value or sort key that
//! the query language does not have.
class DocumentLister
{
public:
    DocumentLister(Database &database, const QString &userId);

    //! Gets the documents one after the other, while the query runs.
    using Visitor = std::function<void(const Document &)>;

    void list(const DocumentQuery &query, const Visitor &visit);
    qint64 count(const DocumentQuery &query);

    //! Of those linked to the entity, in the order of their names.
    void linkedTo(const QString &projectId, const QString &entityId, const Visitor &visit);

private:
    void run(const QString &sql, const QVariantList &values, const Visitor &visit);

    Database &m_database;
    const QString m_userId;
};

} // namespace service
