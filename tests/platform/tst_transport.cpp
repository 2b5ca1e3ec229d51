#include "support/ScriptedServer.h"

#include <VellNetwork/AsyncNetManager.h>
#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>
#include <VellNetwork/VellBaseApi.h>

#include <QElapsedTimer>
#include <QHttpMultiPart>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QMessageLogContext>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <memory>

using Ending = ScriptedReply::Ending;
using std::chrono::milliseconds;

namespace {

enum class Verb { Get, Post, Put, Delete };

QNetworkReply *send(Verb verb, const QString &url)
{
    const QJsonObject body{{"a", 1}};
    switch (verb) {
    case Verb::Get:
        return NetworkManager::instance()->get(url);
    case Verb::Post:
        return NetworkManager::instance()->postJson(url, body);
    case Verb::Put:
        return NetworkManager::instance()->putJson(url, body);
    case Verb::Delete:
        break;
    }
    return NetworkManager::instance()->deleteResource(url);
}

//! Collects what is logged while it lives.
class LogLines
{
public:
    LogLines() : m_previous(qInstallMessageHandler(&LogLines::add)) { collectedLines.clear(); }
    ~LogLines() { qInstallMessageHandler(m_previous); }

    static const QStringList &lines() { return collectedLines; }

private:
    static void add(QtMsgType, const QMessageLogContext &context, const QString &text)
    {
        collectedLines += QLatin1String(context.category) + QLatin1String(": ") + text;
    }

    static QStringList collectedLines;
    QtMessageHandler m_previous;
};

QStringList LogLines::collectedLines;

} // namespace

Q_DECLARE_METATYPE(Verb)

//! What every request has in common: time-outs, lost connections, the token, the trace.
class TestTransport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void stallEndsWithTimeoutInBothClasses();
    void stallInTheMiddleOfAnAnswerEndsToo();
    void noTimeoutWaitsOn();
    void slowDownloadThatMovesGoesOn();
    void slowUploadThatMovesGoesOn();
    void busyThreadIsNoStall();
    void lostConnectionNeverRepeatsAChange_data();
    void lostConnectionNeverRepeatsAChange();
    void lostConnectionNeverRepeatsAForm();
    void connectionLostWhileSendingIsSaidAlike();
    void tokenGoesWithEveryRequest();
    void tlsErrorsAreNotIgnored();
    void traceIsOffByDefault();
    void traceHasOneLineWithoutSecrets();
    void traceKeepsEncodedAddresses();
    void failuresTellNoPassword();
    void baseAddressEndsWithSlash();

private:
    void waitFor(const QString &url, QNetworkReply::NetworkError expected);

    std::unique_ptr<ScriptedServer> m_server;
    QString m_url;
};

void TestTransport::init()
{
    m_server = std::make_unique<ScriptedServer>();
    m_url = m_server->baseApi() + QLatin1String("x");
    NetworkSettings::instance().setStallTimeout(milliseconds(10000));
    NetworkSettings::instance().setAccessToken(QString());
}

void TestTransport::cleanup()
{
    m_server.reset();
    QLoggingCategory::setFilterRules(QString());
}

void TestTransport::waitFor(const QString &url, QNetworkReply::NetworkError expected)
{
    NetworkEventLoop loop(NetworkManager::instance()->get(url));
    loop.exec();
    QCOMPARE(loop.error(), expected);
}

void TestTransport::stallEndsWithTimeoutInBothClasses()
{
    NetworkSettings::instance().setStallTimeout(milliseconds(200));
    m_server->setHandler(
        [](const ScriptedRequest &) { return ScriptedReply::endingAs(Ending::Withheld); });
    QElapsedTimer timer;
    timer.start();
    waitFor(m_url, QNetworkReply::TimeoutError);
    QVERIFY2(timer.elapsed() >= 190, qPrintable(QString::number(timer.elapsed())));

    AsyncNetManager manager;
    QSignalSpy typed(&manager, QOverload<QNetworkReply::NetworkError>::of(&AsyncNetManager::error));
    QSignalSpy plain(&manager, QOverload<int>::of(&AsyncNetManager::error));
    manager.get(m_url);
    QVERIFY(plain.wait());
    QCOMPARE(typed.size(), 1);
    QCOMPARE(typed.first().first().value<QNetworkReply::NetworkError>(),
             QNetworkReply::TimeoutError);
    QCOMPARE(plain.first().first().toInt(), int(QNetworkReply::TimeoutError));
}

