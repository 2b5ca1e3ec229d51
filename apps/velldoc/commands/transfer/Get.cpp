#include <velldoc/commands/Commands.h>
#include <velldoc/documents/RemotePatterns.h>
#include <velldoc/documents/Versions.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>
#include <velldoc/transfer/ContentStream.h>
#include <velldoc/transfer/DownloadPlan.h>
#include <velldoc/transfer/DownloadRun.h>
#include <velldoc/transfer/OwnTargets.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace velldoc {

namespace {

void toStandardOutput(Context &context, const DownloadTask &task)
{
    QFile output;
    prepareStandardOutput(context, output);
    if (!streamContent(context, task, output))
        Output::noteReaderGone();
}

//! Adds the documents of the command line to \a plan. \return true if the content has been written to the standard output instead
bool addSources(Context &context, const QList<NamedDocument> &sources, const QString &target,
                bool isOwn, DownloadPlan &plan)
{
    const int version = context.versionNumber();
    if ((version > 0 || target == QLatin1String("-")) && sources.size() > 1)
        throw Failure(ExitUsage, Text::tr("Name only one file."));
    for (const NamedDocument &source : sources) {
        DownloadTask task;
        task.document = source.document;
        task.isVersion = version > 0;
        if (task.isVersion) {
            const VellDocument content = versionOf(context.session(), task.document, version);
            task.document.fileId = content.fileId;
            task.document.fileSize = content.fileSize;
        }
        if (target == QLatin1String("-") && task.document.type == QLatin1String("file")) {
            toStandardOutput(context, task);
            return true;
        }
        plan.add(task.document, target, sources.size(), task.isVersion, isOwn);
    }
    plan.settle();
    return false;
}

void run(Context &context)
{
    QStringList texts = context.arguments(1);
    const OwnTargets ownTargets(context, QStringList{QStringLiteral("get")} + texts);
    const QString target =
        QDir::fromNativeSeparators(texts.size() > 1 ? texts.takeLast() : QStringLiteral("."));
    const QList<NamedDocument> sources = namedDocuments(context, texts);
    const bool isOneFolder = sources.size() == 1 && isFolder(sources.constFirst().document);
    DownloadPlan plan(context);
    if (isOneFolder && !QFileInfo::exists(target) && !context.isDryRun())
        ownTargets.noteMade({});
    const bool isOwn = isOneFolder && ownTargets.hasMade({});
    if (addSources(context, sources, target, isOwn, plan))
        return;
    if (context.isDryRun()) {
        showDownloads(context, plan);
        return;
    }
    fetchDownloads(context, plan);
}

} // namespace

const Command &getCommand()
{
    static const Command command{
        "get",
        "[-r] REMOTE... [LOCAL]",
        QT_TRANSLATE_NOOP("velldoc", "download files and folders"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Downloads each file REMOTE into the local folder LOCAL, by default the current one, "
            "or a single file to the path LOCAL; - is the standard output. A file gets its name "
            "only when it is complete. A local file that already has the content is skipped. If "
            "the same command is run again, it continues where the previous run stopped, even "
            "within a large file."),
        withTransferOptions({
            {"r,recursive", nullptr,
             QT_TRANSLATE_NOOP("velldoc", "Include folders with all their contents.")},
            {"f,force", nullptr, QT_TRANSLATE_NOOP("velldoc", "Replace existing local files.")},
            {"n,no-clobber", nullptr, QT_TRANSLATE_NOOP("velldoc", "Skip existing local files.")},
            {"version", "N",
             QT_TRANSLATE_NOOP("velldoc", "Version N of the file; 1 is the oldest.")},
        }),
        {
            {"velldoc get /Drawings/plan.dwg",
             QT_TRANSLATE_NOOP("velldoc", "into the current folder")},
            {"velldoc get -r /Drawings backup",
             QT_TRANSLATE_NOOP("velldoc", "a folder with all its contents")},
            {"velldoc get --version 2 /Drawings/plan.dwg old.dwg",
             QT_TRANSLATE_NOOP("velldoc", "an older version")},
        },
        run,
    };
    return command;
}

} // namespace velldoc
