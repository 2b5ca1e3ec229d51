#include "support/ScriptedServer.h"

#include <VellNetwork/AsyncNetManager.h>
#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>

#include <QHttpMultiPart>
#include <QJsonObject>
#include <QPointer>
#include <QSignalMapper>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

using Ending = ScriptedReply::Ending;
using std::chrono::milliseconds;

Q_DECLARE_METATYPE(ScriptedReply)

namespace {

QHttpMultiPart *form(const QByteArray &content)
{
    auto *body = new QHttpMultiPart(QHttpMultiPart::FormDataType);
    QHttpPart part;
    part.setRawHeader("Content-Disposition", "form-data; name=\"file\"; filename=\"chunk\"");
    part.setBody(content);
    body->append(part);
    return body;
}

//! Writes down every signal of a manager in order.
class SignalLog : public QObject
{
public:
    explicit SignalLog(AsyncNetManager *manager)
    {
        connect(manager, &AsyncNetManager::netComplete, this,
                [this](const QByteArray &content) { entries += "complete " + content; });
        connect(manager, QOverload<QNetworkReply::NetworkError>::of(&AsyncNetManager::error), this,
                [this](QNetworkReply::NetworkError code) {
                    entries += "enum " + QByteArray::number(int(code));
                });
        connect(manager, QOverload<int>::of(&AsyncNetManager::error), this,
                [this](int code) { entries += "int " + QByteArray::number(code); });
    }

    QList<QByteArray> entries;
};

} // namespace

//! Requests that nobody waits for.
class TestAsyncNetManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void everyEndHasItsSignals_data();
    void everyEndHasItsSignals();
    void everyVerbSendsItsBody();
    void formsAreSentAndFreedBeforeTheirEndIsReported();
    void severalRequestsEndEachWithItsOwnSignals();
    void pauseIsSilentAndFreesTheReply();
    void pauseKeepsTheManagerUsable();
    void pauseInsideASignalOfAnotherRequestIsSafe();
    void deletingInFlightIsSilent();
    void deletingInsideASignalIsSafe_data();
    void deletingInsideASignalIsSafe();
    void deletingInsideRequestFailedIsSafe();
    void chainOfManagersSharesOneConnection();
    void bothClassesShareOneConnection();
    void managerMayOutliveTheThreadOfItsRequests();

private:
    std::unique_ptr<ScriptedServer> m_server;
    QString m_url;
};

void TestAsyncNetManager::init()
{
    m_server = std::make_unique<ScriptedServer>();
    m_url = m_server->baseApi() + QLatin1String("x");
    NetworkSettings::instance().setStallTimeout(milliseconds(10000));
}

void TestAsyncNetManager::cleanup()
{
    m_server.reset();
}

void TestAsyncNetManager::everyEndHasItsSignals_data()
{
    QTest::addColumn<ScriptedReply>("reply");
    QTest::addColumn<QList<QByteArray>>("expected");
    const auto row = [](const char *name, const ScriptedReply &reply, const QByteArray &log) {
        QTest::newRow(name) << reply << log.split('|');
    };
    const auto json = &ScriptedReply::json;

    row("200 with an object", json("{\"a\":1}", 200), "complete {\"a\":1}");
    row("200 with nothing", json("", 200), "complete ");
    row("200 with text", json("text", 200), "complete text");
    row("201", json("[]", 201), "complete []");
    row("204", json("", 204), "complete ");
    row("304", json("", 304), "enum 399|int 399");
    row("400", json("{}", 400), "enum 302|int 302");
    row("401", json("{}", 401), "enum 204|int 204");
    row("403", json("{}", 403), "enum 201|int 201");
    row("404", json("{}", 404), "enum 203|int 203");
    row("500", json("{}", 500), "enum 401|int 401");
    row("503", json("{}", 503), "enum 403|int 403");
    row("truncated", ScriptedReply::endingAs(Ending::Truncated), "enum 2|int 2");
    row("dropped", ScriptedReply::endingAs(Ending::Dropped), "enum 2|int 2");
    row("withheld", ScriptedReply::endingAs(Ending::Withheld), "enum 4|int 4");
}

void TestAsyncNetManager::everyEndHasItsSignals()
{
    QFETCH(ScriptedReply, reply);
    QFETCH(QList<QByteArray>, expected);
    NetworkSettings::instance().setStallTimeout(milliseconds(200));
    m_server->setHandler([&](const ScriptedRequest &) { return reply; });

    AsyncNetManager manager;
    const SignalLog log(&manager);
    manager.get(m_url);
    QTRY_COMPARE(log.entries.size(), expected.size());
    QTest::qWait(20);
    QCOMPARE(log.entries, expected);
}

