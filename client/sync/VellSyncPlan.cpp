#include <sync/VellSyncPlan.h>

#include <session/SessionAccess.h>
#include <sync/LocalTree.h>
#include <sync/RemoteFiles.h>
#include <sync/SyncComparison.h>
#include <sync/SyncFilter.h>
#include <sync/SyncText.h>

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

const QString partFiles = QStringLiteral(".vell-*.part"); // of running downloads

VellSyncPlan computed(OperationRun &run, VellSyncPlan plan)
{
    plan.projectId = run.projectId();
    const QFileInfo root(plan.localRoot);
    const bool isMissing =
        plan.options.direction == VellSyncDirection::Down && !root.exists() && !root.isSymLink();
    if (!isMissing && !root.isDir()) {
        throw OperationFailure{
            VellError::of(VellError::Kind::LocalFile, SyncText::noFolder(plan.localRoot))};
    }
    QStringList exclude = plan.options.exclude;
    if (!plan.options.ignoreFile.isEmpty())
        exclude +=
            local_tree::ignorePatterns(sync_path::join(plan.localRoot, plan.options.ignoreFile));
    const SyncFilter filter(plan.options.include, exclude << partFiles);

    SyncTree local;
    if (!isMissing)
        local = local_tree::read(plan.localRoot, filter, [&run] { run.checkAborted(); });
    for (const VellSyncProblem &problem : qAsConst(local.problems)) {
        if (problem.path.isEmpty()) // the whole tree could not be read
            throw OperationFailure{problem.error};
    }
    SyncComparison comparison(plan, std::move(local),
                              remote_files::read(run, plan.remoteRootId, filter));
    comparison.addSteps(remote_files::contentIds(run, comparison.filesToRead()));
    return plan;
}

} // namespace

VellResult<VellSyncPlan> *VellSyncPlan::make(VellSession *session, const QString &localRoot,
                                             const QString &remoteRootId,
                                             const VellSyncOptions &options)
{
    VellSyncPlan plan;
    plan.options = options;
    plan.localRoot = QDir::cleanPath(QDir().absoluteFilePath(localRoot));
    plan.remoteRootId = remoteRootId;
    return SessionAccess::start<VellSyncPlan>(
        session, OperationLanes::Lane::Bulk,
        [plan](OperationRun &run) { return computed(run, plan); });
}

VellResult<QHash<QString, QString>> *VellSyncPlan::contentIds(VellSession *session,
                                                              const QStringList &paths)
{
    return SessionAccess::start<QHash<QString, QString>>(
        session, OperationLanes::Lane::Bulk,
        [paths](OperationRun &run) { return remote_files::contentIds(run, paths); });
}

qint64 VellSyncPlan::bytesToTransfer() const
{
    qint64 bytes = 0;
    for (const VellSyncStep &step : steps)
        bytes += step.sizeBytes;
    return bytes;
}

int VellSyncPlan::count(VellSyncStep::Action action) const
{
    return int(std::count_if(steps.begin(), steps.end(),
                             [action](const VellSyncStep &step) { return step.action == action; }));
}

bool VellSyncPlan::hasChanges() const
{
    return count(VellSyncStep::Action::Leave) < steps.size();
}
