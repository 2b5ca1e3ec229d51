#include <sync/RemoteFiles.h>

#include <sync/SyncFilter.h>
#include <sync/SyncText.h>
#include <transfer/LocalNames.h>

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellPublicFun/VellPub.h>

#include <QFileInfo>
#include <QMultiHash>

#include <atomic>
#include <mutex>
#include <optional>

namespace {

//! Adds the documents of one folder to the tree. \return the folders among them, by path
QHash<QString, VellDocument> addFolder(SyncTree &tree, const QString &folder,
                                       const QList<VellDocument> &documents,
                                       const SyncFilter &filter)
{
    QHash<QString, VellDocument> folders;
    QMultiHash<QString, VellDocument> byName;
    for (const VellDocument &document : documents)
        byName.insert(local_names::key(document.name), document);
    for (const VellDocument &document : documents) {
        const QString path = sync_path::join(folder, document.name);
        const bool isFolder = document.type == QLatin1String("dir");
        if (isFolder ? filter.excludesFolder(path) : filter.excludesFile(path)) {
            tree.excluded.insert(path);
        } else if (!local_names::isLocalName(document.name)) {
            tree.problems.append(
                {path,
                 VellError::of(VellError::Kind::BadName, SyncText::badLocalName(document.name))});
        } else if (byName.count(local_names::key(document.name)) > 1) {
            tree.problems.append({path,
                                  VellError::of(VellError::Kind::NameTaken,
                                                SyncText::severalOfOneName(), document._id)});
        } else {
            tree.entries[path] = {isFolder, isFolder ? 0 : document.fileSize, document.updatedAt,
                                  document};
            if (isFolder)
                folders.insert(path, document);
        }
    }
    return folders;
}

//! The identifier of the content with this \a md5; empty if the service does not have it.
QString contentId(OperationRun &run, const QString &md5)
{
    try {
        return run.query([&] {
            NetworkEventLoop loop(NetworkManager::instance()->get(
                run.address(QStringLiteral("base-service/md5/%1/info").arg(md5))));
            loop.exec();
            return loop.object().value(QLatin1String("_id")).toString();
        });
    } catch (const OperationFailure &failure) {
        if (failure.error.kind != VellError::Kind::NotFound)
            throw;
        return {};
    }
}

} // namespace

SyncTree remote_files::read(OperationRun &run, const QString &rootId, const SyncFilter &filter)
{
    VellDocumentConditon condition;
    condition.parentId = rootId;
    condition.selectTree = true;
    const QList<VellDocument> documents = run.query([&] {
        QList<VellDocument> answer;
        run.documents().getDocuments(condition, answer);
        return answer;
    });
    QHash<QString, QList<VellDocument>> byParent;
    for (const VellDocument &document : documents)
        byParent[document.parentId].append(document);
    SyncTree tree;
    QHash<QString, QString> folders{{QString(), rootId}}; // identifiers by path
    while (!folders.isEmpty()) {
        const QString path = folders.constBegin().key();
        const QString id = folders.take(path);
        // Removed, so that damaged records do not cause an endless loop.
        const QHash<QString, VellDocument> found = addFolder(tree, path, byParent.take(id), filter);
        for (auto folder = found.cbegin(); folder != found.cend(); ++folder)
            folders.insert(folder.key(), folder.value()._id);
    }
    return tree;
}

QHash<QString, QString> remote_files::contentIds(OperationRun &run, const QStringList &paths)
{
    qint64 totalBytes = 0;
    for (const QString &path : paths)
        totalBytes += QFileInfo(path).size();
    QHash<QString, QString> ids;
    std::optional<VellError> error;
    std::mutex mutex;
    std::atomic<qint64> doneBytes{0};
    run.forEach(paths.size(), [&](OperationRun &part, int index) {
        const QString &path = paths.at(index);
        qint64 before = 0;
        const auto progress = [&](qint64 readBytes) {
            run.setProgress(doneBytes += readBytes - before, totalBytes);
            before = readBytes;
            return !RequestContext::current()->isAborted();
        };
        try {
            part.checkAborted();
            const QString md5 = VellPub::getFileMd5(path, progress);
            const QString id = md5.isEmpty() ? QString() : contentId(part, md5);
            const std::lock_guard<std::mutex> lock(mutex);
            if (!md5.isEmpty())
                ids.insert(path, id);
        } catch (const OperationFailure &failure) {
            const std::lock_guard<std::mutex> lock(mutex);
            error = failure.error;
        }
    });
    run.checkAborted();
    if (error)
        throw OperationFailure{*error};
    return ids;
}
