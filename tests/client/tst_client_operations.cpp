#include <documents/VellDocumentStore.h>
#include <documents/VellDocuments.h>
#include <session/VellSession.h>
#include <support/ScriptedServer.h>

#include <VellNetwork/NetworkSettings.h>

#include <QElapsedTimer>
#include <QFutureWatcher>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <memory>

constexpr int WaitMs = 30'000;

using List = VellResult<QList<VellDocument>>;

// How operations end, are aborted and wait for one another.
class TestClientOperations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void anOperationEndsOnce();
    void aFailureHasItsReason();
    void failuresAreNotMixedUp();
    void abortEndsItAtOnce();
    void oneThatWaitsForAThreadIsAbortedAtOnce();
    void deletionIsSilent();
    void theOperationDeletesItself();
    void aFutureHasTheResult();
    void aFutureIsCancelledByAFailure();
    void aQuestionDoesNotWaitBehindStalledLists();
    void bulkWorkGoesOnAfterAFailure();
    void bulkWorkEndsWithTheConnection();
    void bulkWorkTellsItsProgress();
    void abortedBulkWorkTellsWhatWasDone();
    void theProjectIsThatOfTheCall();
    void theStoreLearnsNothingOfAnotherProject();
    void itMayBeDeletedByWhoFollowsTheStore();
    void closingEndsWhatIsUnderWay();
    void theDestructorDoesNotWaitForTheService();

private:
    ScriptedReply stalled() const
    {
        return ScriptedReply::endingAs(ScriptedReply::Ending::Withheld);
    }
    List *list() { return m_documents->list(VellDocumentConditon()); }

    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<VellSession> m_session;
    std::unique_ptr<VellDocuments> m_documents;
};

void TestClientOperations::init()
{
    m_server = std::make_unique<ScriptedServer>();
    m_server->enqueue(ScriptedReply::json(R"({"_id":"u1","name":"Ann","projects":[]})"));
    m_session = std::make_unique<VellSession>();
    m_documents = std::make_unique<VellDocuments>(m_session.get());
    QSignalSpy opened(m_session.get(), &VellSession::opened);
    VellConnection connection;
    connection.address = m_server->baseApi();
    connection.proxy = NetworkSettings::noProxy();
    m_session->open(connection);
    QVERIFY(opened.wait(WaitMs));
    m_session->openProject(QStringLiteral("p1"));
    m_server->clearRequests();
}

void TestClientOperations::cleanup()
{
    m_documents.reset();
    m_session.reset();
    m_server.reset();
}

void TestClientOperations::anOperationEndsOnce()
{
    m_server->enqueue(ScriptedReply::json(R"([{"_id":"d1","name":"a"}])"));
    List *const operation = list();
    QSignalSpy finished(operation, &VellOperation::finished);
    QSignalSpy failed(operation, &VellOperation::failed);
    QList<VellDocument> documents;
    operation->then(this, [&documents](const QList<VellDocument> &result) { documents = result; });
    QVERIFY(finished.isEmpty());
    QVERIFY(finished.wait(WaitMs));
    QTest::qWait(20);
    QCOMPARE(finished.size(), 1);
    QCOMPARE(failed.size(), 0);
    QCOMPARE(documents.size(), 1);
    QCOMPARE(documents.at(0)._id, QStringLiteral("d1"));
}

void TestClientOperations::aFailureHasItsReason()
{
    m_server->enqueue(ScriptedReply::json(R"({"error":"not yours"})", 403));
    List *const operation = list();
    QSignalSpy finished(operation, &VellOperation::finished);
    VellError error;
    operation->then(
        this, [](const QList<VellDocument> &) {}, [&error](const VellError &e) { error = e; });
    QTRY_VERIFY_WITH_TIMEOUT(bool(error), WaitMs);
    QCOMPARE(error.kind, VellError::Kind::NotAllowed);
    QCOMPARE(error.httpStatus, 403);
    QCOMPARE(error.detail, QStringLiteral("not yours"));
    QVERIFY(finished.isEmpty());
}

void TestClientOperations::failuresAreNotMixedUp()
{
    m_server->setHandler([](const ScriptedRequest &request) {
        return request.target.contains("/d1") ? ScriptedReply::json("{}", 503)
                                              : ScriptedReply::json("[]");
    });
    int failures = 0;
    int lists = 0;
    for (int i = 0; i < 10; ++i) {
        m_documents->document(QStringLiteral("d1"))
            ->then(
                this, [](const VellDocument &) {}, [&failures](const VellError &) { ++failures; });
        list()->then(this, [&lists](const QList<VellDocument> &) { ++lists; });
    }
    QTRY_COMPARE_WITH_TIMEOUT(failures + lists, 20, WaitMs);
    QCOMPARE(failures, 10);
}

