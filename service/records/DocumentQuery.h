#pragma once

#include <service/records/Document.h>

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QVariantList>

#include <functional>

namespace service {

class Database;

//! \brief The condition, order and page of a list of documents.
struct DocumentQuery
{
    QString projectId;
    QJsonObject where; //!< field to value, or to an object of operators
    QString category; //!< "recycle" for the recycle bin
    bool isDeep = false; //!< everything below parentId, not only its children
    QList<int> markTypes; //!< only documents with all these marks of the user
    QString order; //!< keys separated by spaces, "-" for descending; empty for the default
    qint64 limit = 0; //!< 0 or less: no limit
    qint64 skip = 0;
};

//! \brief Runs list queries. Functions throw ServiceError for an unknown field, operator, value or sort key.
class DocumentLister
{
public:
    DocumentLister(Database &database, const QString &userId);

    //! Called for each document while the query runs.
    using Visitor = std::function<void(const Document &)>;

    void list(const DocumentQuery &query, const Visitor &visit);
    qint64 count(const DocumentQuery &query);

    //! Lists the documents that are linked to the entity, sorted by name.
    void linkedTo(const QString &projectId, const QString &entityId, const Visitor &visit);

private:
    void run(const QString &sql, const QVariantList &values, const Visitor &visit, bool hasPattern);

    Database &m_database;
    const QString m_userId;
};

} // namespace service
