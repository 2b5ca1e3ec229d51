#include <desktop/places/PlacesPanel.h>

#include <desktop/lists/NameDelegate.h>
#include <desktop/search/SavedSearches.h>

#include <documents/VellDocuments.h>

#include <QHeaderView>
#include <QListWidget>
#include <QMenu>
#include <QSignalBlocker>
#include <QStyle>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace desktop {

namespace {

struct Place
{
    Location::Kind kind;
    QStyle::StandardPixmap icon;
};

constexpr std::array<Place, 5> Places{{
    {Location::Kind::Folder, QStyle::SP_DirHomeIcon},
    {Location::Kind::Favorites, QStyle::SP_DialogYesButton},
    {Location::Kind::Frequent, QStyle::SP_FileDialogContentsView},
    {Location::Kind::Recent, QStyle::SP_FileDialogInfoView},
    {Location::Kind::RecycleBin, QStyle::SP_TrashIcon},
}};

constexpr int MostRows = 12; // shown without scrolling

} // namespace

PlacesPanel::PlacesPanel(VellDocuments *documents, SavedSearches *searches, QWidget *parent)
    : QWidget(parent), m_documents(documents), m_searches(searches),
      m_folders(new FolderTreeModel(documents, this)), m_places(new QListWidget),
      m_tree(new QTreeView)
{
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    buildPlaces();
    buildTree();
    layout->addWidget(m_places);
    layout->addWidget(m_tree, 1);
    connect(searches, &SavedSearches::changed, this, &PlacesPanel::fillPlaces);
}

void PlacesPanel::buildPlaces()
{
    m_places->setObjectName(QStringLiteral("places"));
    m_places->setAccessibleName(tr("Places"));
    m_places->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_places->setTextElideMode(Qt::ElideMiddle);
    m_places->setContextMenuPolicy(Qt::CustomContextMenu);
    fillPlaces();
    const auto open = [this](const QListWidgetItem *item) {
        if (item)
            Q_EMIT locationRequested(item->data(Qt::UserRole).value<Location>());
    };
    connect(m_places, &QListWidget::currentItemChanged, this, open);
    // The place may be current although a folder below it is open.
    connect(m_places, &QListWidget::itemClicked, this, open);
    connect(m_places, &QWidget::customContextMenuRequested, this, &PlacesPanel::showPlaceMenu);
}

void PlacesPanel::fillPlaces()
{
    const QSignalBlocker noRequest(m_places);
    m_places->clear();
    const auto add = [this](QStyle::StandardPixmap icon, const QString &title,
                            const Location &location) {
        auto *const item = new QListWidgetItem(style()->standardIcon(icon), title, m_places);
        item->setData(Qt::UserRole, QVariant::fromValue(location));
        return item;
    };
    for (const Place &place : Places) {
        const Location location = Location::place(place.kind);
        const bool isTop = place.kind == Location::Kind::Folder;
        add(place.icon, isTop ? tr("All Documents") : location.title(), location);
    }
    const QList<SavedSearch> searches = m_searches->list();
    for (const SavedSearch &search : searches) {
        add(QStyle::SP_FileDialogContentsView, search.name, Location::searched(search.terms))
            ->setToolTip(search.name);
    }
    const int rows = std::min(m_places->count(), MostRows);
    m_places->setFixedHeight(m_places->sizeHintForRow(0) * rows + 2 * m_places->frameWidth() + 4);
    m_places->setCurrentRow(rowOf(m_shown));
}

void PlacesPanel::showPlaceMenu(const QPoint &position)
{
    const QListWidgetItem *const item = m_places->itemAt(position);
    if (!item || item->data(Qt::UserRole).value<Location>().kind != Location::Kind::Search)
        return;
    QMenu menu(this);
    menu.addAction(tr("&Remove from Places"), this,
                   [this, name = item->text()] { m_searches->remove(name); });
    menu.exec(m_places->viewport()->mapToGlobal(position));
}

void PlacesPanel::buildTree()
{
    m_tree->setObjectName(QStringLiteral("folders"));
    m_tree->setAccessibleName(tr("Folders"));
    m_tree->setModel(m_folders);
    m_tree->setHeaderHidden(true);
    m_tree->setUniformRowHeights(true);
    m_tree->setItemDelegate(new NameDelegate(m_tree));
    m_tree->setEditTriggers(QAbstractItemView::EditKeyPressed);
    m_tree->setDragDropMode(QAbstractItemView::DragDrop);
    m_tree->setAutoExpandDelay(800);
    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    m_tree->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_tree->header()->setStretchLastSection(false);
    connect(m_tree, &QWidget::customContextMenuRequested, this, [this](const QPoint &position) {
        const QModelIndex index = m_tree->indexAt(position);
        Q_EMIT contextMenuRequested(index.data(VellModelRole::Id).toString(),
                                    m_tree->viewport()->mapToGlobal(position));
    });
    connect(m_tree->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex &current) {
                if (current.isValid() && !m_isShowing)
                    Q_EMIT locationRequested(
                        Location::folder(current.data(VellModelRole::Id).toString()));
            });
    connect(m_folders, &VellFolderModel::loaded, this, [this] {
        if (!m_pathLeft.isEmpty())
            unfold(m_pathLeft, m_shownFolderId);
    });
}

//! Returns -1 if \a location is not one of the places.
int PlacesPanel::rowOf(const Location &location) const
{
    for (int row = 0; row < m_places->count(); ++row) {
        const auto place = m_places->item(row)->data(Qt::UserRole).value<Location>();
        const bool isBin = place.kind == Location::Kind::RecycleBin
            && location.kind == place.kind; // or a folder in it
        if (place == location || isBin)
            return row;
    }
    return -1;
}

void PlacesPanel::editName(const QString &id)
{
    const QModelIndex index = m_folders->indexOf(id);
    if (index.isValid())
        m_tree->edit(index);
}

void PlacesPanel::showLocation(const Location &location)
{
    m_shown = location;
    const bool isFolder = location.kind == Location::Kind::Folder;
    {
        const QSignalBlocker noRequest(m_places);
        m_places->setCurrentRow(rowOf(location));
    }
    delete m_request;
    m_pathLeft.clear();
    m_shownFolderId = isFolder ? location.folderId : QString();
    if (m_shownFolderId.isEmpty()) {
        m_tree->selectionModel()->clear();
        return;
    }
    if (m_folders->indexOf(m_shownFolderId).isValid()) {
        unfold({}, m_shownFolderId);
        return;
    }
    m_request = m_documents->foldersAbove(m_shownFolderId)
                    ->then(this, [this](const QList<VellDocument> &folders) {
                        QStringList path;
                        for (const VellDocument &folder : folders)
                            path.append(folder._id);
                        unfold(path, m_shownFolderId);
                    });
}

//! Expands the known folders of \a path, and marks the folder \a id.
void PlacesPanel::unfold(const QStringList &path, const QString &id)
{
    for (const QString &above : path) {
        const QModelIndex index = m_folders->indexOf(above);
        if (index.isValid())
            m_tree->expand(index);
    }
    const QModelIndex index = m_folders->indexOf(id);
    m_pathLeft = index.isValid() ? QStringList() : path;
    if (!index.isValid() || index == m_tree->currentIndex())
        return;
    m_isShowing = true;
    m_tree->setCurrentIndex(index);
    m_isShowing = false;
    m_tree->scrollTo(index);
}

} // namespace desktop
