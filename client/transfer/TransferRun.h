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

//! \brief The data that all attempts of a queue share. Thread-safe.
struct TransferHub
{
    NameClaims claims;
    SpeedShare speeds;
    TransferJournal *journal = nullptr; // null for a queue in memory
    std::atomic<bool> resumesParts{false}; // of earlier queues
};

//! \brief The input of one attempt.
struct TransferTask
{
    TransferRecord record;
    ServiceScope scope;
    VellConflictPolicy policy =
        VellConflictPolicy::Ask; // the answer if there is one, otherwise the policy of the batch
    bool canAsk = false; // true if the policy of the batch is to ask
    QString category;
};

//! \brief The result of one attempt.
struct TransferOutcome
{
    enum class Kind {
        Done,
        Skipped,
        Failed, // Cancelled if it was aborted
        Asks,
        Large, // nothing has been done: it must wait among the large files, or among the small ones
    };

    Kind kind = Kind::Done;
    VellError error;
    bool canTryAgain = false;
    bool hasMoved = false; // bytes were transferred: resets the number of failures in a row
    qint64 sizeBytes = -1;
    VellDocument document;
    VellTransferQuestion question;
    ReplaceBase base; // the state of the target when the question was asked
    UploadTrace trace;
    QByteArray entityTag;
    QString localName; // of a download, if it differs from the wanted name
    bool isFolder = false;
    std::vector<FolderEntry> entries; // of a folder
};

//! \brief One attempt at one transfer. Created and aborted by the queue, executed on another thread.
class TransferRun
{
public:
    static std::shared_ptr<TransferRun> make(TransferTask task, TransferHub &hub);
    virtual ~TransferRun() = default;
    Q_DISABLE_COPY(TransferRun)

    //! Runs the attempt and returns its result. Returns soon after abort().
    TransferOutcome execute();

    //! \name From any thread
    //! \{
    void abort() { m_run.abort(); }
    //! Lets the attempt remove its received data. Call it before abort().
    void discard() { m_isDiscarded = true; }
    VellTransferState stage() const { return m_stage; }
    qint64 doneBytes() const { return m_doneBytes; }
    //! Returns -1 if the size is not known.
    qint64 sizeBytes() const { return m_sizeBytes; }
    //! \}

    VellTransferDirection direction() const { return m_task.record.direction; }

protected:
    TransferRun(TransferTask task, TransferHub &hub, VellTransferState firstStage);

    //! \throws OperationFailure
    virtual void work() = 0;

    //! Removes temporary data after the last attempt.
    virtual void cleanUp() {}

    [[noreturn]] static void fail(VellError::Kind kind, const QString &text);

    //! Ends the attempt with a temporary failure.
    [[noreturn]] void failForNow(VellError::Kind kind, const QString &text);

    //! Runs \a loop until it quits. \throws OperationFailure after abort()
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
