#include <velldoc/commands/Commands.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Interrupt.h>
#include <velldoc/transfer/OwnTargets.h>
#include <velldoc/transfer/UploadPlan.h>
#include <velldoc/transfer/UploadRun.h>
#include <velldoc/transfer/UploadTarget.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cstdio>

namespace velldoc {

namespace {

QString nameOf(const QFileInfo &local)
{
    // "." and "folder/.." have no name; "folder/" has one.
    const QString path = QDir::cleanPath(local.absoluteFilePath());
    return QFileInfo(path).fileName();
}

//! Returns the plan for the command line, with decided conflicts.
void fill(UploadPlan &plan, const QStringList &sources, const UploadTarget &target)
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
        throw Failure(failure.code(), joinedSentences({failure.sentence(), advice}));
    }
}

//! Stores the standard input.
void putStandardInput(Context &context, UploadPlan &plan, const QString &targetText)
{
    const UploadTarget target = findUploadTarget(context, targetText, 1, nullptr);
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
        showUploads(context, plan);
    else
        sendUploads(context, plan);
}

void run(Context &context)
{
    QStringList sources = context.arguments(2);
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
    const UploadTarget target =
        findUploadTarget(context, targetText, sources.size(), isOneFolder ? &ownTargets : nullptr);
    const bool makesTarget = isOneFolder && target.isNew && !context.isDryRun();
    if (makesTarget)
        ownTargets.noteMade({});
    fill(plan, sources, target);
    if (makesTarget)
        ownTargets.noteMade(context.tree().namesIn(target.folder._id).value(target.name)._id);
    if (context.isDryRun()) {
        showUploads(context, plan);
        return;
    }
    sendUploads(context, plan);
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
