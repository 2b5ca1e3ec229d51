#include <service/records/ChunkUpload.h>

#include <service/records/Access.h>
#include <service/records/ServiceError.h>
#include <service/storage/ContentLock.h>
#include <service/storage/ContentStore.h>
#include <service/storage/Statement.h>
#include <service/storage/StoredBytes.h>

namespace service {

namespace {

QJsonObject toJson(const LargeFile &upload)
{
    return {{QStringLiteral("_id"), upload.id},
            {QStringLiteral("md5"), upload.md5},
            {QStringLiteral("fileName"), upload.fileName},
            {QStringLiteral("fileSize"), upload.fileSize},
            {QStringLiteral("fsFileId"), QString()},
            {QStringLiteral("totalChunk"), upload.totalChunk()},
            {QStringLiteral("savedChunk"), upload.savedChunk}};
}

QJsonObject toJson(const StoredFile &file)
{
    const int chunks = LargeFile::chunkCount(file.size);
    return {{QStringLiteral("_id"), file.id},        {QStringLiteral("md5"), file.md5},
            {QStringLiteral("fileName"), file.name}, {QStringLiteral("fileSize"), file.size},
            {QStringLiteral("fsFileId"), file.id},   {QStringLiteral("totalChunk"), chunks},
            {QStringLiteral("savedChunk"), chunks}};
}

void requireSameSize(qint64 claimed, qint64 known)
{
    if (claimed != known) {
        throw ServiceError(
            Refusal::Conflict,
            QStringLiteral("The file with this MD5 has %1 bytes, not %2.").arg(known).arg(claimed));
    }
}

ContentHash hashOf(const LargeFile &upload)
{
    ContentHash hash;
    if (upload.savedChunk > 0 && !hash.restore(upload.hashState))
        throw std::runtime_error("the state of an upload's digests cannot be read");
    return hash;
}

} // namespace

ChunkUpload::ChunkUpload(Database &database, ContentStore &store, Access &access)
    : m_database(database), m_store(store), m_access(access), m_contents(database, store, access),
      m_uploads(database)
{}

QJsonObject ChunkUpload::take(const Chunk &chunk, bool isToBeForgotten)
{
    const ContentLock lock(m_store.folder(), chunk.md5);
    if (const std::optional<StoredFile> file = m_contents.findByMd5(chunk.md5)) {
        requireSameSize(chunk.fileSize, file->size);
        return toJson(*file);
    }
    LargeFile upload = uploadFor(chunk);
    if (upload.isVerified())
        return finish(upload);
    if (!isHeld(upload))
        startAgain(upload);
    if (chunk.index != upload.savedChunk || isToBeForgotten)
        return toJson(upload);
    return store(chunk, upload);
}

QJsonObject ChunkUpload::find(const QString &md5)
{
    if (const std::optional<StoredFile> file = m_contents.findByMd5(md5))
        return toJson(*file);
    std::optional<LargeFile> upload = m_uploads.findByMd5(md5, m_access.user().id);
    if (!upload)
        return {};
    if (upload->isVerified()) {
        const ContentLock lock(m_store.folder(), md5);
        return finish(*upload);
    }
    if (!isHeld(*upload))
        upload->savedChunk = 0; // the next chunk will fail in the same way and start again
    return toJson(*upload);
}

void ChunkUpload::drop(const QString &id)
{
    Files files(m_database);
    if (files.find(id) && files.mayDownload(id, m_access)) {
        throw ServiceError(Refusal::Conflict,
                           QStringLiteral("This upload is complete; there is nothing to drop."));
    }
    std::optional<LargeFile> upload = m_uploads.find(id);
    if (!upload) {
        throw ServiceError(Refusal::NotFound,
                           QStringLiteral("There is no upload %1.").arg(id.left(60)));
    }
    if (upload->createdBy != m_access.user().id) {
        throw ServiceError(Refusal::Forbidden,
                           QStringLiteral("Another user has begun this upload."));
    }
    const ContentLock lock(m_store.folder(), upload->md5);
    upload = m_uploads.find(id); // its last chunk may have arrived meanwhile
    if (upload)
        remove(*upload);
}

LargeFile ChunkUpload::uploadFor(const Chunk &chunk)
{
    if (const auto upload = m_uploads.findByMd5(chunk.md5, m_access.user().id)) {
        requireSameSize(chunk.fileSize, upload->fileSize);
        return *upload;
    }
    LargeFile upload;
    upload.md5 = chunk.md5;
    upload.fileName = chunk.fileName;
    upload.fileSize = chunk.fileSize;
    Transaction transaction(m_database);
    m_uploads.insert(upload, m_access.user().id);
    transaction.commit();
    return upload;
}

//! The part file may be missing, for example after a disk failure.
bool ChunkUpload::isHeld(const LargeFile &upload) const
{
    return upload.savedChunk == 0
        || m_store.sizeOf(m_store.partPath(upload.part)) >= upload.savedBytes();
}

void ChunkUpload::startAgain(LargeFile &upload)
{
    const int before = upload.savedChunk;
    upload.savedChunk = 0;
    upload.hashState.clear();
    m_store.dropPart(upload.part);
    setSaved(upload, before);
}

bool ChunkUpload::setSaved(const LargeFile &upload, int before)
{
    Transaction transaction(m_database);
    const bool isSaved = m_uploads.setSaved(upload, before);
    requireRoom(m_database, m_store);
    transaction.commit();
    return isSaved;
}

//! Another service has counted meanwhile: the client continues with what is stored.
QJsonObject ChunkUpload::present(const LargeFile &upload)
{
    if (const auto now = m_uploads.find(upload.id))
        return toJson(*now);
    const QJsonObject known = find(upload.md5);
    if (known.isEmpty())
        throw ServiceError(Refusal::Conflict, QStringLiteral("This upload has ended meanwhile."));
    return known;
}

QJsonObject ChunkUpload::store(const Chunk &chunk, LargeFile upload)
{
    ContentHash hash = hashOf(upload);
    hash.add(chunk.bytes.constData(), chunk.bytes.size());
    m_store.writePart(upload.part, upload.savedBytes(), chunk.bytes);
    upload.savedChunk += 1;
    upload.hashState = hash.state();
    if (upload.isVerified() && hash.result().md5 != upload.md5) {
        remove(upload);
        throw ServiceError(
            Refusal::Mismatch,
            QStringLiteral("The file that arrived does not have the MD5 claimed for it; "
                           "it may have changed meanwhile. Start again."));
    }
    if (!setSaved(upload, chunk.index))
        return present(upload);
    return upload.isVerified() ? finish(upload) : toJson(upload);
}

//! Also continues after a crash between any two of these steps.
QJsonObject ChunkUpload::finish(LargeFile upload)
{
    const bool hasPart = m_store.sizeOf(m_store.partPath(upload.part)) >= 0;
    ContentDigest digest;
    if (hasPart) {
        digest = hashOf(upload).result();
        if (digest.sha256.isEmpty())
            digest = m_store.digestOf(m_store.partPath(upload.part));
    } else if (m_store.holds(upload.md5, upload.fileSize)) {
        digest = m_store.digestOf(m_store.contentPath(upload.md5));
    }
    if (digest.md5 != upload.md5) {
        startAgain(upload);
        return toJson(upload);
    }
    try {
        const StoredFile file = m_contents.admit(
            digest, {upload.id, upload.md5, digest.sha256, upload.fileSize, upload.fileName},
            [&] {
                if (hasPart)
                    m_store.keepPart(upload.part, upload.md5);
            },
            [&] { m_uploads.remove(upload.id); });
        m_store.dropPart(upload.part); // of a content that was there already
        return toJson(file);
    } catch (const ServiceError &) {
        remove(upload);
        throw;
    }
}

void ChunkUpload::remove(const LargeFile &upload)
{
    Transaction transaction(m_database);
    m_uploads.remove(upload.id);
    transaction.commit();
    m_store.dropPart(upload.part);
}

} // namespace service
