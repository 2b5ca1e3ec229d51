#pragma once

#include <service/records/Document.h>

#include <QString>

#include <optional>

namespace service {

class Database;
class Statement;

//! \brief The table of documents, for one user. Changes require a Transaction.
class Documents
{
public:
    Documents(Database &database, const QString &userId);

    std::optional<Document> find(const QString &id);

    //! \throws ServiceError for an unknown id
    Document require(const QString &id);

    //! Returns a folder that documents may be added to. \throws ServiceError for an unknown id or one of another project, a file, and a
    //! folder in the recycle bin
    Document requireTarget(const QString &id, const QString &projectId);

    //! Adds a row; sets its id, order and times.
    void insert(Document &document);

    //! Writes the fields that can change and sets updatedAt and updatedBy.
    void update(Document &document);

    void setOrder(const QString &id, int order);

    //! Returns true if another document in the folder \a parentId has that name.
    bool isNameTaken(const Document &document, const QString &parentId);

    //! Returns the columns that read() expects, of a table called d. They begin with two placeholders for the id of the user.
    static QString columns(const Database &database);
    static Document read(const Statement &row);

private:
    Database &m_database;
    const QString m_userId;
};

} // namespace service
