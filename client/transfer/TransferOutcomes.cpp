#include <transfer/TransferQueue.h>

#include <transfer/LocalNames.h>
#include <transfer/TransferText.h>

#include <documents/VellDocumentStore.h>
#include <documents/VellDocuments.h>
#include <session/SessionAccess.h>

#include <QFile>

#include <algorithm>
#include <utility>

namespace {

constexpr int MostOpenQuestions = 100;

} // namespace

void TransferQueue::endRun(qint64 id, const TransferOutcome &outcome)
{
    const auto running = m_running.find(id);
    const bool isStopped = running->second.isStopped;
    --m_runningCounts[running->second.lane];
    m_running.erase(running);
    shareSpeed();
    schedule();
    TransferItem &item = *m_list.find(id);
    const QPointer<VellTransferQueue> self(q);
    storeOutcome(id, item, outcome);
    if (!self)
        return;
    // A completed transfer is done, even if it was paused meanwhile.
    const bool isDone = outcome.kind == TransferOutcome::Kind::Done;
    if (!isStopped || (isDone && item.state != VellTransferState::Cancelled))
        applyOutcome(id, item, outcome);
    else if (item.state == VellTransferState::Waiting)
        enqueue(id, item); // has been resumed meanwhile
    else
        write(id, item);
    if (self)
        releaseNames(id);
}

//! Stores the data that the next attempt needs, and updates the session and the store.
void TransferQueue::storeOutcome(qint64 id, TransferItem &item, const TransferOutcome &outcome)
{
    m_list.setTrace(id, outcome.trace);
    m_list.setTag(id, outcome.entityTag);
    m_list.setBytes(item, item.doneBytes, outcome.isFolder ? -1 : outcome.sizeBytes);
    item.isFolder = outcome.isFolder;
    if (!outcome.localName.isEmpty())
        item.localName = outcome.localName;
    if (outcome.hasMoved)
        item.failuresInRow = 0;
    if (outcome.kind != TransferOutcome::Kind::Large)
        noteOutcome(item, outcome.error);
    // What is known of a version is not what the store has of its document.
    if (outcome.kind != TransferOutcome::Kind::Done || outcome.document._id.isEmpty()
        || m_list.isOfVersion(id) || !m_documents)
        return;
    const TransferPlace place = m_scopes.value(m_list.scope(item)).place;
    if (place.projectId != m_documents->session()->projectId())
        return;
    const bool isNew = !m_documents->store()->document(outcome.document._id);
    m_documents->store()->insert(outcome.document);
    if (isNew && m_list.direction(item) == VellTransferDirection::Upload)
        m_changedFolders.insert(outcome.document.parentId);
}

//! Reports to the session whether its service can be reached.
void TransferQueue::noteOutcome(const TransferItem &item, const VellError &error)
{
    if (!m_documents)
        return;
    const auto service = m_scopes.value(m_list.scope(item)).service;
    const RequestSettings current = m_documents->session()->connection().requestSettings();
    const bool isAboutTheService = !error || error.httpStatus != 0
        || error.kind == VellError::Kind::Offline || error.kind == VellError::Kind::TimedOut;
    if (isAboutTheService && service && service->settings.baseApi == current.baseApi)
        SessionAccess::noteOutcome(m_documents->session(), error);
}

void TransferQueue::applyOutcome(qint64 id, TransferItem &item, const TransferOutcome &outcome)
{
    switch (outcome.kind) {
    case TransferOutcome::Kind::Done:
        if (outcome.isFolder)
            applyFolder(id, item, outcome);
        else
            finish(id, item, VellTransferState::Done, outcome.document);
        return;
    case TransferOutcome::Kind::Skipped:
        item.isSkipped = true;
        finish(id, item, VellTransferState::Done, outcome.document);
        return;
    case TransferOutcome::Kind::Large:
        m_list.setState(item, VellTransferState::Waiting);
        enqueue(id, item);
        return;
    case TransferOutcome::Kind::Asks:
        ask(id, item, outcome);
        return;
    case TransferOutcome::Kind::Failed:
        applyFailure(id, item, outcome);
        return;
    }
}

void TransferQueue::applyFailure(qint64 id, TransferItem &item, const TransferOutcome &outcome)
{
    m_list.setError(id, outcome.error);
    ++item.failuresInRow;
    if (!outcome.canTryAgain || item.failuresInRow >= m_attemptLimit) {
        finish(id, item, VellTransferState::Failed, {});
        return;
    }
    m_list.setState(item, VellTransferState::Waiting);
    mark(id, item);
    write(id, item);
    enqueueLater(id, item);
}

