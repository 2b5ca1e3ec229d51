#include <document_service/VellDocumentData.h>

#include <document_model/DocumentConstants.h>
#include <document_service/VellDocService.h>

#include <VellSoftBase/VellSettings.h>

#include <iterator>

VellDocumentData *VellDocumentData::instance()
{
    static VellDocumentData data;
    return &data;
}

// --- cache ---

void VellDocumentData::addDocToCache(const VellDocument &doc)
{
    docCache.insert(doc._id, doc);
}

void VellDocumentData::cacheDocuments(const QList<VellDocument> &documents)
{
    // Lists are mostly in the order of identifiers: the hint is then right.
    auto next = docCache.cend();
    for (const VellDocument &document : documents)
        next = std::next(QMap<QString, VellDocument>::const_iterator(
            docCache.insert(next, document._id, document)));
}

void VellDocumentData::clear()
{
    docCache.clear();
    flagMapA.clear();
    flagMapB.clear();
}

QString VellDocumentData::getFolderName(const QString &id)
{
    const auto it = docCache.constFind(id);
    return it == docCache.cend() ? QString() : it->name;
}

// --- permissions ---

bool VellDocumentData::canDeleteDocFolder(const QString &rId, const QString &category)
{
    return VellDocService::canDeleteDocFolder(rId, category);
}

bool VellDocumentData::canDownloadDocFolder(const QString &rId, const QString &category)
{
    return VellDocService::canDownloadDocFolder(rId, category);
}

bool VellDocumentData::canEditDocFolder(const QString &rId, const QString &category)
{
    return VellDocService::canEditDocFolder(rId, category);
}

bool VellDocumentData::canUploadDocFolder(const QString &rId, const QString &category)
{
    return VellDocService::canUploadDocFolder(rId, category);
}

bool VellDocumentData::canDeleteSelf(const QString &category)
{
    return VellDocService::canDeleteSelf(category);
}

bool VellDocumentData::canEditSelf(const QString &category)
{
    return VellDocService::canEditSelf(category);
}

// --- one document ---

void VellDocumentData::getDoc(const QString &id, VellDocument &doc, bool fromCache)
{
    if (fromCache) {
        const auto it = docCache.constFind(id);
        if (it != docCache.cend()) {
            doc = *it;
            return;
        }
    }
    // id may be doc._id, which is overwritten.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const QString requestedId = id;
    VellDocService::getDoc(requestedId, doc);
    // Only if it is missing: a fetch without the cache updates the caller's record, not the cache.
    if (!doc._id.isEmpty() && !docCache.contains(requestedId))
        addDocToCache(doc);
}

bool VellDocumentData::getDocHistory(const QString &id, QList<VellDocument> &list)
{
    return VellDocService::getDocHistory(id, list);
}

void VellDocumentData::getDocPwd(const QString &id, QString &pwd)
{
    VellDocService::getDocPwd(id, pwd);
}

bool VellDocumentData::getFavorDoc(int &value, const QString &id)
{
    return VellDocService::getFavorDoc(value, id);
}

// --- lists ---

void VellDocumentData::getDocuments(const VellDocumentConditon &cond, QList<VellDocument> &list)
{
    const bool isWhole = !cond.selectName && !cond.selectTree;
    QList<VellDocument> documents;
    VellDocService::getDocuments(cond, documents);
    if (isWhole)
        cacheDocuments(documents);
    list += documents;
}

// Stores reduced records too, unlike getDocuments().
void VellDocumentData::getDocumentsRange(QList<VellDocument> &list, int skip, int limit,
                                         const VellDocumentConditon &cond,
                                         const VellDocumentSort &sort)
{
    QList<VellDocument> documents;
    VellDocService::getDocumentsRange(limit, skip, cond, sort, documents);
    cacheDocuments(documents);
    list += documents;
}

int VellDocumentData::getDocumentsRangeCount(const VellDocumentConditon &cond)
{
    int count = 0;
    VellDocService::getDocumentsRangeCount(cond, {KEY_UPDATED_AT, false, true}, count);
    return count;
}

