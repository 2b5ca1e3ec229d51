#include <VellNetwork/AsyncNetManager.h>
#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>
#include <VellNetwork/RequestContext.h>
#include <VellNetwork/VellBaseApi.h>
#include <support/ScriptedServer.h>

#include <QElapsedTimer>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>

#include <thread>

// Requests that belong together: settings, an end and a failure of their own.
class TestRequestContext : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aScopeHasSettingsOfItsOwn();
    void scopesMayBeNested();
    void anotherThreadIsNotInTheScope();
    void requestsUseTheTokenOfTheContext();
    void abortEndsWhatIsUnderWay_data();
    void abortEndsWhatIsUnderWay();
    void laterRequestsOfAnAbortedContextAreNotSent();
    void abortLeavesOtherRequestsAlone();
    void jobsAreAbortedToo();
    void eachContextHasItsOwnFailure();
    void aReplyMayOutliveItsContext();
    void speedLimitsHold_data();
    void speedLimitsHold();
    void theRestOfAContentIsAskedFor_data();
    void theRestOfAContentIsAskedFor();

private:
    RequestSettings settings(const QString &token = {}) const
    {
        RequestSettings settings;
        settings.baseApi = m_server->baseApi();
        settings.accessToken = token;
        settings.proxy = NetworkSettings::noProxy();
        return settings;
    }
    QString address(const QString &path) const { return m_server->baseApi() + path; }

    std::unique_ptr<ScriptedServer> m_server;
};

constexpr int WaitMs = 20'000;

void TestRequestContext::init()
{
    m_server = std::make_unique<ScriptedServer>();
    VellBaseApi::GetInstance().setBaseApi("http://process/");
    NetworkSettings::instance().setAccessToken("process");
    NetworkSettings::instance().setCaCertificates(QString());
    NetworkSettings::instance().setClientCertificate({});
    NetworkSettings::instance().setProxy(NetworkSettings::noProxy());
}

void TestRequestContext::aScopeHasSettingsOfItsOwn()
{
    QVERIFY(!RequestContext::current());
    {
        RequestSettings own;
        own.baseApi = "http://own";
        own.accessToken = "token";
        own.caCertificates = "ca.pem";
        own.clientCertificate.certificate = "client.pem";
        own.proxy = "http://proxy:1";
        RequestContext context(own);
        const RequestScope scope(context);
        QCOMPARE(RequestContext::current(), &context);
        QCOMPARE(VellBaseApi::GetInstance().getBaseApi(), QString("http://own/"));
        const NetworkSettings &network = NetworkSettings::instance();
        QCOMPARE(network.accessToken(), QString("token"));
        QCOMPARE(network.caCertificates(), QString("ca.pem"));
        QCOMPARE(network.clientCertificate().certificate, QString("client.pem"));
        QCOMPARE(network.proxy(), QString("http://proxy:1"));
    }
    QVERIFY(!RequestContext::current());
    QCOMPARE(VellBaseApi::GetInstance().getBaseApi(), QString("http://process/"));
    QCOMPARE(NetworkSettings::instance().accessToken(), QString("process"));
    QCOMPARE(NetworkSettings::instance().caCertificates(), QString());
}

void TestRequestContext::scopesMayBeNested()
{
    RequestContext outer(settings("outer"));
    RequestContext inner(settings("inner"));
    const RequestScope scope(outer);
    {
        const RequestScope nested(inner);
        QCOMPARE(NetworkSettings::instance().accessToken(), QString("inner"));
    }
    QCOMPARE(NetworkSettings::instance().accessToken(), QString("outer"));
}

void TestRequestContext::anotherThreadIsNotInTheScope()
{
    RequestContext context(settings("own"));
    const RequestScope scope(context);
    QString token;
    std::thread([&token] { token = NetworkSettings::instance().accessToken(); }).join();
    QCOMPARE(token, QString("process"));
}

void TestRequestContext::requestsUseTheTokenOfTheContext()
{
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    RequestContext context(settings("own"));
    {
        const RequestScope scope(context);
        NetworkEventLoop loop(
            NetworkManager::instance()->get(VellBaseApi::GetInstance().getBaseApi()));
        loop.exec();
        QVERIFY(loop.isSuccessful());
    }
    NetworkEventLoop loop(NetworkManager::instance()->get(address({})));
    loop.exec();
    QCOMPARE(m_server->requests().at(0).headers.value("authorization"), QByteArray("Bearer own"));
    QCOMPARE(m_server->requests().at(1).headers.value("authorization"),
             QByteArray("Bearer process"));
}

void TestRequestContext::abortEndsWhatIsUnderWay_data()
{
    QTest::addColumn<bool>("isFromAnotherThread");
    QTest::newRow("from its thread") << false;
    QTest::newRow("from another thread") << true;
}

void TestRequestContext::abortEndsWhatIsUnderWay()
{
    QFETCH(bool, isFromAnotherThread);
    m_server->enqueue(ScriptedReply::endingAs(ScriptedReply::Ending::Withheld));
    const QSignalSpy failures(NetworkManager::instance(), &NetworkManager::requestFailed);
    RequestContext context(settings());
    const RequestScope scope(context);
    connect(m_server.get(), &ScriptedServer::requestReceived, this, [&] {
        if (isFromAnotherThread)
            std::thread([&context] { context.abort(); }).join();
        else
            context.abort();
    });
    NetworkEventLoop loop(NetworkManager::instance()->get(address({})));
    QVERIFY(!context.isAborted());
    loop.exec();
    QVERIFY(context.isAborted());
    QCOMPARE(loop.error(), QNetworkReply::OperationCanceledError);
    QVERIFY(failures.isEmpty());
    QVERIFY(!context.failure());
}

