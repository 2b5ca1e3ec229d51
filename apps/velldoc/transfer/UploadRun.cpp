#include <velldoc/transfer/UploadRun.h>

#include <velldoc/output/HumanText.h>
#include <velldoc/output/Json.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>
#include <velldoc/transfer/Transfers.h>
#include <velldoc/transfer/UploadPlan.h>

#include <QHash>

namespace velldoc {

namespace {

using Tasks = QHash<qint64, UploadTask>; // by transfer

QString actionOf(const UploadTask &task)
{
    if (task.replaced)
        return QStringLiteral("replaced");
    return task.isRenamed ? QStringLiteral("renamed") : QStringLiteral("created");
}

void report(Context &context, const UploadPlan &plan, const Transfers &transfers,
            const Tasks &tasks)
{
    QJsonArray stored;
    for (const Transfers::Done &entry : transfers.done()) {
        const UploadTask task = tasks.value(entry.id);
        stored.append(QJsonObject{
            {QStringLiteral("local"), task.localPath},
            {QStringLiteral("action"), actionOf(task)},
            {QStringLiteral("document"), documentJson(entry.document, task.remotePath)}});
        if (task.isRenamed)
            context.out.note(Text::tr("%1 is stored as %2.").arg(task.localPath, task.remotePath));
        if (context.verbosity() > 0)
            context.out.printName(task.remotePath);
    }
    QJsonArray failed;
    const auto addFailed = [&failed](const QString &path, const QString &message) {
        failed.append(
            QJsonObject{{QStringLiteral("local"), path}, {QStringLiteral("message"), message}});
    };
    for (const auto &entry : plan.unreadable()) {
        context.out.error(Text::tr("%1 was skipped: %2.").arg(entry.first, entry.second));
        addFailed(entry.first, entry.second);
    }
    for (const auto &entry : transfers.failed()) {
        const QString path = tasks.value(entry.id).localPath;
        const QString sentence = entry.reason.sentence();
        context.out.error(Text::tr("%1 was not stored: %2").arg(path, sentence));
        addFailed(path, sentence);
    }
    context.out.setResult(
        {{QStringLiteral("stored"), stored},
         {QStringLiteral("skipped"), QJsonArray::fromStringList(plan.skipped())},
         {QStringLiteral("unchanged"), QJsonArray::fromStringList(plan.unchanged())},
         {QStringLiteral("failed"), failed}});
}

void printSummary(const Context &context, const UploadPlan &plan, const Transfers &transfers)
{
    context.out.note(Text::tr("%n file(s) stored, %1.", nullptr, transfers.done().size())
                         .arg(sizeText(transfers.doneBytes())));
    if (!plan.unchanged().isEmpty())
        context.out.note(Text::tr("%n file(s) already existed.", nullptr, plan.unchanged().size()));
    if (!plan.skipped().isEmpty())
        context.out.note(Text::tr("%n file(s) skipped.", nullptr, plan.skipped().size()));
}

//! Returns \a failure with the number of stored files and, if it helps, how to continue.
Failure unfinished(const Failure &failure, const UploadPlan &plan, const Transfers &transfers)
{
    QStringList sentences{failure.sentence()};
    if (plan.tasks().size() > 1) {
        sentences.append(
            Text::tr("%1 of %n file(s) have been stored.", nullptr, plan.tasks().size())
                .arg(transfers.done().size()));
    }
    if (failure.code() != ExitNotAllowed)
        sentences.append(Text::tr("The same command continues from here."));
    return {failure.code(), joinedSentences(sentences), failure.httpStatus()};
}

void throwFirstFailure(const UploadPlan &plan, const Transfers &transfers)
{
    const int count = plan.unreadable().size() + transfers.failed().size();
    if (count == 0)
        return;
    const ExitCode code =
        plan.unreadable().isEmpty() ? transfers.failed().constFirst().reason.code() : ExitFailed;
    throw Failure(code, Text::tr("%n file(s) could not be stored.", nullptr, count));
}

} // namespace

void sendUploads(Context &context, const UploadPlan &plan)
{
    Transfers transfers(context, plan.totalBytes());
    Tasks tasks;
    for (const UploadTask &task : plan.tasks()) {
        const qint64 id = task.replaced
            ? transfers.queue().uploadVersion(task.localPath, *task.replaced)
            : transfers.queue().uploadAs(task.localPath, task.parentId, task.name,
                                         transfers.batch());
        tasks.insert(id, task);
    }
    try {
        transfers.run(plan.tasks().isEmpty() ? QString() : plan.tasks().constFirst().name);
    } catch (const Failure &failure) {
        report(context, plan, transfers, tasks);
        throw unfinished(failure, plan, transfers);
    }
    report(context, plan, transfers, tasks);
    printSummary(context, plan, transfers);
    throwFirstFailure(plan, transfers);
}

void showUploads(Context &context, const UploadPlan &plan)
{
    QJsonArray planned;
    for (const UploadTask &task : plan.tasks()) {
        context.leaves(task.remotePath);
        planned.append(QJsonObject{{QStringLiteral("local"), task.localPath},
                                   {QStringLiteral("action"), actionOf(task)},
                                   {QStringLiteral("path"), task.remotePath},
                                   {QStringLiteral("size"), task.sizeBytes}});
    }
    context.out.setResult({{QStringLiteral("planned"), planned}});
    for (const auto &entry : plan.unreadable())
        context.out.error(Text::tr("%1 was skipped: %2.").arg(entry.first, entry.second));
    context.out.note(Text::tr("%n file(s) would be stored, %1.", nullptr, plan.tasks().size())
                         .arg(sizeText(plan.totalBytes())));
}

} // namespace velldoc
