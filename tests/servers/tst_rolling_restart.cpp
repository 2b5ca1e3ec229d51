#include "Haproxy.h"

#include <service/RawClient.h>
#include <support/HttpClient.h>
#include <support/ServiceProcess.h>

#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace {

constexpr int Services = 3;
constexpr int Clients = 4;
const QStringList draining{"--drain", "2"};

//! Creates a folder; the rest of the request follows after \a pauseMs.
bool makeSlowly(quint16 port, const QByteArray &name, unsigned long pauseMs = 700)
{
    RawClient client(port);
    const QByteArray request = RawClient::request(
        "POST", "/document-service/projects/p1/documents", "Content-Type: application/json\r\n",
        "{\"parentId\":null,\"type\":\"dir\",\"category\":\"c\",\"name\":\"" + name + "\"}");
    client.send(request.left(request.size() - 10));
    QThread::msleep(pauseMs);
    client.send(request.right(10));
    const RawResponse answer = client.next();
    if (answer.status != 200)
        qWarning("%d %s", answer.status, answer.body.constData());
    return answer.status == 200;
}

bool make(quint16 port, const QByteArray &name)
{
    return makeSlowly(port, name, 0);
}

} // namespace

//! Three services behind HAProxy that are restarted one after the other while clients work.
class TestRollingRestart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noRequestFails();
};

void TestRollingRestart::noRequestFails()
{
    const QTemporaryDir folder;
    std::vector<std::unique_ptr<ServiceProcess>> services;
    QList<quint16> ports;
    for (int i = 0; i < Services; ++i) {
        services.push_back(std::make_unique<ServiceProcess>(folder.filePath("data")));
        QVERIFY(services.back()->start(draining));
        ports.append(services.back()->port());
    }
    Haproxy balancer;
    QVERIFY(balancer.start(ports));

    std::atomic<bool> isOver{false};
    std::atomic<int> done{0};
    std::atomic<int> failed{0};
    std::vector<std::thread> clients;
    for (int i = 0; i < Clients; ++i) {
        clients.emplace_back([&, i] {
            for (int n = 0; !isOver; ++n) {
                const QByteArray name = QByteArray::number(i) + '-' + QByteArray::number(n);
                const bool isDone =
                    i == 0 ? makeSlowly(balancer.port(), name) : make(balancer.port(), name);
                ++(isDone ? done : failed);
            }
        });
    }
    const auto requestsOf = [](const ServiceProcess &service) {
        HttpClient client(service.baseApi());
        return client.get("metrics").body.count("method=\"POST\",status=\"2xx\"");
    };
    QStringList problems;
    for (const auto &service : services) {
        if (service->terminate() != 0 || !service->start(draining))
            problems.append("a service does not end or start");
        const bool isUsed = QTest::qWaitFor([&] { return requestsOf(*service) > 0; }, 20000);
        if (!isUsed)
            problems.append("the balancer does not find a service again");
    }
    isOver = true;
    for (std::thread &client : clients)
        client.join();
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
    QCOMPARE(failed.load(), 0);
    QVERIFY(done > 100);
}

QTEST_GUILESS_MAIN(TestRollingRestart)

#include "tst_rolling_restart.moc"
