#pragma once

#include <sync/SyncTree.h>

#include <QString>
#include <QStringList>

#include <functional>

class SyncFilter;

namespace local_tree {

//! Reads the folder \a root without following links. \a check is called for each entry, and may throw.
SyncTree read(const QString &root, const SyncFilter &filter, const std::function<void()> &check);

//! Returns the patterns of the ignore file \a path; none if there is no such file.
//! \throws OperationFailure if it cannot be read
QStringList ignorePatterns(const QString &path);

} // namespace local_tree
