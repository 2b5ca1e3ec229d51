#include <desktop/lists/DocumentPane.h>

#include <desktop/lists/NameDelegate.h>
#include <desktop/lists/NoticePage.h>
#include <desktop/window/MessageBar.h>

#include <documents/VellDocuments.h>

#include <QHeaderView>
#include <QListView>
#include <QStackedWidget>
#include <QTreeView>
#include <QVBoxLayout>

namespace desktop {

namespace {

constexpr int IconSide = 64;
constexpr int CellWidth = 120;
constexpr int CellLines = 3; // for a name

} // namespace

DocumentPane::DocumentPane(VellDocuments *documents, QWidget *parent)
    : QWidget(parent), m_documents(documents), m_model(new DocumentListModel(documents, this)),
      m_table(new QTreeView), m_icons(new QListView), m_notice(new NoticePage(m_model)),
      m_stale(new MessageBar(QStringLiteral("staleBar"))), m_pages(new QStackedWidget)
{
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    layout->addWidget(m_stale);
    layout->addWidget(m_pages, 1);
    buildTable();
    buildIcons();
    m_pages->addWidget(m_table);
    m_pages->addWidget(m_icons);
    m_pages->addWidget(m_notice);
    connect(m_stale, &MessageBar::accepted, this, &DocumentPane::reload);
    connect(m_notice, &NoticePage::accepted, this, &DocumentPane::reload);
    connect(m_model, &VellDocumentModel::loadingChanged, this, &DocumentPane::updatePage);
    connect(m_model, &VellDocumentModel::loaded, this, &DocumentPane::onLoaded);
    connect(m_model, &VellDocumentModel::loadFailed, this, &DocumentPane::updatePage);
    const auto forgetSelection = [this] { m_selection.reset(); };
    connect(m_model, &QAbstractItemModel::dataChanged, this, forgetSelection);
    connect(m_model, &QAbstractItemModel::rowsRemoved, this, forgetSelection);
    connect(m_model, &QAbstractItemModel::layoutChanged, this, forgetSelection);
    connect(m_model, &QAbstractItemModel::modelReset, this, forgetSelection);
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(m_model, signal, this, &DocumentPane::updatePage);
    connect(m_model, &QAbstractItemModel::modelReset, this, &DocumentPane::updatePage);
}

void DocumentPane::buildTable()
{
    m_table->setObjectName(QStringLiteral("table"));
    m_table->setAccessibleName(tr("Entries"));
    m_table->setModel(m_model);
    // The header would ask 100,000 rows whether a whole column is selected.
    m_table->header()->setSelectionModel(new QItemSelectionModel(m_model, m_table->header()));
    m_table->setRootIsDecorated(false);
    m_table->setUniformRowHeights(true); // otherwise each of 100,000 rows is measured
    m_table->setAllColumnsShowFocus(true);
    m_table->setTextElideMode(Qt::ElideMiddle); // the suffix remains visible
    m_table->header()->setSortIndicator(VellDocumentModel::NameColumn, Qt::AscendingOrder);
    // Without a selection the position is not restored: finding it would take longer than loading the list.
    connect(m_table->header(), &QHeaderView::sortIndicatorChanged, this, [this] {
        if (!m_table->selectionModel()->hasSelection())
            m_table->selectionModel()->clearCurrentIndex();
    });
    m_table->setSortingEnabled(true);
    m_table->header()->setStretchLastSection(true);
    m_table->header()->setFirstSectionMovable(false);
    m_table->setColumnWidth(VellDocumentModel::NameColumn, 190);
    m_table->setColumnWidth(VellDocumentModel::SizeColumn, 80);
    m_table->setColumnWidth(VellDocumentModel::TypeColumn, 90);
    m_table->setColumnWidth(VellDocumentModel::ChangedAtColumn, 155);
    m_table->setItemDelegate(new NameDelegate(m_table));
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &DocumentPane::onSelectionChanged);
    watchView(m_table);
}

