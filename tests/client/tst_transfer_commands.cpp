#include "TransferWorld.h"

#include <support/ScriptedServer.h>

#include <VellNetwork/NetworkSettings.h>

#include <QDir>
#include <QFile>
#include <QObject>
#include <QPointer>

using State = VellTransferState;
using Policy = VellConflictPolicy;

Q_DECLARE_METATYPE(VellTransferState)

class TestTransferCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void soManyRunAtOnce();
    void pauseAndResume_data();
    void pauseAndResume();
    void cancelAndRetry_data();
    void cancelAndRetry();
    void resumeAtOnce();
    void commandsForAllReachEverything();
    void aCommandOfItsOwnComesAfterOneForAll();
    void theFrontIsNext();
    void aLargeFileDoesNotHoldSmallOnes();
    void cancellingAHashIsNotWaitedFor();
    void endsWithoutASignalAreFollowedByAnotherAttempt();
    void aChunkThatIsForgottenAgainAndAgainEndsAnAttempt();
    void removedTransfersAreForgotten();
    void theQueueMayBeDeletedInItsSignals();
    void manyTransfersEndOnce();
    void aLimitHoldsBackWhatIsSent();

private:
    static void addRows();
    static qint64 start(TransferWorld &world);
    static void verifyDone(TransferWorld &world, qint64 id, int ends);
};

void TestTransferCommands::addRows()
{
    QTest::addColumn<bool>("isUpload");
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<VellTransferState>("state");
    for (const qint64 bytes : {SmallBytes, LargeBytes}) {
        const char *const size = bytes == SmallBytes ? "small" : "large";
        QTest::addRow("%s upload, waiting", size) << true << bytes << State::Waiting;
        QTest::addRow("%s upload, sending", size) << true << bytes << State::Sending;
        QTest::addRow("%s upload, saving", size) << true << bytes << State::Saving;
        QTest::addRow("%s upload, asking", size) << true << bytes << State::Asking;
        QTest::addRow("%s download, waiting", size) << false << bytes << State::Waiting;
        QTest::addRow("%s download, receiving", size) << false << bytes << State::Receiving;
        QTest::addRow("%s download, asking", size) << false << bytes << State::Asking;
    }
    QTest::addRow("large upload, hashing") << true << (Q_INT64_C(1) << 36) << State::Hashing;
}

//! Brings a transfer into the state of the row, where it stays.
qint64 TestTransferCommands::start(TransferWorld &world)
{
    QFETCH(const bool, isUpload);
    QFETCH(const qint64, bytes);
    QFETCH(const VellTransferState, state);
    const QString name = QStringLiteral("file");
    const QString path = world.path(QStringLiteral("source/") + name);
    QDir().mkpath(world.path(QStringLiteral("source")));
    if (state == State::Hashing) {
        TransferWorld::write(path, {});
        QFile::resize(path, bytes);
    } else {
        world.makeFile(QStringLiteral("source/") + name, bytes);
    }
    if (state == State::Asking && isUpload)
        world.store(name, "there");
    VellDocument source;
    if (!isUpload)
        source =
            await(world.documents.document(world.store(name, TransferWorld::contentOf(path))._id));
    if (state == State::Asking && !isUpload)
        TransferWorld::write(world.path(name), "there");
    FaultRule stall;
    stall.kind = FaultRule::Kind::Stall;
    stall.times = 0;
    stall.verb = isUpload ? "POST" : "GET";
    stall.pathPrefix = state == State::Saving ? QStringLiteral("/document-service")
                                              : QStringLiteral("/base-service/");
    if (state != State::Asking) // in which it stays by itself
        world.service.addFault(stall);
    if (state == State::Waiting) {
        // In front of it as many as run at once.
        for (int i = 0; i < (bytes == SmallBytes ? 4 : 1); ++i) {
            if (isUpload) {
                world.queue.upload(world.makeFile(QStringLiteral("blocker%1").arg(i), bytes, i),
                                   {});
            } else {
                VellDocument blocker = source;
                blocker.name = QStringLiteral("blocker%1").arg(i);
                world.queue.download(blocker, world.path(QString()));
            }
        }
        if (!QTest::qWaitFor([&] { return world.queue.totals().count(State::Waiting) == 0; }))
            qWarning("what is in front of it does not start");
    }
    const qint64 id = isUpload ? world.queue.upload(path, {}, Policy::Ask)
                               : world.queue.download(source, world.path(QString()), Policy::Ask);
    if (!world.waitForState(id, state))
        QTest::qFail("the transfer does not get there", __FILE__, __LINE__);
    return id;
}

