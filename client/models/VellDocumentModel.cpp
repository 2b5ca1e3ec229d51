#include <models/VellDocumentModel.h>

#include <documents/VellDocumentStore.h>
#include <documents/VellDocuments.h>
#include <models/DocumentColumns.h>
#include <models/DocumentRows.h>
#include <models/DropRequest.h>
#include <models/FileTypeIcons.h>
#include <models/RowSearch.h>
#include <session/VellSession.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr int PageSize = 100;
constexpr int MarginRows = PageSize / 2; // fetched in advance
constexpr int LongestLook =
    3 * PageSize; // a longer range comes from a loop over all rows, not from a view
constexpr int KeptRows = 2000;
constexpr int MostPinnedRows = 10000; // between persistent indexes
constexpr int RefreshMs = 100; // combines many changes into one request
constexpr int MostCorrections = 3;

int pageStart(int row)
{
    return row / PageSize * PageSize;
}

} // namespace

struct VellDocumentModel::Reload
{
    VellPage page;
    int limit = 0;
    QHash<QString, int> rows; // of documents with persistent indexes
    QSet<QString> requested; // identifiers for which the rows were requested
};

VellDocumentModel::VellDocumentModel(VellDocuments *documents, QObject *parent)
    : QAbstractTableModel(parent), m_documents(documents),
      m_icons(std::make_unique<FileTypeIcons>()), m_rows(std::make_unique<DocumentRows>())
{
    m_refresh.setSingleShot(true);
    m_refresh.setInterval(RefreshMs);
    connect(&m_refresh, &QTimer::timeout, this, [this] {
        if (m_isReloading)
            m_refresh.start(); // the response in flight may be older than the change
        else
            startReload();
    });
    const VellDocumentStore *const store = documents->store();
    connect(store, &VellDocumentStore::documentsChanged, this, &VellDocumentModel::updateDocuments);
    connect(store, &VellDocumentStore::documentsRemoved, this, &VellDocumentModel::removeDocuments);
    connect(store, &VellDocumentStore::folderChanged, this, [this](const QString &id) {
        if (m_source.kind() == VellDocumentSource::Kind::Folder
            && id == m_source.condition().parentId)
            scheduleRefresh();
    });
    connect(store, &VellDocumentStore::cleared, this, [this] { setSource({}); });
    const VellSession *const session = documents->session();
    connect(session, &VellSession::stateChanged, this, [this](VellSession::State state) {
        if (state == VellSession::State::Online && m_error)
            reload();
    });
    connect(session, &VellSession::userNamesChanged, this, [this] {
        if (rowCount() > 0) {
            Q_EMIT dataChanged(index(0, ChangedByColumn), index(rowCount() - 1, ChangedByColumn),
                               {Qt::DisplayRole});
        }
    });
}

VellDocumentModel::~VellDocumentModel()
{
    dropRequest(m_request, this);
}

void VellDocumentModel::setSource(const VellDocumentSource &source)
{
    beginResetModel();
    m_source = source;
    m_rows = std::make_unique<DocumentRows>();
    m_firstLooked = 0;
    m_lastLooked = 0;
    endResetModel();
    reload();
}

void VellDocumentModel::reload()
{
    m_corrections = 0;
    startReload();
}

void VellDocumentModel::startReload()
{
    dropRequest(m_request, this);
    m_refresh.stop();
    m_error = {};
    m_isReloading = m_source.kind() != VellDocumentSource::Kind::None;
    setLoading(m_isReloading);
    if (!m_isReloading)
        return;
    const int first = pageStart(m_firstLooked);
    const int limit = pageStart(m_lastLooked) + PageSize - first;
    start(first, limit, [this, limit](const VellPage &page) {
        findPersistentRows({page, limit, {}, {}});
    });
}

void VellDocumentModel::start(int first, int limit,
                              const std::function<void(const VellPage &)> &onPage)
{
    const auto onFailure = [this](const VellError &error) { fail(error); };
    if (m_source.kind() == VellDocumentSource::Kind::Recent) {
        m_request = m_documents->recent(m_source.condition().category)
                        ->then(
                            this,
                            [onPage](const QList<VellDocument> &documents) {
                                onPage({documents, 0, documents.size()});
                            },
                            onFailure);
        return;
    }
    m_request = m_documents->page(m_source.condition(), order(), first, limit)
                    ->then(this, onPage, onFailure);
}

void VellDocumentModel::endRequest()
{
    m_request = nullptr;
    m_isReloading = false;
    setLoading(false);
}

void VellDocumentModel::fail(const VellError &error)
{
    m_error = error;
    endRequest();
    Q_EMIT loadFailed(error);
}

void VellDocumentModel::setLoading(bool isLoading)
{
    if (isLoading == m_isLoading)
        return;
    m_isLoading = isLoading;
    Q_EMIT loadingChanged(isLoading);
}

