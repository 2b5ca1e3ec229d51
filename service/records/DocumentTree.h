#pragma once

#include <service/records/Document.h>

#include <QList>
#include <QPair>
#include <QVariantList>

namespace service {

class Database;

//! \brief Operations on a document together with those above and below it. Changes require a Transaction.
class DocumentTree
{
public:
    explicit DocumentTree(Database &database);

    //! Returns true if \a id is \a folderId or is below it, at any depth.
    bool isAtOrBelow(const QString &id, const QString &folderId);

    //! Returns the folders above \a id, from the top level down: id and name.
    QList<QPair<QString, QString>> foldersAbove(const QString &id);

    //! Returns true if \a userId has created everything that is deleted or restored together with \a folder: everything below it except
    //! documents that were deleted themselves.
    bool createdAllBelow(const Document &folder, const QString &userId);

    qint64 childCount(const QString &id);

    //! Moves a document with everything below it to the recycle bin.
    void recycle(const Document &document, const QString &userId);

    //! Restores a document and everything that was deleted together with it: in its old folder, or at the top level if that no longer
    //! exists.
    void restore(const Document &document, const QString &userId);

    //! Deletes the documents in the recycle bin of a project permanently: all, or those that were deleted with \a category.
    //! \return the number of documents
    int purge(const QString &projectId, const QString &category);

    //! The same for a document that was deleted itself, with everything that was deleted together with it.
    int purge(const Document &document);

private:
    //! \param condition of the documents that were deleted themselves
    int purgeWhere(const QString &condition, const QVariantList &values);

    Database &m_database;
};

} // namespace service