void TestTransferCommands::verifyDone(TransferWorld &world, qint64 id, int ends)
{
    QFETCH(const bool, isUpload);
    QFETCH(const VellTransferState, state);
    world.service.clearFaults();
    // What stalls goes on only in another attempt.
    for (const qint64 other : world.queue.ids()) {
        if (other != id) {
            world.queue.pause(other);
            world.queue.resume(other);
        }
    }
    if (state == State::Hashing)
        QFile::resize(world.queue.transfer(id).localPath, LargeBytes);
    if (state == State::Asking) {
        QVERIFY(world.waitForState(id, State::Asking));
        world.queue.answer(id, Policy::Replace);
    }
    QVERIFY(world.waitForState(id, State::Done));
    QVERIFY(world.waitForIdle());
    const QList<VellDocument> stored = world.find(QStringLiteral("file"));
    QCOMPARE(stored.size(), 1);
    QVERIFY(world.download(stored.first())
            == TransferWorld::contentOf(world.path(QStringLiteral("source/file"))));
    if (!isUpload)
        QVERIFY(TransferWorld::contentOf(world.path(QStringLiteral("file")))
                == TransferWorld::contentOf(world.path(QStringLiteral("source/file"))));
    QCOMPARE(world.endCounts.value(id), ends);
}

void TestTransferCommands::pauseAndResume_data()
{
    addRows();
}

void TestTransferCommands::pauseAndResume()
{
    TransferWorld world;
    const qint64 id = start(world);
    world.queue.pause(id);
    QCOMPARE(world.queue.transfer(id).state, State::Paused);
    QCOMPARE(world.queue.question(id).id, qint64(0));
    // Nothing changes that by itself.
    QTest::qWait(300);
    QCOMPARE(world.queue.transfer(id).state, State::Paused);
    QCOMPARE(world.endCounts.value(id), 0);
    world.queue.resume(id);
    verifyDone(world, id, 1);
}

void TestTransferCommands::cancelAndRetry_data()
{
    addRows();
}

void TestTransferCommands::cancelAndRetry()
{
    TransferWorld world;
    const qint64 id = start(world);
    world.queue.cancel(id);
    QCOMPARE(world.queue.transfer(id).state, State::Cancelled);
    QCOMPARE(world.endCounts.value(id), 1);
    QTest::qWait(300);
    QCOMPARE(world.queue.transfer(id).state, State::Cancelled);
    QCOMPARE(world.endCounts.value(id), 1);
    world.queue.retry(id);
    verifyDone(world, id, 2);
}

void TestTransferCommands::resumeAtOnce()
{
    TransferWorld world;
    world.queue.setSpeedLimits(8'000'000, 0);
    const qint64 id = world.queue.upload(world.makeFile(QStringLiteral("a"), LargeBytes), {});
    QTRY_VERIFY_WITH_TIMEOUT(world.queue.transfer(id).doneBytes > 0, WaitMs);
    for (int i = 0; i < 20; ++i) {
        world.queue.pause(id);
        world.queue.resume(id);
    }
    QVERIFY(world.waitForState(id, State::Done));
    QCOMPARE(world.endCounts.value(id), 1);
    QCOMPARE(world.find(QStringLiteral("a")).size(), 1);
}

