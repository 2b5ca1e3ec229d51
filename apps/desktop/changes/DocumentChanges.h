#pragma once

#include <desktop/changes/UndoHistory.h>

#include <documents/VellDocuments.h>

#include <QObject>

#include <functional>

namespace desktop {

//! \brief The changes that the user makes, with one report for each and a way back.
//!
//! Every function returns at once. done() or failed() follows; an operation on many documents can emit both. Belongs to the thread
//! of the session.
class DocumentChanges : public QObject
{
    Q_OBJECT

public:
    //! \param documents must outlive this
    explicit DocumentChanges(VellDocuments *documents, QObject *parent = nullptr);

    //! Makes a folder with a free name in the folder \a parentId. folderCreated() follows.
    void createFolder(const QString &parentId);
    void rename(const VellDocument &document, const QString &name);
    void move(const QList<VellDocument> &documents, const QString &folderId);
    //! Into the recycle bin.
    void remove(const QList<VellDocument> &documents);
    //! From the recycle bin.
    void restore(const QList<VellDocument> &documents);
    //! For good.
    void emptyRecycleBin();
    void setFavorite(const QList<VellDocument> &documents, bool on);
    void setFrequent(const QList<VellDocument> &documents, bool on);
    void setRemark(const VellDocument &document, const QString &remark);

    bool canUndo() const { return !m_history.isEmpty(); }
    //! What undo() takes back, for the menu.
    QString undoText() const { return m_history.text(); }
    //! Takes back the latest rename, move or removal.
    void undo();

Q_SIGNALS:
    //! A change has been made. \param text a sentence for the status bar
    void done(const QString &text);

    //! \param text what could not be done and why; \a error the first reason
    void failed(const QString &text, const VellError &error);

    void folderCreated(const VellDocument &folder);
    void undoChanged();

    //! What the recycle bin holds has changed.
    void recycleBinChanged();

private:
    //! Reports the end of an operation on \a documents.
    //! \param failure "%1 could not be …", %1 being the names
    void report(const QList<VellDocument> &documents, const VellBulkResult &result,
                const QString &success, const QString &failure);
    void remember(const QString &text, std::function<void()> undo);
    std::function<void(const VellError &)> failureOf(const QString &what);
    void moveBack(const QList<VellDocument> &documents);

    VellDocuments *const m_documents;
    UndoHistory m_history;
};

} // namespace desktop
