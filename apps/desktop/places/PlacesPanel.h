#pragma once

#include <desktop/lists/FolderTreeModel.h>
#include <desktop/window/Location.h>

#include <QPointer>
#include <QWidget>

class QListWidget;
class QTreeView;
class VellOperation;

namespace desktop {

//! \brief The places and the tree of the folders.
class PlacesPanel : public QWidget
{
    Q_OBJECT

public:
    //! \param documents must outlive the panel
    explicit PlacesPanel(VellDocuments *documents, QWidget *parent = nullptr);

    //! Marks \a location as the one that is open; the tree unfolds to its folder.
    void showLocation(const Location &location);

    FolderTreeModel *folders() const { return m_folders; }

Q_SIGNALS:
    void locationRequested(const desktop::Location &location);

    //! Of the folder \a id; empty for the top level.
    void contextMenuRequested(const QString &id, const QPoint &globalPosition);

private:
    void addPlaces();
    void buildTree();
    void unfold(const QStringList &path, const QString &id);

    VellDocuments *const m_documents;
    FolderTreeModel *m_folders;
    QListWidget *m_places;
    QTreeView *m_tree;
    QString m_shownFolderId;
    QStringList m_pathLeft; // folders to be unfolded, as they arrive
    QPointer<VellOperation> m_request;
    bool m_isShowing = false; // the current folder is changed by the program
};

} // namespace desktop
