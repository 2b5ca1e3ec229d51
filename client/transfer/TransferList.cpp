#include <transfer/TransferList.h>

#include <algorithm>

int VellTransferTotals::openCount() const
{
    int open = 0;
    for (const int stateCount : counts)
        open += stateCount;
    return open - count(VellTransferState::Done) - count(VellTransferState::Failed)
        - count(VellTransferState::Cancelled);
}

bool TransferList::Group::operator==(const Group &other) const
{
    return scope == other.scope && batch == other.batch && direction == other.direction
        && folderTransferId == other.folderTransferId && localFolder == other.localFolder
        && folderId == other.folderId;
}

uint qHash(const TransferList::Group &group, uint seed) noexcept
{
    return qHash(group.localFolder, seed) ^ qHash(group.folderId, seed)
        ^ qHash(group.folderTransferId, seed) ^ uint(group.batch * 31 + group.scope);
}

TransferItem &TransferList::add(const TransferRecord &record)
{
    TransferItem item;
    item.order = record.order;
    item.sizeBytes = record.sizeBytes;
    item.localName = record.localName;
    item.name = record.name == record.localName ? record.localName : record.name;
    item.documentId = record.documentId.toUtf8();
    item.group = groupNumber({record.scope, record.batch, record.direction, record.folderTransferId,
                              record.localFolder, record.folderId});
    item.state = record.state;
    item.isFolder = record.isFolder;
    item.isSkipped = record.isSkipped;
    if (item.state == VellTransferState::Done)
        item.doneBytes = std::max(item.sizeBytes, qint64(0));
    if (record.error || record.decision || record.base.isSet() || record.trace.isSet()
        || !record.entityTag.isEmpty() || !record.contentId.isEmpty()) {
        m_extras.insert(record.id,
                        {record.error, record.decision, record.base, record.trace, record.entityTag,
                         record.contentId});
    }
    count(item, 1);
    return m_items.emplace(record.id, std::move(item)).first->second;
}

void TransferList::remove(qint64 id)
{
    const auto found = m_items.find(id);
    if (found == m_items.end())
        return;
    count(found->second, -1);
    m_items.erase(found);
    m_extras.remove(id);
}

TransferItem *TransferList::find(qint64 id)
{
    const auto found = m_items.find(id);
    return found == m_items.end() ? nullptr : &found->second;
}

const TransferItem *TransferList::find(qint64 id) const
{
    const auto found = m_items.find(id);
    return found == m_items.end() ? nullptr : &found->second;
}

TransferItem *TransferList::next(qint64 *id)
{
    const auto found = m_items.lower_bound(*id);
    if (found == m_items.end())
        return nullptr;
    *id = found->first;
    return &found->second;
}

TransferRecord TransferList::record(qint64 id, const TransferItem &item) const
{
    const Group &common = group(item);
    TransferRecord record;
    record.id = id;
    record.folderTransferId = common.folderTransferId;
    record.order = item.order;
    record.sizeBytes = item.sizeBytes;
    record.scope = common.scope;
    record.batch = common.batch;
    record.direction = common.direction;
    record.state = item.state;
    record.isFolder = item.isFolder;
    record.isSkipped = item.isSkipped;
    record.localFolder = common.localFolder;
    record.localName = item.localName;
    record.name = item.name;
    record.folderId = common.folderId;
    record.documentId = QString::fromUtf8(item.documentId);
    const auto extra = m_extras.constFind(id);
    if (extra == m_extras.cend())
        return record;
    record.error = extra->error;
    record.decision = extra->decision;
    record.base = extra->base;
    record.trace = extra->trace;
    record.entityTag = extra->entityTag;
    record.contentId = extra->contentId;
    return record;
}

VellTransfer TransferList::snapshot(qint64 id) const
{
    VellTransfer transfer;
    const TransferItem *const item = find(id);
    if (!item)
        return transfer;
    const TransferRecord full = record(id, *item);
    transfer.id = id;
    transfer.folderTransferId = full.folderTransferId;
    transfer.direction = full.direction;
    transfer.state = full.state;
    transfer.isFolder = full.isFolder;
    transfer.isSkipped = full.isSkipped;
    transfer.localPath = full.localPath();
    transfer.name = full.name;
    transfer.folderId = full.folderId;
    transfer.documentId = full.documentId;
    transfer.sizeBytes = full.sizeBytes;
    transfer.doneBytes = item->doneBytes;
    transfer.batch = full.batch;
    transfer.error = full.error;
    return transfer;
}

bool TransferList::isLarge(const TransferItem &item) const
{
    TransferRecord record;
    record.isFolder = item.isFolder;
    record.sizeBytes = item.sizeBytes;
    return record.isLarge();
}

VellTransferDirection TransferList::direction(const TransferItem &item) const
{
    return group(item).direction;
}

void TransferList::setState(TransferItem &item, VellTransferState state)
{
    count(item, -1);
    item.state = state;
    count(item, 1);
}

void TransferList::setBytes(TransferItem &item, qint64 doneBytes, qint64 sizeBytes)
{
    count(item, -1);
    item.doneBytes = doneBytes;
    item.sizeBytes = sizeBytes;
    count(item, 1);
}

void TransferList::setScope(TransferItem &item, int scope)
{
    Group changed = group(item);
    changed.scope = scope;
    item.group = groupNumber(changed);
}

template <typename Value>
void TransferList::setExtra(qint64 id, Value Extra::*member, const Value &value)
{
    const auto found = m_extras.find(id);
    if (found == m_extras.end()) {
        Extra extra;
        extra.*member = value;
        m_extras.insert(id, extra);
    } else {
        (*found).*member = value;
    }
}

void TransferList::setError(qint64 id, const VellError &error)
{
    if (error || m_extras.contains(id))
        setExtra(id, &Extra::error, error);
}

void TransferList::setDecision(qint64 id, std::optional<VellConflictPolicy> decision,
                               const ReplaceBase &base)
{
    setExtra(id, &Extra::decision, decision);
    setExtra(id, &Extra::base, base);
}

void TransferList::setTrace(qint64 id, const UploadTrace &trace)
{
    if (trace.isSet() || m_extras.contains(id))
        setExtra(id, &Extra::trace, trace);
}

void TransferList::setTag(qint64 id, const QByteArray &entityTag)
{
    if (!entityTag.isEmpty() || m_extras.contains(id))
        setExtra(id, &Extra::entityTag, entityTag);
}

int TransferList::groupNumber(const Group &group)
{
    const auto known = m_groupNumbers.constFind(group);
    if (known != m_groupNumbers.cend())
        return *known;
    const int number = int(m_groups.size());
    m_groups.push_back(group);
    m_groupNumbers.insert(group, number);
    return number;
}

void TransferList::count(const TransferItem &item, int sign)
{
    m_totals.counts[std::size_t(item.state)] += sign;
    if (item.state == VellTransferState::Failed || item.state == VellTransferState::Cancelled)
        return;
    m_totals.totalBytes += sign * std::max(item.sizeBytes, qint64(0));
    m_totals.doneBytes += sign * item.doneBytes;
}
