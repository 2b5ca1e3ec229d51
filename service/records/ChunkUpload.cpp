#include <service/records/ChunkUpload.h>

#include <service/http/HttpMessages.h>
#include <service/storage/ContentStore.h>
#include <service/storage/Statement.h>

#include <QFileInfo>

namespace service {

namespace {

QJsonObject toJson(const LargeFile &record)
{
    return {{QStringLiteral("_id"), record.id},
            {QStringLiteral("md5"), record.md5},
            {QStringLiteral("fileName"), record.fileName},
            {QStringLiteral("fileSize"), record.fileSize},
            {QStringLiteral("fsFileId"), QString()},
            {QStringLiteral("totalChunk"), record.totalChunk()},
            {QStringLiteral("savedChunk"), record.savedChunk}};
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
        throw HttpError(
            409,
            QStringLiteral("The file with this MD5 has %1 bytes, not %2.").arg(known).arg(claimed));
    }
}

} // namespace

ChunkUpload::ChunkUpload(Database &database, ContentStore &contents, const QString &userId)
    : m_database(database), m_contents(contents), m_files(database), m_records(database),
      m_userId(userId)
{}

QJsonObject ChunkUpload::take(const Chunk &chunk, bool isToBeForgotten)
{
    if (const std::optional<StoredFile> file = m_files.findByMd5(chunk.md5)) {
        requireSameSize(chunk.fileSize, file->size);
        Transaction transaction(m_database);
        m_files.insert(*file, m_userId); // this user has uploaded it too
        transaction.commit();
        return toJson(*file);
    }
    LargeFile record = recordFor(chunk);
    if (record.savedChunk > 0)
        repair(record);
    if (record.savedChunk == record.totalChunk())
        return complete(record);
    if (chunk.index != record.savedChunk || isToBeForgotten)
        return toJson(record);
    return store(chunk, record);
}

QJsonObject ChunkUpload::find(const QString &md5)
{
    if (const std::optional<StoredFile> file = m_files.findByMd5(md5))
        return toJson(*file);
    const std::optional<LargeFile> record = m_records.findByMd5(md5);
    return record ? toJson(*record) : QJsonObject();
}

void ChunkUpload::drop(const LargeFile &record)
{
    Transaction transaction(m_database);
    m_records.remove(record.id);
    transaction.commit();
    m_contents.dropPart(record.md5);
}

LargeFile ChunkUpload::recordFor(const Chunk &chunk)
{
    if (const std::optional<LargeFile> record = m_records.findByMd5(chunk.md5)) {
        requireSameSize(chunk.fileSize, record->fileSize);
        return *record;
    }
    m_contents.dropPart(chunk.md5); // of an upload that was dropped while the service was killed
    LargeFile record;
    record.md5 = chunk.md5;
    record.fileName = chunk.fileName;
    record.fileSize = chunk.fileSize;
    Transaction transaction(m_database);
    m_records.insert(record, m_userId);
    transaction.commit();
    return record;
}

//! The part file may have gone: named as content just before a crash, or lost with the disk.
void ChunkUpload::repair(LargeFile &record)
{
    const QFileInfo part(m_contents.partPath(record.md5));
    if (part.exists() && part.size() >= record.savedBytes())
        return;
    if (!part.exists() && m_contents.contains(record.md5)
        && QFileInfo(m_contents.contentPath(record.md5)).size() == record.fileSize) {
        record.savedChunk = record.totalChunk();
        return;
    }
    record.savedChunk = 0;
    record.md5State.clear();
    m_contents.dropPart(record.md5);
    Transaction transaction(m_database);
    m_records.setSaved(record);
    transaction.commit();
}

QJsonObject ChunkUpload::store(const Chunk &chunk, LargeFile record)
{
    Md5 md5;
    if (record.savedChunk > 0 && !md5.restore(record.md5State))
        throw std::runtime_error("the state of an upload's MD5 cannot be read");
    m_contents.writePart(record.md5, record.savedBytes(), *chunk.bytes, md5);
    record.savedChunk += 1;
    if (record.savedChunk == record.totalChunk()) {
        if (QString::fromLatin1(md5.result()) != record.md5) {
            drop(record);
            throw HttpError(
                422,
                QStringLiteral("The file that arrived does not have the MD5 claimed for it; "
                               "it may have changed meanwhile. Start again."));
        }
        m_contents.keepPart(record.md5);
        return complete(record);
    }
    record.md5State = md5.state();
    Transaction transaction(m_database);
    m_records.setSaved(record);
    transaction.commit();
    return toJson(record);
}

QJsonObject ChunkUpload::complete(const LargeFile &record)
{
    Transaction transaction(m_database);
    const StoredFile file =
        m_files.insert({record.id, record.md5, record.fileSize, record.fileName}, m_userId);
    m_records.remove(record.id);
    transaction.commit();
    return toJson(file);
}

} // namespace service
