#pragma once

#include <desktop/changes/UndoHistory.h>

#include <documents/VellDocuments.h>

#include <QObject>

#include <functional>

namespace desktop {

//! \brief The changes of documents by the user, with a message for each, and undo.
//!
//! Each function returns at once. done() or failed() follows; an operation on many documents can emit both. Belongs to the thread
//! of the session.
class DocumentChanges : public QObject
{
    Q_OBJECT

public:
    //! \param documents must outlive this object
    explicit DocumentChanges(VellDocuments *documents, QObject *parent = nullptr);

    //! Creates a folder with a free name in the folder \a parentId. folderCreated() follows.
    void createFolder(const QString &parentId);
    void rename(const VellDocument &document, const QString &name);
    void move(const QList<VellDocument> &documents, const QString &folderId);
    //! Moves documents into the recycle bin.
    void remove(const QList<VellDocument> &documents);
    //! Restores documents from the recycle bin.
    void restore(const QList<VellDocument> &documents);
    //! Deletes everything in the recycle bin permanently.
    void emptyRecycleBin();
    void setFavorite(const QList<VellDocument> &documents, bool on);
    void setFrequent(const QList<VellDocument> &documents, bool on);
    void setRemark(const VellDocument &document, const QString &remark);

    bool canUndo() const { return !m_history.isEmpty(); }
    //! Returns the text of the change that undo() reverts, for the menu.
    QString undoText() const { return m_history.text(); }
    //! Reverts the last rename, move or removal.
    void undo();

Q_SIGNALS:
    //! A change has succeeded. \param text a sentence for the status bar
    void done(const QString &text);

    //! A change has failed. \param text a sentence with the reason; \a error the first error
    void failed(const QString &text, const VellError &error);

    void folderCreated(const VellDocument &folder);
    void undoChanged();

    //! The entries of the recycle bin have changed.
    void recycleBinChanged();

private:
    //! Reports the end of an operation on \a documents.
    //! \param failure "%1 could not be …" with %1 for the names
    void report(const QList<VellDocument> &documents, const VellBulkResult &result,
                const QString &success, const QString &failure);
    void remember(const QString &text, std::function<void()> undo);
    std::function<void(const VellError &)> failureOf(const QString &what);
    void moveBack(const QList<VellDocument> &documents);

    VellDocuments *const m_documents;
    UndoHistory m_history;
};

} // namespace desktop
