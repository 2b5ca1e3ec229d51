#include <velldoc/transfer/DownloadRun.h>

#include <velldoc/output/HumanText.h>
#include <velldoc/output/Json.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>
#include <velldoc/transfer/ContentStream.h>
#include <velldoc/transfer/DownloadPlan.h>
#include <velldoc/transfer/Transfers.h>

#include <QFile>
#include <QHash>
#include <QScopeGuard>

#include <optional>

namespace velldoc {

namespace {

//! \brief The results for the files of one command.
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
        if (context.verbosity() > 0)
            context.out.printName(task.localPath);
    }

    void addFailed(const QString &path, const Failure &failure)
    {
        failed.append(QJsonObject{{QStringLiteral("local"), path},
                                  {QStringLiteral("message"), failure.sentence()}});
        if (!firstFailure)
            firstFailure = failure;
    }
};

//! Returns \a failure with the number of downloaded files and how to continue.
Failure unfinished(const Failure &failure, int doneCount, int count)
{
    if (count == 1 && !isInterruption(failure.code()))
        return failure;
    QStringList sentences{failure.sentence()};
    if (count > 1)
        sentences.append(
            Text::tr("%1 of %n file(s) have been downloaded.", nullptr, count).arg(doneCount));
    sentences.append(Text::tr("The same command continues from here."));
    return {failure.code(), joinedSentences(sentences), failure.httpStatus()};
}

void throwFirstFailure(Context &context, const DownloadPlan &plan, const Report &report)
{
    if (!report.firstFailure)
        return;
    if (plan.tasks().size() == 1 && plan.unwritable().isEmpty())
        throw Failure(*report.firstFailure);
    for (const QJsonValue &value : report.failed) {
        const QJsonObject entry = value.toObject();
        context.out.error(Text::tr("%1 was not downloaded: %2")
                              .arg(entry.value(QLatin1String("local")).toString(),
                                   entry.value(QLatin1String("message")).toString()));
    }
    throw Failure(report.firstFailure->code(),
                  Text::tr("%n file(s) could not be downloaded.", nullptr, report.failed.size()));
}

//! Writes to devices and pipes, one after the other.
void streamAll(Context &context, const DownloadPlan &plan, Report &report)
{
    for (const DownloadTask &task : plan.tasks()) {
        if (!task.isStream)
            continue;
        QFile device(task.localPath);
        if (!device.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
            || !streamContent(context, task, device)) {
            report.addFailed(
                task.localPath,
                {ExitFailed,
                 Text::tr("The content cannot be written: %1.").arg(device.errorString())});
            continue;
        }
        report.addFetched(context, task, task.document);
    }
}

//! Writes files.
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

} // namespace

void fetchDownloads(Context &context, const DownloadPlan &plan)
{
    Report report;
    const auto setResult = qScopeGuard([&] {
        context.out.setResult(
            {{QStringLiteral("fetched"), report.fetched},
             {QStringLiteral("skipped"), QJsonArray::fromStringList(plan.skipped())},
             {QStringLiteral("unchanged"), QJsonArray::fromStringList(plan.unchanged())},
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
        context.out.note(Text::tr("%n file(s) downloaded, %1.", nullptr, report.fetched.size())
                             .arg(sizeText(report.bytes)));
    if (!plan.unchanged().isEmpty())
        context.out.note(Text::tr("%n file(s) already existed.", nullptr, plan.unchanged().size()));
    if (!plan.skipped().isEmpty())
        context.out.note(Text::tr("%n file(s) skipped.", nullptr, plan.skipped().size()));
    throwFirstFailure(context, plan, report);
}

void showDownloads(Context &context, const DownloadPlan &plan)
{
    QJsonArray planned;
    for (const DownloadTask &task : plan.tasks()) {
        context.leaves(task.localPath);
        planned.append(QJsonObject{{QStringLiteral("local"), task.localPath},
                                   {QStringLiteral("document"), documentJson(task.document)}});
    }
    context.out.setResult({{QStringLiteral("planned"), planned}});
    context.out.note(Text::tr("%n file(s) would be downloaded, %1.", nullptr, plan.tasks().size())
                         .arg(sizeText(plan.totalBytes())));
}

} // namespace velldoc
