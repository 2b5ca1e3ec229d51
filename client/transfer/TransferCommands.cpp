#include <transfer/TransferQueue.h>

#include <QElapsedTimer>

namespace {

using State = VellTransferState;

constexpr qint64 SliceMs = 3;

bool isEnded(State state)
{
    return state == State::Done || state == State::Failed || state == State::Cancelled;
}

} // namespace

void TransferQueue::command(Command command, qint64 id)
{
    const QPointer<VellTransferQueue> self(q);
    catchUp(id);
    if (!self)
        return;
    if (TransferItem *const left = m_list.find(id))
        apply(command, id, *left, 0);
}

void TransferQueue::commandAll(Command command, int batch)
{
    m_sweeps.push_back({++m_lastSweep, command, batch, 0});
    m_work.start();
    // Requests in flight are stopped at once.
    QVector<qint64> running;
    for (const auto &entry : m_running)
        running.append(entry.first);
    const QPointer<VellTransferQueue> self(q);
    for (const qint64 id : qAsConst(running)) {
        if (self)
            catchUp(id);
    }
}

//! Applies the sweeps that have not reached the transfer yet.
void TransferQueue::catchUp(qint64 id)
{
    const QPointer<VellTransferQueue> self(q);
    // A copy: apply() may emit ended(), and a slot may call further commands.
    const std::deque<Sweep> sweeps = m_sweeps;
    for (const Sweep &sweep : sweeps) {
        TransferItem *const left = self ? m_list.find(id) : nullptr;
        if (!left)
            return;
        if (left->sweep >= sweep.number)
            continue;
        left->sweep = sweep.number;
        apply(sweep.command, id, *left, sweep.batch);
    }
}

void TransferQueue::apply(Command command, qint64 id, TransferItem &item, int batch)
{
    switch (command) {
    case Command::Pause:
        if (!isEnded(item.state) && item.state != State::Paused && !isArriving(id, item))
            stop(id, item, State::Paused);
        return;
    case Command::Cancel:
        if (!isEnded(item.state) && !isArriving(id, item))
            stop(id, item, State::Cancelled);
        return;
    case Command::Resume:
        if (item.state == State::Paused)
            resume(id, item);
        return;
    case Command::Retry:
        if (item.state == State::Failed || item.state == State::Cancelled)
            retry(id, item);
        return;
    case Command::RetryFailed:
        if (item.state == State::Failed)
            retry(id, item);
        return;
    case Command::Remove:
        if (isEnded(item.state) && m_running.count(id) == 0)
            removeItem(id);
        return;
    case Command::Enqueue:
        if (item.state == State::Waiting && !m_delayedUntil.contains(id)
            && !m_heldNames.contains(id))
            enqueue(id, item);
        return;
    case Command::AskAgain:
        if (item.state == State::Asking && m_list.batch(item) == batch)
            answer(id, m_batches.value(batch).policy);
        return;
    }
}

//! Returns true for a folder whose entries are being added to the list, after which it is done.
bool TransferQueue::isArriving(qint64 id, const TransferItem &item) const
{
    return item.isFolder && item.state == State::Saving && m_running.count(id) == 0;
}

//! Returns true if the temporary file of a cancelled download is kept for a later queue.
bool TransferQueue::keepsPart(const TransferItem &item) const
{
    return m_hub.resumesParts && m_list.isLarge(item);
}

//! Removes a transfer from the waiting lists, or aborts its run.
void TransferQueue::stop(qint64 id, TransferItem &item, State state)
{
    const auto running = m_running.find(id);
    if (running != m_running.end()) {
        running->second.isStopped = true;
        if (state == State::Cancelled && !keepsPart(item))
            running->second.run->discard();
        running->second.run->abort();
    } else {
        dequeue(id, item);
        if (state == State::Cancelled && !keepsPart(item))
            removePart(id, item);
    }
    closeQuestion(id);
    if (state == State::Cancelled) {
        finish(id, item, state, {});
        return;
    }
    m_list.setState(item, state);
    mark(id, item);
    if (m_journal)
        m_journal->writeState(id, state);
}

