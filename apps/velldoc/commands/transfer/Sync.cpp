#include <velldoc/commands/Commands.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>
#include <velldoc/sync/SyncRun.h>

namespace velldoc {

namespace {

void run(Context &context)
{
    const QStringList arguments = context.arguments(3, 3);
    const bool isUp = arguments.at(0) == QLatin1String("up");
    if (!isUp && arguments.at(0) != QLatin1String("down"))
        throw Failure(
            ExitUsage,
            Text::tr("\"%1\" is not one of %2.").arg(arguments.at(0), QStringLiteral("up, down")));
    SyncRun sync(context, isUp ? VellSyncDirection::Up : VellSyncDirection::Down,
                 arguments.at(isUp ? 1 : 2), RemotePath::parse(arguments.at(isUp ? 2 : 1)));
    sync.compare();
    if (context.isDryRun())
        sync.show();
    else
        sync.execute();
}

} // namespace

const Command &syncCommand()
{
    static const Command command{
        "sync",
        "up LOCAL PATH | down PATH LOCAL",
        QT_TRANSLATE_NOOP("velldoc", "make a folder equal to another one"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Makes the folder PATH of the project equal to the local folder LOCAL (up), or the "
            "other way round (down): sends or downloads files that are missing or have changed. "
            "Files that have not changed since the last time are neither read nor transferred. "
            "Without --delete nothing is removed. On the service, removed documents are moved into "
            "the recycle bin, and replaced versions stay in the history. A local file that is "
            "newer than the document is not replaced."),
        withTransferOptions({
            {"delete", nullptr,
             QT_TRANSLATE_NOOP("velldoc",
                               "Remove entries from the target that the source does not have; if a "
                               "file was moved, move it in the target, too.")},
            {"checksum", nullptr,
             QT_TRANSLATE_NOOP("velldoc", "Compare contents, not sizes and times.")},
            {"f,force", nullptr, QT_TRANSLATE_NOOP("velldoc", "Replace newer local files, too.")},
            {"links", "WHAT",
             QT_TRANSLATE_NOOP("velldoc", "Links in folders: refuse (report them) or skip."),
             "refuse skip"},
        }),
        {
            {"velldoc sync up site /Site", QT_TRANSLATE_NOOP("velldoc", "the changes in a folder")},
            {"velldoc sync down --delete --dry-run /Site copy",
             QT_TRANSLATE_NOOP("velldoc", "the steps for an exact copy")},
        },
        run,
        {"up", "down"},
    };
    return command;
}

} // namespace velldoc
