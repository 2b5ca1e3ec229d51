#include <velldoc/Context.h>
#include <velldoc/Text.h>
#include <velldoc/Versions.h>
#include <velldoc/commands/Commands.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/output/Json.h>
#include <velldoc/transfer/DownloadPlan.h>
#include <velldoc/transfer/Downloader.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace velldoc {

namespace {

void toStandardOutput(Context &context, const VellDocument &document)
{
    if (context.out.isJson())
        throw Failure(ExitUsage,
                      Text::tr("The standard output holds either the content or --json."));
    Downloader downloader(context, 1, document.fileSize);
    QFile output;
    if (!output.open(stdout, QIODevice::WriteOnly))
        throw Failure(ExitFailed, Text::tr("The output could not be written."));
    downloader.fetch({document.fileId, document.fileSize, document.name}, output);
}

//! \a failure with what was done and how to go on.
Failure unfinished(const Failure &failure, int doneCount, int count)
{
    if (count == 1 && failure.code() != ExitInterrupted)
        return failure;
    if (count == 1) {
        const QString again = Text::tr("The same command fetches the file from its start.");
        return {failure.code(), failure.sentence() + QLatin1Char(' ') + again};
    }
    const QString counts = Text::tr("%1 of %n file(s) are fetched.", nullptr, count).arg(doneCount);
    const QString advice = Text::tr("The same command with --no-clobber fetches the rest.");
    return {failure.code(), QStringList{failure.sentence(), counts, advice}.join(QLatin1Char(' ')),
            failure.httpStatus()};
}

void fetchAll(Context &context, const DownloadPlan &plan)
{
    Downloader downloader(context, plan.tasks().size(), plan.totalBytes());
    QJsonArray fetched;
    const auto setResult = [&] {
        context.out.setResult(
            {{QStringLiteral("fetched"), fetched},
             {QStringLiteral("skipped"), QJsonArray::fromStringList(plan.skipped())}});
    };
    setResult();
    for (const DownloadTask &task : plan.tasks()) {
        const VellDocument &document = task.document;
        try {
            downloader.fetch({document.fileId, task.sizeBytes, document.name}, task.localPath);
        } catch (const Failure &failure) {
            throw unfinished(failure, fetched.size(), plan.tasks().size());
        }
        fetched.append(QJsonObject{{QStringLiteral("local"), task.localPath},
                                   {QStringLiteral("document"), documentJson(document)}});
        setResult();
        if (context.isSet("verbose"))
            context.out.print(task.localPath);
    }
    context.out.note(Text::tr("%n file(s) fetched, %1.", nullptr, plan.tasks().size())
                         .arg(sizeText(downloader.doneBytes())));
    if (!plan.skipped().isEmpty())
        context.out.note(Text::tr("%n file(s) skipped.", nullptr, plan.skipped().size()));
}

void run(Context &context)
{
    QStringList sources = context.arguments(1, 0);
    const QString target =
        QDir::fromNativeSeparators(sources.size() > 1 ? sources.takeLast() : QStringLiteral("."));
    const int version = context.number("version", 0);
    if ((version > 0 || target == QLatin1String("-")) && sources.size() > 1)
        throw Failure(ExitUsage, Text::tr("Name one file only."));

    DownloadPlan plan(context);
    for (const QString &source : qAsConst(sources)) {
        const RemotePath path = RemotePath::parse(source);
        VellDocument document = context.tree().find(path);
        qint64 size = document.fileSize;
        if (version > 0) {
            const VellDocument content = versionOf(context.session(), document, version);
            document.fileId = content.fileId;
            size =
                content.fileSize > 0 ? content.fileSize : -1; // histories tell no size above 2 GiB
            document.fileSize = content.fileSize;
        }
        if (target == QLatin1String("-") && document.type == QLatin1String("file")) {
            toStandardOutput(context, document);
            return;
        }
        plan.add(document, target, sources.size(), size);
    }
    fetchAll(context, plan);
}

} // namespace

const Command &getCommand()
{
    static const Command command{
        "get",
        "[-r] REMOTE... [LOCAL]",
        QT_TRANSLATE_NOOP("velldoc", "fetch files and folders"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Fetches each file REMOTE into the local folder LOCAL (here, without "
                          "one), or a single one under "
                          "the name LOCAL; - is the standard output. A file appears under its name "
                          "only when it is complete."),
        {
            {"r,recursive", nullptr,
             QT_TRANSLATE_NOOP("velldoc", "Folders as well, with everything below.")},
            {"f,force", nullptr,
             QT_TRANSLATE_NOOP("velldoc", "Replace local files that are there.")},
            {"n,no-clobber", nullptr,
             QT_TRANSLATE_NOOP("velldoc", "Skip local files that are there.")},
            {"version", "N",
             QT_TRANSLATE_NOOP("velldoc", "Version N of the file; 1 is the oldest.")},
            {"v,verbose", nullptr,
             QT_TRANSLATE_NOOP("velldoc", "Print where each file was stored.")},
        },
        {
            {"velldoc get /Drawings/plan.dwg",
             QT_TRANSLATE_NOOP("velldoc", "into the current folder")},
            {"velldoc get -r /Drawings backup",
             QT_TRANSLATE_NOOP("velldoc", "a folder with everything below")},
            {"velldoc get --version 2 /Drawings/plan.dwg old.dwg",
             QT_TRANSLATE_NOOP("velldoc", "an older version")},
        },
        run,
    };
    return command;
}

} // namespace velldoc