// Collects the rows that a view paints in one turn of the event loop.
void VellDocumentModel::look(int row) const
{
    if (m_isLookPending) {
        m_firstLooked = std::min(m_firstLooked, row);
        m_lastLooked = std::max(m_lastLooked, row);
        if (m_lastLooked - m_firstLooked > LongestLook)
            m_firstLooked = m_lastLooked = row;
        return;
    }
    m_isLookPending = true;
    m_firstLooked = row;
    m_lastLooked = row;
    auto *const self = const_cast<VellDocumentModel *>(this);
    QMetaObject::invokeMethod(
        self,
        [self] {
            self->m_isLookPending = false;
            self->fetchLooked();
        },
        Qt::QueuedConnection);
}

void VellDocumentModel::fetchLooked()
{
    if (m_request || m_error || m_rows->isComplete())
        return;
    const int end = m_rows->count();
    int first = pageStart(std::max(m_firstLooked - MarginRows, 0));
    int last = std::min(pageStart(m_lastLooked + MarginRows) + PageSize, end) - 1;
    const auto hasPage = [this, end](int start) {
        return !m_rows->hasGap(start, std::min(start + PageSize, end) - 1);
    };
    while (first <= last && hasPage(first))
        first += PageSize;
    while (first <= last && hasPage(pageStart(last)))
        last = pageStart(last) - 1;
    if (first > last)
        return;
    setLoading(true);
    start(first, pageStart(last) + PageSize - first,
          [this, rows = last + 1 - first](const VellPage &page) { placePage(page, rows); });
}

void VellDocumentModel::placePage(const VellPage &page, int expectedRows)
{
    endRequest();
    const int count = m_rows->count();
    const int placed = std::min(page.documents.size(), std::max(count - page.skip, 0));
    const bool fits = m_rows->place(page.skip, page.documents.mid(0, placed));
    if (placed > 0)
        Q_EMIT dataChanged(index(page.skip, 0), index(page.skip + placed - 1, ColumnCount - 1));
    forgetDistantRows();
    if (fits && page.total == count && placed == expectedRows) {
        m_corrections = 0;
        fetchLooked();
    } else if (m_corrections < MostCorrections) {
        // The list has changed since the other rows were fetched.
        ++m_corrections;
        m_refresh.start();
    }
}

void VellDocumentModel::findPersistentRows(Reload reload)
{
    const VellPage &page = reload.page;
    if (page.documents.isEmpty() && page.skip > 0) { // the list has become shorter
        m_firstLooked = 0;
        m_lastLooked = 0;
        startReload();
        return;
    }
    QSet<QString> missing;
    const auto persistent = persistentRows();
    for (int row = persistent.first; row <= persistent.second; ++row) {
        if (const VellDocument *const document = m_rows->at(row))
            missing.insert(document->_id);
    }
    for (const VellDocument &document : page.documents)
        missing.remove(document._id);
    missing -= reload.requested;
    if (missing.isEmpty() || page.documents.size() >= page.total) {
        finishReload(reload);
        return;
    }
    reload.requested += missing;
    m_request = findRows(m_documents->session(), m_source.condition(), order(), missing)
                    ->then(
                        this,
                        [this, reload](const QHash<QString, int> &rows) mutable {
                            for (auto row = rows.cbegin(); row != rows.cend(); ++row)
                                reload.rows.insert(row.key(), row.value());
                            findPersistentRows(reload); // the selection may have grown meanwhile
                        },
                        [this](const VellError &error) { fail(error); });
}

void VellDocumentModel::finishReload(const Reload &reload)
{
    const VellPage &page = reload.page;
    const int end = page.skip + page.documents.size();
    const int total = page.documents.size() < reload.limit ? end : std::max(page.total, end);
    setRowCount(std::max(total, m_rows->count()));
    auto rows = std::make_unique<DocumentRows>();
    rows->setCount(m_rows->count());
    for (auto found = reload.rows.cbegin(); found != reload.rows.cend(); ++found) {
        const int before = m_rows->rowOf(found.key());
        if (before >= 0 && found.value() < total)
            rows->share(found.value(), *m_rows, before);
    }
    rows->place(page.skip, page.documents);
    replaceRows(std::move(rows));
    setRowCount(total);
    endRequest();
    Q_EMIT loaded();
    fetchLooked();
}

void VellDocumentModel::setRowCount(int count)
{
    const int before = m_rows->count();
    if (count > before) {
        beginInsertRows({}, before, count - 1);
        m_rows->setCount(count);
        endInsertRows();
    } else if (count < before) {
        beginRemoveRows({}, count, before - 1);
        m_rows->setCount(count);
        endRemoveRows();
    }
}

void VellDocumentModel::replaceRows(std::unique_ptr<DocumentRows> rows)
{
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    const QModelIndexList after = placesIn(*rows, before);
    m_rows = std::move(rows);
    m_isResorted = false;
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged();
}

