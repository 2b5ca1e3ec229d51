#pragma once

#include <QJsonArray>
#include <QString>

namespace service {

class Database;

//! \brief The entities that documents are linked to, in the form [{"kind": …, "ids": […]}].
class Links
{
public:
    explicit Links(Database &database);

    //! Puts \a links in the place of the document's links; inside a Transaction of the caller.
    //! \throws ServiceError for another form
    void replace(const QString &documentId, const QJsonArray &links);

private:
    Database &m_database;
};

//! From Document::links to the form of the interface.
QJsonArray linksToJson(const QString &links);

} // namespace service