void DocumentPane::buildIcons()
{
    m_icons->setObjectName(QStringLiteral("icons"));
    m_icons->setAccessibleName(tr("Entries"));
    m_icons->setViewMode(QListView::IconMode);
    m_icons->setMovement(QListView::Snap);
    m_icons->setResizeMode(QListView::Adjust);
    m_icons->setUniformItemSizes(true);
    m_icons->setIconSize({IconSide, IconSide});
    const int textHeight = CellLines * m_icons->fontMetrics().lineSpacing();
    const QSize cell(CellWidth, IconSide + textHeight + 12);
    m_icons->setGridSize(cell);
    m_icons->setWordWrap(true);
    m_icons->setTextElideMode(Qt::ElideMiddle);
    // The view uses the size of one entry for all, and that entry may not have been loaded.
    m_icons->setItemDelegate(new NameDelegate(cell, m_icons));
    watchView(m_icons);
}

void DocumentPane::watchView(QAbstractItemView *view)
{
    view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers); // by F2 and the menu, if allowed
    view->setDragDropMode(QAbstractItemView::DragDrop);
    view->setDropIndicatorShown(true);
    view->setDefaultDropAction(Qt::MoveAction); // other programs copy
    view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(view, &QWidget::customContextMenuRequested, this, [=](const QPoint &position) {
        Q_EMIT contextMenuRequested(view->viewport()->mapToGlobal(position));
    });
    connect(view, &QAbstractItemView::activated, this, [this](const QModelIndex &index) {
        if (const std::optional<VellDocument> document = m_model->document(index))
            Q_EMIT openRequested(*document);
    });
}

void DocumentPane::setLocation(const Location &location, const QString &selectedId)
{
    m_location = location;
    m_wantedId = selectedId;
    m_editedId.clear();
    m_isFolderGone = false;
    m_model->setSource(location.source());
    m_table->scrollToTop();
    onSelectionChanged();
    updatePage();
}

void DocumentPane::reload()
{
    m_model->reload();
    updatePage();
}

void DocumentPane::setView(View view)
{
    if (view == m_view)
        return;
    m_view = view;
    if (view == View::Icons) {
        m_icons->setModel(m_model);
        const std::unique_ptr<QItemSelectionModel> unused(m_icons->selectionModel());
        m_icons->setSelectionModel(m_table->selectionModel());
    } else {
        m_icons->setModel(nullptr); // a hidden view would take time for each change of a long list
    }
    updatePage();
}

DocumentPane::View DocumentPane::view() const
{
    return m_view;
}

QAbstractItemView *DocumentPane::currentView() const
{
    return m_view == View::Details ? static_cast<QAbstractItemView *>(m_table) : m_icons;
}

void DocumentPane::updatePage()
{
    const VellError &error = m_model->error();
    const bool hasRows = m_model->rowCount() > 0;
    // The bar of the window shows this, and the model reloads automatically.
    const bool isLost =
        error.kind == VellError::Kind::Offline || error.kind == VellError::Kind::TimedOut;
    if (error && hasRows && !isLost) {
        m_stale->say(MessageBar::Kind::Warning,
                     tr("The list may be out of date. %1").arg(error.text), tr("&Try Again"));
    } else {
        m_stale->hide();
    }
    const bool isEmpty = !hasRows && (error || !m_model->isLoading());
    if (isEmpty)
        showNotice();
    showPage(isEmpty ? static_cast<QWidget *>(m_notice) : currentView());
    Q_EMIT changed();
}

void DocumentPane::showPage(QWidget *page)
{
    const bool hasFocus = m_pages->currentWidget()->hasFocus();
    m_pages->setCurrentWidget(page);
    if (hasFocus)
        page->setFocus();
}

void DocumentPane::showNotice()
{
    if (const VellError &error = m_model->error()) {
        const QString why =
            error.detail.isEmpty() ? error.text : error.text + QLatin1Char('\n') + error.detail;
        m_notice->say(tr("The list could not be loaded"), why, tr("&Try Again"));
        return;
    }
    if (m_model->source().kind() == VellDocumentSource::Kind::None) {
        m_notice->say(tr("No project is open"), tr("Connect to a service to see its documents."));
        return;
    }
    switch (m_location.kind) {
    case Location::Kind::Folder:
        if (m_isFolderGone) {
            m_notice->say(tr("This folder has been deleted"),
                          tr("It can be restored from the recycle bin."));
            return;
        }
        m_notice->say(tr("This folder is empty"), tr("Drop files here or upload them."));
        return;
    case Location::Kind::Favorites:
        m_notice->say(tr("There are no favourites"),
                      tr("Mark a document as a favourite with Ctrl+B."));
        return;
    case Location::Kind::Frequent:
        m_notice->say(tr("Nothing is marked as frequently used"),
                      tr("Mark a document by its context menu."));
        return;
    case Location::Kind::Recent:
        m_notice->say(tr("There are no recent files"),
                      tr("Files that you change or open are listed here."));
        return;
    case Location::Kind::RecycleBin:
        m_notice->say(tr("The recycle bin is empty"),
                      tr("Deleted documents can be restored from here."));
        return;
    case Location::Kind::Search:
        m_notice->say(tr("Nothing was found"), tr("Try fewer letters, or another folder or time."));
        return;
    }
}

