#pragma once

#include <QJsonArray>
#include <QString>

namespace service {

class Database;

//! \brief The links of documents to entities, in the form [{"kind": …, "ids": […]}].
class Links
{
public:
    explicit Links(Database &database);

    //! Replaces the links of the document; requires a Transaction.
    //! \throws ServiceError if \a links has another form
    void replace(const QString &documentId, const QJsonArray &links);

private:
    Database &m_database;
};

//! Converts Document::links to this form.
QJsonArray linksToJson(const QString &links);

} // namespace service
