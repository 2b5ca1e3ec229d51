#include <transfer/TransferJournal.h>

#include <transfer/JournalFormat.h>
#include <transfer/LocalNames.h>
#include <transfer/TransferText.h>

#include <QFile>
#include <QLockFile>
#include <QThread>

#include <utility>

namespace {

constexpr int NamelessLockMs = 2000; // creating and writing it takes less

//! Takes \a lock unless another program holds it.
bool takeLock(QLockFile &lock)
{
    lock.setStaleLockTime(0);
    qint64 process = 0;
    QString host;
    QString program;
    if (lock.tryLock() || lock.error() != QLockFile::LockFailedError
        || lock.getLockInfo(&process, &host, &program))
        return lock.isLocked();
    // A program was killed between creating the file and writing its own name into it.
    lock.setStaleLockTime(NamelessLockMs);
    return lock.tryLock(2 * NamelessLockMs);
}

} // namespace

TransferJournal::TransferJournal(
    const QString &path, std::function<void(const std::shared_ptr<JournalContent> &)> loaded,
    std::function<void(const VellError &)> failed)
    : m_path(path), m_loaded(std::move(loaded)), m_failed(std::move(failed)),
      m_thread(QThread::create([this] { run(); }))
{
    m_thread->start();
}

TransferJournal::~TransferJournal()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isEnding = true;
    }
    m_hasWork.notify_all();
    m_thread->wait();
}

void TransferJournal::run()
{
    const auto content = std::make_shared<JournalContent>();
    if (!load(content.get()))
        return;
    m_loaded(content);
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_hasWork.wait(lock, [this] { return m_isEnding || !m_pending.isEmpty(); });
        if (m_pending.isEmpty())
            return;
        const QByteArray bytes = std::exchange(m_pending, {});
        lock.unlock();
        const bool isWritten = m_file->write(bytes) == bytes.size();
        if (!isWritten) {
            fail(VellError::Kind::NoRoom, TransferText::notWritten(m_path, m_file->errorString()),
                 {});
            return;
        }
        lock.lock();
        m_writtenBytes += bytes.size();
        m_written.notify_all();
    }
}

bool TransferJournal::load(JournalContent *content)
{
    using Kind = VellError::Kind;
    m_lock = std::make_unique<QLockFile>(m_path + QLatin1String(".lock"));
    if (!takeLock(*m_lock)) {
        if (m_lock->error() == QLockFile::LockFailedError)
            fail(Kind::LocalFile, TransferText::fileInUse(), {});
        else
            fail(Kind::LocalFile, TransferText::notWritten(m_path, QString()), {});
        return false;
    }
    QFile before(m_path);
    if (before.exists()) {
        if (!before.open(QIODevice::ReadOnly)) {
            fail(Kind::LocalFile, {}, before.errorString());
            return false;
        }
        std::optional<JournalContent> read = journal_format::read(before.readAll());
        if (!read) {
            fail(Kind::LocalFile, TransferText::notAList(m_path), {});
            return false;
        }
        *content = std::move(*read);
        before.close();
    }
    journal_format::renumber(*content);
    const QByteArray compact = journal_format::compact(*content);
    m_file = std::make_unique<QFile>(m_path + QLatin1String(".new"));
    bool isWritten = m_file->open(QIODevice::WriteOnly | QIODevice::Unbuffered)
        && m_file->write(compact) == compact.size();
    m_file->close();
    isWritten = isWritten && local_names::replace(m_file->fileName(), m_path).isEmpty();
    m_file->setFileName(m_path);
    if (!isWritten || !m_file->open(QIODevice::Append | QIODevice::Unbuffered)) {
        fail(Kind::LocalFile, TransferText::notWritten(m_path, m_file->errorString()), {});
        return false;
    }
    return true;
}

void TransferJournal::fail(VellError::Kind kind, const QString &text, const QString &detail)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_hasFailed = true;
        m_pending.clear();
    }
    m_written.notify_all();
    m_failed(VellError::of(kind, text, detail));
}

void TransferJournal::append(const QByteArray &payload)
{
    const QByteArray bytes = journal_format::framed(payload);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_hasFailed)
            return;
        m_pending += bytes;
        m_appendedBytes += bytes.size();
    }
    m_hasWork.notify_all();
}

void TransferJournal::writePlace(int number, const TransferPlace &place)
{
    append(journal_format::place(number, place));
}

void TransferJournal::writeBatch(int number, const TransferBatch &batch)
{
    append(journal_format::batch(number, batch));
}

void TransferJournal::write(const TransferRecord &record)
{
    append(journal_format::record(record));
}

void TransferJournal::writeState(qint64 id, VellTransferState state)
{
    append(journal_format::state(id, state));
}

void TransferJournal::writeRemoval(qint64 id)
{
    append(journal_format::removal(id));
}

void TransferJournal::writeTag(qint64 id, const QByteArray &entityTag)
{
    append(journal_format::tag(id, entityTag));
}

void TransferJournal::writeFolder(const TransferRecord &folder, qint64 firstId,
                                  const std::vector<FolderEntry> &entries)
{
    append(journal_format::folder(folder, firstId, entries));
}

void TransferJournal::writeTrace(qint64 id, const UploadTrace &trace)
{
    append(journal_format::trace(id, trace));
}

void TransferJournal::wait()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const qint64 wanted = m_appendedBytes;
    m_written.wait(lock, [&] { return m_hasFailed || m_writtenBytes >= wanted; });
}