//! An empty list may be that of a folder that has been deleted.
void DocumentPane::askForFolder()
{
    const QString id = m_location.folderId;
    if (m_location.kind != Location::Kind::Folder || id.isEmpty() || m_model->rowCount() > 0) {
        m_isFolderGone = false;
        return;
    }
    m_documents->document(id)->then(
        this, [this, id](const VellDocument &folder) { setFolderGone(id, folder.recycle != 0); },
        [this, id](const VellError &error) {
            if (error.kind == VellError::Kind::NotFound)
                setFolderGone(id, true);
        });
}

void DocumentPane::setFolderGone(const QString &id, bool isGone)
{
    if (id != m_location.folderId || isGone == m_isFolderGone)
        return;
    m_isFolderGone = isGone;
    updatePage();
}

void DocumentPane::onLoaded()
{
    askForFolder();
    updatePage();
    if (!m_wantedId.isEmpty())
        select(std::exchange(m_wantedId, QString()));
    if (!m_editedId.isEmpty())
        editName(m_editedId);
    if (!currentView()->currentIndex().isValid() && m_model->rowCount() > 0) {
        // A current index for the keys.
        currentView()->selectionModel()->setCurrentIndex(m_model->index(0, 0),
                                                         QItemSelectionModel::NoUpdate);
    }
}

void DocumentPane::onSelectionChanged()
{
    m_selection.reset();
    Q_EMIT selectionChanged();
}

QList<VellDocument> DocumentPane::selection() const
{
    if (m_selection)
        return *m_selection;
    QList<VellDocument> documents;
    // By ranges, because a list of 100,000 indexes would block the window.
    const QItemSelection selected = m_table->selectionModel()->selection();
    for (const QItemSelectionRange &range : selected)
        documents += m_model->documents(range.top(), range.bottom());
    m_selection = documents;
    return documents;
}

int DocumentPane::selectedCount() const
{
    int count = 0;
    const QItemSelection selected = m_table->selectionModel()->selection();
    for (const QItemSelectionRange &range : selected)
        count += range.height();
    return count;
}

bool DocumentPane::isSelectionFetched() const
{
    return selection().size() == selectedCount();
}

void DocumentPane::select(const QString &id)
{
    const QModelIndex index = m_model->indexOf(id);
    if (!index.isValid())
        return;
    m_table->selectionModel()->setCurrentIndex(
        index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    currentView()->scrollTo(index);
}

void DocumentPane::selectAll()
{
    if (m_model->rowCount() == 0)
        return;
    // As one range, because the views process each range.
    const QItemSelection all(m_model->index(0, 0),
                             m_model->index(m_model->rowCount() - 1, m_model->columnCount() - 1));
    m_table->selectionModel()->select(all, QItemSelectionModel::ClearAndSelect);
}

void DocumentPane::editName(const QString &id)
{
    const QModelIndex index = m_model->indexOf(id);
    if (!index.isValid()) {
        m_editedId = id;
        return;
    }
    m_editedId.clear();
    select(id);
    currentView()->setFocus();
    currentView()->edit(index);
}

void DocumentPane::setListFocus()
{
    m_pages->currentWidget()->setFocus();
}

QByteArray DocumentPane::headerState() const
{
    return m_table->header()->saveState();
}

void DocumentPane::restoreHeaderState(const QByteArray &state)
{
    if (m_table->header()->restoreState(state))
        m_model->sort(m_table->header()->sortIndicatorSection(),
                      m_table->header()->sortIndicatorOrder());
}

} // namespace desktop
