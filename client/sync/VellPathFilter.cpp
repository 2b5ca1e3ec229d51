#include <sync/VellPathFilter.h>

#include <operations/OperationRun.h>
#include <sync/LocalTree.h>
#include <sync/SyncFilter.h>

VellPathFilter::VellPathFilter(const QStringList &include, const QStringList &exclude)
    : d(std::make_shared<const SyncFilter>(include, exclude))
{}

VellPathFilter::~VellPathFilter() = default;
VellPathFilter::VellPathFilter(const VellPathFilter &other) = default;
VellPathFilter &VellPathFilter::operator=(const VellPathFilter &other) = default;

bool VellPathFilter::leavesOut(const QString &path, bool isFolder) const
{
    return isFolder ? d->excludesFolder(path) : d->excludesFile(path);
}

QStringList VellPathFilter::ignorePatterns(const QString &path, VellError *error)
{
    try {
        return local_tree::ignorePatterns(path);
    } catch (const OperationFailure &failure) {
        *error = failure.error;
        return {};
    }
}