void TestTransport::stallInTheMiddleOfAnAnswerEndsToo()
{
    NetworkSettings::instance().setStallTimeout(milliseconds(200));
    ScriptedReply reply = ScriptedReply::json("half of it");
    reply.headers.insert("Content-Length", "20");
    m_server->enqueue(reply);
    waitFor(m_url, QNetworkReply::TimeoutError);
}

void TestTransport::noTimeoutWaitsOn()
{
    NetworkSettings::instance().setStallTimeout(milliseconds(0));
    ScriptedReply reply = ScriptedReply::json("{}");
    reply.delayMs = 300;
    m_server->enqueue(reply);
    waitFor(m_url, QNetworkReply::NoError);
}

void TestTransport::slowDownloadThatMovesGoesOn()
{
    NetworkSettings::instance().setStallTimeout(milliseconds(400));
    ScriptedReply reply = ScriptedReply::json(QByteArray(1000, ' ') + "{}");
    reply.pieces = 8;
    reply.pieceDelayMs = 200;
    m_server->enqueue(reply);
    QElapsedTimer timer;
    timer.start();
    waitFor(m_url, QNetworkReply::NoError);
    QVERIFY(timer.elapsed() > 800);
}

void TestTransport::slowUploadThatMovesGoesOn()
{
    // More than the buffers of both ends hold, taken in for longer than twice the time-out.
    NetworkSettings::instance().setStallTimeout(milliseconds(1000));
    m_server->readSlowly(524288, 20);
    m_server->enqueue(ScriptedReply::json("{}"));
    QHttpPart part;
    part.setRawHeader("Content-Disposition", "form-data; name=\"file\"");
    part.setBody(QByteArray(64 * 1024 * 1024, 'c'));
    auto *body = new QHttpMultiPart(QHttpMultiPart::FormDataType);
    body->append(part);
    AsyncNetManager manager;
    QSignalSpy completed(&manager, &AsyncNetManager::netComplete);
    QSignalSpy errors(&manager, QOverload<int>::of(&AsyncNetManager::error));
    QElapsedTimer timer;
    timer.start();
    manager.post(m_url, body);
    QTRY_VERIFY_WITH_TIMEOUT(completed.size() + errors.size() > 0, 60000);
    QCOMPARE(errors.size(), 0);
    QVERIFY2(timer.elapsed() > 2000, qPrintable(QString::number(timer.elapsed())));
}

void TestTransport::busyThreadIsNoStall()
{
    // The answer comes from another thread while this one does something else for long.
    NetworkSettings::instance().setStallTimeout(milliseconds(800));
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QNetworkReply *reply =
        NetworkManager::instance()->get(QString("http://127.0.0.1:%1/").arg(server.serverPort()));
    NetworkEventLoop loop(reply);
    QTRY_VERIFY(server.hasPendingConnections());
    QThread::msleep(1600);
    QTcpSocket *socket = server.nextPendingConnection();
    QTimer::singleShot(
        100, socket, [socket] { socket->write("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}"); });
    loop.exec();
    QCOMPARE(loop.error(), QNetworkReply::NoError);
}

void TestTransport::lostConnectionNeverRepeatsAChange_data()
{
    QTest::addColumn<Verb>("verb");
    QTest::addColumn<bool>("onUsedConnection");
    QTest::newRow("POST, new connection") << Verb::Post << false;
    QTest::newRow("POST, used connection") << Verb::Post << true;
    QTest::newRow("PUT, new connection") << Verb::Put << false;
    QTest::newRow("PUT, used connection") << Verb::Put << true;
    QTest::newRow("DELETE, new connection") << Verb::Delete << false;
    QTest::newRow("DELETE, used connection") << Verb::Delete << true;
}

