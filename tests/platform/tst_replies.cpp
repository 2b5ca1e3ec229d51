#include "support/ScriptedServer.h"

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <memory>

using Ending = ScriptedReply::Ending;
using std::chrono::milliseconds;

Q_DECLARE_METATYPE(ScriptedReply)

namespace {

// {"answer":42} as gzip writes it.
const QByteArray gzippedAnswer =
    QByteArray::fromHex("1f8b0800000000000203ab564acc2b2e4f2d52b23231aa0500f565d9cc0d000000");

QByteArray compact(const QList<QJsonObject> &objects)
{
    QJsonArray array;
    for (const QJsonObject &object : objects)
        array.append(object);
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

} // namespace

//! Replies of every kind, waited for with a NetworkEventLoop.
class TestReplies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void everyKindIsJudgedAndRead_data();
    void everyKindIsJudgedAndRead();
    void refusedConnectionIsAnError();
    void everyVerbSendsItsBody();
    void finishedReplyDoesNotBlock();
    void partlyReadReplyLeavesItsRest();
    void addressThatCannotBeAskedIsReportedOnce();
    void nullReplyIsFinishedWithoutSuccess();
    void replyThatSomebodyDeletesEndsTheWait();
    void exitEndsTheWaitEarly();
    void requestsMayOverlap();
    void innerWaitMayOutliveTheOuterReply();
    void repliesAreFreedWithTheirLoop();
    void thousandRequestsOfOneSlotLeaveNoReply();
    void loopDeletedByASlotOfItsReplyIsSafe();
    void loopOfARunningReplyMayBeDestroyed();
    void errorEmitComesOnceBeforeExecReturns();
    void uploadProgressIsRelayed();
    void otherThreadsMaySend();

private:
    QNetworkReply *get() { return NetworkManager::instance()->get(m_url); }

    std::unique_ptr<ScriptedServer> m_server;
    QString m_url;
};

void TestReplies::init()
{
    m_server = std::make_unique<ScriptedServer>();
    m_url = m_server->baseApi() + QLatin1String("x");
    NetworkSettings::instance().setStallTimeout(milliseconds(10000));
}

void TestReplies::cleanup()
{
    m_server.reset();
}