void TestTransferCommands::commandsForAllReachEverything()
{
    TransferWorld world;
    QVector<qint64> ids;
    const QString path = world.makeFile(QStringLiteral("a"), 1000);
    const int batch = world.queue.addBatch(Policy::KeepBoth);
    for (int i = 0; i < 30; ++i)
        ids.append(world.queue.upload(path, {}, batch));
    world.queue.pauseAll();
    QTRY_COMPARE_WITH_TIMEOUT(world.queue.totals().count(State::Paused)
                                  + world.queue.totals().count(State::Done),
                              30, WaitMs);
    const int done = world.queue.totals().count(State::Done);
    QTest::qWait(200);
    QCOMPARE(world.queue.totals().count(State::Done), done);
    world.queue.resumeAll();
    QTRY_COMPARE_WITH_TIMEOUT(world.queue.totals().count(State::Done), 30, WaitMs);
    QCOMPARE(world.names().size(), 30);
    for (const qint64 id : ids)
        QCOMPARE(world.endCounts.value(id), 1);
}

void TestTransferCommands::aCommandOfItsOwnComesAfterOneForAll()
{
    TransferWorld world;
    QVector<qint64> ids;
    for (int i = 0; i < 50; ++i)
        ids.append(world.queue.upload(world.makeFile(QString::number(i), 10, i), {}));
    world.queue.pauseAll();
    world.queue.resume(ids.at(40));
    QCOMPARE(world.queue.transfer(ids.at(40)).state, State::Waiting);
    QVERIFY(world.waitForState(ids.at(40), State::Done));
    QCOMPARE(world.queue.transfer(ids.at(41)).state, State::Paused);
    world.queue.cancelAll();
    world.queue.retry(ids.at(30));
    QVERIFY(world.waitForState(ids.at(30), State::Done));
    QTRY_COMPARE_WITH_TIMEOUT(world.queue.totals().count(State::Cancelled), 48, WaitMs);
}

void TestTransferCommands::theFrontIsNext()
{
    TransferWorld world;
    world.queue.pauseAll();
    QList<qint64> order;
    connect(&world.queue, &VellTransferQueue::ended, this,
            [&order](const VellTransfer &transfer) { order.append(transfer.id); });
    QVector<qint64> ids;
    for (int i = 0; i < 3; ++i)
        ids.append(world.queue.upload(world.makeFile(QString::number(i), LargeBytes, i), {}));
    // The first look puts them among the large files.
    world.queue.moveToFront(ids.at(2));
    QVERIFY(world.waitForIdle());
    QCOMPARE(order.size(), 3);
    QVERIFY(order.indexOf(ids.at(2)) < order.indexOf(ids.at(1)));
}

void TestTransferCommands::aLargeFileDoesNotHoldSmallOnes()
{
    TransferWorld world;
    FaultRule stall;
    stall.kind = FaultRule::Kind::Stall;
    stall.times = 0;
    stall.pathPrefix = QStringLiteral("/base-service/largefiles");
    world.service.addFault(stall);
    const qint64 large =
        world.queue.upload(world.makeFile(QStringLiteral("large"), LargeBytes), {});
    QVector<qint64> small;
    for (int i = 0; i < 8; ++i)
        small.append(world.queue.upload(world.makeFile(QString::number(i), 10, i), {}));
    for (const qint64 id : small)
        QVERIFY(world.waitForState(id, State::Done));
    QVERIFY(!world.queue.transfer(large).isEnded());
}

void TestTransferCommands::cancellingAHashIsNotWaitedFor()
{
    // To its end the hash would take longer than the test may.
    TransferWorld world;
    const QString path = world.makeFile(QStringLiteral("sparse"), 0);
    QVERIFY(QFile::resize(path, Q_INT64_C(1) << 40));
    const qint64 id = world.queue.upload(path, {});
    QTRY_VERIFY_WITH_TIMEOUT(world.queue.transfer(id).doneBytes > 0, WaitMs);
    QCOMPARE(world.queue.transfer(id).state, State::Hashing);
    world.queue.cancel(id);
    const qint64 other = world.queue.upload(path, {}, Policy::KeepBoth);
    // Its turn comes, and the queue is destroyed while it runs.
    QTRY_VERIFY_WITH_TIMEOUT(world.queue.transfer(other).doneBytes > 0, WaitMs);
    QCOMPARE(world.endCounts.value(id), 1);
}

