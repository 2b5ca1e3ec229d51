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

//! \brief The project of a service, and the user, that transfers belong to. The token is not part of it.
struct TransferPlace
{
    QString address;
    QString projectId;
    QString userId;
};

//! \brief Transfers that belong together.
struct TransferBatch
{
    VellConflictPolicy policy = VellConflictPolicy::Ask;
    QString category;
};

//! \brief What a journal held.
struct JournalContent
{
    QHash<int, TransferPlace> places;
    QHash<int, TransferBatch> batches;
    std::vector<TransferRecord> records; // identifiers from 1 on
    bool isDamaged = false; // something behind could not be read
};

//! \brief The file that keeps a queue: each change is appended, and what counts no more is dropped when it is opened.
//!
//! Reads and writes on a thread of its own. A change is either in the file as a whole or not at all, whenever the process ends.
class TransferJournal
{
public:
    //! Identifiers that the queue gives itself, while a journal is being read and later.
    static constexpr qint64 FirstOwnId = Q_INT64_C(1) << 32;
    static constexpr int FirstOwnNumber = 1 << 20; // of places and batches

    //! \param loaded called once, on the thread of the journal
    //! \param failed called once if reading or writing fails, on the thread of the journal. Nothing is written any more then
    TransferJournal(const QString &path,
                    std::function<void(const std::shared_ptr<JournalContent> &)> loaded,
                    std::function<void(const VellError &)> failed);
    //! Writes what is left.
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
    //! The folder \a folder is done, and its entries are transfers, numbered from \a firstId on.
    void writeFolder(const TransferRecord &folder, qint64 firstId,
                     const std::vector<FolderEntry> &entries);
    void writeTrace(qint64 id, const UploadTrace &trace);
    //! Returns once everything until now is in the file, or once writing has failed. Not for the thread of the queue.
    void wait();
    //! \}

private:
    void run();
    bool load(JournalContent *content);
    void append(const QByteArray &payload);
    void fail(VellError::Kind kind, const QString &text, const QString &detail);

    const QString m_path;
    const std::function<void(const std::shared_ptr<JournalContent> &)> m_loaded;
    const std::function<void(const VellError &)> m_failed;
    std::unique_ptr<QLockFile> m_lock;
    std::unique_ptr<QFile> m_file;

    std::mutex m_mutex;
    std::condition_variable m_news;
    std::condition_variable m_written;
    QByteArray m_pending;
    qint64 m_appendedBytes = 0;
    qint64 m_writtenBytes = 0;
    bool m_isEnding = false;
    bool m_hasFailed = false;
    const std::unique_ptr<QThread> m_thread;
};
