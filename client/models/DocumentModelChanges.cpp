#include <models/VellDocumentModel.h>

#include <models/DocumentColumns.h>
#include <models/DocumentRows.h>
#include <operations/VellOperation.h>

#include <algorithm>
#include <functional>

// What becomes of the rows when documents change.

namespace {

constexpr int MostSignals = 8;

} // namespace

void VellDocumentModel::scheduleRefresh()
{
    if (!m_refresh.isActive())
        m_refresh.start();
}

bool VellDocumentModel::belongs(const VellDocument &document) const
{
    switch (m_source.kind()) {
    case VellDocumentSource::Kind::RecycleBin:
        return document.recycle != 0;
    case VellDocumentSource::Kind::Folder: {
        const VellDocumentConditon &condition = m_source.condition();
        return document.recycle == 0 && document.parentId == condition.parentId
            && (condition.category.isEmpty() || document.category == condition.category);
    }
    default:
        return document.recycle == 0;
    }
}

//! Returns true if \a document, which is in none of the fetched rows, has probably been added to the list.
bool VellDocumentModel::isNew(const VellDocument &document) const
{
    // If rows are missing, it may be one of these: then folderChanged() reports new documents.
    const bool knowsAll = m_isReloading || m_rows->isComplete();
    switch (m_source.kind()) {
    case VellDocumentSource::Kind::Folder:
        return knowsAll && belongs(document);
    case VellDocumentSource::Kind::Favorites:
        return knowsAll && document.favorite && belongs(document);
    default:
        return false;
    }
}

void VellDocumentModel::updateDocuments(const QList<VellDocument> &documents)
{
    bool isStale = false;
    QVector<int> gone;
    int first = m_rows->count();
    int last = -1;
    for (const VellDocument &document : documents) {
        const int row = m_rows->rowOf(document._id);
        if (row < 0) {
            isStale = isStale || isNew(document);
        } else if (!belongs(document)) {
            gone.append(row);
        } else {
            const VellDocument &before = *m_rows->at(row);
            isStale = isStale || document_columns::isSortedApart(before, document, m_sortColumn)
                || (m_source.kind() == VellDocumentSource::Kind::Favorites && before.favorite
                    && !document.favorite);
            m_rows->place(row, {document});
            first = std::min(first, row);
            last = std::max(last, row);
        }
    }
    if (last >= 0)
        Q_EMIT dataChanged(index(first, 0), index(last, ColumnCount - 1));
    takeOut(gone);
    // The result of the model's own request is placed next.
    const bool isOwn = m_request && m_request->isEnded();
    if (isStale && !isOwn)
        scheduleRefresh();
}

void VellDocumentModel::removeDocuments(const QStringList &ids)
{
    if (m_isReloading || m_source.kind() == VellDocumentSource::Kind::RecycleBin)
        scheduleRefresh();
    QVector<int> rows;
    for (const QString &id : ids) {
        const int row = m_rows->rowOf(id);
        if (row >= 0)
            rows.append(row);
    }
    takeOut(rows);
}

void VellDocumentModel::takeOut(QVector<int> rows)
{
    std::sort(rows.begin(), rows.end(), std::greater<>());
    QVector<QPair<int, int>> groups; // first row and count, last group first
    for (const int row : qAsConst(rows)) {
        if (!groups.isEmpty() && groups.constLast().first == row + 1) {
            --groups.last().first;
            ++groups.last().second;
        } else {
            groups.append({row, 1});
        }
    }
    if (groups.size() > MostSignals) { // each takes a view about as long as a new layout
        scheduleRefresh();
        return;
    }
    for (const auto &group : qAsConst(groups)) {
        beginRemoveRows({}, group.first, group.first + group.second - 1);
        m_rows->remove(group.first, group.second);
        endRemoveRows();
    }
}