void TestReplies::everyKindIsJudgedAndRead_data()
{
    QTest::addColumn<ScriptedReply>("reply");
    QTest::addColumn<QNetworkReply::NetworkError>("error");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("object");
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<QString>("message");
    using Reply = QNetworkReply;
    const auto row = [](const char *name, const ScriptedReply &reply, Reply::NetworkError error,
                        const QByteArray &object = "{}", const QByteArray &list = "[]",
                        const char *message = "") {
        const bool answered = reply.ending == Ending::Complete || reply.ending == Ending::Truncated;
        QTest::newRow(name) << reply << error << (answered ? reply.status : 0) << object << list
                            << QString::fromUtf8(message);
    };
    const auto json = &ScriptedReply::json;

    row("200 with an object", json("{\"a\":1}", 200), Reply::NoError, "{\"a\":1}");
    row("201 with an object", json("{\"a\":1}", 201), Reply::NoError, "{\"a\":1}");
    row("200 with an array", json("[{\"a\":1},{\"b\":2}]", 200), Reply::NoError, "{}",
        "[{\"a\":1},{\"b\":2}]");
    row("200 with a mixed array", json("[1,{\"a\":1},null,\"b\",[{\"c\":1}],{}]", 200),
        Reply::NoError, "{}", "[{\"a\":1},{}]");
    row("200 with text", json("all is well", 200), Reply::NoError);
    row("200 with a JSON text", json("\"a\"", 200), Reply::NoError);
    row("200 with half an object", json("{\"a\":", 200), Reply::NoError);
    row("200 with nothing", json("", 200), Reply::NoError);
    row("204", json("", 204), Reply::NoError);
    row("299", json("{\"a\":1}", 299), Reply::NoError, "{\"a\":1}");
    row("304", json("", 304), Reply::ProtocolFailure, "{}", "[]",
        "The service responded with 304 Scripted");
    row("300 without an address", json("{\"a\":1}", 300), Reply::ProtocolFailure, "{\"a\":1}", "[]",
        "The service responded with 300 Scripted");
    row("400 with words", json("{\"error\":\"名称不能为空\"}", 400),
        Reply::ProtocolInvalidOperationError, "{\"error\":\"名称不能为空\"}", "[]", "名称不能为空");
    row("401", json("{\"error\":\"who?\"}", 401), Reply::AuthenticationRequiredError,
        "{\"error\":\"who?\"}", "[]", "who?");
    row("403", json("{\"count\":3}", 403), Reply::ContentAccessDenied, "{\"count\":3}", "[]",
        "The service responded with 403 Scripted");
    row("404 with an array", json("[{\"a\":1}]", 404), Reply::ContentNotFoundError, "{}",
        "[{\"a\":1}]", "The service responded with 404 Scripted");
    row("409 with nothing", json("", 409), Reply::ContentConflictError, "{}", "[]",
        "The service responded with 409 Scripted");
    row("413", json("too much", 413), Reply::UnknownContentError, "{}", "[]",
        "The service responded with 413 Scripted");
    row("500", json("{\"error\":7}", 500), Reply::InternalServerError, "{\"error\":7}", "[]",
        "The service responded with 500 Scripted");
    row("503", json("{\"error\":\"\"}", 503), Reply::ServiceUnavailableError, "{\"error\":\"\"}",
        "[]", "The service responded with 503 Scripted");
    row("truncated", ScriptedReply::endingAs(Ending::Truncated), Reply::RemoteHostClosedError, "{}",
        "[]", "The connection was closed before the end of the response");
    row("dropped", ScriptedReply::endingAs(Ending::Dropped), Reply::RemoteHostClosedError, "{}",
        "[]", "The connection was closed before the response arrived");
    row("withheld", ScriptedReply::endingAs(Ending::Withheld), Reply::TimeoutError, "{}", "[]",
        "Nothing was sent or received for too long");
    ScriptedReply compressed = json(gzippedAnswer, 200);
    compressed.headers.insert("Content-Encoding", "gzip");
    row("compressed", compressed, Reply::NoError, "{\"answer\":42}");
}

void TestReplies::everyKindIsJudgedAndRead()
{
    QFETCH(ScriptedReply, reply);
    QFETCH(QNetworkReply::NetworkError, error);
    QFETCH(int, status);
    QFETCH(QByteArray, object);
    QFETCH(QByteArray, list);
    QFETCH(QString, message);
    NetworkSettings::instance().setStallTimeout(milliseconds(200));
    m_server->setHandler([&](const ScriptedRequest &) { return reply; });
    QSignalSpy failures(NetworkManager::instance(), &NetworkManager::requestFailed);

    NetworkEventLoop loop(get());
    QSignalSpy errors(&loop, &NetworkEventLoop::errorEmit);
    QVERIFY(!loop.isFinished());
    QVERIFY(!loop.isSuccessful());
    QCOMPARE(loop.error(), QNetworkReply::NoError);
    QCOMPARE(loop.content(), QByteArray());
    QCOMPARE(loop.exec(), 0);

    QVERIFY(loop.isFinished());
    QCOMPARE(loop.isSuccessful(), error == QNetworkReply::NoError);
    QCOMPARE(loop.error(), error);
    QCOMPARE(loop.httpStatus(), status);
    QCOMPARE(QJsonDocument(loop.object()).toJson(QJsonDocument::Compact), object);
    QCOMPARE(compact(loop.objectList()), list);
    const int failed = error == QNetworkReply::NoError ? 0 : 1;
    QCOMPARE(errors.size(), failed);
    QCOMPARE(failures.size(), failed);
    if (failed == 0)
        return;
    QCOMPARE(errors.first().first().toInt(), int(error));
    const auto failure = failures.first().first().value<NetworkFailure>();
    QCOMPARE(failure.error, error);
    QCOMPARE(failure.httpStatus, status);
    QCOMPARE(failure.message, message);
    QCOMPARE(failure.url, QUrl(m_url));
}