void TransferQueue::resume(qint64 id, TransferItem &item)
{
    item.failuresInRow = 0;
    m_isIdle = false;
    m_list.setState(item, State::Waiting);
    mark(id, item);
    if (m_journal)
        m_journal->writeState(id, State::Waiting);
    enqueue(id, item);
}

void TransferQueue::retry(qint64 id, TransferItem &item)
{
    const int current = sessionScope();
    const TransferPlace place = m_scopes.value(m_list.scope(item)).place;
    const TransferPlace here = m_scopes.value(current).place;
    const bool isSameProject = place.address == here.address && place.projectId == here.projectId;
    if (current >= 0 && (isSameProject || m_list.scope(item) < 0))
        m_list.setScope(item, current);
    item.isSkipped = false;
    m_list.setError(id, {});
    resume(id, item);
    write(id, item);
}

void TransferQueue::removeItem(qint64 id)
{
    removePart(id, *m_list.find(id));
    m_list.remove(id);
    if (m_journal)
        m_journal->writeRemoval(id);
    m_removed.append(id);
    m_signals.start();
}

void TransferQueue::moveToFront(qint64 id)
{
    TransferItem *const item = m_list.find(id);
    if (!item)
        return;
    const bool isReady = m_ready[laneOf(*item)].count({item->order, id}) > 0;
    if (isReady)
        dequeue(id, *item);
    item->order = --m_frontOrder;
    if (isReady)
        enqueue(id, *item);
    write(id, *item);
}

void TransferQueue::answer(qint64 id, VellConflictPolicy decision)
{
    TransferItem *const item = m_list.find(id);
    if (!item || item->state != State::Asking)
        return;
    const OpenQuestion question = m_questions.value(id);
    closeQuestion(id);
    if (question.question.id == id && decision != VellConflictPolicy::Ask)
        m_list.setDecision(id, decision, question.base);
    m_list.setState(*item, State::Waiting);
    mark(id, *item);
    write(id, *item);
    enqueue(id, *item);
}

void TransferQueue::answerAll(qint64 id, VellConflictPolicy decision)
{
    const TransferItem *const item = m_list.find(id);
    if (!item || item->state != State::Asking)
        return;
    const int batch = m_list.batch(*item);
    TransferBatch &known = m_batches[batch];
    known.policy = decision;
    if (m_journal)
        m_journal->writeBatch(batch, known);
    answer(id, decision);
    commandAll(Command::AskAgain, batch);
}

//! Processes a slice of the work on many transfers.
void TransferQueue::work()
{
    QElapsedTimer clock;
    clock.start();
    const QPointer<VellTransferQueue> self(q);
    if (!processArrivals(clock) || !self || !processSweeps(clock) || !self)
        return;
    m_work.stop();
    schedule();
}

//! \return true if nothing is left
bool TransferQueue::processArrivals(const QElapsedTimer &clock)
{
    const QPointer<VellTransferQueue> self(q);
    while (!m_arrivals.empty()) {
        Arrival &arrival = m_arrivals.front();
        while (arrival.next < arrival.records.size()) {
            if (clock.hasExpired(SliceMs))
                return false;
            const TransferRecord &record = arrival.records.at(arrival.next++);
            insert(record, arrival.sweep);
            if (!arrival.isNew || record.state != State::Failed)
                continue;
            announceAdded();
            if (self)
                Q_EMIT q->ended(m_list.snapshot(record.id), {});
            if (!self)
                return false;
        }
        const std::function<void()> onEnd = std::move(arrival.onEnd);
        m_arrivals.pop_front();
        onEnd();
        if (!self)
            return false;
    }
    return true;
}

//! \return true if nothing is left
bool TransferQueue::processSweeps(const QElapsedTimer &clock)
{
    const QPointer<VellTransferQueue> self(q);
    while (!m_sweeps.empty()) {
        qint64 id = m_sweeps.front().nextId;
        if (!m_list.next(&id)) {
            m_sweeps.pop_front();
            continue;
        }
        m_sweeps.front().nextId = id + 1;
        catchUp(id);
        if (!self)
            return false;
        if (clock.hasExpired(SliceMs))
            return m_sweeps.empty();
    }
    return true;
}
