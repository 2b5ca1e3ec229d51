#include <velldoc/commands/Commands.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/output/Json.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Interrupt.h>
#include <velldoc/transfer/OwnTargets.h>
#include <velldoc/transfer/Transfers.h>
#include <velldoc/transfer/UploadPlan.h>

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QTemporaryFile>

#include <cstdio>

namespace velldoc {

namespace {

struct Target
{
    VellDocument folder;
    RemotePath path;
    QString name; //!< if it is empty, each source keeps its name
    bool isNew = false; //!< the target does not exist yet
};

//! As cp does: into an existing folder; otherwise a single source gets the last name of the path.
//! \param ownTargets null for sources that do not create a folder
Target findTarget(Context &context, const QString &text, int sourceCount,
                  const OwnTargets *ownTargets)
{
    const RemotePath path = RemotePath::parse(text);
    const std::optional<VellDocument> there = context.tree().tryFind(path);
    const bool isOwn = there && ownTargets && ownTargets->hasMade(there->_id);
    if (there && isFolder(*there) && !isOwn)
        return {*there, path, {}};
    if (sourceCount == 1 && !path.endsWithSlash())
        return {context.tree().findFolder(path.parent()), path.parent(), path.name(), !there};
    if (there && !isFolder(*there))
        throw notAFolder(path);
    throw Failure(
        ExitNotFound,
        Text::tr("There is no folder %1: create it with \"velldoc mkdir -p\".").arg(path.text()));
}

QString nameOf(const QFileInfo &local)
{
    // "." and "folder/.." have no name; "folder/" has one.
    const QString path = QDir::cleanPath(local.absoluteFilePath());
    return QFileInfo(path).fileName();
}

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

//! Returns the plan for the command line, with decided conflicts.
void fill(UploadPlan &plan, const QStringList &sources, const Target &target)
{
    try {
        for (const QString &source : sources) {
            const QFileInfo local(source);
            plan.add(local, target.folder, target.path,
                     target.name.isEmpty() ? nameOf(local) : target.name);
        }
        plan.settle();
    } catch (const Failure &failure) {
        if (!isInterruption(failure.code()))
            throw;
        const QString advice = Text::tr("No file was sent; the same command starts again.");
        throw Failure(failure.code(), failure.sentence() + QLatin1Char(' ') + advice);
    }
}

//! Prints the uploads of a dry run.
void showPlan(Context &context, const UploadPlan &plan)
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

//! Executes \a plan.
void send(Context &context, const UploadPlan &plan)
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
    throwFirstFailure(plan, transfers);
}

//! Stores the standard input.
void putStandardInput(Context &context, UploadPlan &plan, const QString &targetText)
{
    const Target target = findTarget(context, targetText, 1, nullptr);
    if (target.name.isEmpty())
        throw Failure(ExitUsage,
                      Text::tr("The standard input needs a name: %1/NAME.")
                          .arg(target.path.isTop() ? QString() : target.path.text()));
    QTemporaryFile file;
    QFile input;
    if (!file.open() || !input.open(stdin, QIODevice::ReadOnly))
        throw Failure(ExitFailed, Text::tr("The file %1 cannot be written.").arg(file.fileName()));
    while (!input.atEnd()) {
        Interrupt::check();
        constexpr qint64 BlockBytes = 1048576;
        const QByteArray block = input.read(BlockBytes);
        if (block.isEmpty())
            break;
        if (file.write(block) != block.size())
            throw Failure(ExitFailed,
                          Text::tr("The content cannot be written: %1.").arg(file.errorString()));
    }
    Interrupt::check();
    file.close();
    fill(plan, {file.fileName()}, target);
    if (context.isDryRun())
        showPlan(context, plan);
    else
        send(context, plan);
}

void run(Context &context)
{
    QStringList sources = context.arguments(2, 0);
    const OwnTargets ownTargets(context, QStringList{QStringLiteral("put")} + sources);
    const QString targetText = sources.takeLast();
    UploadPlan plan(context);
    if (sources == QStringList{QStringLiteral("-")}) {
        putStandardInput(context, plan, targetText);
        return;
    }
    for (const QString &source : qAsConst(sources)) {
        if (!QFileInfo::exists(source))
            throw Failure(
                ExitNotFound,
                Text::tr("There is no local file %1: check its name and its folder.").arg(source));
    }
    const bool isOneFolder = sources.size() == 1 && QFileInfo(sources.constFirst()).isDir();
    const Target target =
        findTarget(context, targetText, sources.size(), isOneFolder ? &ownTargets : nullptr);
    const bool makesTarget = isOneFolder && target.isNew && !context.isDryRun();
    if (makesTarget)
        ownTargets.noteMade({});
    fill(plan, sources, target);
    if (makesTarget)
        ownTargets.noteMade(context.tree().namesIn(target.folder._id).value(target.name)._id);
    if (context.isDryRun()) {
        showPlan(context, plan);
        return;
    }
    send(context, plan);
}

} // namespace

const Command &putCommand()
{
    static const Command command{
        "put",
        "LOCAL... REMOTE",
        QT_TRANSLATE_NOOP("velldoc", "store files and folders"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Stores each local file or folder in the folder REMOTE, or a single one at the path "
            "REMOTE; - is the standard input. Large files are sent in chunks: if the connection is "
            "lost, velldoc tries again. A file whose content is already stored there is skipped, "
            "so that the same command, if run again, continues where the previous run stopped."),
        withTransferOptions({
            {"u,update", nullptr,
             QT_TRANSLATE_NOOP("velldoc",
                               "Store a new version if the file already exists; the same as "
                               "--on-conflict replace.")},
            {"on-conflict", "WHAT",
             QT_TRANSLATE_NOOP("velldoc",
                               "If a name is already taken: ask (on a terminal), replace, rename, "
                               "skip or cancel."),
             "ask replace rename skip cancel"},
            {"links", "WHAT",
             QT_TRANSLATE_NOOP(
                 "velldoc", "Links in folders: refuse (report links to folders), skip or follow."),
             "refuse skip follow"},
        }),
        {
            {"velldoc put plan.dwg notes.txt /Drawings",
             QT_TRANSLATE_NOOP("velldoc", "two files into a folder")},
            {"velldoc put --update plan.dwg /Drawings",
             QT_TRANSLATE_NOOP("velldoc", "a new version of a file")},
            {"velldoc put --exclude '*.bak' --links skip site /",
             QT_TRANSLATE_NOOP("velldoc", "a folder without some files and all links")},
            {"pg_dump plans | velldoc put - /backup/plans.sql",
             QT_TRANSLATE_NOOP("velldoc", "what another program prints")},
        },
        run,
    };
    return command;
}

} // namespace velldoc