void TestAsyncNetManager::everyVerbSendsItsBody()
{
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    AsyncNetManager manager;
    QSignalSpy completed(&manager, &AsyncNetManager::netComplete);
    QJsonObject body{{"name", "图 1"}};

    manager.get(m_url);
    QTRY_COMPARE(completed.size(), 1);
    manager.post(m_url, body);
    QTRY_COMPARE(completed.size(), 2);
    manager.put(m_url, body);
    QTRY_COMPARE(completed.size(), 3);

    const QList<QByteArray> verbs{"GET", "POST", "PUT"};
    for (int i = 0; i < verbs.size(); ++i) {
        const ScriptedRequest &request = m_server->requests().at(i);
        QCOMPARE(request.verb, verbs.at(i));
        QCOMPARE(request.body, i == 0 ? QByteArray() : QByteArray("{\"name\":\"图 1\"}"));
        QCOMPARE(request.headers.value("content-type"),
                 i == 0 ? QByteArray() : QByteArray("application/json"));
    }
}

void TestAsyncNetManager::formsAreSentAndFreedBeforeTheirEndIsReported()
{
    m_server->enqueue(ScriptedReply::json("{}"));
    AsyncNetManager manager;
    QSignalSpy completed(&manager, &AsyncNetManager::netComplete);
    QSignalSpy progress(&manager, &AsyncNetManager::uploadProgress);
    const QByteArray content(300000, 'c');
    const QPointer<QHttpMultiPart> body = form(content);
    const QByteArray boundary = body->boundary();
    // So that a slot which sends the next one does not have both in memory.
    bool isFreedInTime = false;
    connect(&manager, &AsyncNetManager::netComplete, this, [&] { isFreedInTime = !body; });
    manager.post(m_url, body);
    QVERIFY(completed.wait());
    QVERIFY(isFreedInTime);

    const ScriptedRequest &request = m_server->requests().first();
    QCOMPARE(request.headers.value("content-type"),
             "multipart/form-data; boundary=\"" + boundary + '"');
    QCOMPARE(request.headers.value("content-length").toInt(), request.body.size());
    QCOMPARE(request.body,
             "--" + boundary
                 + "\r\nContent-Disposition: form-data; name=\"file\"; filename=\"chunk\"\r\n\r\n"
                 + content + "\r\n--" + boundary + "--\r\n");
    bool whole = false;
    for (const QList<QVariant> &arguments : progress)
        whole = whole || arguments.first().toInt() == request.body.size();
    QVERIFY(whole);

    completed.clear();
    m_server->enqueue(ScriptedReply::json("{}"));
    manager.post(m_url, static_cast<QHttpMultiPart *>(nullptr));
    QVERIFY(completed.wait());
    QCOMPARE(m_server->requests().last().body, QByteArray());
}

void TestAsyncNetManager::severalRequestsEndEachWithItsOwnSignals()
{
    m_server->setHandler([](const ScriptedRequest &request) {
        return ScriptedReply::json(request.target, request.target == "/b" ? 404 : 200);
    });
    AsyncNetManager manager;
    SignalLog log(&manager);
    for (const char *name : {"a", "b", "c"})
        manager.get(m_server->baseApi() + QLatin1String(name));
    QTRY_COMPARE(log.entries.size(), 4);
    std::sort(log.entries.begin(), log.entries.end());
    QCOMPARE(log.entries, QList<QByteArray>({"complete /a", "complete /c", "enum 203", "int 203"}));
}

void TestAsyncNetManager::pauseIsSilentAndFreesTheReply()
{
    m_server->setHandler(
        [](const ScriptedRequest &) { return ScriptedReply::endingAs(Ending::Withheld); });
    QSignalSpy failures(NetworkManager::instance(), &NetworkManager::requestFailed);
    QSignalSpy received(m_server.get(), &ScriptedServer::requestReceived);
    AsyncNetManager manager;
    const SignalLog log(&manager);
    const QPointer<QHttpMultiPart> body = form("content");
    manager.post(m_url, body);
    manager.get(m_url);
    QTRY_COMPARE(received.size(), 2);
    manager.pause();
    manager.pause();
    QTRY_VERIFY(!body);
    QTest::qWait(20);
    QCOMPARE(log.entries, QList<QByteArray>());
    QCOMPARE(failures.size(), 0);
}

void TestAsyncNetManager::pauseKeepsTheManagerUsable()
{
    m_server->enqueue(ScriptedReply::endingAs(Ending::Withheld));
    m_server->enqueue(ScriptedReply::json("second"));
    QSignalSpy received(m_server.get(), &ScriptedServer::requestReceived);
    AsyncNetManager manager;
    const SignalLog log(&manager);
    manager.get(m_url);
    QVERIFY(received.wait());
    manager.pause();
    manager.get(m_url);
    QTRY_COMPARE(log.entries, QList<QByteArray>({"complete second"}));
}

void TestAsyncNetManager::pauseInsideASignalOfAnotherRequestIsSafe()
{
    m_server->setHandler([](const ScriptedRequest &request) {
        return request.target == "/x" ? ScriptedReply::json("x")
                                      : ScriptedReply::endingAs(Ending::Withheld);
    });
    AsyncNetManager manager;
    const SignalLog log(&manager);
    connect(&manager, &AsyncNetManager::netComplete, &manager, &AsyncNetManager::pause);
    manager.get(m_server->baseApi() + QLatin1String("withheld"));
    manager.get(m_url);
    QTRY_COMPARE(log.entries, QList<QByteArray>({"complete x"}));
    QTest::qWait(20);
    QCOMPARE(log.entries.size(), 1);
}