void TestClientOperations::abortEndsItAtOnce()
{
    m_server->enqueue(stalled());
    List *const operation = list();
    QSignalSpy failed(operation, &VellOperation::failed);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, WaitMs);
    operation->abort();
    QVERIFY(failed.isEmpty()); // never inside the call
    QVERIFY(failed.wait(WaitMs));
    QCOMPARE(failed.at(0).at(0).value<VellError>().kind, VellError::Kind::Cancelled);
}

void TestClientOperations::oneThatWaitsForAThreadIsAbortedAtOnce()
{
    m_server->setHandler([this](const ScriptedRequest &) { return stalled(); });
    for (int i = 0; i < 8; ++i)
        list();
    List *const last = list();
    QSignalSpy failed(last, &VellOperation::failed);
    last->abort();
    QVERIFY(failed.wait(WaitMs));
    QCOMPARE(failed.size(), 1);
}

void TestClientOperations::deletionIsSilent()
{
    m_server->enqueue(stalled());
    auto *const operation = list();
    QSignalSpy failed(operation, &VellOperation::failed);
    QSignalSpy finished(operation, &VellOperation::finished);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, WaitMs);
    delete operation;
    m_server->enqueue(ScriptedReply::json("[]"));
    QSignalSpy next(list(), &VellOperation::finished);
    QVERIFY(next.wait(WaitMs));
    QVERIFY(failed.isEmpty() && finished.isEmpty());
}

void TestClientOperations::theOperationDeletesItself()
{
    m_server->enqueue(ScriptedReply::json("[]"));
    const QPointer<List> operation = list();
    QTRY_VERIFY_WITH_TIMEOUT(!operation, WaitMs);
}

void TestClientOperations::aFutureHasTheResult()
{
    m_server->enqueue(ScriptedReply::json(R"({"count":7})"));
    const QFuture<int> future = m_documents->count(VellDocumentConditon())->future();
    QFutureWatcher<int> watcher;
    QSignalSpy finished(&watcher, &QFutureWatcherBase::finished);
    watcher.setFuture(future);
    QVERIFY(!future.isFinished());
    QVERIFY(finished.wait(WaitMs));
    QCOMPARE(future.result(), 7);
}

void TestClientOperations::aFutureIsCancelledByAFailure()
{
    m_server->enqueue(ScriptedReply::json("{}", 500));
    const QFuture<int> future = m_documents->count(VellDocumentConditon())->future();
    QTRY_VERIFY_WITH_TIMEOUT(future.isFinished(), WaitMs);
    QVERIFY(future.isCanceled());
    QCOMPARE(future.resultCount(), 0);
}

void TestClientOperations::aQuestionDoesNotWaitBehindStalledLists()
{
    m_server->setHandler([this](const ScriptedRequest &request) {
        return request.target.contains("/d1") ? ScriptedReply::json(R"({"_id":"d1"})") : stalled();
    });
    for (int i = 0; i < 20; ++i)
        list();
    QTRY_VERIFY_WITH_TIMEOUT(m_server->requests().size() >= 4, WaitMs);
    QSignalSpy finished(m_documents->document(QStringLiteral("d1")), &VellOperation::finished);
    QVERIFY(finished.wait(WaitMs));
}

void TestClientOperations::bulkWorkGoesOnAfterAFailure()
{
    m_server->setHandler([](const ScriptedRequest &request) {
        return ScriptedReply::json("{}", request.target.endsWith("/d2") ? 403 : 200);
    });
    VellBulkResult result;
    bool isFinished = false;
    m_documents->remove({QStringLiteral("d1"), QStringLiteral("d2"), QStringLiteral("d3")})
        ->then(this, [&](const VellBulkResult &answer) {
            result = answer;
            isFinished = true;
        });
    QTRY_VERIFY_WITH_TIMEOUT(isFinished, WaitMs);
    QStringList succeeded = result.succeeded;
    succeeded.sort();
    QCOMPARE(succeeded, QStringList({QStringLiteral("d1"), QStringLiteral("d3")}));
    QCOMPARE(result.failed.keys(), QStringList{QStringLiteral("d2")});
    QCOMPARE(result.failed.value(QStringLiteral("d2")).kind, VellError::Kind::NotAllowed);
}

void TestClientOperations::bulkWorkEndsWithTheConnection()
{
    QStringList ids;
    for (int i = 0; i < 100; ++i)
        ids.append(QStringLiteral("d%1").arg(i));
    m_server->setHandler([](const ScriptedRequest &) {
        return ScriptedReply::endingAs(ScriptedReply::Ending::Dropped);
    });
    VellBulkResult result;
    m_documents->remove(ids)->then(this,
                                   [&result](const VellBulkResult &answer) { result = answer; });
    QTRY_COMPARE_WITH_TIMEOUT(result.failed.size(), 100, WaitMs);
    for (const VellError &error : qAsConst(result.failed))
        QCOMPARE(error.kind, VellError::Kind::Offline);
    // Those that were under way when the first failed.
    QVERIFY2(m_server->requests().size() <= 8,
             qPrintable(QString::number(m_server->requests().size())));
}

