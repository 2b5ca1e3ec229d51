#pragma once

#include <sync/SyncTree.h>

#include <QHash>
#include <QString>
#include <QStringList>

#include <set>

//! \brief Finds the steps of a plan from its two sides.
class SyncComparison
{
public:
    //! \a plan has the options and the roots. Adds the entries that cannot be transferred to its problems.
    SyncComparison(VellSyncPlan &plan, SyncTree local, SyncTree remote);

    //! Returns the absolute paths of the local files whose contents addSteps() needs.
    QStringList filesToRead() const;

    //! Adds the steps to the plan.
    //! \param contentIds the identifiers of the contents of filesToRead() on the service, without files that cannot be read
    void addSteps(const QHash<QString, QString> &contentIds);

private:
    using Entries = std::map<QString, SyncEntry>;

    bool isUp() const { return m_plan.options.direction == VellSyncDirection::Up; }
    const Entries &source() const { return isUp() ? m_local.entries : m_remote.entries; }
    const Entries &target() const { return isUp() ? m_remote.entries : m_local.entries; }
    QString localPath(const QString &path) const;
    void findConflicts();
    void removeProblems();
    void removeEmptyFolders();
    VellSyncStep step(const QString &path) const;
    VellSyncStep compared(const QString &path, const SyncEntry &from, const SyncEntry &to) const;
    VellSyncStep moved(const QString &path, const QString &fromPath) const;
    QHash<QString, QString> findMoves() const;
    bool mayRemove(const QString &path) const;

    VellSyncPlan &m_plan;
    SyncTree m_local;
    SyncTree m_remote;
    QHash<QString, QString> m_contentIds;
    std::set<QString> m_excluded; // paths without a step
};