void TestReplies::refusedConnectionIsAnError()
{
    m_server.reset();
    QSignalSpy failures(NetworkManager::instance(), &NetworkManager::requestFailed);
    NetworkEventLoop loop(get());
    loop.exec();
    QVERIFY(!loop.isSuccessful());
    QCOMPARE(loop.error(), QNetworkReply::ConnectionRefusedError);
    QCOMPARE(loop.httpStatus(), 0);
    QCOMPARE(failures.size(), 1);
    QCOMPARE(failures.first().first().value<NetworkFailure>().error,
             QNetworkReply::ConnectionRefusedError);
}

void TestReplies::everyVerbSendsItsBody()
{
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    NetworkManager *manager = NetworkManager::instance();
    const QJsonObject object{{"name", "图 1"}, {"parentId", QJsonValue()}};
    NetworkEventLoop(manager->get(m_url)).exec();
    NetworkEventLoop(manager->postJson(m_url, object)).exec();
    NetworkEventLoop(manager->putJson(m_url, object)).exec();
    NetworkEventLoop(manager->putJson(m_url, QJsonArray{object, 1})).exec();
    NetworkEventLoop(manager->deleteResource(m_url)).exec();

    const QByteArray text = "{\"name\":\"图 1\",\"parentId\":null}";
    const QList<QByteArray> verbs{"GET", "POST", "PUT", "PUT", "DELETE"};
    const QList<QByteArray> bodies{"", text, text, '[' + text + ",1]", ""};
    QCOMPARE(m_server->requests().size(), verbs.size());
    QVERIFY(m_server->hasReusedItsConnection());
    for (int i = 0; i < verbs.size(); ++i) {
        const ScriptedRequest &request = m_server->requests().at(i);
        QCOMPARE(request.verb, verbs.at(i));
        QCOMPARE(request.body, bodies.at(i));
        QCOMPARE(request.headers.value("content-type"),
                 bodies.at(i).isEmpty() ? QByteArray() : QByteArray("application/json"));
        QVERIFY(!request.headers.contains("authorization"));
    }
}

void TestReplies::finishedReplyDoesNotBlock()
{
    m_server->enqueue(ScriptedReply::json("{\"a\":1}"));
    QNetworkReply *reply = get();
    QTRY_VERIFY(reply->isFinished());
    NetworkEventLoop loop(reply);
    QVERIFY(loop.isSuccessful());
    QCOMPARE(loop.exec(), 0);
    QCOMPARE(loop.exec(), 0);
    QCOMPARE(loop.object().value(QLatin1String("a")).toInt(), 1);
}

void TestReplies::partlyReadReplyLeavesItsRest()
{
    m_server->enqueue(ScriptedReply::json("{\"a\":1}"));
    QNetworkReply *reply = get();
    QTRY_VERIFY(reply->isFinished());
    QCOMPARE(reply->read(3), QByteArray("{\"a"));
    NetworkEventLoop loop(reply);
    loop.exec();
    QCOMPARE(loop.content(), QByteArray("\":1}"));
}

void TestReplies::addressThatCannotBeAskedIsReportedOnce()
{
    QSignalSpy failures(NetworkManager::instance(), &NetworkManager::requestFailed);
    {
        NetworkEventLoop loop(NetworkManager::instance()->get(QString()));
        QSignalSpy errors(&loop, &NetworkEventLoop::errorEmit);
        loop.exec();
        QCOMPARE(errors.size(), 1);
        QCOMPARE(failures.size(), 1);
    }
    QCoreApplication::processEvents();
    QCOMPARE(failures.size(), 1);
}

