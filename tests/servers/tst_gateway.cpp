#include "Nginx.h"

#include <VellNetwork/AsyncNetManager.h>
#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>

#include <support/ScriptedServer.h>

#include <QHttpMultiPart>
#include <QJsonObject>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using Ending = ScriptedReply::Ending;
using Reason = NetworkFailure::Reason;

Q_DECLARE_METATYPE(NetworkFailure::Reason)

//! A web server in front of the service: its own refusals, and what it does to responses.
class TestGateway : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void pagesOfNginxAreExplained_data();
    void pagesOfNginxAreExplained();
    void wordsOfTheServicePass();
    void compressedResponsesArriveWhole();
    void connectionsAreReusedForManyForms();

private:
    bool startNginx(const QByteArray &http, const QByteArray &location = {});

    std::unique_ptr<ScriptedServer> m_service;
    std::unique_ptr<Nginx> m_nginx;
};

void TestGateway::init()
{
    m_service = std::make_unique<ScriptedServer>();
    m_service->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    NetworkSettings::instance().setStallTimeout(std::chrono::seconds(20));
}

bool TestGateway::startNginx(const QByteArray &http, const QByteArray &location)
{
    m_nginx = std::make_unique<Nginx>();
    Nginx::Settings settings;
    settings.servicePort = quint16(QUrl(m_service->baseApi()).port());
    settings.http = http;
    settings.location = location;
    return m_nginx->start(settings);
}

void TestGateway::pagesOfNginxAreExplained_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<Reason>("reason");
    QTest::addColumn<QString>("message");
    QTest::newRow("413")
        << 413 << Reason::BodyTooLarge
        << "The server in front of the service does not accept bodies of this size (413 Request "
           "Entity Too Large); in nginx the limit is client_max_body_size";
    QTest::newRow("502") << 502 << Reason::GatewayFailed
                         << "The server in front of the service cannot reach it (502 "
                            "Bad Gateway)";
    QTest::newRow("504") << 504 << Reason::GatewayFailed
                         << "The server in front of the service cannot reach it (504 "
                            "Gateway Time-out)";
}

void TestGateway::pagesOfNginxAreExplained()
{
    QFETCH(int, status);
    QFETCH(Reason, reason);
    QFETCH(QString, message);
    QVERIFY(startNginx("client_max_body_size 1m;", "proxy_read_timeout 1s;"));
    if (status == 502)
        m_service.reset();
    else if (status == 504)
        m_service->setHandler(
            [](const ScriptedRequest &) { return ScriptedReply::endingAs(Ending::Withheld); });
    QHttpPart part;
    part.setRawHeader("Content-Disposition", "form-data; name=\"chunk\"");
    part.setBody(QByteArray((status == 413 ? 4 : 0) * 1048576 + 100, 'c'));
    auto *body = new QHttpMultiPart(QHttpMultiPart::FormDataType);
    body->append(part);

    QSignalSpy failures(NetworkManager::instance(), &NetworkManager::requestFailed);
    AsyncNetManager manager;
    QSignalSpy completed(&manager, &AsyncNetManager::netComplete);
    manager.post(m_nginx->baseApi(), body);
    QTRY_COMPARE_WITH_TIMEOUT(failures.size(), 1, 10000);
    QCOMPARE(completed.size(), 0);
    const auto failure = failures.first().first().value<NetworkFailure>();
    QCOMPARE(failure.httpStatus, status);
    QCOMPARE(failure.reason, reason);
    QCOMPARE(failure.message, message);
}

void TestGateway::wordsOfTheServicePass()
{
    QVERIFY(startNginx({}));
    m_service->enqueue(ScriptedReply::json("{\"error\":\"The name is taken.\"}", 409));
    QSignalSpy failures(NetworkManager::instance(), &NetworkManager::requestFailed);
    NetworkEventLoop loop(NetworkManager::instance()->postJson(m_nginx->baseApi(), {}));
    loop.exec();
    QCOMPARE(loop.error(), QNetworkReply::ContentConflictError);
    QCOMPARE(failures.first().first().value<NetworkFailure>().message,
             QString("The name is taken."));
}

void TestGateway::compressedResponsesArriveWhole()
{
    QVERIFY(startNginx("gzip on;\ngzip_types application/json;"));
    QByteArray list = "[";
    for (int i = 0; i < 50000; ++i)
        list += "{\"_id\":\"" + QByteArray::number(i) + "\"},";
    list.back() = ']';
    m_service->enqueue(ScriptedReply::json(list));
    QNetworkReply *reply = NetworkManager::instance()->get(m_nginx->baseApi());
    NetworkEventLoop loop(reply);
    QSignalSpy progress(reply, &QNetworkReply::downloadProgress);
    loop.exec();
    QVERIFY(loop.isSuccessful());
    QCOMPARE(reply->rawHeader("Content-Encoding"), QByteArray("gzip"));
    QCOMPARE(loop.content(), list);
    QCOMPARE(progress.last().first().toInt(), list.size());
    QCOMPARE(progress.last().last().toInt(), -1);
}

void TestGateway::connectionsAreReusedForManyForms()
{
    QVERIFY(startNginx("add_header X-Connection $connection;\nclient_max_body_size 0;"));
    QSet<QByteArray> connections;
    for (int i = 0; i < 8; ++i) {
        const QJsonObject body{{"a", QString(1048576, QLatin1Char('a'))}};
        QNetworkReply *reply = NetworkManager::instance()->postJson(m_nginx->baseApi(), body);
        NetworkEventLoop loop(reply);
        loop.exec();
        QVERIFY(loop.isSuccessful());
        connections += reply->rawHeader("X-Connection");
    }
    QCOMPARE(connections.size(), 1);
    QCOMPARE(m_service->requests().size(), 8);
}

QTEST_GUILESS_MAIN(TestGateway)

#include "tst_gateway.moc"
