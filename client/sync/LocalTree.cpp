#include <sync/LocalTree.h>

#include <operations/OperationRun.h>
#include <sync/SyncFilter.h>
#include <sync/SyncText.h>
#include <transfer/LocalNames.h>
#include <transfer/TransferRecord.h>

#include <QFile>
#include <QFileInfo>

namespace {

//! The reason why \a entry cannot be transferred; no error if it can.
VellError problemOf(const FolderEntry &entry, const QFileInfo &info)
{
    if (info.isSymLink() || info.isJunction())
        return VellError::of(VellError::Kind::LocalFile, SyncText::link());
    if (entry.error)
        return entry.error;
    if (!info.isReadable())
        return VellError::of(VellError::Kind::LocalFile, SyncText::notReadable());
    return {};
}

} // namespace

SyncTree local_tree::read(const QString &root, const SyncFilter &filter,
                          const std::function<void()> &check)
{
    SyncTree tree;
    QStringList folders{QString()};
    while (!folders.isEmpty()) {
        const QString folder = folders.takeLast();
        VellError error;
        const QString folderPath = folder.isEmpty() ? root : sync_path::join(root, folder);
        const std::vector<FolderEntry> found = local_names::entriesOf(folderPath, &error);
        if (error) {
            tree.entries.erase(folder);
            tree.problems.append({folder, error});
            continue;
        }
        for (const FolderEntry &entry : found) {
            check();
            const QString path = sync_path::join(folder, entry.localName);
            const QFileInfo info(sync_path::join(root, path));
            const bool isExcluded =
                entry.isFolder ? filter.excludesFolder(path) : filter.excludesFile(path);
            if (isExcluded) {
                tree.excluded.insert(path);
            } else if (const VellError problem = problemOf(entry, info)) {
                tree.problems.append({path, problem});
            } else {
                const qint64 size = entry.isFolder ? 0 : info.size();
                tree.entries[path] = {entry.isFolder, size, info.lastModified().toUTC(), {}};
                if (entry.isFolder)
                    folders.append(path);
            }
        }
    }
    return tree;
}

QStringList local_tree::ignorePatterns(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        return {};
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        throw OperationFailure{
            VellError::of(VellError::Kind::LocalFile, SyncText::notReadable(), path)};
    }
    QStringList patterns;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QString pattern = line.trimmed();
        if (!pattern.isEmpty() && !pattern.startsWith(QLatin1Char('#')))
            patterns.append(pattern);
    }
    return patterns;
}
