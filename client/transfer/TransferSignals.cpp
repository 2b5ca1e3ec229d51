#include <transfer/TransferQueue.h>

#include <documents/VellDocumentStore.h>
#include <documents/VellDocuments.h>

#include <utility>

namespace {

using State = VellTransferState;

} // namespace

void TransferQueue::mark(qint64 id, TransferItem &item)
{
    if (item.newsNumber != m_newsNumber) {
        item.newsNumber = m_newsNumber;
        m_marked.append(id);
    }
    if (!m_signals.isActive())
        m_signals.start();
}

void TransferQueue::announceAdded()
{
    if (!m_added.isEmpty())
        Q_EMIT q->added(std::exchange(m_added, {}));
}

void TransferQueue::emitSignals()
{
    const QPointer<VellTransferQueue> self(q);
    updateRunning();
    m_meter.update();
    ++m_newsNumber;
    const QSet<QString> folders = std::exchange(m_changedFolders, {});
    for (const QString &folder : folders) {
        if (self && m_documents)
            m_documents->store()->markFolderChanged(folder);
    }
    if (self)
        announceAdded();
    if (self && !m_marked.isEmpty())
        Q_EMIT q->changed(std::exchange(m_marked, {}));
    if (self && !m_removed.isEmpty())
        Q_EMIT q->removed(std::exchange(m_removed, {}));
    if (self)
        checkIdle();
}

void TransferQueue::updateRunning()
{
    for (auto &[id, running] : m_running) {
        if (running.isStopped)
            continue;
        TransferItem &item = *m_list.find(id);
        const State stage = running.run->stage();
        const qint64 done = stage == State::Hashing ? 0 : running.run->doneBytes();
        // Bytes from before this attempt do not count for the speed.
        if (running.doneBytes > 0 && done > running.doneBytes)
            m_meter.add(done - running.doneBytes);
        running.doneBytes = done;
        const qint64 size = running.run->sizeBytes();
        if (item.state == State::Saving && item.isFolder)
            continue;
        m_list.setState(item, stage);
        m_list.setBytes(item, done, size);
        mark(id, item);
    }
    if (!m_running.empty() && !m_signals.isActive())
        m_signals.start();
}

void TransferQueue::checkIdle()
{
    const VellTransferTotals &totals = m_list.totals();
    int busy = int(m_running.size());
    for (const State state :
         {State::Waiting, State::Hashing, State::Sending, State::Receiving, State::Saving})
        busy += totals.count(state);
    if (busy > 0 || !m_arrivals.empty() || !m_sweeps.empty() || m_isIdle)
        return;
    m_isIdle = true;
    Q_EMIT q->idle();
}
