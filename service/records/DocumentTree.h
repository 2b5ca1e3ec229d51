#pragma once

#include <service/records/Document.h>

#include <QList>
#include <QPair>

namespace service {

class Database;

//! \brief What concerns a document together with those above and below it. Changes belong inside a
//! Transaction of the caller.
class DocumentTree
{
public:
    explicit DocumentTree(Database &database);

    //! Whether \a id is \a folderId or lies somewhere below it.
    bool isAtOrBelow(const QString &id, const QString &folderId);

    //! The folders above \a id, from the top level down: id and name.
    QList<QPair<QString, QString>> foldersAbove(const QString &id);

    //! Returns true if \a userId has created all that goes into the recycle bin with \a folder, or comes out of it:
    //! everything below it but what was deleted on its own.
    bool createdAllBelow(const Document &folder, const QString &userId);

    qint64 childCount(const QString &id);

    //! Puts a document with everything below it into the recycle bin.
    void recycle(const Document &document, const QString &userId);

    //! Takes a document and what went with it out of the bin: into its old folder, or into the top
    //! level when that is no longer there.
    void restore(const Document &document, const QString &userId);

    //! Deletes for good what lies in the bin of a project, all of it or, with a \a category, what was
    //! deleted with that category word. \return how many documents that were
    int purge(const QString &projectId, const QString &category);

private:
    Database &m_database;
};

} // namespace service
