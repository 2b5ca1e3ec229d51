#include <documents/VellDocuments.h>

#include <documents/DocumentLookup.h>
#include <documents/VellDocumentStore.h>
#include <session/SessionAccess.h>

#include <async_ops/AsyncRenameDoc.h>
#include <document_model/VellRecordType.h>

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>

#include <QEventLoop>
#include <QJsonObject>

#include <mutex>
#include <optional>

using Lane = OperationLanes::Lane;

namespace {

//! Returns true if the remaining documents would fail in the same way.
bool endsAll(const VellError &error)
{
    switch (error.kind) {
    case VellError::Kind::Offline:
    case VellError::Kind::TimedOut:
    case VellError::Kind::Certificate:
    case VellError::Kind::Proxy:
    case VellError::Kind::BadAddress:
    case VellError::Kind::NotSignedIn:
    case VellError::Kind::Cancelled:
        return true;
    default:
        return false;
    }
}

//! The result for one document.
struct Outcome
{
    std::optional<VellDocument> document; // as it is now
    bool isSameNamed = false;
};

VellBulkResult forAll(OperationRun &run, const QStringList &ids,
                      const std::function<Outcome(OperationRun &, const QString &)> &work)
{
    VellBulkResult result;
    std::mutex mutex;
    std::optional<VellError> end;
    int doneCount = 0;
    run.forEach(ids.size(), [&](OperationRun &part, int index) {
        const QString &id = ids.at(index);
        {
            const std::lock_guard<std::mutex> lock(mutex);
            if (end) {
                result.failed.insert(id, *end);
                return;
            }
        }
        Outcome outcome;
        VellError error;
        try {
            part.checkAborted();
            outcome = work(part, id);
        } catch (const OperationFailure &failure) {
            error = failure.error;
        }
        const std::lock_guard<std::mutex> lock(mutex);
        if (error) {
            result.failed.insert(id, error);
            if (endsAll(error))
                end = error;
            return;
        }
        result.succeeded.append(id);
        if (outcome.document)
            result.documents.append(*outcome.document);
        if (outcome.isSameNamed)
            result.sameNamed.append(id);
        run.setProgress(++doneCount, ids.size());
    });
    return result;
}

VellDocument renamed(OperationRun &run, const QString &id, const QString &name)
{
    const VellDocument before = document_lookup::fetch(run, id);
    document_lookup::requireFreeName(run, before.parentId, name, id);
    VellDocument after = run.query([&] {
        VellDocument answer;
        AsyncRenameDoc job;
        QEventLoop loop;
        QObject::connect(&job, &AsyncRenameDoc::renameDocFinish, &loop,
                         [&](const VellDocument &document) {
                             answer = document;
                             loop.quit();
                         });
        QObject::connect(&job, &AsyncRenameDoc::error, &loop, &QEventLoop::quit);
        job.renameDoc(id, name);
        loop.exec();
        return answer;
    });
    if (after.name != name)
        throw OperationFailure{VellError::of(VellError::Kind::Unclear)};
    return after;
}

} // namespace

VellResult<VellDocument> *VellDocuments::createFolder(const QString &parentId, const QString &name,
                                                      const QString &category)
{
    return SessionAccess::start<VellDocument>(
        m_session, Lane::Short,
        [=](OperationRun &run) {
            document_lookup::requireFreeName(run, parentId, name);
            VellDocument folder;
            folder.parentId = parentId;
            folder.name = name;
            folder.category = category;
            run.change([&] { return run.documents().createDocFolder(folder); });
            return folder;
        },
        [this](const VellDocument &folder) {
            m_store->insert(folder);
            m_store->markFolderChanged(folder.parentId);
        });
}

VellResult<VellDocument> *VellDocuments::rename(const QString &id, const QString &name)
{
    return SessionAccess::start<VellDocument>(
        m_session, Lane::Short, [id, name](OperationRun &run) { return renamed(run, id, name); },
        [this](const VellDocument &document) { m_store->insert(document); });
}

VellResult<VellBulkResult> *VellDocuments::move(const QStringList &ids, const QString &folderId)
{
    return SessionAccess::start<VellBulkResult>(
        m_session, Lane::Bulk,
        [ids, folderId](OperationRun &run) {
            return forAll(run, ids, [&folderId](OperationRun &part, const QString &id) {
                document_lookup::requireFreeName(part, folderId,
                                                 document_lookup::fetch(part, id).name, id);
                part.change([&] { return part.documents().moveToFolder({id}, folderId); });
                return Outcome{document_lookup::fetch(part, id)};
            });
        },
        [this](const VellBulkResult &result) { m_store->insert(result.documents); });
}

VellResult<VellBulkResult> *VellDocuments::remove(const QStringList &ids)
{
    return SessionAccess::start<VellBulkResult>(
        m_session, Lane::Bulk,
        [ids](OperationRun &run) {
            return forAll(run, ids, [](OperationRun &part, const QString &id) {
                part.change([&] { return part.documents().deleteDoc(id); });
                return Outcome();
            });
        },
        [this](const VellBulkResult &result) { m_store->remove(result.succeeded); });
}

