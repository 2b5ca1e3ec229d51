#pragma once

#include <desktop/lists/FolderTreeModel.h>
#include <desktop/window/Location.h>

#include <QPointer>
#include <QWidget>

class QListWidget;
class QListWidgetItem;
class QTreeView;
class VellOperation;

namespace desktop {

class SavedSearches;

//! \brief The places, the saved searches and the folder tree.
class PlacesPanel : public QWidget
{
    Q_OBJECT

public:
    //! \param documents and \a searches must outlive the panel
    PlacesPanel(VellDocuments *documents, SavedSearches *searches, QWidget *parent = nullptr);

    //! Marks \a location as open, and expands the tree to its folder.
    void showLocation(const Location &location);

    FolderTreeModel *folders() const { return m_folders; }

    //! Starts renaming the folder \a id in place, if it is in the tree.
    void editName(const QString &id);

Q_SIGNALS:
    void locationRequested(const desktop::Location &location);

    //! Emitted for the folder \a id; empty for the top level.
    void contextMenuRequested(const QString &id, const QPoint &globalPosition);

private:
    void buildPlaces();
    void fillPlaces();
    void showPlaceMenu(const QPoint &position);
    void buildTree();
    int rowOf(const Location &location) const;
    void unfold(const QStringList &path, const QString &id);

    VellDocuments *const m_documents;
    SavedSearches *const m_searches;
    FolderTreeModel *m_folders;
    QListWidget *m_places;
    QTreeView *m_tree;
    Location m_shown;
    QString m_shownFolderId;
    QStringList m_pathLeft; // folders that must still be expanded
    QPointer<VellOperation> m_request;
    bool m_isShowing = false; // the program is changing the current folder
};

} // namespace desktop