void TestReplies::nullReplyIsFinishedWithoutSuccess()
{
    NetworkEventLoop loop(nullptr);
    QSignalSpy errors(&loop, &NetworkEventLoop::errorEmit);
    QVERIFY(loop.isFinished());
    QCOMPARE(loop.exec(), 0);
    QVERIFY(!loop.isSuccessful());
    QCOMPARE(loop.error(), QNetworkReply::UnknownNetworkError);
    QCOMPARE(loop.httpStatus(), 0);
    QVERIFY(loop.object().isEmpty());
    QVERIFY(loop.objectList().isEmpty());
    QCOMPARE(errors.size(), 1);
}

void TestReplies::replyThatSomebodyDeletesEndsTheWait()
{
    m_server->enqueue(ScriptedReply::endingAs(Ending::Withheld));
    QNetworkReply *reply = get();
    NetworkEventLoop loop(reply);
    QTimer::singleShot(0, reply, [reply] { delete reply; });
    loop.exec();
    QVERIFY(loop.isFinished());
    QVERIFY(!loop.isSuccessful());
}

void TestReplies::exitEndsTheWaitEarly()
{
    m_server->enqueue(ScriptedReply::endingAs(Ending::Withheld));
    QSignalSpy failures(NetworkManager::instance(), &NetworkManager::requestFailed);
    {
        NetworkEventLoop loop(get());
        QSignalSpy errors(&loop, &NetworkEventLoop::errorEmit);
        connect(m_server.get(), &ScriptedServer::requestReceived, &loop, [&] { loop.exit(3); });
        QCOMPARE(loop.exec(), 3);
        QVERIFY(!loop.isFinished());
        QVERIFY(!loop.isSuccessful());
        QCOMPARE(errors.size(), 0);
    }
    QCOMPARE(failures.size(), 0);
}

void TestReplies::requestsMayOverlap()
{
    // The outer answer comes while the inner request is waited for.
    m_server->setHandler([](const ScriptedRequest &request) {
        ScriptedReply reply = ScriptedReply::json("{\"target\":\"" + request.target + "\"}");
        reply.delayMs = request.target == "/inner" ? 100 : 0;
        return reply;
    });
    NetworkManager *manager = NetworkManager::instance();
    NetworkEventLoop outer(manager->get(m_server->baseApi() + QLatin1String("outer")));
    QString inside;
    QTimer::singleShot(0, this, [&] {
        NetworkEventLoop inner(manager->get(m_server->baseApi() + QLatin1String("inner")));
        inner.exec();
        inside = inner.object().value(QLatin1String("target")).toString();
    });
    outer.exec();
    QCOMPARE(inside, QString("/inner"));
    QCOMPARE(outer.object().value(QLatin1String("target")).toString(), QString("/outer"));
}

void TestReplies::innerWaitMayOutliveTheOuterReply()
{
    // The inner wait runs inside a slot of the outer reply itself.
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    QNetworkReply *reply = get();
    QPointer<QNetworkReply> watched(reply);
    int inner = 0;
    connect(reply, &QNetworkReply::finished, this, [&] {
        NetworkEventLoop loop(get());
        loop.exec();
        inner += loop.isSuccessful() ? 1 : 0;
    });
    {
        NetworkEventLoop loop(reply);
        loop.exec();
        QVERIFY(loop.isSuccessful());
    }
    QCOMPARE(inner, 1);
    QVERIFY(!watched);
}

void TestReplies::repliesAreFreedWithTheirLoop()
{
    m_server->enqueue(ScriptedReply::json("{}"));
    QPointer<QNetworkReply> reply = get();
    {
        NetworkEventLoop loop(reply);
        loop.exec();
        QVERIFY(reply);
    }
    QVERIFY(!reply);
}

