#pragma once

#include <sync/VellSyncPlan.h>

#include <QDateTime>

#include <algorithm>
#include <map>
#include <set>

//! \brief A file or folder of one side of a comparison.
struct SyncEntry
{
    bool isFolder = false;
    qint64 sizeBytes = 0;
    QDateTime changedAt;
    VellDocument document; // of the remote side
};

//! \brief One side of a comparison.
struct SyncTree
{
    std::map<QString, SyncEntry> entries; // by path, so that a folder is before its contents
    QList<VellSyncProblem> problems;
    std::set<QString> excluded;
};

namespace sync_path {

//! Empty for an entry of the root.
inline QString parentOf(const QString &path)
{
    return path.left(std::max(path.lastIndexOf(QLatin1Char('/')), 0));
}

inline QString join(const QString &folder, const QString &name)
{
    return folder.isEmpty() ? name : folder + QLatin1Char('/') + name;
}

} // namespace sync_path