//! Returns where the documents at \a places are in \a rows. One that has not been fetched keeps its row, or gets the next
//! free one: if two persistent indexes get the same place, Qt forgets one of them, which then outlives the model.
QModelIndexList VellDocumentModel::placesIn(const DocumentRows &rows,
                                            const QModelIndexList &places) const
{
    QVector<QModelIndex> found(places.size());
    QVector<int> unknown; // positions in places
    QSet<QPair<int, int>> taken; // columns and rows
    for (int i = 0; i < places.size(); ++i) {
        const int column = places.at(i).column();
        const VellDocument *const document = m_rows->at(places.at(i).row());
        const int row = document ? rows.rowOf(document->_id) : -1;
        if (row >= 0) {
            found[i] = index(row, column);
            taken.insert({column, row});
        } else if (!document && !m_isResorted) { // in another order, the row has another document
            unknown.append(i);
        }
    }
    const auto keyOf = [&](int i) { return qMakePair(places.at(i).column(), places.at(i).row()); };
    const bool areFree = std::none_of(unknown.cbegin(), unknown.cend(),
                                      [&](int i) { return taken.contains(keyOf(i)); });
    if (!areFree) // sorting 100,000 takes time
        std::sort(unknown.begin(), unknown.end(),
                  [&](int a, int b) { return keyOf(a) < keyOf(b); });
    QPair<int, int> next; // after the place of the one before, in the order of rows
    for (const int i : qAsConst(unknown)) {
        next = areFree ? keyOf(i) : std::max(next, keyOf(i));
        while (taken.contains(next))
            ++next.second;
        if (next.second < rows.count())
            found[i] = index(next.second, next.first);
        ++next.second;
    }
    return found.toList();
}

//! Returns the first and the last row with a persistent index. A selection has such indexes only at the corners of its ranges, so
//! that all rows in between may be selected.
QPair<int, int> VellDocumentModel::persistentRows() const
{
    QPair<int, int> rows(std::numeric_limits<int>::max(), -1);
    const QModelIndexList places = persistentIndexList();
    for (const QModelIndex &place : places) {
        rows.first = std::min(rows.first, place.row());
        rows.second = std::max(rows.second, place.row());
    }
    return rows;
}

void VellDocumentModel::forgetDistantRows()
{
    if (m_rows->loadedCount() <= KeptRows)
        return;
    int first = m_firstLooked - KeptRows / 4;
    int last = m_lastLooked + KeptRows / 4;
    const auto pinned = persistentRows();
    if (pinned.second - pinned.first <= MostPinnedRows) {
        first = std::min(first, pinned.first);
        last = std::max(last, pinned.second);
    }
    m_rows->forgetOutside(first, last);
}

VellDocumentSort VellDocumentModel::order() const
{
    if (m_sortColumn >= 0)
        return document_columns::sortBy(m_sortColumn, m_sortOrder);
    return {};
}

void VellDocumentModel::sort(int column, Qt::SortOrder order)
{
    if (column == m_sortColumn && order == m_sortOrder)
        return;
    m_sortColumn = column;
    m_sortOrder = order;
    m_isResorted = true;
    reload();
}

std::optional<VellDocument> VellDocumentModel::document(const QModelIndex &index) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || !m_rows->at(index.row()))
        return std::nullopt;
    return *m_rows->at(index.row());
}

QList<VellDocument> VellDocumentModel::documents(int first, int last) const
{
    QList<VellDocument> documents;
    for (int row = first; row <= last; ++row) {
        if (const VellDocument *const document = m_rows->at(row))
            documents.append(*document);
    }
    return documents;
}

QModelIndex VellDocumentModel::indexOf(const QString &id, int column) const
{
    const int row = m_rows->rowOf(id);
    return row < 0 ? QModelIndex() : index(row, column);
}

void VellDocumentModel::setTransferState(const QString &id, const QVariant &state)
{
    if (state.isValid())
        m_transfers.insert(id, state);
    else
        m_transfers.remove(id);
    const QModelIndex first = indexOf(id);
    if (first.isValid())
        Q_EMIT dataChanged(first, first.siblingAtColumn(ColumnCount - 1),
                           {VellModelRole::Transfer});
}

int VellDocumentModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows->count();
}

int VellDocumentModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant VellDocumentModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    look(index.row());
    const VellDocument *const document = m_rows->at(index.row());
    if (role == VellModelRole::IsLoaded)
        return document != nullptr;
    if (!document)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return document_columns::text(*document, index.column(), m_documents->session());
    case Qt::DecorationRole:
        return index.column() == NameColumn ? m_icons->icon(*document) : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() == SizeColumn ? int(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    case VellModelRole::Transfer:
        return m_transfers.value(document->_id);
    default:
        return VellModelRole::value(*document, role);
    }
}

QVariant VellDocumentModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0
        && section < ColumnCount)
        return document_columns::title(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}

QHash<int, QByteArray> VellDocumentModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractTableModel::roleNames();
    names.insert(VellModelRole::names());
    return names;
}