void TestReplies::thousandRequestsOfOneSlotLeaveNoReply()
{
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    QObject *transport = nullptr;
    int left = 0;
    QEventLoop client;
    QTimer::singleShot(0, this, [&] {
        for (int i = 0; i < 1000; ++i) {
            QNetworkReply *reply = get();
            transport = reply->parent();
            NetworkEventLoop(reply).exec();
        }
        left = transport->findChildren<QNetworkReply *>().size();
        client.quit();
    });
    client.exec();
    QCOMPARE(left, 0);
    QCOMPARE(m_server->requests().size(), 1000);
    QVERIFY(m_server->hasReusedItsConnection());
}

void TestReplies::loopDeletedByASlotOfItsReplyIsSafe()
{
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}", 500); });
    QPointer<QNetworkReply> reply = get();
    auto *loop = new NetworkEventLoop(reply);
    bool keptInSlot = false;
    connect(loop, &NetworkEventLoop::errorEmit, this, [&] {
        delete loop;
        keptInSlot = reply;
    });
    QTRY_VERIFY(!reply);
    QVERIFY(keptInSlot);

    reply = get();
    keptInSlot = false;
    connect(reply, &QNetworkReply::finished, this, [&] {
        {
            NetworkEventLoop late(reply);
            late.exec();
        }
        keptInSlot = reply;
    });
    QTRY_VERIFY(!reply);
    QVERIFY(keptInSlot);
}

void TestReplies::loopOfARunningReplyMayBeDestroyed()
{
    m_server->setHandler(
        [](const ScriptedRequest &) { return ScriptedReply::endingAs(Ending::Withheld); });
    QSignalSpy failures(NetworkManager::instance(), &NetworkManager::requestFailed);
    QPointer<QNetworkReply> early = get();
    delete new NetworkEventLoop(early);
    QPointer<QNetworkReply> late = get();
    {
        NetworkEventLoop loop(late);
        QSignalSpy received(m_server.get(), &ScriptedServer::requestReceived);
        QVERIFY(received.wait());
    }
    QTRY_VERIFY(!early && !late);
    QCOMPARE(failures.size(), 0);
}

void TestReplies::errorEmitComesOnceBeforeExecReturns()
{
    m_server->enqueue(ScriptedReply::json("{\"error\":\"no\"}", 404));
    NetworkEventLoop loop(get());
    QStringList log;
    connect(NetworkManager::instance(), &NetworkManager::requestFailed, &loop,
            [&] { log += "failed"; });
    connect(&loop, &NetworkEventLoop::errorEmit, &loop,
            [&](int code) { log += QString::number(code); });
    loop.exec();
    log += "returned";
    loop.exec();
    QCOMPARE(log.join(QLatin1Char(' ')), QString("failed 203 returned"));
}

void TestReplies::uploadProgressIsRelayed()
{
    m_server->enqueue(ScriptedReply::json("{}"));
    const QJsonObject body{{"a", QString(100000, QLatin1Char('a'))}};
    NetworkEventLoop loop(NetworkManager::instance()->postJson(m_url, body));
    QSignalSpy progress(&loop, &NetworkEventLoop::uploadProgress);
    loop.exec();
    QVERIFY(!progress.isEmpty());
    const qint64 total = 100000 + 8;
    qint64 sent = 0;
    for (const QList<QVariant> &arguments : progress) {
        if (arguments.last().toLongLong() == 0)
            continue;
        QCOMPARE(arguments.last().toLongLong(), total);
        QVERIFY(arguments.first().toLongLong() >= sent);
        sent = arguments.first().toLongLong();
    }
    QCOMPARE(sent, total);
}

void TestReplies::otherThreadsMaySend()
{
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{\"a\":1}"); });
    int answer = 0;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        NetworkEventLoop loop(get());
        loop.exec();
        answer = loop.object().value(QLatin1String("a")).toInt();
    }));
    QSignalSpy finished(thread.get(), &QThread::finished);
    thread->start();
    QVERIFY(finished.wait());
    QCOMPARE(answer, 1);
}

QTEST_GUILESS_MAIN(TestReplies)

#include "tst_replies.moc"