void TestRequestContext::laterRequestsOfAnAbortedContextAreNotSent()
{
    RequestContext context(settings());
    context.abort();
    const RequestScope scope(context);
    NetworkEventLoop loop(NetworkManager::instance()->postJson(address({}), {}));
    QVERIFY(!loop.isFinished());
    loop.exec();
    QCOMPARE(loop.error(), QNetworkReply::OperationCanceledError);
    QCOMPARE(m_server->connectionCount(), 0);
}

void TestRequestContext::abortLeavesOtherRequestsAlone()
{
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    RequestContext aborted(settings());
    RequestContext other(settings());
    QNetworkReply *reply = nullptr;
    {
        const RequestScope scope(other);
        reply = NetworkManager::instance()->get(address({}));
    }
    NetworkEventLoop loop(reply);
    aborted.abort();
    loop.exec();
    QVERIFY(loop.isSuccessful());
}

void TestRequestContext::jobsAreAbortedToo()
{
    m_server->enqueue(ScriptedReply::endingAs(ScriptedReply::Ending::Withheld));
    RequestContext context(settings());
    AsyncNetManager manager;
    const QSignalSpy errors(&manager, QOverload<int>::of(&AsyncNetManager::error));
    {
        const RequestScope scope(context);
        manager.get(address({}));
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, WaitMs);
    context.abort();
    QTRY_COMPARE_WITH_TIMEOUT(errors.size(), 1, WaitMs);
    QCOMPARE(errors.at(0).at(0).toInt(), int(QNetworkReply::OperationCanceledError));
}

void TestRequestContext::eachContextHasItsOwnFailure()
{
    RequestContext failing(settings());
    RequestContext other(settings());
    m_server->enqueue(ScriptedReply::json(R"({"error":"no room"})", 507));
    m_server->enqueue(ScriptedReply::json("{}"));
    for (RequestContext *const context : {&failing, &other}) {
        const RequestScope scope(*context);
        NetworkEventLoop loop(NetworkManager::instance()->get(address({})));
        loop.exec();
    }
    QVERIFY(failing.failure());
    QCOMPARE(failing.failure()->httpStatus, 507);
    QCOMPARE(failing.failure()->message, QString("no room"));
    QVERIFY(!other.failure());
    failing.forgetFailure();
    QVERIFY(!failing.failure());
}

void TestRequestContext::aReplyMayOutliveItsContext()
{
    m_server->enqueue(ScriptedReply::json("{}", 500));
    QNetworkReply *reply = nullptr;
    {
        RequestContext context(settings());
        const RequestScope scope(context);
        reply = NetworkManager::instance()->get(address({}));
    }
    NetworkEventLoop loop(reply);
    loop.exec();
    QCOMPARE(loop.httpStatus(), 500);
}

void TestRequestContext::speedLimitsHold_data()
{
    QTest::addColumn<bool>("isSent");
    QTest::newRow("sent") << true;
    QTest::newRow("received") << false;
}

void TestRequestContext::speedLimitsHold()
{
    QFETCH(bool, isSent);
    constexpr int PerSecond = 2 * 1024 * 1024;
    constexpr int Bytes = 4 * PerSecond;
    m_server->enqueue(isSent ? ScriptedReply::json("{}")
                             : ScriptedReply::json(QByteArray(Bytes, 'a')));
    RequestContext context(settings());
    context.setSpeedLimits(isSent ? PerSecond : 0, isSent ? 0 : PerSecond);
    const RequestScope scope(context);
    QElapsedTimer timer;
    timer.start();
    const QJsonObject body{{"text", QString(isSent ? Bytes : 1, QLatin1Char('a'))}};
    NetworkEventLoop loop(NetworkManager::instance()->postJson(address({}), body));
    loop.exec();
    QVERIFY(loop.isSuccessful());
    // Far from exact at the beginning, and without a limit it takes some milliseconds.
    QVERIFY2(timer.elapsed() >= 1000, qPrintable(QString::number(timer.elapsed())));
}

void TestRequestContext::theRestOfAContentIsAskedFor_data()
{
    QTest::addColumn<QByteArray>("entityTag");
    QTest::newRow("of the same content") << QByteArray("\"tag\"");
    QTest::newRow("of any content") << QByteArray();
}

void TestRequestContext::theRestOfAContentIsAskedFor()
{
    QFETCH(QByteArray, entityTag);
    m_server->enqueue(ScriptedReply::json("rest", 206));
    NetworkEventLoop loop(NetworkManager::instance()->getFrom(address("f"), 5000000000, entityTag));
    loop.exec();
    QVERIFY(loop.isSuccessful());
    QCOMPARE(loop.content(), QByteArray("rest"));
    const ScriptedRequest &request = m_server->requests().at(0);
    QCOMPARE(request.verb, QByteArray("GET"));
    QCOMPARE(request.headers.value("range"), QByteArray("bytes=5000000000-"));
    QCOMPARE(request.headers.contains("if-range"), !entityTag.isEmpty());
    QCOMPARE(request.headers.value("if-range"), entityTag);
    QCOMPARE(request.headers.value("accept-encoding"), QByteArray("identity"));
}

QTEST_GUILESS_MAIN(TestRequestContext)
#include "tst_request_context.moc"