void TestTransferCommands::endsWithoutASignalAreFollowedByAnotherAttempt()
{
    NetworkSettings::instance().setStallTimeout(std::chrono::milliseconds(2000));
    ScriptedServer server;
    int silentAnswers = 2;
    server.setHandler([&](const ScriptedRequest &request) {
        if (request.target.contains("base-service/me"))
            return ScriptedReply::json(R"({"_id":"u","name":"u","projects":[]})");
        if (request.verb == "POST" && request.target.contains("largefiles"))
            return silentAnswers-- > 0
                ? ScriptedReply::json("[]")
                : ScriptedReply::json(
                    R"({"_id":"r","savedChunk":4,"totalChunk":4,"fsFileId":"f"})");
        if (request.verb == "POST")
            return ScriptedReply::json(
                R"({"_id":"d","name":"a","type":"file","fileId":"f","file":{"fileId":"f","fileSize":13000000},"fileSize":13000000})");
        return ScriptedReply::json(request.target.contains("base-service") ? "{}" : "[]",
                                   request.target.contains("base-service") ? 404 : 200);
    });
    VellSession session;
    VellConnection connection;
    connection.address = server.baseApi();
    session.open(connection);
    session.openProject(QStringLiteral("p1"));
    VellDocuments documents(&session);
    VellTransferQueue queue;
    queue.attach(&documents);
    const QSignalSpy ends(&queue, &VellTransferQueue::ended);
    const TransferWorld files;
    const qint64 id = queue.upload(files.makeFile(QStringLiteral("a"), LargeBytes), {});
    QTRY_COMPARE_WITH_TIMEOUT(ends.size(), 1, WaitMs);
    NetworkSettings::instance().setStallTimeout(std::chrono::seconds(30));
    QCOMPARE(queue.transfer(id).state, State::Done);
    QCOMPARE(queue.transfer(id).documentId, QStringLiteral("d"));
    QVERIFY(silentAnswers < 0);
}

void TestTransferCommands::aChunkThatIsForgottenAgainAndAgainEndsAnAttempt()
{
    TransferWorld world;
    FaultRule forget;
    forget.kind = FaultRule::Kind::ForgetChunk;
    forget.times = 20;
    world.service.addFault(forget);
    bool isUnclear = false;
    const qint64 id = world.queue.upload(world.makeFile(QStringLiteral("a"), LargeBytes), {});
    connect(&world.queue, &VellTransferQueue::changed, this, [&] {
        isUnclear = isUnclear || world.queue.transfer(id).error.kind == VellError::Kind::Unclear;
    });
    QVERIFY(world.waitForState(id, State::Done));
    QVERIFY(isUnclear);
    QCOMPARE(world.endCounts.value(id), 1);
}

