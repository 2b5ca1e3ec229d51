#include <documents/VellDocuments.h>
#include <session/VellSession.h>
#include <transfer/VellTransferQueue.h>

#include <VellNetwork/NetworkSettings.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <cstdio>
#include <functional>

// What a queue of 100,000 uploads costs: memory, the longest time in which the user-interface thread does nothing else, and the
// time from a command for all to the last byte on the wire.
//   bench_transfer_queue [COUNT]

namespace {

constexpr double MsPerNs = 1e-6;

//! A service that takes in what comes and answers only what a session asks.
class Sink : public QTcpServer
{
public:
    Sink()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *const socket = nextPendingConnection()) {
                ++openCount;
                connect(socket, &QTcpSocket::readyRead, this, [this, socket] { take(socket); });
                connect(socket, &QTcpSocket::disconnected, this, [this] { --openCount; });
            }
        });
    }

    std::atomic<int> openCount{0};
    std::atomic<qint64> lastByteNs{0};
    QElapsedTimer clock;

private:
    void take(QTcpSocket *socket)
    {
        constexpr qint64 MostBytes = 4096;
        const QByteArray bytes = socket->read(MostBytes);
        lastByteNs = clock.nsecsElapsed();
        if (!bytes.startsWith("GET "))
            return;
        const QByteArray body =
            bytes.contains("base-service/me") ? R"({"_id":"u","name":"u","projects":[]})" : "[]";
        socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: "
                      + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    }
};

double residentMib()
{
    constexpr double PagesPerMib = 256;
    QFile statm(QStringLiteral("/proc/self/statm"));
    return statm.open(QIODevice::ReadOnly)
        ? statm.readAll().split(' ').value(1).toDouble() / PagesPerMib
        : 0;
}

void runUntil(const std::function<bool()> &condition)
{
    while (!condition())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    constexpr int UsualCount = 100'000;
    const int count = arguments.size() > 1 ? arguments.at(1).toInt() : UsualCount;
    const QTemporaryDir folder;

    QThread serverThread;
    Sink *sink = nullptr;
    QObject context;
    context.moveToThread(&serverThread);
    serverThread.start();
    QMetaObject::invokeMethod(
        &context,
        [&] {
            sink = new Sink;
            sink->clock.start();
        },
        Qt::BlockingQueuedConnection);

    VellSession session;
    VellConnection connection;
    connection.address = QStringLiteral("http://127.0.0.1:%1/").arg(sink->serverPort());
    connection.proxy = NetworkSettings::noProxy();
    session.open(connection);
    session.openProject(QStringLiteral("p1"));
    VellDocuments documents(&session);
    runUntil([&] { return session.state() == VellSession::State::Online; });

    QTimer beat;
    QElapsedTimer sinceBeat;
    qint64 longestNs = 0;
    QObject::connect(&beat, &QTimer::timeout, [&] {
        longestNs = std::max(longestNs, sinceBeat.nsecsElapsed());
        sinceBeat.restart();
    });
    const auto restartBeat = [&] {
        longestNs = 0;
        sinceBeat.restart();
    };
    sinceBeat.start();
    beat.start(1);

    VellTransferQueue queue;
    queue.open(folder.filePath(QStringLiteral("queue")));
    queue.attach(&documents);
    const QString file = folder.filePath(QStringLiteral("a-drawing-with-a-usual-name.dwg"));
    QFile(file).open(QIODevice::WriteOnly);
    QFile::resize(file, 8'000'000);
    const double before = residentMib();
    const int batch = queue.addBatch(VellConflictPolicy::KeepBoth);
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < count; ++i)
        queue.upload(file, QStringLiteral("0123456789abcdef%1").arg(i / 100, 8), batch);
    std::printf("adding %d: %lld ms\n", count, static_cast<long long>(clock.elapsed()));
    runUntil([&] { return queue.totals().count(VellTransferState::Sending) == 4; });
    std::printf("memory: %.1f MiB\n", residentMib() - before);
    const qint64 sendingFrom = sink->clock.nsecsElapsed();
    runUntil([&] { return sink->lastByteNs > sendingFrom; });

    const auto measure = [&](const char *name, const std::function<void()> &command,
                             const std::function<bool()> &isDone) {
        restartBeat();
        const qint64 startNs = sink->clock.nsecsElapsed();
        command();
        const qint64 callNs = sink->clock.nsecsElapsed() - startNs;
        runUntil(isDone);
        const qint64 doneNs = sink->clock.nsecsElapsed() - startNs;
        QThread::msleep(300);
        std::printf(
            "%s: the call %.2f ms, everything %.1f ms, the last byte after %.1f ms, longest "
            "pause of the thread %.1f ms\n",
            name, double(callNs) * MsPerNs, double(doneNs) * MsPerNs,
            double(sink->lastByteNs - startNs) * MsPerNs, double(longestNs) * MsPerNs);
    };
    const auto countOf = [&queue](VellTransferState state) { return queue.totals().count(state); };
    measure(
        "pause all", [&] { queue.pauseAll(); },
        [&] { return countOf(VellTransferState::Paused) == count; });
    measure(
        "cancel all", [&] { queue.cancelAll(); },
        [&] { return countOf(VellTransferState::Cancelled) == count; });
    std::printf("memory: %.1f MiB\n", residentMib() - before);
    measure(
        "remove all", [&] { queue.removeEnded(); }, [&] { return queue.count() == 0; });

    // Quitting while a large file is hashed.
    auto *const second = new VellTransferQueue;
    second->attach(&documents);
    QFile::resize(file, Q_INT64_C(1) << 40);
    const qint64 hashing = second->upload(file, {});
    runUntil([&] { return second->transfer(hashing).doneBytes > 0; });
    clock.restart();
    delete second;
    std::printf("destroying a queue that hashes: %lld ms\n",
                static_cast<long long>(clock.elapsed()));

    QMetaObject::invokeMethod(
        &context, [&] { delete sink; }, Qt::BlockingQueuedConnection);
    serverThread.quit();
    serverThread.wait();
    return 0;
}
