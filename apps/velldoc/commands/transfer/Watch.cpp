#include <velldoc/commands/Commands.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>
#include <velldoc/sync/SyncRun.h>
#include <velldoc/system/Interrupt.h>

#include <QCryptographicHash>
#include <QDateTime>
#include <QDirIterator>
#include <QFileInfo>

namespace velldoc {

namespace {

constexpr std::chrono::milliseconds Interval(1000);

//! Returns a value that changes when an entry below \a root changes, also if there is no notification, as on network drives.
QByteArray stateOf(const QString &root)
{
    QStringList entries;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const QFileInfo info = it.fileInfo();
        entries.append(QStringLiteral("%1 %2 %3")
                           .arg(path, QString::number(info.isDir() ? -1 : info.size()),
                                info.isDir()
                                    ? QString()
                                    : QString::number(info.lastModified().toMSecsSinceEpoch())));
    }
    entries.sort();
    return QCryptographicHash::hash(entries.join(QLatin1Char('\n')).toUtf8(),
                                    QCryptographicHash::Md5);
}

//! Compares and transfers once. A failure is reported; the next attempt is made after the next change.
void update(Context &context, const QString &local, const RemotePath &remote)
{
    try {
        SyncRun sync(context, VellSyncDirection::Up, local, remote);
        sync.compare();
        if (sync.plan().hasChanges())
            sync.execute();
    } catch (const Failure &failure) {
        if (isInterruption(failure.code()) || failure.code() == ExitNotAllowed)
            throw;
        context.out.error(failure.sentence());
    }
}

void run(Context &context)
{
    const QStringList arguments = context.arguments(2, 2);
    const QString &local = arguments.constFirst();
    const RemotePath remote = RemotePath::parse(arguments.constLast());
    if (!QFileInfo(local).isDir())
        throw Failure(ExitNotFound, Text::tr("There is no local folder %1.").arg(local));
    if (context.isDryRun()) {
        SyncRun sync(context, VellSyncDirection::Up, local, remote);
        sync.compare();
        sync.show();
        return;
    }
    context.out.note(Text::tr("Watching %1; press Ctrl-C to stop.").arg(local));
    QByteArray done;
    QByteArray before;
    for (;;) {
        const QByteArray now = stateOf(local);
        // Not until the files have been unchanged for a moment.
        if (now != done && now == before) {
            update(context, local, remote);
            done = now;
        }
        before = now;
        Interrupt::pause(Interval);
    }
}

} // namespace

const Command &watchCommand()
{
    static const Command command{
        "watch",
        "LOCAL PATH",
        QT_TRANSLATE_NOOP("velldoc", "send the changes in a local folder"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Runs \"sync up LOCAL PATH\" now, and again one second after each change "
                          "in the local folder LOCAL, until Ctrl-C."),
        withTransferOptions({
            {"delete", nullptr,
             QT_TRANSLATE_NOOP("velldoc",
                               "Remove entries from the target that the source does not have; if a "
                               "file was moved, move it in the target, too.")},
            {"links", "WHAT",
             QT_TRANSLATE_NOOP("velldoc", "Links in folders: refuse (report them) or skip."),
             "refuse skip"},
        }),
        {{"velldoc watch plans /Drawings/plans",
          QT_TRANSLATE_NOOP("velldoc", "a folder in which somebody is working")}},
        run,
    };
    return command;
}

} // namespace velldoc