void TransferQueue::failWithoutProject(qint64 id)
{
    TransferItem *const item = m_list.find(id);
    if (!item || item->state != VellTransferState::Waiting)
        return;
    m_list.setError(id, VellError::of(VellError::Kind::NotSignedIn, TransferText::noProject()));
    finish(id, *item, VellTransferState::Failed, {});
}

void TransferQueue::applyFolder(qint64 id, TransferItem &item, const TransferOutcome &outcome)
{
    TransferRecord folder = m_list.record(id, item);
    folder.documentId = outcome.document._id;
    folder.state = VellTransferState::Done;
    const qint64 firstId = m_nextId;
    m_nextId += qint64(outcome.entries.size());
    // One entry of the journal: after a crash either all entries are in the queue, or the folder is listed again.
    if (m_journal)
        m_journal->writeFolder(folder, firstId, outcome.entries);
    Arrival arrival{{}, 0, item.sweep, true, [this, id, document = outcome.document] {
                        if (TransferItem *const found = m_list.find(id))
                            finish(id, *found, VellTransferState::Done, document);
                    }};
    for (const FolderEntry &entry : outcome.entries)
        arrival.records.push_back(
            childRecord(folder, entry, firstId + qint64(arrival.records.size())));
    m_list.setState(item, VellTransferState::Saving);
    mark(id, item);
    m_arrivals.push_back(std::move(arrival));
    m_work.start();
}

void TransferQueue::finish(qint64 id, TransferItem &item, VellTransferState state,
                           const VellDocument &document)
{
    if (state == VellTransferState::Done) {
        const qint64 size = std::max(item.sizeBytes, qint64(0));
        if (!item.isSkipped && !item.isFolder)
            m_meter.add(size - std::min(item.doneBytes, size));
        m_list.setBytes(item, size, item.sizeBytes);
        m_list.setError(id, {});
        m_list.setTrace(id, {});
        if (m_list.direction(item) == VellTransferDirection::Upload)
            item.documentId = document._id.toUtf8();
    } else {
        m_list.setBytes(item, 0, item.sizeBytes);
    }
    m_list.setState(item, state);
    mark(id, item);
    write(id, item);
    const QPointer<VellTransferQueue> self(q);
    announceAdded();
    if (self)
        Q_EMIT q->ended(m_list.snapshot(id), document);
}

void TransferQueue::ask(qint64 id, TransferItem &item, const TransferOutcome &outcome)
{
    const VellConflictPolicy policy = m_batches.value(m_list.batch(item)).policy;
    if (policy != VellConflictPolicy::Ask) { // has been answered for all while the attempt ran
        m_list.setDecision(id, policy, outcome.base);
        m_list.setState(item, VellTransferState::Waiting);
        mark(id, item);
        write(id, item);
        enqueue(id, item);
        return;
    }
    m_list.setState(item, VellTransferState::Asking);
    m_list.setDecision(id, std::nullopt, {});
    mark(id, item);
    if (m_questions.size() >= MostOpenQuestions) {
        m_laterQuestions.push_back(id);
        return;
    }
    m_questions.insert(id, {outcome.question, outcome.base});
    const QPointer<VellTransferQueue> self(q);
    announceAdded();
    if (self)
        Q_EMIT q->asked(outcome.question);
}

//! Closes the question of the transfer, and lets the next transfer ask that had to wait.
void TransferQueue::closeQuestion(qint64 id)
{
    if (m_questions.remove(id) == 0)
        return;
    while (!m_laterQuestions.empty()) {
        const qint64 later = m_laterQuestions.front();
        m_laterQuestions.pop_front();
        TransferItem *const item = m_list.find(later);
        if (!item || item->state != VellTransferState::Asking || m_questions.contains(later))
            continue;
        m_list.setState(*item, VellTransferState::Waiting);
        mark(later, *item);
        enqueue(later, *item);
        return;
    }
}

//! Removes the temporary file of a cancelled download that is not running.
void TransferQueue::removePart(qint64 id, const TransferItem &item)
{
    const TransferRecord record = m_list.record(id, item);
    if (record.direction == VellTransferDirection::Upload || record.entityTag.isEmpty())
        return;
    m_list.setTag(id, {});
    m_pools[SmallDownloads].start([path = local_names::partPath(record)] { QFile::remove(path); });
}