void TestTransferCommands::removedTransfersAreForgotten()
{
    TransferWorld world;
    QVector<qint64> removed;
    connect(&world.queue, &VellTransferQueue::removed, this,
            [&removed](const QVector<qint64> &ids) { removed += ids; });
    const qint64 one = world.queue.upload(world.makeFile(QStringLiteral("a"), 10), {});
    QVERIFY(!world.queue.remove(one));
    QVERIFY(world.waitForState(one, State::Done));
    const qint64 other = world.queue.upload(world.path(QStringLiteral("nothing")), {});
    QCOMPARE(world.waitFor(other).state, State::Failed);
    QVERIFY(world.queue.remove(one));
    QCOMPARE(world.queue.transfer(one).id, qint64(0));
    world.queue.removeEnded();
    QTRY_COMPARE_WITH_TIMEOUT(world.queue.count(), 0, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(removed, QVector<qint64>({one, other}), WaitMs);
    QCOMPARE(world.queue.totals().totalBytes, qint64(0));
}

void TestTransferCommands::theQueueMayBeDeletedInItsSignals()
{
    ClientWorld service;
    const TransferWorld files;
    const QString path = files.makeFile(QStringLiteral("a"), 10);
    for (const bool isCancelled : {false, true}) {
        auto *const queue = new VellTransferQueue;
        QPointer<VellTransferQueue> left(queue);
        queue->attach(&service.documents);
        connect(queue, &VellTransferQueue::ended, this, [queue] { delete queue; });
        for (int i = 0; i < 10; ++i)
            queue->upload(path, {}, Policy::KeepBoth);
        if (isCancelled)
            queue->cancelAll();
        QTRY_VERIFY_WITH_TIMEOUT(!left, WaitMs);
    }
}

void TestTransferCommands::manyTransfersEndOnce()
{
    constexpr int Count = 20'000;
    TransferWorld world;
    FaultRule stall;
    stall.kind = FaultRule::Kind::Stall;
    stall.times = 0;
    world.service.addFault(stall);
    const QString path = world.makeFile(QStringLiteral("a"), 10);
    const int batch = world.queue.addBatch(Policy::KeepBoth);
    const QSignalSpy changes(&world.queue, &VellTransferQueue::changed);
    QSignalSpy idle(&world.queue, &VellTransferQueue::idle);
    for (int i = 0; i < Count; ++i)
        world.queue.upload(path, QString::number(i), batch);
    QCOMPARE(world.queue.count(), Count);
    QTRY_VERIFY_WITH_TIMEOUT(world.queue.totals().count(State::Sending) > 0, WaitMs);
    world.queue.pauseAll();
    QTRY_COMPARE_WITH_TIMEOUT(world.queue.totals().count(State::Paused), Count, WaitMs);
    world.queue.resumeAll();
    QTRY_COMPARE_WITH_TIMEOUT(world.queue.totals().count(State::Paused), 0, WaitMs);
    world.queue.cancelAll();
    QTRY_COMPARE_WITH_TIMEOUT(world.queue.totals().count(State::Cancelled), Count, WaitMs);
    QCOMPARE(world.endCounts.size(), Count);
    for (const int count : qAsConst(world.endCounts))
        QCOMPARE(count, 1);
    QTRY_VERIFY_WITH_TIMEOUT(!idle.isEmpty(), WaitMs);
    // Not one for each.
    QVERIFY(changes.size() < Count / 10);
}

void TestTransferCommands::aLimitHoldsBackWhatIsSent()
{
    TransferWorld world;
    world.queue.setSpeedLimits(1'000'000, 0);
    QElapsedTimer clock;
    clock.start();
    const qint64 id = world.queue.upload(world.makeFile(QStringLiteral("a"), 10'000'000), {});
    QCOMPARE(world.waitFor(id).state, State::Done);
    // The first seconds are not exact.
    constexpr int LeastMs = 3000;
    QVERIFY2(clock.elapsed() > LeastMs, qPrintable(QString::number(clock.elapsed())));
}

void TestTransferCommands::soManyRunAtOnce()
{
    TransferWorld world;
    FaultRule stall;
    stall.kind = FaultRule::Kind::Stall;
    stall.times = 0;
    stall.pathPrefix = QStringLiteral("/base-service/files");
    world.service.addFault(stall);
    world.queue.setTransfersAtOnce(7);
    for (int i = 0; i < 20; ++i)
        world.queue.upload(world.makeFile(QString::number(i), 100, i), QString());
    QTRY_COMPARE_WITH_TIMEOUT(world.queue.totals().count(State::Sending), 7, WaitMs);
    world.queue.cancelAll();
}

QTEST_GUILESS_MAIN(TestTransferCommands)
#include "tst_transfer_commands.moc"