void TestTransport::lostConnectionNeverRepeatsAChange()
{
    QFETCH(Verb, verb);
    QFETCH(bool, onUsedConnection);
    QSignalSpy failures(NetworkManager::instance(), &NetworkManager::requestFailed);
    if (onUsedConnection) {
        m_server->enqueue(ScriptedReply::json("{}"));
        waitFor(m_url, QNetworkReply::NoError);
    }
    m_server->clearRequests();
    // Were the change repeated, it would succeed.
    m_server->enqueue(ScriptedReply::endingAs(Ending::Dropped));
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    NetworkEventLoop loop(send(verb, m_url));
    loop.exec();
    QCOMPARE(loop.error(), QNetworkReply::RemoteHostClosedError);
    QCOMPARE(m_server->requests().size(), 1);
    QCOMPARE(failures.size(), 1);
    QCOMPARE(failures.first().first().value<NetworkFailure>().message,
             QString("The connection was closed before the response arrived"));
}

void TestTransport::lostConnectionNeverRepeatsAForm()
{
    m_server->enqueue(ScriptedReply::endingAs(Ending::Dropped));
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    QHttpPart part;
    part.setRawHeader("Content-Disposition", "form-data; name=\"file\"");
    part.setBody("content");
    auto *body = new QHttpMultiPart(QHttpMultiPart::FormDataType);
    body->append(part);
    AsyncNetManager manager;
    QSignalSpy errors(&manager, QOverload<int>::of(&AsyncNetManager::error));
    manager.post(m_url, body);
    QVERIFY(errors.wait());
    QCOMPARE(errors.first().first().toInt(), int(QNetworkReply::RemoteHostClosedError));
    QCOMPARE(m_server->requests().size(), 1);
}

// It is noticed while reading or while writing.
void TestTransport::connectionLostWhileSendingIsSaidAlike()
{
    QTcpServer server;
    connect(&server, &QTcpServer::newConnection, this, [&server] {
        QTcpSocket *socket = server.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, &QTcpSocket::abort);
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    });
    QVERIFY(server.listen(QHostAddress::LocalHost));
    const QString url = QString("http://127.0.0.1:%1/x").arg(server.serverPort());
    for (int attempt = 0; attempt < 30; ++attempt) {
        QHttpPart part;
        part.setRawHeader("Content-Disposition", "form-data; name=\"file\"");
        part.setBody(QByteArray(8 * 1024 * 1024, 'c'));
        auto *body = new QHttpMultiPart(QHttpMultiPart::FormDataType);
        body->append(part);
        AsyncNetManager manager;
        QSignalSpy errors(&manager, QOverload<int>::of(&AsyncNetManager::error));
        manager.post(url, body);
        QVERIFY(errors.size() == 1 || errors.wait(20000));
        QCOMPARE(errors.first().first().toInt(), int(QNetworkReply::RemoteHostClosedError));
    }
}

void TestTransport::tokenGoesWithEveryRequest()
{
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    waitFor(m_url, QNetworkReply::NoError);
    NetworkSettings::instance().setAccessToken("t0k3n\n");
    waitFor(m_url, QNetworkReply::NoError);
    AsyncNetManager manager;
    QSignalSpy completed(&manager, &AsyncNetManager::netComplete);
    manager.post(m_url, new QHttpMultiPart(QHttpMultiPart::FormDataType));
    QVERIFY(completed.wait());
    NetworkSettings::instance().setAccessToken(QString());
    waitFor(m_url, QNetworkReply::NoError);

    QList<QByteArray> sent;
    for (const ScriptedRequest &request : m_server->requests())
        sent += request.headers.value("authorization", "none");
    QCOMPARE(sent, QList<QByteArray>({"none", "Bearer t0k3n", "Bearer t0k3n", "none"}));
}

void TestTransport::tlsErrorsAreNotIgnored()
{
    // A server that does not speak TLS.
    QString url = m_url;
    url.replace(QLatin1String("http:"), QLatin1String("https:"));
    NetworkSettings::instance().setStallTimeout(milliseconds(500));
    NetworkEventLoop loop(NetworkManager::instance()->get(url));
    loop.exec();
    QVERIFY(!loop.isSuccessful());
    QCOMPARE(m_server->requests().size(), 0);
}

