#include <sync/SyncComparison.h>

#include <sync/SyncText.h>
#include <transfer/LocalNames.h>

#include <algorithm>
#include <set>
#include <utility>

namespace {

using Action = VellSyncStep::Action;
using Reason = VellSyncStep::Reason;
using Comparison = VellSyncOptions::Comparison;
using Extras = VellSyncOptions::Extras;

// Some file systems store times with a resolution of two seconds. Not for uploads, where a late change would be missed.
constexpr int DiskTimeMs = 2000;

//! Returns \a path and the folders above it, without the root.
QStringList withParents(QString path)
{
    QStringList paths;
    for (; !path.isEmpty(); path = sync_path::parentOf(path))
        paths.append(path);
    return paths;
}

QStringList &operator+=(QStringList &list, const std::set<QString> &paths)
{
    for (const QString &path : paths)
        list.append(path);
    return list;
}

} // namespace

SyncComparison::SyncComparison(VellSyncPlan &plan, SyncTree local, SyncTree remote)
    : m_plan(plan), m_local(std::move(local)), m_remote(std::move(remote))
{
    findConflicts();
    removeProblems();
    if (!m_plan.options.include.isEmpty())
        removeEmptyFolders();
    std::set<QString> excluded = m_local.excluded;
    excluded.insert(m_remote.excluded.cbegin(), m_remote.excluded.cend());
    m_plan.excluded += excluded;
}

QString SyncComparison::localPath(const QString &path) const
{
    return sync_path::join(m_plan.localRoot, path);
}

//! Finds entries that have the same path on both sides, but cannot be made equal.
void SyncComparison::findConflicts()
{
    QHash<QString, QString> remotePaths; // by the path without case, if the local disk ignores case
    for (const auto &entry : m_remote.entries)
        remotePaths.insert(local_names::key(entry.first), entry.first);
    for (const auto &[path, entry] : m_local.entries) {
        const QString other = remotePaths.value(local_names::key(path));
        if (other.isEmpty())
            continue;
        const bool isOneName = other == path;
        if (isOneName && m_remote.entries.at(other).isFolder == entry.isFolder)
            continue;
        const VellError error =
            VellError::of(VellError::Kind::NameTaken,
                          isOneName ? SyncText::fileAndFolder() : SyncText::otherCase(other));
        m_local.problems.append({path, error});
        m_remote.problems.append({other, error});
    }
}

//! Removes entries with a problem on one side from the other side, too.
void SyncComparison::removeProblems()
{
    std::set<QString> paths;
    m_plan.problems.clear();
    for (const VellSyncProblem &problem : m_local.problems + m_remote.problems) {
        if (paths.insert(problem.path).second)
            m_plan.problems.append(problem);
    }
    for (Entries *const entries : {&m_local.entries, &m_remote.entries}) {
        for (auto entry = entries->begin(); entry != entries->end();) {
            const QStringList above = withParents(entry->first);
            const bool isOut = std::any_of(above.begin(), above.end(), [&paths](const QString &p) {
                return paths.count(p) > 0;
            });
            entry = isOut ? entries->erase(entry) : std::next(entry);
        }
    }
}

//! Removes folders that contain no included files.
void SyncComparison::removeEmptyFolders()
{
    for (SyncTree *const tree : {&m_local, &m_remote}) {
        std::set<QString> needed;
        for (const auto &entry : tree->entries) {
            if (entry.second.isFolder)
                continue;
            for (const QString &path : withParents(entry.first))
                needed.insert(path);
        }
        for (auto entry = tree->entries.begin(); entry != tree->entries.end();) {
            if (needed.count(entry->first) > 0) {
                ++entry;
                continue;
            }
            tree->excluded.insert(entry->first);
            entry = tree->entries.erase(entry);
        }
    }
}

QStringList SyncComparison::filesToRead() const
{
    QStringList paths;
    std::set<qint64>
        sizesElsewhere; // of remote files that the local side does not have at that path
    for (const auto &entry : m_remote.entries) {
        if (!entry.second.isFolder && m_local.entries.count(entry.first) == 0)
            sizesElsewhere.insert(entry.second.sizeBytes);
    }
    for (const auto &entry : m_local.entries) {
        const qint64 size = entry.second.sizeBytes;
        if (entry.second.isFolder || size == 0)
            continue;
        const auto remote = m_remote.entries.find(entry.first);
        const bool isToRead = remote == m_remote.entries.end()
            ? m_plan.options.extras == Extras::Remove && sizesElsewhere.count(size) > 0
            : m_plan.options.comparison == Comparison::Content && remote->second.sizeBytes == size;
        if (isToRead)
            paths.append(localPath(entry.first));
    }
    return paths;
}

