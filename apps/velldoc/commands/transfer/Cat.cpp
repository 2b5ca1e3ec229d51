#include <velldoc/commands/Commands.h>
#include <velldoc/documents/RemotePatterns.h>
#include <velldoc/documents/Versions.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>
#include <velldoc/transfer/ContentStream.h>
#include <velldoc/transfer/DownloadPlan.h>

#include <QFile>

namespace velldoc {

namespace {

void run(Context &context)
{
    const QList<NamedDocument> files = namedDocuments(context, context.arguments(1));
    QFile output;
    prepareStandardOutput(context, output);
    for (const NamedDocument &named : files) {
        if (isFolder(named.document))
            throw Failure(ExitFailed,
                          Text::tr("%1 is a folder: name files.").arg(named.path.text()));
        DownloadTask task;
        task.document = named.document;
        const int version = context.versionNumber();
        if (version > 0) {
            const VellDocument content = versionOf(context.session(), task.document, version);
            task.isVersion = true;
            task.document.fileId = content.fileId;
            task.document.fileSize = content.fileSize;
        }
        if (!streamContent(context, task, output)) {
            Output::noteReaderGone();
            return;
        }
    }
}

} // namespace

const Command &catCommand()
{
    static const Command command{
        "cat",
        "PATH...",
        QT_TRANSLATE_NOOP("velldoc", "print the contents of files"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Writes the contents of the files PATH to the standard output, one after the other."),
        {{"version", "N", QT_TRANSLATE_NOOP("velldoc", "Version N of the file; 1 is the oldest.")},
         {"f,force", nullptr,
          QT_TRANSLATE_NOOP("velldoc", "Write contents that are not text to a terminal, too.")}},
        {{"velldoc cat /logs/today.txt | grep error",
          QT_TRANSLATE_NOOP("velldoc", "search for a text in a file")}},
        run,
    };
    return command;
}

} // namespace velldoc
