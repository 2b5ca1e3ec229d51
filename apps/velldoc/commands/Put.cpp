#include <velldoc/Context.h>
#include <velldoc/Text.h>
#include <velldoc/commands/Commands.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/output/Json.h>
#include <velldoc/transfer/Transfers.h>
#include <velldoc/transfer/UploadPlan.h>

#include <QDir>
#include <QFileInfo>
#include <QHash>

namespace velldoc {

namespace {

struct Target
{
    VellDocument folder;
    RemotePath path;
    QString name; //!< empty: each source keeps its own
};

//! As cp does: into a folder that is there, else a single source takes the last name.
Target findTarget(Context &context, const QString &text, int sourceCount)
{
    const RemotePath path = RemotePath::parse(text);
    const std::optional<VellDocument> there = context.tree().tryFind(path);
    if (there && isFolder(*there))
        return {*there, path, {}};
    if (sourceCount == 1 && !path.endsWithSlash())
        return {context.tree().findFolder(path.parent()), path.parent(), path.name()};
    if (there)
        throw notAFolder(path);
    throw Failure(
        ExitNotFound,
        Text::tr("There is no folder %1: make it with \"velldoc mkdir -p\".").arg(path.text()));
}

QString nameOf(const QFileInfo &local)
{
    // "." and "folder/.." have no name of their own; "folder/" has one.
    const QString path = QDir::cleanPath(local.absoluteFilePath());
    return QFileInfo(path).fileName();
}

using Tasks = QHash<qint64, UploadTask>; // by transfer

void report(Context &context, const UploadPlan &plan, const Transfers &transfers,
            const Tasks &tasks)
{
    QJsonArray stored;
    for (const Transfers::Done &entry : transfers.done()) {
        const UploadTask task = tasks.value(entry.id);
        const char *const action = task.replaced ? "replaced"
            : task.isRenamed                     ? "renamed"
                                                 : "created";
        stored.append(QJsonObject{
            {QStringLiteral("local"), task.localPath},
            {QStringLiteral("action"), QString::fromLatin1(action)},
            {QStringLiteral("document"), documentJson(entry.document, task.remotePath)}});
        if (task.isRenamed)
            context.out.note(Text::tr("%1 is stored as %2.").arg(task.localPath, task.remotePath));
        if (context.isSet("verbose"))
            context.out.print(task.remotePath);
    }
    QJsonArray failed;
    const auto addFailed = [&failed](const QString &path, const QString &message) {
        failed.append(
            QJsonObject{{QStringLiteral("local"), path}, {QStringLiteral("message"), message}});
    };
    for (const auto &entry : plan.unreadable()) {
        context.out.error(Text::tr("%1 was left out: %2.").arg(entry.first, entry.second));
        addFailed(entry.first, entry.second);
    }
    for (const auto &entry : transfers.failed()) {
        const QString path = tasks.value(entry.id).localPath;
        const QString sentence = entry.reason.sentence();
        context.out.error(Text::tr("%1 was not stored: %2").arg(path, sentence));
        addFailed(path, sentence);
    }
    context.out.setResult({{QStringLiteral("stored"), stored},
                           {QStringLiteral("skipped"), QJsonArray::fromStringList(plan.skipped())},
                           {QStringLiteral("failed"), failed}});
    context.out.note(Text::tr("%n file(s) stored, %1.", nullptr, transfers.done().size())
                         .arg(sizeText(transfers.doneBytes())));
    if (!plan.skipped().isEmpty())
        context.out.note(Text::tr("%n file(s) skipped.", nullptr, plan.skipped().size()));
}

//! \a failure with what was done, and how to go on where that is of use.
Failure unfinished(const Failure &failure, const UploadPlan &plan, const Transfers &transfers)
{
    QStringList sentences{failure.sentence()};
    if (plan.tasks().size() > 1) {
        sentences.append(Text::tr("%1 of %n file(s) are stored.", nullptr, plan.tasks().size())
                             .arg(transfers.done().size()));
    }
    if (failure.code() != ExitNotAllowed) {
        sentences.append(
            transfers.done().isEmpty()
                ? Text::tr("The same command continues where the service has stopped.")
                : Text::tr("The same command with --on-conflict skip stores the rest."));
    }
    return {failure.code(), sentences.join(QLatin1Char(' ')), failure.httpStatus()};
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

//! Everything that is asked for, and its conflicts settled.
UploadPlan makePlan(Context &context, ConflictPolicy policy, const QStringList &sources,
                    const Target &target)
{
    UploadPlan plan(context, policy);
    try {
        for (const QString &source : sources) {
            const QFileInfo local(source);
            plan.add(local, target.folder, target.path,
                     target.name.isEmpty() ? nameOf(local) : target.name);
        }
    } catch (const Failure &failure) {
        if (failure.code() != ExitInterrupted)
            throw;
        const QString advice = Text::tr("No file was sent; the same command begins anew.");
        throw Failure(ExitInterrupted, failure.sentence() + QLatin1Char(' ') + advice);
    }
    return plan;
}

void run(Context &context)
{
    QStringList sources = context.arguments(2, 0);
    const QString targetText = sources.takeLast();
    const ConflictPolicy policy(context);
    for (const QString &source : qAsConst(sources)) {
        if (!QFileInfo::exists(source))
            throw Failure(
                ExitNotFound,
                Text::tr("There is no local file %1: check its name and its folder.").arg(source));
    }
    const Target target = findTarget(context, targetText, sources.size());
    const UploadPlan plan = makePlan(context, policy, sources, target);
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
    throwFirstFailure(plan, transfers);
}

} // namespace

const Command &putCommand()
{
    static const Command command{
        "put",
        "LOCAL... REMOTE",
        QT_TRANSLATE_NOOP("velldoc", "store files and folders"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Stores each local file or folder in the folder REMOTE, or a single one "
                          "under the name REMOTE. "
                          "Large files go up in pieces: when the connection is lost, velldoc tries "
                          "again, and a later "
                          "run continues where the service stopped."),
        {
            {"u,update", nullptr,
             QT_TRANSLATE_NOOP(
                 "velldoc",
                 "A file that is there gets a new version; the same as --on-conflict replace.")},
            {"on-conflict", "WHAT",
             QT_TRANSLATE_NOOP(
                 "velldoc",
                 "When a name is taken: ask (on a terminal), replace, rename, skip or cancel.")},
            {"v,verbose", nullptr,
             QT_TRANSLATE_NOOP("velldoc", "Print where each file was stored.")},
        },
        {
            {"velldoc put plan.dwg notes.txt /Drawings",
             QT_TRANSLATE_NOOP("velldoc", "two files into a folder")},
            {"velldoc put --update plan.dwg /Drawings",
             QT_TRANSLATE_NOOP("velldoc", "a new version of a file")},
            {"velldoc put --on-conflict skip site/ /",
             QT_TRANSLATE_NOOP("velldoc", "a whole folder, going on where an earlier run ended")},
        },
        run,
    };
    return command;
}

} // namespace velldoc
