#include <transfer/TransferQueue.h>

#include <documents/VellDocuments.h>
#include <operations/BackgroundRelease.h>
#include <session/SessionAccess.h>

#include <algorithm>
#include <utility>

namespace {

TransferPlace placeOf(const ServiceScope &scope)
{
    return {scope.settings.baseApi, scope.projectId, scope.userId};
}

bool isSamePlace(const TransferPlace &a, const TransferPlace &b)
{
    return a.address == b.address && a.projectId == b.projectId && a.userId == b.userId;
}

bool isSame(const RequestSettings &a, const RequestSettings &b)
{
    return a.baseApi == b.baseApi && a.accessToken == b.accessToken
        && a.caCertificates == b.caCertificates && a.proxy == b.proxy
        && a.clientCertificate.certificate == b.clientCertificate.certificate
        && a.clientCertificate.key == b.clientCertificate.key
        && a.clientCertificate.password == b.clientCertificate.password;
}

} // namespace

TransferQueue::TransferQueue(VellTransferQueue *queue) : q(queue)
{
    for (int lane = 0; lane < LaneCount; ++lane)
        m_pools[lane].setMaxThreadCount(m_capacities[lane]);
    constexpr int SignalsMs = 100;
    m_signals.setSingleShot(true);
    m_signals.setInterval(SignalsMs);
    QObject::connect(&m_signals, &QTimer::timeout, q, [this] { emitSignals(); });
    m_work.setInterval(0);
    QObject::connect(&m_work, &QTimer::timeout, q, [this] { work(); });
    m_delay.setSingleShot(true);
    QObject::connect(&m_delay, &QTimer::timeout, q, [this] { wakeDelayed(); });
}

TransferQueue::~TransferQueue()
{
    for (const auto &running : m_running)
        running.second.run->abort();
    for (QThreadPool &pool : m_pools) {
        pool.clear();
        pool.waitForDone();
    }
    releaseInBackground(m_list);
}

void TransferQueue::open(const QString &path)
{
    m_journal = std::make_unique<TransferJournal>(
        path,
        [this](const std::shared_ptr<JournalContent> &content) {
            QMetaObject::invokeMethod(
                q, [this, content] { restore(content); }, Qt::QueuedConnection);
        },
        [this](const VellError &error) {
            QMetaObject::invokeMethod(
                q, [this, error] { Q_EMIT q->openFailed(error); }, Qt::QueuedConnection);
        });
    m_hub.journal = m_journal.get();
}

void TransferQueue::restore(const std::shared_ptr<JournalContent> &content)
{
    for (auto place = content->places.cbegin(); place != content->places.cend(); ++place)
        m_scopes.insert(place.key(), {place.value(), std::nullopt});
    for (auto batch = content->batches.cbegin(); batch != content->batches.cend(); ++batch)
        m_batches.insert(batch.key(), batch.value());
    bindScopes();
    m_arrivals.push_back({std::move(content->records), 0, m_lastSweep, false,
                          [this, isDamaged = content->isDamaged] { Q_EMIT q->opened(isDamaged); }});
    m_work.start();
}

void TransferQueue::attach(VellDocuments *documents)
{
    QObject::disconnect(m_projectChanges);
    QObject::disconnect(m_stateChanges);
    m_documents = documents;
    if (!documents)
        return;
    const auto follow = [this] {
        bindScopes();
        schedule();
    };
    m_projectChanges =
        QObject::connect(documents->session(), &VellSession::projectChanged, q, follow);
    m_stateChanges = QObject::connect(documents->session(), &VellSession::stateChanged, q, follow);
    follow();
}

//! Sets the connection of the session for the scopes without one, if address and project are the same.
void TransferQueue::bindScopes()
{
    if (!m_documents)
        return;
    const ServiceScope current = SessionAccess::scope(m_documents->session());
    bool isBound = false;
    for (Scope &scope : m_scopes) {
        const bool isHere = scope.place.address == current.settings.baseApi
            && scope.place.projectId == current.projectId && !current.projectId.isEmpty()
            && (scope.place.userId.isEmpty() || scope.place.userId == current.userId);
        if (scope.service || !isHere)
            continue;
        scope.service = current;
        isBound = true;
    }
    if (isBound)
        commandAll(Command::Enqueue);
}

int TransferQueue::sessionScope()
{
    if (!m_documents)
        return -1;
    const ServiceScope scope = SessionAccess::scope(m_documents->session());
    return scope.projectId.isEmpty() ? -1 : scopeNumber(scope);
}

int TransferQueue::scopeNumber(const ServiceScope &scope)
{
    const TransferPlace place = placeOf(scope);
    for (auto known = m_scopes.cbegin(); known != m_scopes.cend(); ++known) {
        if (known->service && isSamePlace(known->place, place)
            && isSame(known->service->settings, scope.settings))
            return known.key();
    }
    const int number = m_nextScope++;
    m_scopes.insert(number, {place, scope});
    if (m_journal)
        m_journal->writePlace(number, place);
    return number;
}

int TransferQueue::addBatch(VellConflictPolicy policy, const QString &category)
{
    const int number = m_nextBatch++;
    m_batches.insert(number, {policy, category});
    if (m_journal)
        m_journal->writeBatch(number, {policy, category});
    return number;
}

qint64 TransferQueue::add(TransferRecord record)
{
    record.id = m_nextId++;
    record.order = record.id;
    record.scope = sessionScope();
    insert(record, m_lastSweep);
    if (m_journal)
        m_journal->write(record);
    return record.id;
}

void TransferQueue::insert(const TransferRecord &record, quint32 sweep)
{
    TransferItem &item = m_list.add(record);
    item.sweep = sweep;
    m_added.append(record.id);
    mark(record.id, item);
    m_isIdle = false;
    switch (item.state) {
    case VellTransferState::Paused:
    case VellTransferState::Done:
    case VellTransferState::Cancelled:
    case VellTransferState::Failed:
        return;
    default:
        // A question from before the restart is asked again.
        m_list.setState(item, VellTransferState::Waiting);
        enqueue(record.id, item);
    }
}

void TransferQueue::write(qint64 id, const TransferItem &item)
{
    if (m_journal)
        m_journal->write(m_list.record(id, item));
}

void TransferQueue::setSpeedLimits(qint64 sentPerSecond, qint64 receivedPerSecond)
{
    m_hub.speeds.setLimits(sentPerSecond, receivedPerSecond);
}

void TransferQueue::setTransfersAtOnce(int count)
{
    constexpr int Most = 64;
    for (const Lane lane : {SmallUploads, SmallDownloads}) {
        m_capacities[lane] = std::clamp(count, 1, Most);
        m_pools[lane].setMaxThreadCount(m_capacities[lane]);
    }
    schedule();
}

VellTransfer TransferQueue::snapshot(qint64 id) const
{
    VellTransfer transfer = m_list.snapshot(id);
    const auto running = m_running.find(id);
    if (running != m_running.end() && transfer.state == VellTransferState::Hashing)
        transfer.doneBytes = running->second.run->doneBytes();
    return transfer;
}

VellTransferTotals TransferQueue::totals() const
{
    VellTransferTotals totals = m_list.totals();
    totals.bytesPerSecond = m_meter.bytesPerSecond();
    if (totals.bytesPerSecond > 0)
        totals.timeLeft =
            std::chrono::seconds((totals.totalBytes - totals.doneBytes) / totals.bytesPerSecond);
    return totals;
}
