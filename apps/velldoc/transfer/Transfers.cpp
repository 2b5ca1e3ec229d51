#include <velldoc/transfer/Transfers.h>

#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Interrupt.h>

#include <QScopeGuard>

namespace velldoc {

namespace {

using namespace std::chrono_literals;
using State = VellTransferState;

constexpr int MostAttempts = 6;
constexpr int UsualTransfers = 4;
// The time of six attempts; the session tries to reach the service more often.
constexpr std::chrono::milliseconds GiveUpTime = 15s;

//! Returns true if the other transfers would fail in the same way.
bool concernsAll(const Failure &failure, const VellTransfer &transfer)
{
    switch (transfer.error.kind) {
    case VellError::Kind::NotAllowed:
        return transfer.direction == VellTransferDirection::Upload;
    case VellError::Kind::NotSignedIn:
    case VellError::Kind::NoRoom:
        return true;
    default:
        return failure.code() == ExitNoConnection;
    }
}

} // namespace

Transfers::Transfers(Context &context, qint64 totalBytes)
    : m_context(context), m_totalBytes(totalBytes), m_progress(context.out),
      m_batch(m_queue.addBatch(VellConflictPolicy::Ask))
{
    m_queue.setAttemptLimit(qBound(1, context.number("retries", MostAttempts), 255));
    m_queue.setTransfersAtOnce(context.number("transfers", UsualTransfers));
    m_queue.setResumesParts(true);
    const qint64 rate = context.bytes("bwlimit");
    m_queue.setSpeedLimits(rate, rate);
    m_queue.attach(&context.session().documents());
    QObject::connect(&m_queue, &VellTransferQueue::changed, &m_loop,
                     [this](const QVector<qint64> &ids) { note(ids); });
    QObject::connect(&m_queue, &VellTransferQueue::ended, &m_loop,
                     [this](const VellTransfer &transfer, const VellDocument &document) {
                         onEnded(transfer, document);
                     });
    QObject::connect(&m_queue, &VellTransferQueue::asked, &m_loop,
                     [this](const VellTransferQuestion &question) {
                         m_taken.insert(question.id);
                         m_queue.cancel(question.id);
                     });
    m_giveUp.setSingleShot(true);
    m_giveUp.setInterval(GiveUpTime);
    QObject::connect(&m_giveUp, &QTimer::timeout, &m_loop,
                     [this] { giveUp(m_context.session().describe(m_lastError)); });
    QObject::connect(context.session().documents().session(), &VellSession::stateChanged, &m_loop,
                     [this] { watchConnection(); });
}

Transfers::~Transfers() = default;

void Transfers::run(const QString &firstName)
{
    m_count = m_queue.count();
    if (m_count == 0)
        return;
    m_firstName = firstName;
    // Also before the sentence about a failure is printed.
    const auto clearing = qScopeGuard([this] { m_progress.clear(); });
    // After Ctrl-C no temporary file of a small file remains.
    auto cancelling = qScopeGuard([this] { m_queue.cancelAll(); });
    m_progress.begin(label(), m_totalBytes);
    while (m_endedCount < m_count) {
        Interrupt::check();
        m_loop.exec();
    }
    Interrupt::check();
    cancelling.dismiss();
    if (m_fatal)
        throw Failure(*m_fatal);
    m_progress.end();
}

void Transfers::note(const QVector<qint64> &ids)
{
    for (const qint64 id : ids) {
        const VellTransfer transfer = m_queue.transfer(id);
        if (transfer.state == State::Hashing) {
            m_hashing = id;
        } else if (transfer.state != State::Waiting) {
            m_retried.remove(id);
        } else if (transfer.error && !m_fatal && !m_retried.contains(id)) {
            m_retried.insert(id);
            m_lastError = transfer.error;
            m_progress.clear();
            m_context.out.note(
                Text::tr("%1: %2 Trying again.")
                    .arg(transfer.localPath, m_context.session().describe(transfer.error).cause()));
        }
    }
    showProgress();
}

void Transfers::watchConnection()
{
    const bool isOffline =
        m_context.session().documents().session()->state() == VellSession::State::Offline;
    if (!isOffline)
        m_giveUp.stop();
    else if (!m_giveUp.isActive())
        m_giveUp.start();
}

void Transfers::onEnded(const VellTransfer &transfer, const VellDocument &document)
{
    ++m_endedCount;
    if (transfer.state == State::Done) {
        m_done.append({transfer.id, document});
    } else if (m_taken.contains(transfer.id)) {
        m_failed.append({transfer.id,
                         {ExitFailed,
                          Text::tr("An entry with this name has been created meanwhile: run the "
                                   "same command again.")}});
    } else if (transfer.state == State::Failed) {
        const Failure failure = m_context.session().describe(transfer.error);
        if (concernsAll(failure, transfer))
            giveUp(failure);
        else
            m_failed.append({transfer.id, failure});
    }
    showProgress();
    if (m_endedCount == m_count)
        m_loop.quit();
}

//! Stops the remaining transfers; the first reason is reported.
void Transfers::giveUp(const Failure &reason)
{
    if (m_fatal)
        return;
    m_fatal = reason;
    m_queue.cancelAll();
}

void Transfers::showProgress()
{
    const VellTransferTotals totals = m_queue.totals();
    const VellTransfer hashing = m_queue.transfer(m_hashing);
    const bool isHashing = hashing.state == State::Hashing && totals.count(State::Sending) == 0
        && totals.count(State::Saving) == 0;
    if (isHashing != m_isHashingShown) {
        m_isHashingShown = isHashing;
        if (isHashing)
            m_progress.begin(Text::tr("Checking %1").arg(hashing.name), hashing.sizeBytes);
        else
            m_progress.begin(label(), m_totalBytes);
    }
    if (!isHashing)
        m_progress.setText(label());
    m_progress.update(isHashing ? hashing.doneBytes : totals.doneBytes);
}

QString Transfers::label() const
{
    return m_count == 1 ? m_firstName
                        : Text::tr("%1 of %n file(s)", nullptr, m_count).arg(m_done.size());
}

qint64 Transfers::doneBytes() const
{
    qint64 bytes = 0;
    for (const Done &entry : m_done)
        bytes += m_queue.transfer(entry.id).sizeBytes;
    return bytes;
}

} // namespace velldoc
