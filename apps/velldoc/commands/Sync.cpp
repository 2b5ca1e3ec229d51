#include <velldoc/Context.h>
#include <velldoc/GlobalOptions.h>
#include <velldoc/Text.h>
#include <velldoc/commands/Commands.h>
#include <velldoc/transfer/SyncRun.h>

namespace velldoc {

namespace {

void run(Context &context)
{
    const QStringList arguments = context.arguments(3, 3);
    const bool isUp = arguments.at(0) == QLatin1String("up");
    if (!isUp && arguments.at(0) != QLatin1String("down"))
        throw Failure(
            ExitUsage,
            Text::tr("\"%1\" is none of %2.").arg(arguments.at(0), QStringLiteral("up, down")));
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
        QT_TRANSLATE_NOOP("velldoc", "make a folder like another one"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Makes the folder PATH of the project like the local folder LOCAL (up), "
                          "or the other way round "
                          "(down): sends or fetches what is missing or has been changed. What is "
                          "unchanged since the last time is neither "
                          "read nor transferred. Without --delete nothing is removed; on the "
                          "service what is removed goes into the recycle bin, and what "
                          "is replaced stays in the history. A local file that has been changed "
                          "later than the document is not replaced."),
        withTransferOptions({
            {"delete", nullptr,
             QT_TRANSLATE_NOOP(
                 "velldoc",
                 "Remove from the target what the source does not have; a file that was "
                 "moved is moved there, too.")},
            {"checksum", nullptr,
             QT_TRANSLATE_NOOP("velldoc", "Compare contents, not sizes and times.")},
            {"f,force", nullptr,
             QT_TRANSLATE_NOOP("velldoc",
                               "Replace local files that have been changed later, too.")},
            {"links", "WHAT",
             QT_TRANSLATE_NOOP("velldoc", "Links in folders: refuse (they are named) or skip."),
             "refuse skip"},
        }),
        {
            {"velldoc sync up site /Site",
             QT_TRANSLATE_NOOP("velldoc", "what has been changed in a folder")},
            {"velldoc sync down --delete --dry-run /Site copy",
             QT_TRANSLATE_NOOP("velldoc", "what an exact copy would need")},
        },
        run,
        {"up", "down"},
    };
    return command;
}

} // namespace velldoc
