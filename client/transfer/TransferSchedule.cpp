#include <transfer/TransferQueue.h>

#include <transfer/LocalNames.h>

#include <documents/VellDocuments.h>
#include <session/VellSession.h>

#include <QDateTime>

#include <algorithm>

namespace {

constexpr qint64 FirstDelayMs = 250;
constexpr qint64 LongestDelayMs = 30000;

qint64 now()
{
    return QDateTime::currentMSecsSinceEpoch();
}

} // namespace

TransferQueue::Lane TransferQueue::laneOf(const TransferItem &item) const
{
    const bool isLarge = m_list.isLarge(item);
    if (m_list.direction(item) == VellTransferDirection::Upload)
        return isLarge ? LargeUploads : SmallUploads;
    return isLarge ? LargeDownloads : SmallDownloads;
}

//! Makes a waiting transfer ready. Does nothing if there is no connection, or if the previous attempt has not ended.
void TransferQueue::enqueue(qint64 id, TransferItem &item)
{
    if (m_running.count(id) > 0)
        return;
    const int scope = m_list.scope(item);
    if (scope < 0) {
        QMetaObject::invokeMethod(
            q, [this, id] { failWithoutProject(id); }, Qt::QueuedConnection);
        return;
    }
    if (!m_scopes.value(scope).service)
        return;
    m_ready[laneOf(item)].insert({{item.order, id}, id});
    schedule();
}

void TransferQueue::dequeue(qint64 id, const TransferItem &item)
{
    m_ready[laneOf(item)].erase({item.order, id});
    const auto delayed = m_delayedUntil.constFind(id);
    if (delayed != m_delayedUntil.cend()) {
        m_delayed.erase({*delayed, id});
        m_delayedUntil.erase(delayed);
    }
    const auto held = m_heldNames.constFind(id);
    if (held != m_heldNames.cend()) {
        m_held.remove(*held, id);
        m_heldNames.erase(held);
    }
}

void TransferQueue::enqueueLater(qint64 id, TransferItem &item)
{
    const int failures = std::max(int(item.failuresInRow) - 1, 0);
    constexpr int MostDoublings = 7;
    const qint64 delay =
        std::min(FirstDelayMs << std::min(failures, MostDoublings), LongestDelayMs);
    // Transfers that have failed at the same time are tried again at different times.
    const double jitter = 0.5 + QRandomGenerator::global()->generateDouble();
    const qint64 due = now() + qint64(double(delay) * jitter);
    m_delayed.insert({due, id});
    m_delayedUntil.insert(id, due);
    wakeDelayed();
}

void TransferQueue::wakeDelayed()
{
    while (!m_delayed.empty() && m_delayed.begin()->first <= now()) {
        const qint64 id = m_delayed.begin()->second;
        TransferItem &item = *m_list.find(id);
        dequeue(id, item);
        enqueue(id, item);
    }
    if (!m_delayed.empty())
        m_delay.start(int(std::max(m_delayed.begin()->first - now(), qint64(1))));
}

void TransferQueue::schedule()
{
    if (m_isScheduled)
        return;
    m_isScheduled = true;
    QMetaObject::invokeMethod(
        q,
        [this] {
            m_isScheduled = false;
            startNext();
        },
        Qt::QueuedConnection);
}

bool TransferQueue::mayStart() const
{
    // A sweep that has not finished may stop transfers that are ready.
    if (!m_sweeps.empty())
        return false;
    if (!m_documents)
        return true;
    const VellSession::State state = m_documents->session()->state();
    return state == VellSession::State::Online || state == VellSession::State::Closed;
}

void TransferQueue::startNext()
{
    if (!mayStart())
        return;
    constexpr int MostLooks = 1000; // transfers whose name is claimed by another one
    int looks = 0;
    for (int lane = 0; lane < LaneCount; ++lane) {
        auto &ready = m_ready[lane];
        while (m_runningCounts[lane] < m_capacities[lane] && !ready.empty()) {
            if (++looks > MostLooks) {
                schedule();
                return;
            }
            const qint64 id = ready.begin()->second;
            ready.erase(ready.begin());
            TransferItem &item = *m_list.find(id);
            if (claimName(id, item))
                start(id, item, Lane(lane));
        }
    }
}

//! Claims the target name for the transfer, or lets it wait until the transfer that has claimed the name has ended.
bool TransferQueue::claimName(qint64 id, const TransferItem &item)
{
    const TransferRecord record = m_list.record(id, item);
    const bool isUpload = record.direction == VellTransferDirection::Upload;
    const QString folder =
        isUpload ? NameClaims::remoteFolder(record.folderId) : record.localFolder;
    const QString name = isUpload ? record.name : local_names::key(record.localName);
    if (m_hub.claims.claim(id, folder, name))
        return true;
    const QString key = NameClaims::key(folder, name);
    m_held.insert(key, id);
    m_heldNames.insert(id, key);
    return false;
}

void TransferQueue::releaseNames(qint64 id)
{
    const QStringList keys = m_hub.claims.release(id);
    for (const QString &key : keys) {
        const QList<qint64> held = m_held.values(key);
        m_held.remove(key);
        for (const qint64 waiting : held) {
            m_heldNames.remove(waiting);
            enqueue(waiting, *m_list.find(waiting));
        }
    }
}

void TransferQueue::start(qint64 id, TransferItem &item, Lane lane)
{
    TransferTask task;
    task.record = m_list.record(id, item);
    const TransferBatch batch = m_batches.value(task.record.batch);
    task.canAsk = batch.policy == VellConflictPolicy::Ask;
    task.policy = task.record.decision.value_or(batch.policy);
    task.category = batch.category;
    task.scope = m_scopes.value(task.record.scope).service.value_or(ServiceScope());
    const std::shared_ptr<TransferRun> run = TransferRun::make(std::move(task), m_hub);
    m_running[id] = {run, lane, item.doneBytes, false};
    ++m_runningCounts[lane];
    shareSpeed();
    m_list.setState(item, run->stage());
    mark(id, item);
    m_pools[lane].start([this, id, run] {
        TransferOutcome outcome = run->execute();
        QMetaObject::invokeMethod(
            q, [this, id, outcome = std::move(outcome)] { endRun(id, outcome); },
            Qt::QueuedConnection);
    });
}

void TransferQueue::shareSpeed()
{
    m_hub.speeds.setRunning(VellTransferDirection::Upload,
                            m_runningCounts[SmallUploads] + m_runningCounts[LargeUploads]);
    m_hub.speeds.setRunning(VellTransferDirection::Download,
                            m_runningCounts[SmallDownloads] + m_runningCounts[LargeDownloads]);
}