void TestAsyncNetManager::deletingInFlightIsSilent()
{
    m_server->setHandler(
        [](const ScriptedRequest &) { return ScriptedReply::endingAs(Ending::Withheld); });
    QSignalSpy failures(NetworkManager::instance(), &NetworkManager::requestFailed);
    QSignalSpy received(m_server.get(), &ScriptedServer::requestReceived);
    auto manager = std::make_unique<AsyncNetManager>();
    const SignalLog log(manager.get());
    const QPointer<QHttpMultiPart> body = form("content");
    manager->post(m_url, body);
    QVERIFY(received.wait());
    manager.reset();
    QTRY_VERIFY(!body);

    // Before anything of the request has gone out.
    manager = std::make_unique<AsyncNetManager>();
    manager->get(m_url);
    manager.reset();
    QTest::qWait(20);
    QCOMPARE(log.entries, QList<QByteArray>());
    QCOMPARE(failures.size(), 0);
}

void TestAsyncNetManager::deletingInsideASignalIsSafe_data()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<int>("status");
    QTest::addColumn<QList<QByteArray>>("expected");

    QTest::newRow("netComplete") << QByteArray(SIGNAL(netComplete(QByteArray))) << 200
                                 << QList<QByteArray>{"complete {}"};
    QTest::newRow("uploadProgress")
        << QByteArray(SIGNAL(uploadProgress(qint64, qint64))) << 200 << QList<QByteArray>();
    QTest::newRow("first error") << QByteArray(SIGNAL(error(QNetworkReply::NetworkError))) << 404
                                 << QList<QByteArray>{"enum 203"};
    QTest::newRow("second error") << QByteArray(SIGNAL(error(int))) << 404
                                  << QList<QByteArray>{"enum 203", "int 203"};
}

void TestAsyncNetManager::deletingInsideASignalIsSafe()
{
    QFETCH(QByteArray, signal);
    QFETCH(int, status);
    QFETCH(QList<QByteArray>, expected);
    m_server->enqueue(ScriptedReply::json("{}", status));
    m_server->setHandler(
        [](const ScriptedRequest &) { return ScriptedReply::endingAs(Ending::Withheld); });

    const QPointer<AsyncNetManager> manager = new AsyncNetManager;
    const SignalLog log(manager);
    QSignalMapper deleter;
    connect(manager, signal.constData(), &deleter, SLOT(map()));
    deleter.setMapping(manager, manager);
    connect(&deleter, &QSignalMapper::mappedObject, this, [](QObject *object) { delete object; });
    manager->post(m_url, form(QByteArray(300000, 'c')));
    QTRY_VERIFY(!manager);
    QTest::qWait(20);
    QCOMPARE(log.entries, expected);
}

void TestAsyncNetManager::deletingInsideRequestFailedIsSafe()
{
    m_server->enqueue(ScriptedReply::json("{}", 500));
    const QPointer<AsyncNetManager> manager = new AsyncNetManager;
    const SignalLog log(manager);
    connect(NetworkManager::instance(), &NetworkManager::requestFailed, manager,
            [&manager] { delete manager; });
    manager->get(m_url);
    QTRY_VERIFY(!manager);
    QTest::qWait(20);
    QCOMPARE(log.entries, QList<QByteArray>());
}

void TestAsyncNetManager::chainOfManagersSharesOneConnection()
{
    // Each chunk goes through a manager of its own, made inside the signal of the one before.
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    AsyncNetManager *manager = nullptr;
    int sent = 0;
    std::function<void()> sendNext = [&] {
        delete std::exchange(manager, nullptr);
        if (sent == 64)
            return;
        ++sent;
        manager = new AsyncNetManager;
        connect(manager, &AsyncNetManager::netComplete, manager, [&] { sendNext(); });
        manager->post(m_url, form(QByteArray(100000, 'c')));
    };
    sendNext();
    QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 64, 30000);
    QTRY_VERIFY(!manager);
    QVERIFY(m_server->hasReusedItsConnection());
}

void TestAsyncNetManager::bothClassesShareOneConnection()
{
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    for (int i = 0; i < 3; ++i) {
        NetworkEventLoop loop(NetworkManager::instance()->get(m_url));
        loop.exec();
        AsyncNetManager manager;
        QSignalSpy completed(&manager, &AsyncNetManager::netComplete);
        manager.get(m_url);
        QVERIFY(completed.wait());
    }
    QCOMPARE(m_server->requests().size(), 6);
    QVERIFY(m_server->hasReusedItsConnection());
}

void TestAsyncNetManager::managerMayOutliveTheThreadOfItsRequests()
{
    m_server->enqueue(ScriptedReply::endingAs(Ending::Withheld));
    AsyncNetManager *manager = nullptr;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        manager = new AsyncNetManager;
        manager->get(m_url);
    }));
    thread->start();
    QVERIFY(thread->wait());
    // The thread's replies have gone with it.
    delete manager;
}

QTEST_GUILESS_MAIN(TestAsyncNetManager)

#include "tst_async_net_manager.moc"