void SyncComparison::addSteps(const QHash<QString, QString> &contentIds)
{
    m_contentIds = contentIds;
    const QStringList paths = filesToRead();
    for (const QString &path : paths) {
        if (!contentIds.contains(path)) {
            m_local.problems.append(
                {path.mid(m_plan.localRoot.size() + 1),
                 VellError::of(VellError::Kind::LocalFile, SyncText::notReadable())});
        }
    }
    removeProblems();
    m_excluded.insert(m_plan.excluded.cbegin(), m_plan.excluded.cend());
    for (const VellSyncProblem &problem : qAsConst(m_plan.problems))
        m_excluded.insert(problem.path);

    const QHash<QString, QString> moves = findMoves();
    const std::set<QString> movedFrom(moves.cbegin(), moves.cend());
    QList<VellSyncStep> folders;
    QList<VellSyncStep> moveSteps;
    QList<VellSyncStep> contents;
    QList<VellSyncStep> removals;
    QList<VellSyncStep> rest;
    for (const auto &[path, entry] : source()) {
        const auto found = target().find(path);
        VellSyncStep next = step(path);
        if (found != target().end()) {
            next = compared(path, entry, found->second);
            (next.action == Action::Leave ? rest : contents).append(next);
        } else if (moves.contains(path)) {
            moveSteps.append(moved(path, moves.value(path)));
        } else {
            next.reason = Reason::New;
            next.action = entry.isFolder ? Action::CreateFolder : Action::Create;
            next.sizeBytes = entry.sizeBytes;
            (entry.isFolder ? folders : contents).append(next);
        }
    }
    for (const auto &extra : target()) {
        const QString &path = extra.first;
        if (source().count(path) > 0 || movedFrom.count(path) > 0)
            continue;
        VellSyncStep next = step(path);
        next.reason = Reason::NotInSource;
        next.action = mayRemove(path) ? Action::Remove : Action::Leave;
        if (next.action == Action::Remove)
            removals.prepend(next); // the deepest first
        else
            rest.append(next);
    }
    m_plan.steps = folders + moveSteps + contents + removals + rest;
}

//! The fields that all steps for \a path have in common.
VellSyncStep SyncComparison::step(const QString &path) const
{
    VellSyncStep step;
    step.path = path;
    step.localPath = localPath(path);
    step.parentPath = sync_path::parentOf(path);
    const auto parent = m_remote.entries.find(step.parentPath);
    if (step.parentPath.isEmpty())
        step.parentId = m_plan.remoteRootId;
    else if (parent != m_remote.entries.end())
        step.parentId = parent->second.document._id;
    const auto local = m_local.entries.find(path);
    const auto remote = m_remote.entries.find(path);
    if (local != m_local.entries.end())
        step.isFolder = local->second.isFolder;
    if (remote != m_remote.entries.end()) {
        step.isFolder = remote->second.isFolder;
        step.document = remote->second.document;
    }
    return step;
}

VellSyncStep SyncComparison::compared(const QString &path, const SyncEntry &from,
                                      const SyncEntry &to) const
{
    VellSyncStep result = step(path);
    if (from.isFolder)
        return result;
    const int toleranceMs = isUp() ? 0 : DiskTimeMs;
    if (from.sizeBytes != to.sizeBytes)
        result.reason = Reason::OtherSize;
    else if (m_plan.options.comparison == Comparison::SizeAndTime)
        result.reason = from.changedAt > to.changedAt.addMSecs(toleranceMs) ? Reason::SourceIsNewer
                                                                            : Reason::Same;
    else if (from.sizeBytes > 0 && m_contentIds.value(result.localPath) != result.document.fileId)
        result.reason = Reason::OtherContent;
    if (result.reason == Reason::Same)
        return result;
    result.action = Action::Replace;
    result.isTargetNewer = to.changedAt > from.changedAt;
    result.sizeBytes = from.sizeBytes;
    return result;
}

VellSyncStep SyncComparison::moved(const QString &path, const QString &fromPath) const
{
    VellSyncStep result = step(path);
    result.action = Action::Move;
    result.reason = Reason::SameContentElsewhere;
    result.fromPath = fromPath;
    result.fromLocalPath = localPath(fromPath);
    if (isUp())
        result.document = m_remote.entries.at(fromPath).document;
    return result;
}

//! Maps new paths of the source to extra paths of the target with the same content.
QHash<QString, QString> SyncComparison::findMoves() const
{
    QHash<QString, QString> moves;
    if (m_plan.options.extras == Extras::Keep)
        return moves;
    const auto contentOf = [this](const QString &path, const SyncEntry &entry) {
        return entry.document._id.isEmpty() ? m_contentIds.value(localPath(path))
                                            : entry.document.fileId;
    };
    QHash<QString, QStringList> extras; // by content
    for (const auto &[path, entry] : target()) {
        if (!entry.isFolder && entry.sizeBytes > 0 && source().count(path) == 0)
            extras[contentOf(path, entry)].append(path);
    }
    for (const auto &[path, entry] : source()) {
        const QString content = contentOf(path, entry);
        if (entry.isFolder || content.isEmpty() || target().count(path) > 0)
            continue;
        QStringList &candidates = extras[content];
        if (!candidates.isEmpty())
            moves.insert(path, candidates.takeFirst());
    }
    return moves;
}

//! Returns true if removing \a path removes nothing that the plan excludes.
bool SyncComparison::mayRemove(const QString &path) const
{
    if (m_plan.options.extras == Extras::Keep)
        return false;
    const QString below = path + QLatin1Char('/');
    const auto next = m_excluded.lower_bound(below);
    return next == m_excluded.end() || !next->startsWith(below);
}