void TestTransport::traceIsOffByDefault()
{
    m_server->enqueue(ScriptedReply::json("{}"));
    const LogLines log;
    waitFor(m_url, QNetworkReply::NoError);
    QCOMPARE(LogLines::lines(), QStringList());
}

void TestTransport::traceHasOneLineWithoutSecrets()
{
    QLoggingCategory::setFilterRules("vell.network=true");
    NetworkSettings::instance().setAccessToken("t0k3n");
    m_server->setHandler([](const ScriptedRequest &request) {
        return request.verb == "DELETE" ? ScriptedReply::json("", 404) : ScriptedReply::json("{}");
    });
    QString url =
        m_server->baseApi() + QLatin1String("d?pwd=%1&Password=%2&code=%3&token=%4&a=b c");
    url.replace(QLatin1String("http://"), QLatin1String("http://user:s3cret@"));
    const QString secret = "s3cret";
    const LogLines log;
    waitFor(url.arg(secret, secret, secret, secret), QNetworkReply::NoError);
    waitFor(url.arg("true", secret, secret, secret), QNetworkReply::NoError);
    NetworkEventLoop(send(Verb::Put, m_url)).exec();
    NetworkEventLoop(send(Verb::Delete, m_url)).exec();

    QCOMPARE(LogLines::lines().size(), 4);
    const QString text = LogLines::lines().join(QLatin1Char('\n'));
    QVERIFY2(!text.contains(secret) && !text.contains(QLatin1String("t0k3n")), qPrintable(text));
    const QString base = m_server->baseApi();
    const QStringList expected{"GET %1d?pwd=***&Password=***&code=***&token=***&a=b%20c 200, "
                               "0 bytes sent, 2 received, ",
                               "GET %1d?pwd=true&Password=***&code=***&token=***&a=b%20c 200, "
                               "0 bytes sent, 2 received, ",
                               "PUT %1x 200, 7 bytes sent, 2 received, ",
                               "DELETE %1x 404 ContentNotFoundError, 0 bytes sent, 0 received, "};
    for (int i = 0; i < expected.size(); ++i) {
        QString start = QLatin1String("vell.network: ") + expected.at(i);
        start.replace(QLatin1String("%1"), base);
        QVERIFY2(LogLines::lines().at(i).startsWith(start), qPrintable(LogLines::lines().at(i)));
        QVERIFY(LogLines::lines().at(i).endsWith(QLatin1String(" ms")));
    }
}

void TestTransport::traceKeepsEncodedAddresses()
{
    QLoggingCategory::setFilterRules("vell.network=true");
    m_server->enqueue(ScriptedReply::json("{}"));
    const LogLines log;
    waitFor(m_url + QLatin1String("?where={\"name\":\"5%6\"}"), QNetworkReply::NoError);
    const QString start = QString("vell.network: GET ") + m_url
        + QLatin1String("?where=%7B%22name%22%3A%225%256%22%7D 200, 0 bytes sent, 2 received, ");
    QCOMPARE(LogLines::lines().value(0).left(start.size()), start);
}

void TestTransport::failuresTellNoPassword()
{
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("", 500); });
    QSignalSpy failures(NetworkManager::instance(), &NetworkManager::requestFailed);
    QString url = m_url;
    url.replace(QLatin1String("http://"), QLatin1String("http://user:s3cret@"));
    waitFor(url, QNetworkReply::InternalServerError);
    const auto failure = failures.first().first().value<NetworkFailure>();
    QCOMPARE(failure.url, QUrl(m_url));
    QCOMPARE(failure.message, QString("The service responded with 500 Scripted"));
}

void TestTransport::baseAddressEndsWithSlash()
{
    VellBaseApi &api = VellBaseApi::GetInstance();
    QCOMPARE(api.getBaseApi(), QString());
    api.setBaseApi("http://host:8080");
    QCOMPARE(api.getBaseApi(), QString("http://host:8080/"));
    api.setBaseApi("http://host/a b/");
    QCOMPARE(VellBaseApi::GetInstance().getBaseApi(), QString("http://host/a b/"));
    api.setBaseApi(QString());
    QCOMPARE(api.getBaseApi(), QString());
}

QTEST_GUILESS_MAIN(TestTransport)

#include "tst_transport.moc"
