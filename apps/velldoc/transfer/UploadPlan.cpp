#include <velldoc/transfer/UploadPlan.h>

#include <velldoc/Context.h>
#include <velldoc/Text.h>
#include <velldoc/output/Interrupt.h>
#include <velldoc/output/Terminal.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace velldoc {

UploadPlan::UploadPlan(Context &context, ConflictPolicy policy)
    : m_context(context), m_policy(policy)
{}

void UploadPlan::add(const QFileInfo &local, const VellDocument &folder, const RemotePath &path,
                     const QString &name)
{
    Interrupt::check();
    // A link to a folder is not followed, so that no tree is walked in circles.
    if (local.isDir() && local.isSymLink())
        refuse(local, Text::tr("it is a link to a folder"));
    else if (local.isDir())
        addFolder(local, folder, path, name);
    else
        addFile(local, folder, path, name);
}

void UploadPlan::addFolder(const QFileInfo &local, const VellDocument &folder,
                           const RemotePath &path, const QString &name)
{
    if (!local.isReadable() || !local.isExecutable()) {
        refuse(local, Text::tr("it cannot be read"));
        return;
    }
    const auto &names = m_context.tree().namesIn(folder._id);
    const auto taken = names.constFind(name);
    if (taken != names.constEnd() && !isFolder(taken.value())) {
        throw Failure(ExitFailed,
                      Text::tr("%1 is a file, so the folder %2 cannot be stored there.")
                          .arg(path.child(name).text(), local.filePath()));
    }
    const VellDocument target =
        taken == names.constEnd() ? m_context.tree().makeFolder(folder._id, name) : taken.value();
    const QDir folderOnDisk(local.filePath());
    QStringList notText;
    const QStringList entries = system_files::entriesOf(local.filePath(), &notText);
    for (const QString &entry : entries)
        add(QFileInfo(folderOnDisk.filePath(entry)), target, path.child(name), entry);
    for (const QString &entry : qAsConst(notText))
        refuse(QFileInfo(folderOnDisk.filePath(entry)), Text::tr("its name is not UTF-8 text"));
}

void UploadPlan::addFile(const QFileInfo &local, const VellDocument &folder, const RemotePath &path,
                         const QString &name)
{
    if (!local.exists() || !local.isFile()) {
        refuse(local,
               local.exists() ? Text::tr("it is no plain file") : Text::tr("it is not there"));
        return;
    }
    // The size that QFileInfo has of a shortcut of Windows is that of the file behind it.
    QFile file(local.filePath());
    if (!file.open(QIODevice::ReadOnly)) {
        refuse(local, Text::tr("it cannot be read"));
        return;
    }
    UploadTask task;
    task.localPath = local.filePath();
    task.remotePath = path.child(name).text();
    task.parentId = folder._id;
    task.name = name;
    task.sizeBytes = file.size();
    auto &names = m_context.tree().namesIn(folder._id);
    const auto taken = names.constFind(name);
    if (taken != names.constEnd() && !settleConflict(task, taken.value(), path)) {
        m_skipped.append(task.localPath);
        return;
    }
    VellDocument reserved; // a second file of the batch with this name is a conflict, too
    reserved.name = task.name;
    reserved.type = QStringLiteral("file");
    if (!task.replaced)
        names.insert(task.name, reserved);
    m_totalBytes += task.sizeBytes;
    m_tasks.append(task);
}

bool UploadPlan::settleConflict(UploadTask &task, const VellDocument &taken,
                                const RemotePath &folderPath)
{
    const QStringList reserved = m_context.tree().namesIn(task.parentId).keys();
    const QString freeName = m_context.session().await(
        m_context.session().documents().freeName(task.parentId, task.name, QString(), reserved));
    // What this batch is about to store has no version yet that could be followed by another.
    const bool canReplace = !isFolder(taken) && !taken._id.isEmpty();
    switch (m_policy.decide(task.remotePath, freeName, canReplace)) {
    case Conflict::Replace:
        task.replaced = taken;
        return true;
    case Conflict::Rename:
        task.name = freeName;
        task.remotePath = folderPath.child(freeName).text();
        task.isRenamed = true;
        return true;
    case Conflict::Skip:
        return false;
    case Conflict::Ask:
    case Conflict::Cancel:
        break;
    }
    throw Failure(
        ExitFailed,
        Text::tr("%1 is there already, so no file was sent: pass --update for a new version, or "
                 "--on-conflict rename or skip.")
            .arg(task.remotePath));
}

void UploadPlan::refuse(const QFileInfo &local, const QString &reason)
{
    m_unreadable.append({local.filePath(), reason});
}

} // namespace velldoc