void VellDocumentData::getRecycledDocumentsRange(QList<VellDocument> &list, int skip, int limit,
                                                 const VellDocumentConditon &cond,
                                                 const VellDocumentSort &sort)
{
    VellDocService::getRecycledDocumentsRange(limit, skip, cond, sort, list);
}

int VellDocumentData::getDocumentsRecycledRangeCount(const VellDocumentConditon &cond)
{
    int count = 0;
    VellDocService::getDocumentsRecycledRangeCount(cond, {KEY_UPDATED_AT, false, true}, count);
    return count;
}

bool VellDocumentData::getFavorDocs(QList<VellDocument> &list, VellDocumentConditon &cond,
                                    const VellDocumentSort &sort)
{
    return VellDocService::getFavorDocs(list, cond, sort);
}

bool VellDocumentData::getEntityDocByGuid(const QString &guid, QList<VellDocumentLite> &list)
{
    return VellDocService::getEntityDocByGuid(guid, list);
}

// --- changes ---

bool VellDocumentData::createDocFolder(VellDocument &doc)
{
    const bool ok = VellDocService::createDocFolder(doc);
    if (ok)
        addDocToCache(doc);
    return ok;
}

bool VellDocumentData::updateDoc(VellDocument &doc)
{
    const bool ok = VellDocService::updateDoc(doc);
    if (ok)
        addDocToCache(doc);
    return ok;
}

bool VellDocumentData::changeDocOrder(const QMap<QString, int> &orders)
{
    return VellDocService::changeDocOrder(orders);
}

bool VellDocumentData::moveToFolder(const QStringList &ids, const QString &folderId)
{
    // The caller's list may change while this waits.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const QStringList moved = ids;
    if (!VellDocService::moveToFolder(moved, folderId))
        return false;
    for (const QString &id : moved) {
        VellDocument document;
        VellDocService::getDoc(id, document);
        // Not checked: after a failed fetch an empty record is stored under the empty identifier.
        addDocToCache(document);
    }
    return true;
}

bool VellDocumentData::deleteDoc(const QString &id)
{
    bool ok = false;
    VellDocService::deleteDoc(id, ok);
    if (ok)
        docCache.remove(id);
    return ok;
}

bool VellDocumentData::deleteDoc(const QStringList &ids)
{
    bool ok = true;
    // The caller's list may change while this waits.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const QStringList deleted = ids;
    for (const QString &id : deleted)
        ok = deleteDoc(id) && ok;
    return ok;
}

bool VellDocumentData::emptyRecycled(const QString &category)
{
    return VellDocService::emptyRecycled(category);
}

bool VellDocumentData::uploadRecycleDoc(const QString &id)
{
    return VellDocService::uploadRecycleDoc(id);
}

// --- marks, shares, remarks ---

bool VellDocumentData::restoreFile(const QString &id, const QStringList &list, int type, bool flag,
                                   QString &out)
{
    // Before the request, whatever its outcome: the next getDoc() sends a request.
    docCache.remove(id);
    return VellDocService::restoreFile(id, list, type, flag, out);
}

bool VellDocumentData::setFrequentDocument(const QString &id, bool on)
{
    bool ok = false;
    VellDocService::setFrequentDocument(id, on, ok);
    // For a document that is not cached, an entry with only this flag is added.
    if (ok)
        docCache[id].favorite = on;
    return ok;
}

bool VellDocumentData::setRectentDocument(const QString &id, bool on)
{
    return VellDocService::setRectentDocument(id, on);
}

bool VellDocumentData::shareDocument(const QStringList &ids, const QDateTime &expiredAt,
                                     QString &code, bool allowDownload)
{
    return VellDocService::shareDocument(ids, expiredAt, code, allowDownload);
}

bool VellDocumentData::updateDocRemake(bool history, const QString &id, const QString &remark)
{
    const bool ok = VellDocService::updateDocRemake(history, id, remark);
    // Also for a version: an entry with only the remark is added under its identifier.
    if (ok)
        docCache[id].remark = remark;
    return ok;
}

QString VellDocumentData::getPdfFileTempPath()
{
    return GetSettings()->pdfFileTempPath();
}
