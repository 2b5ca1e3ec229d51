#include <service/records/Contents.h>

#include <service/records/Access.h>
#include <service/records/ServiceError.h>
#include <service/storage/ContentLock.h>
#include <service/storage/ContentStore.h>
#include <service/storage/Statement.h>
#include <service/storage/StoredBytes.h>

namespace service {

Contents::Contents(Database &database, ContentStore &store, Access &access)
    : m_database(database), m_store(store), m_access(access), m_files(database)
{}

std::optional<StoredFile> Contents::findByMd5(const QString &md5)
{
    std::optional<StoredFile> file = m_files.findByMd5(md5);
    if (!file || !m_files.mayDownload(file->id, m_access) || !m_store.holds(md5, file->size))
        return std::nullopt;
    if (!m_files.notePromise(*file))
        return std::nullopt;
    return file;
}

StoredFile Contents::requireForDocument(const QString &id)
{
    return require(id,
                   {Refusal::Invalid,
                    QStringLiteral("There is no file \"%1\" that you may use.").arg(id.left(60))});
}

StoredFile Contents::requireForDownload(const QString &id)
{
    return require(id,
                   {Refusal::NotFound,
                    QStringLiteral("There is no file %1 that you may download.").arg(id.left(60))});
}

StoredFile Contents::require(const QString &id, const ServiceError &refusal)
{
    const std::optional<StoredFile> file = m_files.find(id);
    if (!file || !m_files.mayDownload(id, m_access))
        throw refusal;
    requireHeld(*file);
    return *file;
}

void Contents::requireHeld(const StoredFile &file)
{
    if (!m_store.holds(file.md5, file.size)) {
        throw ServiceError(Refusal::Gone,
                           QStringLiteral("The content of this file is no longer on the service's "
                                          "disk; uploading the same file again mends it."));
    }
}

StoredFile Contents::keep(IncomingFile &file, const QString &name)
{
    const ContentDigest digest = file.digest();
    const ContentLock lock(m_store.folder(), digest.md5);
    try {
        return admit(
            digest, {QString(), digest.md5, digest.sha256, digest.size, name},
            [&] { m_store.keep(file, digest.md5); }, [&] { requireRoom(m_database, m_store); });
    } catch (const StorageError &) {
        if (!m_files.findByMd5(digest.md5))
            m_store.removeContent(digest.md5);
        throw;
    }
}

StoredFile Contents::admit(const ContentDigest &digest, StoredFile fresh,
                           const std::function<void()> &giveName,
                           const std::function<void()> &alsoChange)
{
    const std::optional<StoredFile> known = m_files.findByMd5(digest.md5);
    if (known)
        requireSame(*known, digest);
    // The row is added only after the content has been written to the disk.
    if (!known || !m_store.holds(digest.md5, digest.size))
        giveName();
    Transaction transaction(m_database);
    fresh = m_files.insert(fresh, m_access.user().id);
    alsoChange();
    transaction.commit();
    return fresh;
}

void Contents::requireSame(const StoredFile &known, const ContentDigest &digest)
{
    QString sha256 = known.sha256;
    if (sha256.isEmpty() && m_store.holds(known.md5, known.size)) {
        const QString path = m_store.contentPath(known.md5);
        const ContentDigest stored = m_store.digestOf(path);
        if (stored.md5 == known.md5)
            sha256 = stored.sha256;
        else
            m_store.moveAside(path); // damaged: replaced by the new content
    }
    if (known.size != digest.size || (!sha256.isEmpty() && sha256 != digest.sha256)) {
        throw ServiceError(Refusal::Conflict,
                           QStringLiteral("The service has another file with the same MD5 and "
                                          "cannot store this one."));
    }
}

} // namespace service
