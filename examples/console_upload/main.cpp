// Uploads files and folders to the top level of a project. If a name is already taken, a free name is used.
//   console_upload ADDRESS PROJECT TOKEN PATH...    (TOKEN may be empty)

#include <documents/VellDocuments.h>
#include <session/VellSession.h>
#include <transfer/VellTransferQueue.h>

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    QTextStream err(stderr);
    if (arguments.size() < 5) {
        err << "usage: console_upload ADDRESS PROJECT TOKEN PATH...\n";
        return 2;
    }

    VellSession session;
    VellDocuments documents(&session);
    VellTransferQueue queue;
    QObject::connect(&session, &VellSession::openFailed, [&](const VellError &error) {
        err << error.text << '\n';
        QCoreApplication::exit(1);
    });
    QObject::connect(&session, &VellSession::opened, [&] {
        session.openProject(arguments[2]);
        queue.attach(&documents);
        for (const QString &path : arguments.mid(4))
            queue.upload(path, QString(), VellConflictPolicy::KeepBoth);
    });
    QObject::connect(&queue, &VellTransferQueue::ended, [&](const VellTransfer &transfer) {
        err << transfer.localPath << ": " << (transfer.error ? transfer.error.text : transfer.name)
            << Qt::endl;
    });
    QObject::connect(&queue, &VellTransferQueue::idle, [&] {
        const int failed = queue.totals().count(VellTransferState::Failed);
        QCoreApplication::exit(failed > 0 ? 1 : 0);
    });

    VellConnection connection;
    connection.address = arguments[1];
    connection.accessToken = arguments[3];
    session.open(connection);
    return application.exec();
}
