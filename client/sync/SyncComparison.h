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
    //! \a plan has the options and the roots. What neither side can transfer goes to its problems here.
    SyncComparison(VellSyncPlan &plan, SyncTree local, SyncTree remote);

    //! The local files whose content has to be known for addSteps(), absolute.
    QStringList filesToRead() const;

    //! Adds the steps to the plan. \a contentIds the service's identifiers of the contents of filesToRead(); what
    //! cannot be read is missing
    void addSteps(const QHash<QString, QString> &contentIds);

private:
    using Entries = std::map<QString, SyncEntry>;

    bool isUp() const { return m_plan.options.direction == VellSyncDirection::Up; }
    const Entries &source() const { return isUp() ? m_local.entries : m_remote.entries; }
    const Entries &target() const { return isUp() ? m_remote.entries : m_local.entries; }
    QString localPath(const QString &path) const;
    void findClashes();
    void takeOutProblems();
    void takeOutEmptyFolders();
    VellSyncStep step(const QString &path) const;
    VellSyncStep compared(const QString &path, const SyncEntry &from, const SyncEntry &to) const;
    VellSyncStep moved(const QString &path, const QString &fromPath) const;
    QHash<QString, QString> findMoves() const;
    bool mayRemove(const QString &path) const;

    VellSyncPlan &m_plan;
    SyncTree m_local;
    SyncTree m_remote;
    QHash<QString, QString> m_contentIds;
    std::set<QString> m_leftOut; // paths that have no step
};
