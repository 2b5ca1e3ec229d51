#pragma once

#include <service/records/Document.h>

#include <QString>

#include <optional>

namespace service {

class Database;
class Statement;

//! \brief The table of documents, as one user sees it. Changes belong inside a Transaction of the caller.
class Documents
{
public:
    Documents(Database &database, const QString &userId);

    std::optional<Document> find(const QString &id);

    //! \throws ServiceError for an unknown id
    Document require(const QString &id);

    //! The folder that things may be put into. \throws ServiceError for an unknown id or one of another
    //! project, a file, and a folder in the recycle bin
    Document requireTarget(const QString &id, const QString &projectId);

    //! Adds the row as it stands; its id, order and times are set here.
    void insert(Document &document);

    //! Writes the fields that can change and sets updatedAt and updatedBy.
    void update(Document &document);

    void setOrder(const QString &id, int order);

    //! Whether another document in the folder \a parentId has that name.
    bool isNameTaken(const Document &document, const QString &parentId);

    //! The columns that read() expects, of a table called d; two placeholders of the user's id come
    //! first.
    static QString columns(const Database &database);
    static Document read(const Statement &row);

private:
    Database &m_database;
    const QString m_userId;
};

} // namespace service
