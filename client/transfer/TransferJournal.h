#pragma once

#include <transfer/TransferRecord.h>

#include <QByteArray>
#include <QHash>
#include <QString>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

class QFile;
class QLockFile;
class QThread;

//! \brief The service, the project and the user of transfers, without the token.
struct TransferPlace
{
    QString address;
    QString projectId;
    QString userId;
};

//! \brief A batch of transfers.
struct TransferBatch
{
    VellConflictPolicy policy = VellConflictPolicy::Ask;
    QString category;
};

//! \brief The content of a journal.
struct JournalContent
{
    QHash<int, TransferPlace> places;
    QHash<int, TransferBatch> batches;
    std::vector<TransferRecord> records; // numbered from 1
    bool isDamaged = false; // the end of the file could not be read
};

//! \brief The file of a queue. Each change is appended; obsolete entries are removed when the file is opened.
//!
//! Reads and writes on its own thread. If the process ends, a change is either completely in the file or not at all.
class TransferJournal
{
public:
    //! The queue assigns identifiers and numbers from here on; smaller ones are those of the file.
    static constexpr qint64 FirstOwnId = Q_INT64_C(1) << 32;
    static constexpr int FirstOwnNumber = 1 << 20; // of places and batches

    //! \param loaded called once, on the thread of the journal
    //! \param failed called once if reading or writing fails, on the thread of the journal. Afterwards nothing is written
    TransferJournal(const QString &path,
                    std::function<void(const std::shared_ptr<JournalContent> &)> loaded,
                    std::function<void(const VellError &)> failed);
    //! Writes pending changes.
    ~TransferJournal();
    Q_DISABLE_COPY(TransferJournal)

    //! \name From any thread
    //! \{
    void writePlace(int number, const TransferPlace &place);
    void writeBatch(int number, const TransferBatch &batch);
    void write(const TransferRecord &record);
    void writeState(qint64 id, VellTransferState state);
    void writeRemoval(qint64 id);
    void writeTag(qint64 id, const QByteArray &entityTag);
    //! Writes that \a folder is done, and its entries as transfers, numbered from \a firstId on.
    void writeFolder(const TransferRecord &folder, qint64 firstId,
                     const std::vector<FolderEntry> &entries);
    void writeTrace(qint64 id, const UploadTrace &trace);
    //! Returns when all changes are in the file, or writing has failed. Do not call it on the thread of the queue.
    void wait();
    //! \}

private:
    void run();
    bool takeLock();
    bool load(JournalContent *content);
    void append(const QByteArray &payload);
    void fail(VellError::Kind kind, const QString &text, const QString &detail);

    const QString m_path;
    const std::function<void(const std::shared_ptr<JournalContent> &)> m_loaded;
    const std::function<void(const VellError &)> m_failed;
    std::unique_ptr<QLockFile> m_lock;
    std::unique_ptr<QFile> m_file;

    std::mutex m_mutex;
    std::condition_variable m_hasWork;
    std::condition_variable m_written;
    QByteArray m_pending;
    qint64 m_appendedBytes = 0;
    qint64 m_writtenBytes = 0;
    bool m_isEnding = false;
    bool m_hasFailed = false;
    const std::unique_ptr<QThread> m_thread;
};
