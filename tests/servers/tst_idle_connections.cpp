#include "Nginx.h"

#include <VellNetwork/AsyncNetManager.h>
#include <VellNetwork/NetworkSettings.h>

#include <support/ScriptedServer.h>

#include <QJsonObject>
#include <QRandomGenerator>
#include <QSet>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

constexpr int Clients = 25;
constexpr int ChangesOfAClient = 8;
constexpr int IdleMs = 1000; // after which the servers close a connection
constexpr int SpreadMs = 60; // of the pauses around it

//! Sends changes, each a random while after the answer to the one before.
class Client : public QObject
{
    Q_OBJECT

public:
    Client(const QString &url, int number, quint32 seed)
        : m_url(url), m_number(number), m_random(seed)
    {
        connect(&m_manager, &AsyncNetManager::netComplete, this, [this] {
            ++m_done;
            goOn();
        });
        connect(&m_manager, QOverload<int>::of(&AsyncNetManager::error), this, [this](int code) {
            errors += code;
            goOn();
        });
        send();
    }

    bool isDone() const { return m_sent == ChangesOfAClient && m_done + errors.size() == m_sent; }

    QList<int> errors;

private:
    void goOn()
    {
        if (m_sent < ChangesOfAClient)
            QTimer::singleShot(IdleMs - SpreadMs + m_random.bounded(2 * SpreadMs), Qt::PreciseTimer,
                               this, &Client::send);
    }

    void send()
    {
        QJsonObject body{{"id", m_number * ChangesOfAClient + m_sent}};
        ++m_sent;
        m_manager.post(m_url, body);
    }

    const QString m_url;
    const int m_number;
    QRandomGenerator m_random;
    AsyncNetManager m_manager;
    int m_sent = 0;
    int m_done = 0;
};

} // namespace

//! Servers that close a kept-alive connection at the moment when a client uses it again.
class TestIdleConnections : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noChangeIsLostOrMadeTwice_data();
    void noChangeIsLostOrMadeTwice();
    void announcedTimesAreTrusted();
};

void TestIdleConnections::noChangeIsLostOrMadeTwice_data()
{
    QTest::addColumn<bool>("isNginx");
    QTest::newRow("nginx") << true;
    QTest::newRow("HAProxy") << false;
}

void TestIdleConnections::noChangeIsLostOrMadeTwice()
{
    QFETCH(bool, isNginx);
    const quint32 seed = QRandomGenerator::global()->generate();
    qInfo("The pauses are those of the seed %u", seed);
    ScriptedServer service;
    service.setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    const int servicePort = QUrl(service.baseApi()).port();
    Nginx nginx;
    ServerProgram haproxy;
    QString url;
    if (isNginx) {
        Nginx::Settings settings;
        settings.servicePort = quint16(servicePort);
        settings.http = "keepalive_timeout 1s;";
        QVERIFY(nginx.start(settings));
        url = nginx.baseApi();
    } else {
        const quint16 port = ServerProgram::freePort();
        const QString configuration =
            haproxy.write("haproxy.cfg",
                          "defaults\n  mode http\n  timeout connect 5s\n  timeout client 20s\n"
                          "  timeout server 20s\n  timeout http-keep-alive 1s\n"
                          "frontend f\n  bind 127.0.0.1:"
                              + QByteArray::number(port)
                              + "\n  default_backend b\nbackend b\n  server s 127.0.0.1:"
                              + QByteArray::number(servicePort) + "\n");
        QVERIFY(haproxy.start("/usr/sbin/haproxy", {"-f", configuration}, port));
        url = QString("http://127.0.0.1:%1/").arg(port);
    }

    std::vector<std::unique_ptr<Client>> clients;
    for (int i = 0; i < Clients; ++i)
        clients.push_back(std::make_unique<Client>(url, i, seed + quint32(i)));
    QTRY_VERIFY_WITH_TIMEOUT(std::all_of(clients.cbegin(), clients.cend(),
                                         [](const auto &client) { return client->isDone(); }),
                             60000);
    for (const auto &client : clients)
        QCOMPARE(client->errors, QList<int>());
    QSet<QByteArray> ids;
    for (const ScriptedRequest &request : service.requests())
        ids += request.body;
    QCOMPARE(ids.size(), Clients * ChangesOfAClient);
    QCOMPARE(service.requests().size(), ids.size());
}

void TestIdleConnections::announcedTimesAreTrusted()
{
    ScriptedServer service;
    ScriptedReply reply = ScriptedReply::json("{}");
    service.setHandler([&](const ScriptedRequest &) { return reply; });
    AsyncNetManager manager;
    QSignalSpy completed(&manager, &AsyncNetManager::netComplete);
    QJsonObject body;
    const auto changeAfterAPause = [&] {
        QTest::qWait(700);
        completed.clear();
        manager.post(service.baseApi(), body);
        return completed.wait();
    };
    manager.post(service.baseApi(), body);
    QVERIFY(completed.wait());
    QVERIFY(changeAfterAPause());
    QCOMPARE(service.connectionCount(), 2);
    reply.headers.insert("Keep-Alive", "timeout=30, max=100");
    QVERIFY(changeAfterAPause());
    QCOMPARE(service.connectionCount(), 3);
    QVERIFY(changeAfterAPause());
    QCOMPARE(service.connectionCount(), 3);
    // What only reads is sent again without harm.
    reply.headers.clear();
    QVERIFY(changeAfterAPause());
    QTest::qWait(700);
    completed.clear();
    manager.get(service.baseApi());
    QVERIFY(completed.wait());
    QCOMPARE(service.connectionCount(), 3);
}

QTEST_GUILESS_MAIN(TestIdleConnections)

#include "tst_idle_connections.moc"
