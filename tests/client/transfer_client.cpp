#include <documents/VellDocuments.h>
#include <session/VellSession.h>
#include <transfer/VellTransferQueue.h>

#include <VellNetwork/NetworkSettings.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QHash>
#include <QTimer>

#include <cstdio>

// A client that a test may kill: brings back the queue in a file, adds to it, and ends once all transfers have ended. Prints a
// line for each end, "ended STATE PATH", and "idle" at the end.

namespace {

void print(const QString &line)
{
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    for (const char *const name : {"address", "token", "queue", "add", "fetch", "into", "limit"})
        parser.addOption(
            {QString::fromLatin1(name), QString::fromLatin1(name), QString::fromLatin1(name)});
    parser.process(application);
    const auto value = [&parser](const char *name) {
        return parser.value(QString::fromLatin1(name));
    };

    VellSession session;
    VellDocuments documents(&session);
    VellTransferQueue queue;
    QHash<qint64, int> ends;
    QObject::connect(&queue, &VellTransferQueue::ended, [&](const VellTransfer &transfer) {
        if (++ends[transfer.id] > 1)
            print(QStringLiteral("twice ") + transfer.localPath);
        print(QStringLiteral("ended %1 %2 %3")
                  .arg(int(transfer.state))
                  .arg(transfer.localPath, transfer.error.text));
    });
    bool isOpened = false;
    QObject::connect(&queue, &VellTransferQueue::opened, [&] {
        isOpened = true;
        print(QStringLiteral("opened %1").arg(queue.count()));
        if (queue.totals().openCount() == 0 && value("add").isEmpty() && value("fetch").isEmpty())
            QCoreApplication::quit();
    });
    QObject::connect(&queue, &VellTransferQueue::openFailed, [](const VellError &error) {
        print(QStringLiteral("no queue: ") + error.text);
        QCoreApplication::exit(1);
    });
    QObject::connect(&queue, &VellTransferQueue::idle, [&] {
        if (isOpened)
            QCoreApplication::quit();
    });
    const qint64 limit = value("limit").toLongLong();
    queue.setSpeedLimits(limit, limit);
    queue.open(value("queue"));
    queue.attach(&documents);
    VellConnection connection;
    connection.address = value("address");
    connection.accessToken = value("token");
    connection.proxy = NetworkSettings::noProxy();
    session.open(connection);
    // A service that is being started refuses; the next attempt may come through.
    QObject::connect(&session, &VellSession::openFailed, &session, [&] {
        constexpr int RestMs = 100;
        QTimer::singleShot(RestMs, &session, [&] {
            session.open(connection);
            session.openProject(QStringLiteral("p1"));
        });
    });
    session.openProject(QStringLiteral("p1"));
    if (!value("add").isEmpty())
        queue.upload(value("add"), {}, VellConflictPolicy::Replace);
    if (!value("fetch").isEmpty()) {
        VellDocument folder;
        folder._id = value("fetch");
        folder.name = QStringLiteral("fetched");
        folder.type = QStringLiteral("dir");
        queue.download(folder, value("into"), VellConflictPolicy::Replace);
    }
    const int code = QCoreApplication::exec();
    print(QStringLiteral("idle"));
    return code;
}
