#pragma once

#include <operations/OperationRun.h>
#include <transfer/NameClaims.h>
#include <transfer/SpeedShare.h>
#include <transfer/TransferRecord.h>

#include <QByteArray>
#include <QString>

#include <atomic>
#include <memory>
#include <vector>

class QEventLoop;
class TransferJournal;

//! \brief What the attempts of one queue share. Thread-safe.
struct TransferHub
{
    NameClaims claims;
    SpeedShare speeds;
    TransferJournal *journal = nullptr; // null for a queue in memory
    std::atomic<bool> resumesParts{false}; // of earlier queues
};

//! \brief What one attempt is given.
struct TransferTask
{
    TransferRecord record;
    ServiceScope scope;
    VellConflictPolicy policy =
        VellConflictPolicy::Ask; // the answer if there is one, else the batch's
    bool canAsk = false; // whether the policy of the batch is to ask
    QString category;
};

//! \brief How one attempt ended.
struct TransferOutcome
{
    enum class Kind {
        Done,
        Skipped,
        Failed, // Cancelled if it was aborted
        Asks,
        Large, // nothing has been done: its turn comes among the large files
    };

    Kind kind = Kind::Done;
    VellError error;
    bool canTryAgain = false;
    bool hasMoved = false; // bytes, so that failures in a row are counted anew
    qint64 sizeBytes = -1;
    VellDocument document;
    VellTransferQuestion question;
    ReplaceBase base; // what the question is about
    UploadTrace trace;
    QByteArray entityTag;
    QString localName; // of a download, if it is another one than wanted
    bool isFolder = false;
    std::vector<FolderEntry> entries; // of a folder
};

//! \brief One attempt at one transfer. Made and aborted by the queue, executed on a thread of its own.
class TransferRun
{
public:
    static std::shared_ptr<TransferRun> make(TransferTask task, TransferHub &hub);
    virtual ~TransferRun() = default;
    Q_DISABLE_COPY(TransferRun)

    //! Returns how it ended; soon after abort().
    TransferOutcome execute();

    //! \name From any thread
    //! \{
    void abort() { m_run.abort(); }
    //! What has been received is of no use any more. Before abort()
    void discard() { m_isDiscarded = true; }
    VellTransferState stage() const { return m_stage; }
    qint64 doneBytes() const { return m_doneBytes; }
    //! -1 as long as it is not known.
    qint64 sizeBytes() const { return m_sizeBytes; }
    //! \}

    VellTransferDirection direction() const { return m_task.record.direction; }

protected:
    TransferRun(TransferTask task, TransferHub &hub, VellTransferState firstStage);

    //! \throws OperationFailure
    virtual void work() = 0;

    //! Removes what an attempt has left behind that is not followed by another one.
    virtual void cleanUp() {}

    [[noreturn]] static void fail(VellError::Kind kind, const QString &text);

    //! Ends the attempt with a failure after which another one makes sense.
    [[noreturn]] void failForNow(VellError::Kind kind, const QString &text);

    //! Waits for loop.quit(), or throws after abort().
    void wait(QEventLoop &loop);

    const TransferRecord &record() const { return m_task.record; }
    const TransferTask &task() const { return m_task; }
    OperationRun &service() { return m_run; }
    TransferHub &hub() { return m_hub; }
    TransferOutcome &outcome() { return m_outcome; }
    void setStage(VellTransferState stage) { m_stage = stage; }
    void setDoneBytes(qint64 bytes) { m_doneBytes = bytes; }
    void setSizeBytes(qint64 bytes);

private:
    const TransferTask m_task;
    TransferHub &m_hub;
    TransferOutcome m_outcome;
    OperationRun m_run;
    std::atomic<VellTransferState> m_stage;
    std::atomic<bool> m_isDiscarded{false};
    std::atomic<qint64> m_doneBytes{0};
    std::atomic<qint64> m_sizeBytes{-1};
};
