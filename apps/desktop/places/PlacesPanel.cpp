#include <desktop/places/PlacesPanel.h>

#include <documents/VellDocuments.h>

#include <QHeaderView>
#include <QListWidget>
#include <QSignalBlocker>
#include <QStyle>
#include <QTreeView>
#include <QVBoxLayout>

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

} // namespace

PlacesPanel::PlacesPanel(VellDocuments *documents, QWidget *parent)
    : QWidget(parent), m_documents(documents), m_folders(new FolderTreeModel(documents, this)),
      m_places(new QListWidget), m_tree(new QTreeView)
{
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    addPlaces();
    buildTree();
    layout->addWidget(m_places);
    layout->addWidget(m_tree, 1);
}

void PlacesPanel::addPlaces()
{
    m_places->setObjectName(QStringLiteral("places"));
    m_places->setAccessibleName(tr("Places"));
    m_places->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (const Place &place : Places) {
        const QString title = place.kind == Location::Kind::Folder
            ? tr("All Documents")
            : Location::place(place.kind).title();
        new QListWidgetItem(style()->standardIcon(place.icon), title, m_places);
    }
    const int height =
        m_places->sizeHintForRow(0) * int(Places.size()) + 2 * m_places->frameWidth();
    m_places->setFixedHeight(height + 4);
    const auto open = [this](int row) {
        if (row >= 0)
            Q_EMIT locationRequested(Location::place(Places.at(std::size_t(row)).kind));
    };
    connect(m_places, &QListWidget::currentRowChanged, this, open);
    // The place may be the current one although a folder below it is open.
    connect(m_places, &QListWidget::itemClicked, this, [=] { open(m_places->currentRow()); });
}

void PlacesPanel::buildTree()
{
    m_tree->setObjectName(QStringLiteral("folders"));
    m_tree->setAccessibleName(tr("Folders"));
    m_tree->setModel(m_folders);
    m_tree->setHeaderHidden(true);
    m_tree->setUniformRowHeights(true);
    m_tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
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

void PlacesPanel::showLocation(const Location &location)
{
    int row = -1;
    for (std::size_t i = 0; i < Places.size(); ++i) {
        if (Places.at(i).kind == location.kind)
            row = int(i);
    }
    const bool isFolder = location.kind == Location::Kind::Folder;
    {
        const QSignalBlocker noRequest(m_places);
        m_places->setCurrentRow(isFolder && !location.folderId.isEmpty() ? -1 : row);
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

//! Expands the folders of \a path, as far as they are known, and marks the folder \a id.
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
