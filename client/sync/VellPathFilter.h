#pragma once

#include <vellclient_export.h>

#include <QString>
#include <QStringList>

#include <memory>

class SyncFilter;
struct VellError;

//! \brief Which entries of a tree count, by the patterns of VellSyncOptions::include and VellSyncOptions::exclude.
//!
//! A plain value. Can be used from any thread.
class VELLCLIENT_EXPORT VellPathFilter
{
public:
    VellPathFilter(const QStringList &include, const QStringList &exclude);
    ~VellPathFilter();
    VellPathFilter(const VellPathFilter &other);
    VellPathFilter &operator=(const VellPathFilter &other);

    //! Whether the entry \a path, from the root and separated by "/", is left out. Nothing needs to be asked about what is in a
    //! folder that is left out.
    bool leavesOut(const QString &path, bool isFolder) const;

    //! The patterns in the ignore file at \a path, none if there is no such file.
    //! \param error set if it cannot be read
    static QStringList ignorePatterns(const QString &path, VellError *error);

private:
    std::shared_ptr<const SyncFilter> d;
};
