#pragma once

#include <transfer/SpeedMeter.h>
#include <transfer/TransferJournal.h>
#include <transfer/TransferList.h>
#include <transfer/TransferRun.h>
#include <transfer/VellTransferQueue.h>

#include <QMultiHash>
#include <QPointer>
#include <QRandomGenerator>
#include <QSet>
#include <QThreadPool>
#include <QTimer>

#include <deque>
#include <map>
#include <memory>
#include <set>

class VellDocuments;
class VellSession;

//! \brief The implementation of VellTransferQueue, on its thread.
//!
//! No function processes all transfers at once. A command for all transfers is a sweep, which goes through the list in slices of
//! a few milliseconds. If a transfer gets a command for itself meanwhile, earlier sweeps are applied to it first.
class TransferQueue
{
public:
    explicit TransferQueue(VellTransferQueue *queue);
    ~TransferQueue();
    Q_DISABLE_COPY(TransferQueue)

    void open(const QString &path);
    void attach(VellDocuments *documents);

    int addBatch(VellConflictPolicy policy, const QString &category);
    qint64 add(TransferRecord record);

    //! A command for one transfer, or for each.
    enum class Command {
        Pause,
        Resume,
        Cancel,
        Retry,
        RetryFailed,
        Remove,
        Enqueue, // transfers that wait for a connection
        AskAgain, // applies the new policy of a batch to its open questions
    };
    void command(Command command, qint64 id);
    void commandAll(Command command, int batch = 0);
    void moveToFront(qint64 id);
    void answer(qint64 id, VellConflictPolicy decision);
    void answerAll(qint64 id, VellConflictPolicy decision);
    void setSpeedLimits(qint64 sentPerSecond, qint64 receivedPerSecond);
    void setAttemptLimit(int attempts) { m_attemptLimit = attempts; }
    void setTransfersAtOnce(int count);
    void setResumesParts(bool resumes) { m_hub.resumesParts = resumes; }

    const TransferList &list() const { return m_list; }
    VellTransfer snapshot(qint64 id) const;
    VellTransferTotals totals() const;
    VellTransferQuestion question(qint64 id) const { return m_questions.value(id).question; }

private:
    enum Lane { SmallUploads, LargeUploads, SmallDownloads, LargeDownloads, LaneCount };

    struct Scope
    {
        TransferPlace place;
        std::optional<ServiceScope> service; // no value without a connection
    };
    struct Running
    {
        std::shared_ptr<TransferRun> run;
        Lane lane = SmallUploads;
        qint64 doneBytes = 0; // at the last update
        bool isStopped =
            false; // the state has been set by a command; the result of the run does not change it
    };
    struct OpenQuestion
    {
        VellTransferQuestion question;
        ReplaceBase base;
    };
    struct Sweep
    {
        quint32 number = 0;
        Command command = Command::Pause;
        int batch = 0;
        qint64 nextId = 0;
    };
    //! Transfers that are being added to the list.
    struct Arrival
    {
        std::vector<TransferRecord> records;
        std::size_t next = 0;
        quint32 sweep = 0;
        bool isNew = false; // ended() must be emitted for failures among them
        std::function<void()> onEnd;
    };

    // TransferQueue.cpp
    int scopeNumber(const ServiceScope &scope);
    int sessionScope();
    void bindScopes();
    void insert(const TransferRecord &record, quint32 sweep);
    void restore(const std::shared_ptr<JournalContent> &content);
    void write(qint64 id, const TransferItem &item);

    // TransferSchedule.cpp
    Lane laneOf(const TransferItem &item) const;
    void enqueue(qint64 id, TransferItem &item);
    void dequeue(qint64 id, const TransferItem &item);
    void enqueueLater(qint64 id, TransferItem &item);
    void wakeDelayed();
    void schedule();
    void startNext();
    bool mayStart() const;
    bool claimName(qint64 id, const TransferItem &item);
    void start(qint64 id, TransferItem &item, Lane lane);
    void shareSpeed();
    void releaseNames(qint64 id);

    // TransferOutcomes.cpp
    void endRun(qint64 id, const TransferOutcome &outcome);
    void storeOutcome(qint64 id, TransferItem &item, const TransferOutcome &outcome);
    void applyOutcome(qint64 id, TransferItem &item, const TransferOutcome &outcome);
    void applyFailure(qint64 id, TransferItem &item, const TransferOutcome &outcome);
    void failWithoutProject(qint64 id);
    void applyFolder(qint64 id, TransferItem &item, const TransferOutcome &outcome);
    void finish(qint64 id, TransferItem &item, VellTransferState state,
                const VellDocument &document);
    void noteOutcome(const TransferItem &item, const VellError &error);
    void ask(qint64 id, TransferItem &item, const TransferOutcome &outcome);
    void closeQuestion(qint64 id);
    void removePart(qint64 id, const TransferItem &item);

    // TransferCommands.cpp
    void apply(Command command, qint64 id, TransferItem &item, int batch);
    void catchUp(qint64 id);
    bool keepsPart(const TransferItem &item) const;
    bool isArriving(qint64 id, const TransferItem &item) const;
    void stop(qint64 id, TransferItem &item, VellTransferState state);
    void resume(qint64 id, TransferItem &item);
    void retry(qint64 id, TransferItem &item);
    void removeItem(qint64 id);
    void work();
    bool processArrivals(const class QElapsedTimer &clock);
    bool processSweeps(const QElapsedTimer &clock);

    // TransferSignals.cpp
    void mark(qint64 id, TransferItem &item);
    void announceAdded();
    void emitSignals();
    void updateRunning();
    void checkIdle();

    VellTransferQueue *const q;
    QPointer<VellDocuments> m_documents;
    QMetaObject::Connection m_projectChanges;
    QMetaObject::Connection m_stateChanges;

    TransferList m_list;
    QHash<int, Scope> m_scopes;
    QHash<int, TransferBatch> m_batches;
    int m_nextScope = TransferJournal::FirstOwnNumber;
    int m_nextBatch = TransferJournal::FirstOwnNumber;
    qint64 m_nextId = TransferJournal::FirstOwnId;
    qint64 m_frontOrder = 0;
    int m_attemptLimit = 10;

    std::map<std::pair<qint64, qint64>, qint64> m_ready[LaneCount]; // by order and identifier
    std::set<std::pair<qint64, qint64>> m_delayed; // by the time of the next attempt and identifier
    QHash<qint64, qint64> m_delayedUntil;
    QMultiHash<QString, qint64> m_held; // waiting for a name, by its key in NameClaims
    QHash<qint64, QString> m_heldNames;
    std::map<qint64, Running> m_running;
    int m_runningCounts[LaneCount] = {};
    int m_capacities[LaneCount] = {4, 1, 4, 1};
    bool m_isScheduled = false;

    QHash<qint64, OpenQuestion> m_questions;
    std::deque<qint64> m_laterQuestions;

    std::deque<Arrival> m_arrivals;
    std::deque<Sweep> m_sweeps;
    quint32 m_lastSweep = 0;
    QVector<qint64> m_removed;

    QVector<qint64> m_marked;
    quint32 m_newsNumber = 1; // of the next signal
    QSet<QString> m_changedFolders;
    QVector<qint64> m_added;
    bool m_isIdle = true;
    SpeedMeter m_meter;
    QTimer m_work; // arrivals and sweeps
    QTimer m_signals;
    QTimer m_delay;

    TransferHub m_hub;
    std::unique_ptr<TransferJournal> m_journal;
    QThreadPool m_pools[LaneCount];
};
