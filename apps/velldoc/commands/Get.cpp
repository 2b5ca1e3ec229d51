#include <velldoc/Context.h>
#include <velldoc/Text.h>
#include <velldoc/Versions.h>
#include <velldoc/commands/Commands.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/output/Json.h>
#include <velldoc/transfer/ContentStream.h>
#include <velldoc/transfer/DownloadPlan.h>
#include <velldoc/transfer/Transfers.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QScopeGuard>

#include <cstdio>
#include <optional>

namespace velldoc {

namespace {

void toStandardOutput(Context &context, const DownloadTask &task)
{
    if (context.out.isJson())
        throw Failure(ExitUsage,
                      Text::tr("The standard output holds either the content or --json."));
    QFile output;
    if (!output.open(stdout, QIODevice::WriteOnly))
        throw Failure(ExitFailed, Text::tr("The output could not be written."));
    streamContent(context, task, output);
}

//! \brief What became of the files of one command.
struct Report
{
    QJsonArray fetched;
    QJsonArray failed;
    std::optional<Failure> firstFailure;
    qint64 bytes = 0;

    void addFetched(Context &context, const DownloadTask &task, const VellDocument &document)
    {
        fetched.append(QJsonObject{{QStringLiteral("local"), task.localPath},
                                   {QStringLiteral("document"), documentJson(document)}});
        bytes += qMax(qint64(0), document.fileSize);
        if (context.isSet("verbose"))
            context.out.print(task.localPath);
    }

    void addFailed(const QString &path, const Failure &failure)
    {
        failed.append(QJsonObject{{QStringLiteral("local"), path},
                                  {QStringLiteral("message"), failure.sentence()}});
        if (!firstFailure)
            firstFailure = failure;
    }
};

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

void throwFirstFailure(Context &context, const DownloadPlan &plan, const Report &report)
{
    if (!report.firstFailure)
        return;
    if (plan.tasks().size() == 1 && plan.unwritable().isEmpty())
        throw Failure(*report.firstFailure);
    for (const QJsonValue &value : report.failed) {
        const QJsonObject entry = value.toObject();
        context.out.error(Text::tr("%1 was not fetched: %2")
                              .arg(entry.value(QLatin1String("local")).toString(),
                                   entry.value(QLatin1String("message")).toString()));
    }
    throw Failure(report.firstFailure->code(),
                  Text::tr("%n file(s) could not be fetched.", nullptr, report.failed.size()));
}

//! Into devices and pipes, one after the other.
void streamAll(Context &context, const DownloadPlan &plan, Report &report)
{
    for (const DownloadTask &task : plan.tasks()) {
        if (!task.isStream)
            continue;
        QFile device(task.localPath);
        if (!device.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
            report.addFailed(
                task.localPath,
                {ExitFailed,
                 Text::tr("The content cannot be written: %1.").arg(device.errorString())});
            continue;
        }
        streamContent(context, task, device);
        report.addFetched(context, task, task.document);
    }
}

//! Into files.
void fetchAll(Context &context, const DownloadPlan &plan, Report &report)
{
    Transfers transfers(context, plan.totalBytes());
    const int batch = context.isSet("force")
        ? transfers.queue().addBatch(VellConflictPolicy::Replace)
        : transfers.batch();
    QHash<qint64, DownloadTask> tasks;
    for (const DownloadTask &task : plan.tasks()) {
        if (task.isStream)
            continue;
        const qint64 id = task.isVersion
            ? transfers.queue().downloadVersion(task.document, task.localPath, batch)
            : transfers.queue().downloadAs(task.document, task.localPath, batch);
        tasks.insert(id, task);
    }
    const auto reportEnds = qScopeGuard([&] {
        for (const Transfers::Done &entry : transfers.done())
            report.addFetched(context, tasks.value(entry.id), entry.document);
        for (const Transfers::Failed &entry : transfers.failed())
            report.addFailed(tasks.value(entry.id).localPath, entry.reason);
    });
    transfers.run(plan.tasks().isEmpty() ? QString() : plan.tasks().constFirst().document.name);
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
        DownloadTask task;
        task.document = context.tree().find(RemotePath::parse(source));
        task.isVersion = version > 0;
        if (task.isVersion) {
            const VellDocument content = versionOf(context.session(), task.document, version);
            task.document.fileId = content.fileId;
            task.document.fileSize = content.fileSize;
        }
        if (target == QLatin1String("-") && task.document.type == QLatin1String("file")) {
            toStandardOutput(context, task);
            return;
        }
        plan.add(task.document, target, sources.size(), task.isVersion);
    }

    Report report;
    const auto setResult = qScopeGuard([&] {
        context.out.setResult(
            {{QStringLiteral("fetched"), report.fetched},
             {QStringLiteral("skipped"), QJsonArray::fromStringList(plan.skipped())},
             {QStringLiteral("failed"), report.failed}});
    });
    for (const auto &entry : plan.unwritable())
        report.addFailed(entry.first, {ExitFailed, Text::tr("%1.").arg(entry.second)});
    try {
        streamAll(context, plan, report);
        fetchAll(context, plan, report);
    } catch (const Failure &failure) {
        throw unfinished(failure, report.fetched.size(), plan.tasks().size());
    }
    if (!report.firstFailure || plan.tasks().size() > 1)
        context.out.note(Text::tr("%n file(s) fetched, %1.", nullptr, report.fetched.size())
                             .arg(sizeText(report.bytes)));
    if (!plan.skipped().isEmpty())
        context.out.note(Text::tr("%n file(s) skipped.", nullptr, plan.skipped().size()));
    throwFirstFailure(context, plan, report);
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
