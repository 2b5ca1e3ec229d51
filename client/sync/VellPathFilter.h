#pragma once

#include <vellclient_export.h>

#include <QString>
#include <QStringList>

#include <memory>

class SyncFilter;
struct VellError;

//! \brief Selects entries of a tree by the patterns of VellSyncOptions::include and VellSyncOptions::exclude.
//!
//! A value class. It may be used in any thread.
//!
//! \since 0.1
class VELLCLIENT_EXPORT VellPathFilter
{
public:
    VellPathFilter(const QStringList &include, const QStringList &exclude);
    ~VellPathFilter();
    VellPathFilter(const VellPathFilter &other);
    VellPathFilter &operator=(const VellPathFilter &other);

    //! Returns true if the entry with \a path is excluded. \a path starts at the root and is separated by "/". If a folder is
    //! excluded, all its contents are.
    bool leavesOut(const QString &path, bool isFolder) const;

    //! Returns the patterns of the ignore file at \a path; none if there is no such file.
    //! \param error set if the file cannot be read; must not be null
    static QStringList ignorePatterns(const QString &path, VellError *error);

private:
    std::shared_ptr<const SyncFilter> d;
};
