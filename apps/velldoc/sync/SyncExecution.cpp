#include <velldoc/sync/SyncExecution.h>

#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>
#include <velldoc/sync/SyncReport.h>
#include <velldoc/system/Interrupt.h>
#include <velldoc/transfer/Transfers.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QSet>

#include <algorithm>
#include <iterator>

namespace velldoc {

namespace {

using Action = VellSyncStep::Action;

QString nameOf(const VellSyncStep &step)
{
    return step.path.section(QLatin1Char('/'), -1);
}

} // namespace

SyncExecution::SyncExecution(Context &context, const VellSyncPlan &plan,
                             const QDateTime &comparedAt, VellSyncMemory &memory,
                             SyncReport &report)
    : m_context(context), m_plan(plan), m_isUp(plan.options.direction == VellSyncDirection::Up),
      m_comparedAt(comparedAt), m_memory(memory), m_report(report)
{}

void SyncExecution::run()
{
    makeFolders();
    move();
    transfer();
    remove();
}

QList<VellSyncStep> SyncExecution::steps(Action action) const
{
    QList<VellSyncStep> found;
    std::copy_if(m_plan.steps.cbegin(), m_plan.steps.cend(), std::back_inserter(found),
                 [action](const VellSyncStep &step) { return step.action == action; });
    return found;
}

QString SyncExecution::parentIdOf(const VellSyncStep &step) const
{
    return step.parentId.isEmpty() && !step.parentPath.isEmpty()
        ? m_folderIds.value(step.parentPath)
        : step.parentId;
}

void SyncExecution::makeFolders()
{
    const QString noFolder = Text::tr("the folder cannot be created");
    if (!m_isUp && !QDir().mkpath(m_plan.localRoot))
        throw Failure(ExitFailed, Text::tr("%1: %2.").arg(m_plan.localRoot, noFolder));
    const QList<VellSyncStep> folders = steps(Action::CreateFolder);
    for (const VellSyncStep &step : folders) {
        Interrupt::check();
        if (m_isUp) {
            m_folderIds.insert(step.path,
                               m_context.tree().makeFolder(parentIdOf(step), nameOf(step))._id);
        } else if (!QDir().mkpath(step.localPath)) {
            m_report.addFailed(step.path, noFolder);
            continue;
        }
        m_report.addDone(step);
    }
}

void SyncExecution::move()
{
    const QList<VellSyncStep> moves = steps(Action::Move);
    for (const VellSyncStep &step : moves) {
        Interrupt::check();
        if (m_isUp) {
            moveRemote(step);
        } else if (!QFile::rename(step.fromLocalPath, step.localPath)) {
            m_report.addFailed(step.path, Text::tr("it cannot be moved"));
            continue;
        }
        m_memory.note(step.path, step.localPath, step.document.fileId);
        m_report.addDone(step);
    }
}

void SyncExecution::moveRemote(const VellSyncStep &step)
{
    Session &session = m_context.session();
    const QString folderId = parentIdOf(step);
    if (step.document.name != nameOf(step))
        session.await(session.documents().rename(step.document._id, nameOf(step)));
    if (step.document.parentId != folderId)
        session.awaitAll(session.documents().move({step.document._id}, folderId));
}

void SyncExecution::transfer()
{
    if (m_plan.count(Action::Create) == 0 && m_plan.count(Action::Replace) == 0)
        return;
    Transfers transfers(m_context, m_plan.bytesToTransfer());
    const Steps added = addTransfers(transfers);
    const auto reporting = qScopeGuard([&] { reportTransfers(transfers, added); });
    transfers.run(nameOf(added.value(transfers.queue().ids().constFirst())));
}

SyncExecution::Steps SyncExecution::addTransfers(Transfers &transfers) const
{
    VellTransferQueue &queue = transfers.queue();
    const int replacing = queue.addBatch(VellConflictPolicy::Replace);
    Steps added;
    for (const VellSyncStep &step : m_plan.steps) {
        const bool isNew = step.action == Action::Create;
        if (!isNew && step.action != Action::Replace)
            continue;
        qint64 id = 0;
        if (!m_isUp)
            id = queue.downloadAs(step.document, step.localPath,
                                  isNew ? transfers.batch() : replacing);
        else if (isNew)
            id = queue.uploadAs(step.localPath, parentIdOf(step), nameOf(step), transfers.batch());
        else
            id = queue.uploadVersion(step.localPath, step.document);
        added.insert(id, step);
    }
    return added;
}

void SyncExecution::reportTransfers(const Transfers &transfers, const Steps &steps)
{
    for (const Transfers::Done &entry : transfers.done()) {
        const VellSyncStep step = steps.value(entry.id);
        // For the next comparison in the other direction.
        if (!m_isUp) {
            QFile file(step.localPath);
            if (file.open(QIODevice::ReadWrite))
                file.setFileTime(entry.document.updatedAt, QFileDevice::FileModificationTime);
        }
        m_memory.note(step.path, step.localPath, entry.document.fileId);
        m_report.addDone(step);
    }
    for (const Transfers::Failed &entry : transfers.failed())
        m_report.addFailed(steps.value(entry.id).path, entry.reason.sentence());
}

void SyncExecution::remove()
{
    const QList<VellSyncStep> removals = steps(Action::Remove);
    QSet<QString> removed;
    for (const VellSyncStep &step : removals)
        removed.insert(step.path);
    QStringList ids;
    for (const VellSyncStep &step : removals) {
        Interrupt::check();
        if (!m_isUp && !removeLocal(step))
            continue;
        // The contents of a folder are removed with it.
        if (m_isUp && !removed.contains(step.parentPath))
            ids.append(step.document._id);
        m_report.addDone(step);
    }
    if (!ids.isEmpty())
        m_context.session().awaitAll(m_context.session().documents().remove(ids));
}

bool SyncExecution::removeLocal(const VellSyncStep &step)
{
    const QFileInfo info(step.localPath);
    if (!step.isFolder && info.lastModified() >= m_comparedAt) {
        m_report.addFailed(step.path, Text::tr("it has been changed meanwhile"));
        return false;
    }
    const bool isGone =
        step.isFolder ? QDir().rmdir(step.localPath) : QFile::remove(step.localPath);
    if (!isGone)
        m_report.addFailed(step.path, Text::tr("it cannot be removed"));
    return isGone;
}

} // namespace velldoc