VellResult<VellBulkResult> *VellDocuments::restore(const QStringList &ids)
{
    return SessionAccess::start<VellBulkResult>(
        m_session, Lane::Bulk,
        [ids](OperationRun &run) {
            return forAll(run, ids, [](OperationRun &part, const QString &id) {
                const bool isSameNamed =
                    part.query([&] { return part.documents().uploadRecycleDoc(id); });
                return Outcome{document_lookup::fetch(part, id), isSameNamed};
            });
        },
        [this](const VellBulkResult &result) {
            m_store->insert(result.documents);
            for (const VellDocument &document : result.documents)
                m_store->markFolderChanged(document.parentId);
        });
}

VellResult<bool> *VellDocuments::emptyRecycleBin(const QString &category)
{
    return startChange(
        [category](VellDocumentData &service) { return service.emptyRecycled(category); });
}

VellResult<VellBulkResult> *VellDocuments::purge(const QStringList &ids)
{
    return SessionAccess::start<VellBulkResult>(
        m_session, Lane::Bulk,
        [ids](OperationRun &run) {
            return forAll(run, ids, [](OperationRun &part, const QString &id) {
                part.deleteResource(
                    QStringLiteral("document-service/documents/%1?permanently=true").arg(id));
                return Outcome();
            });
        },
        [this](const VellBulkResult &result) { m_store->remove(result.succeeded); });
}

VellResult<bool> *VellDocuments::setOrder(const QMap<QString, int> &positions)
{
    return startChange(
        [positions](VellDocumentData &service) { return service.changeDocOrder(positions); },
        [this, positions] {
            updateKnown(positions.keys(), [&positions](VellDocument &document) {
                document.order = positions.value(document._id);
            });
        });
}

VellResult<VellDocument> *VellDocuments::setLinks(const VellDocument &document)
{
    return SessionAccess::start<VellDocument>(
        m_session, Lane::Short,
        [document](OperationRun &run) {
            VellDocument changed = document;
            changed.codeList = {VellDocumentChange::EntityLinks};
            run.change([&] { return run.documents().updateDoc(changed); });
            return changed;
        },
        [this](const VellDocument &changed) { m_store->insert(changed); });
}

VellResult<VellDocument> *VellDocuments::makeCurrent(const QString &id, const QString &fileId)
{
    return SessionAccess::start<VellDocument>(
        m_session, Lane::Short,
        [=](OperationRun &run) {
            run.change([&] {
                NetworkEventLoop loop(NetworkManager::instance()->putJson(
                    run.address(QStringLiteral("document-service/documents/") + id),
                    QJsonObject{{QStringLiteral("file"), fileId}}));
                loop.exec();
                return loop.isSuccessful();
            });
            return document_lookup::fetch(run, id);
        },
        [this](const VellDocument &document) { m_store->insert(document); });
}

VellResult<bool> *VellDocuments::removeVersion(const QString &versionId)
{
    return SessionAccess::start<bool>(m_session, Lane::Short, [versionId](OperationRun &run) {
        run.deleteResource(QStringLiteral("document-service/documents/histories/") + versionId);
        return true;
    });
}

VellResult<bool> *VellDocuments::setRemark(const QString &id, const QString &remark)
{
    return startChange(
        [=](VellDocumentData &service) { return service.updateDocRemake(false, id, remark); },
        [=] { updateKnown({id}, [&](VellDocument &document) { document.remark = remark; }); });
}

VellResult<bool> *VellDocuments::setVersionRemark(const QString &versionId, const QString &remark)
{
    return startChange([=](VellDocumentData &service) {
        return service.updateDocRemake(true, versionId, remark);
    });
}

VellResult<bool> *VellDocuments::setFavorite(const QString &id, bool on)
{
    return startChange(
        [=](VellDocumentData &service) {
            QString unused;
            return service.restoreFile(id, {}, VellRecordType::Favorite, on, unused);
        },
        [=] { updateKnown({id}, [on](VellDocument &document) { document.favorite = on; }); });
}

VellResult<bool> *VellDocuments::setFrequent(const QString &id, bool on)
{
    return startChange(
        [=](VellDocumentData &service) { return service.setFrequentDocument(id, on); });
}

VellResult<bool> *VellDocuments::setRecent(const QString &id, bool on)
{
    return startChange(
        [=](VellDocumentData &service) { return service.setRectentDocument(id, on); });
}

VellResult<bool> *VellDocuments::startChange(const std::function<bool(VellDocumentData &)> &change,
                                             const std::function<void()> &apply)
{
    return SessionAccess::start<bool>(
        m_session, Lane::Short,
        [change](OperationRun &run) {
            run.change([&] { return change(run.documents()); });
            return true;
        },
        [apply](bool) {
            if (apply)
                apply();
        });
}

void VellDocuments::updateKnown(const QStringList &ids,
                                const std::function<void(VellDocument &)> &change)
{
    QList<VellDocument> changed;
    for (const QString &id : ids) {
        if (std::optional<VellDocument> document = m_store->document(id)) {
            change(*document);
            changed.append(*document);
        }
    }
    m_store->insert(changed);
}
