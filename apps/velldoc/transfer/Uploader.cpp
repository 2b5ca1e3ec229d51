#include <velldoc/transfer/Uploader.h>

#include <async_ops/VellUploadLimits.h>
#include <document_service/VellDocumentData.h>
#include <velldoc/Context.h>
#include <velldoc/Text.h>
#include <velldoc/output/Interrupt.h>
#include <velldoc/transfer/UploadAttempt.h>

#include <QScopeGuard>

#include <algorithm>
#include <cstdlib>

namespace velldoc {

namespace {

constexpr std::size_t SmallFilesAtOnce = 4;
constexpr int MostFailuresInRow = 6;
constexpr int FirstPauseMs = 250;
constexpr int LongestPauseMs = 8000;

//! Whether the same request can succeed when it is sent again.
bool isWorthAnotherTry(const Failure &reason)
{
    constexpr int RequestTimeout = 408;
    constexpr int WrongContent = 422; // the file changed while it was sent
    constexpr int TooManyRequests = 429;
    constexpr int NoRoom = 507;
    switch (reason.httpStatus()) {
    case RequestTimeout:
    case WrongContent:
    case TooManyRequests:
        return true;
    case NoRoom:
        return false;
    default:
        return reason.httpStatus() / 100 != 4;
    }
}

//! Whether the other files of the batch would fail in the same way.
bool concernsAll(const Failure &reason)
{
    constexpr int NoRoom = 507;
    return reason.code() == ExitNoConnection || reason.code() == ExitNotAllowed
        || reason.httpStatus() == NoRoom;
}

} // namespace

Uploader::Uploader(Context &context, qint64 totalBytes)
    : m_context(context), m_totalBytes(totalBytes), m_progress(context.out)
{}

Uploader::~Uploader() = default;

void Uploader::run(const QList<UploadTask> &tasks)
{
    m_fileCount = tasks.size();
    m_firstName = tasks.isEmpty() ? QString() : tasks.constFirst().name;
    for (auto it = tasks.crbegin(); it != tasks.crend(); ++it)
        m_waiting.push_back(Entry{*it, 0, 0, nullptr});
    // Also before the sentence about a failure is printed.
    const auto clearing = qScopeGuard([this] { m_progress.clear(); });
    m_progress.begin(label(), m_totalBytes);
    while (!m_waiting.empty() || !m_running.empty()) {
        startMore();
        waitForAnEnd();
        collect();
    }
    m_progress.end();
}

void Uploader::startMore()
{
    while (!m_waiting.empty() && mayStart(m_waiting.back().task))
        startFirst();
}

bool Uploader::mayStart(const UploadTask &next) const
{
    if (m_running.empty())
        return true;
    // The job of a large file blocks while it hashes: nothing else is to be under way then.
    return !next.isChunked() && !m_running.front().task.isChunked()
        && m_running.size() < SmallFilesAtOnce;
}

void Uploader::startFirst()
{
    Entry entry = std::move(m_waiting.back());
    m_waiting.pop_back();
    if (!entry.task.isReadable()) {
        m_failed.append({entry.task, Failure(ExitFailed, Text::tr("It can no longer be read."))});
        return;
    }
    auto *const attempt = new UploadAttempt(m_context.session(), entry.task);
    entry.attempt.reset(attempt);
    QObject::connect(attempt, &UploadAttempt::progressed, attempt,
                     [this, attempt, task = entry.task] { showProgress(*attempt, task); });
    QObject::connect(attempt, &UploadAttempt::ended, &m_loop, &QEventLoop::quit);
    const bool isLarge = entry.task.isChunked();
    m_running.push_back(std::move(entry));
    std::shared_ptr<void> leaving;
    if (isLarge) {
        leaving = Interrupt::replaceUnwinding([this, attempt] {
            if (!attempt->isHashing()) {
                QCoreApplication::exit(ExitInterrupted);
                return;
            }
            // Hashing cannot be stopped, and nothing has been sent that would be lost.
            m_progress.clear();
            const Failure failure(ExitInterrupted,
                                  Text::tr("Interrupted. Run the same command again to go on."));
            m_context.out.error(failure.sentence());
            m_context.out.finish(&failure);
            std::_Exit(ExitInterrupted);
        });
    }
    attempt->start();
    Interrupt::check();
}

void Uploader::waitForAnEnd()
{
    const bool hasEnded = std::any_of(m_running.begin(), m_running.end(), [](const Entry &entry) {
        return entry.attempt->outcome() != UploadAttempt::Outcome::Running;
    });
    if (!hasEnded && !m_running.empty())
        m_loop.exec();
    Interrupt::check();
}

void Uploader::collect()
{
    for (std::size_t i = 0; i < m_running.size();) {
        if (m_running.at(i).attempt->outcome() == UploadAttempt::Outcome::Running) {
            ++i;
            continue;
        }
        Entry entry = std::move(m_running.at(i));
        m_running.erase(m_running.begin() + static_cast<std::ptrdiff_t>(i));
        judge(std::move(entry));
    }
}

void Uploader::judge(Entry entry)
{
    const UploadAttempt &attempt = *entry.attempt;
    if (attempt.outcome() == UploadAttempt::Outcome::Stored && !attempt.document()._id.isEmpty()) {
        const VellDocument document = attempt.document();
        accept(std::move(entry), document);
        return;
    }
    const Failure reason = reasonOf(attempt);
    const qint64 chunk = attempt.sentBytes() / VellUploadLimits::ChunkBytes;
    if (chunk > entry.farthestChunk) {
        entry.farthestChunk = chunk;
        entry.failuresInRow = 0;
    }
    entry.attempt.reset();
    if (isWorthAnotherTry(reason) || entry.task.hasChangedOnDisk()) {
        if (const std::optional<VellDocument> document = findStored(entry.task))
            accept(std::move(entry), *document);
        else
            tryAgain(std::move(entry), reason);
        return;
    }
    if (concernsAll(reason))
        throw reason;
    m_failed.append({entry.task, reason});
}

void Uploader::accept(Entry entry, const VellDocument &document)
{
    entry.attempt.reset();
    if (document.fileSize == entry.task.sizeBytes && !entry.task.hasChangedOnDisk()) {
        m_doneBytes += entry.task.sizeBytes;
        m_stored.append({entry.task, document});
        m_progress.setText(label());
        m_progress.update(m_doneBytes);
        return;
    }
    // The service has a mixture of two states of the file, or less than all of it.
    const Failure reason(ExitFailed,
                         Text::tr("%1 changed while it was being sent.").arg(entry.task.localPath));
    entry.task.replaced = document;
    entry.task.refresh();
    tryAgain(std::move(entry), reason);
}

void Uploader::tryAgain(Entry entry, const Failure &reason)
{
    ++entry.failuresInRow;
    if (entry.failuresInRow >= MostFailuresInRow) {
        if (concernsAll(reason))
            throw reason;
        m_failed.append({entry.task, reason});
        return;
    }
    m_progress.clear();
    m_context.out.note(Text::tr("%1: %2 Trying again.").arg(entry.task.localPath, reason.cause()));
    const int failures = entry.failuresInRow;
    entry.task.refresh();
    m_waiting.push_back(std::move(entry));
    Interrupt::pause(
        std::chrono::milliseconds(std::min(FirstPauseMs << (failures - 1), LongestPauseMs)));
}

std::optional<VellDocument> Uploader::findStored(const UploadTask &task)
{
    try {
        return lookUp(task);
    } catch (const Failure &failure) {
        if (failure.code() == ExitInterrupted)
            throw;
        return std::nullopt; // the next try will tell
    }
}

std::optional<VellDocument> Uploader::lookUp(const UploadTask &task)
{
    VellDocument found;
    if (task.replaced) {
        m_context.session().ask(
            [&] { VellDocumentData::instance()->getDoc(task.replaced->_id, found, false); });
        // Contents are known by what is in them: another one with this size is ours.
        const bool isNew =
            found.fileId != task.replaced->fileId && found.fileSize == task.sizeBytes;
        return isNew ? std::make_optional(found) : std::nullopt;
    }
    VellDocumentConditon condition;
    condition.parentId = task.parentId;
    condition.name = task.name;
    condition.type = QStringLiteral("file");
    const QList<VellDocument> documents = m_context.tree().list(condition);
    for (const VellDocument &document : documents) {
        const QString user = m_context.session().userId();
        if (document.fileSize == task.sizeBytes && (user.isEmpty() || document.createdBy == user))
            return document;
    }
    return std::nullopt;
}

Failure Uploader::reasonOf(const UploadAttempt &attempt) const
{
    if (attempt.failure())
        return m_context.session().describe(*attempt.failure());
    return {ExitFailed, Text::tr("The service did not say that it has the file.")};
}

void Uploader::showProgress(const UploadAttempt &attempt, const UploadTask &task)
{
    if (attempt.isHashing()) {
        if (m_hashing != &attempt)
            m_progress.begin(Text::tr("Checking %1").arg(task.name), task.sizeBytes);
        m_hashing = &attempt;
        m_progress.update(attempt.hashedBytes());
        return;
    }
    if (m_hashing != nullptr)
        m_progress.begin(label(), m_totalBytes);
    m_hashing = nullptr;
    qint64 bytes = m_doneBytes;
    for (const Entry &entry : m_running)
        bytes += entry.attempt->sentBytes();
    m_progress.update(bytes);
}

QString Uploader::label() const
{
    return m_fileCount == 1
        ? m_firstName
        : Text::tr("%1 of %n file(s)", nullptr, m_fileCount).arg(m_stored.size());
}

} // namespace velldoc