void TestClientOperations::bulkWorkTellsItsProgress()
{
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    QStringList ids;
    for (int i = 0; i < 10; ++i)
        ids.append(QStringLiteral("d%1").arg(i));
    auto *const operation = m_documents->remove(ids);
    QSignalSpy progress(operation, &VellOperation::progressed);
    QSignalSpy finished(operation, &VellOperation::finished);
    QVERIFY(finished.wait(WaitMs));
    QCOMPARE(progress.size(), 10);
    for (int i = 0; i < 10; ++i)
        QCOMPARE(progress.at(i), QVariantList({qint64(i + 1), qint64(10)}));
}

void TestClientOperations::abortedBulkWorkTellsWhatWasDone()
{
    m_server->setHandler([this](const ScriptedRequest &request) {
        return request.target.endsWith("/d0") ? ScriptedReply::json("{}") : stalled();
    });
    QStringList ids;
    for (int i = 0; i < 10; ++i)
        ids.append(QStringLiteral("d%1").arg(i));
    auto *const operation = m_documents->remove(ids);
    QSignalSpy progress(operation, &VellOperation::progressed);
    VellBulkResult result;
    operation->then(this, [&result](const VellBulkResult &answer) { result = answer; });
    QVERIFY(progress.wait(WaitMs));
    operation->abort();
    QTRY_COMPARE_WITH_TIMEOUT(result.failed.size(), 9, WaitMs);
    QCOMPARE(result.succeeded, QStringList{QStringLiteral("d0")});
    QCOMPARE(result.failed.value(QStringLiteral("d9")).kind, VellError::Kind::Cancelled);
}

void TestClientOperations::theProjectIsThatOfTheCall()
{
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("[]"); });
    List *const operation = list();
    m_session->openProject(QStringLiteral("p2"));
    QSignalSpy finished(operation, &VellOperation::finished);
    QVERIFY(finished.wait(WaitMs));
    QVERIFY(m_server->requests().at(0).target.contains("/projects/p1/"));
    QSignalSpy next(list(), &VellOperation::finished);
    QVERIFY(next.wait(WaitMs));
    QVERIFY(m_server->requests().at(1).target.contains("/projects/p2/"));
}

void TestClientOperations::theStoreLearnsNothingOfAnotherProject()
{
    m_server->setHandler(
        [](const ScriptedRequest &) { return ScriptedReply::json(R"([{"_id":"d1"}])"); });
    List *const before = list();
    m_session->openProject(QStringLiteral("p2"));
    QSignalSpy finished(before, &VellOperation::finished);
    QVERIFY(finished.wait(WaitMs));
    QVERIFY(!m_documents->store()->document(QStringLiteral("d1")));
    QSignalSpy next(list(), &VellOperation::finished);
    QVERIFY(next.wait(WaitMs));
    QVERIFY(m_documents->store()->document(QStringLiteral("d1")));
}

void TestClientOperations::itMayBeDeletedByWhoFollowsTheStore()
{
    m_server->enqueue(ScriptedReply::json(R"([{"_id":"d1"}])"));
    QPointer<List> operation = list();
    QSignalSpy finished(operation, &VellOperation::finished);
    connect(m_documents->store(), &VellDocumentStore::documentsChanged, operation,
            [&operation] { delete operation; });
    QTRY_VERIFY_WITH_TIMEOUT(!operation, WaitMs);
    QVERIFY(finished.isEmpty());
}

void TestClientOperations::closingEndsWhatIsUnderWay()
{
    m_server->setHandler([this](const ScriptedRequest &) { return stalled(); });
    QSignalSpy failed(list(), &VellOperation::failed);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, WaitMs);
    m_session->close();
    QVERIFY(failed.wait(WaitMs));
    QCOMPARE(failed.at(0).at(0).value<VellError>().kind, VellError::Kind::Cancelled);
    QCOMPARE(m_session->state(), VellSession::State::Closed);
}

void TestClientOperations::theDestructorDoesNotWaitForTheService()
{
    m_server->setHandler([this](const ScriptedRequest &) { return stalled(); });
    for (int i = 0; i < 20; ++i)
        list();
    m_documents->remove({QStringLiteral("d1"), QStringLiteral("d2")});
    QTRY_VERIFY_WITH_TIMEOUT(m_server->requests().size() >= 6, WaitMs);
    QElapsedTimer timer;
    timer.start();
    m_documents.reset();
    m_session.reset();
    // Without the abort it would be the 30 s of the time-out.
    QVERIFY2(timer.elapsed() < 10'000, qPrintable(QString::number(timer.elapsed())));
}

QTEST_GUILESS_MAIN(TestClientOperations)
#include "tst_client_operations.moc"
