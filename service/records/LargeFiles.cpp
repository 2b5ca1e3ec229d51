#include <service/records/LargeFiles.h>

#include <service/records/Ids.h>
#include <service/records/Times.h>
#include <service/storage/Statement.h>

#include <algorithm>

namespace service {

namespace {

QString selectUpload()
{
    return QStringLiteral(
        "SELECT id, md5, part, file_name, file_size, saved_chunk, hash_state, created_by "
        "FROM large_file ");
}

std::optional<LargeFile> readOne(Statement row)
{
    if (!row.next())
        return std::nullopt;
    LargeFile upload;
    upload.id = row.text(0);
    upload.md5 = row.text(1);
    upload.part = row.text(2);
    upload.fileName = row.text(3);
    upload.fileSize = row.number(4);
    upload.savedChunk = static_cast<int>(row.number(5));
    upload.hashState = row.bytes(6);
    upload.createdBy = row.text(7);
    return upload;
}

} // namespace

qint64 LargeFile::chunkLength(int index) const
{
    return std::min(ChunkBytes, fileSize - static_cast<qint64>(index) * ChunkBytes);
}

int LargeFile::chunkCount(qint64 fileSize)
{
    return static_cast<int>((fileSize + ChunkBytes - 1) / ChunkBytes);
}

LargeFiles::LargeFiles(Database &database) : m_database(database) {}

std::optional<LargeFile> LargeFiles::find(const QString &id)
{
    return readOne(Statement(m_database, selectUpload() + QStringLiteral("WHERE id = ?"), {id}));
}

std::optional<LargeFile> LargeFiles::findByMd5(const QString &md5, const QString &userId)
{
    return readOne(Statement(m_database,
                             selectUpload() + QStringLiteral("WHERE md5 = ? AND created_by = ?"),
                             {md5, userId}));
}

void LargeFiles::insert(LargeFile &upload, const QString &userId)
{
    upload.id = newId();
    upload.part = upload.id;
    upload.createdBy = userId;
    const qint64 now = m_database.nowMs();
    execute(m_database,
            QStringLiteral("INSERT INTO large_file (id, md5, part, file_name, file_size, "
                           "total_chunk, created_at, created_by, updated_at) "
                           "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"),
            {upload.id, upload.md5, upload.part, upload.fileName, upload.fileSize,
             upload.totalChunk(), now, userId, now});
}

bool LargeFiles::setSaved(const LargeFile &upload, int before)
{
    return execute(m_database,
                   QStringLiteral("UPDATE large_file SET saved_chunk = ?, hash_state = ?, "
                                  "updated_at = ? WHERE id = ? AND saved_chunk = ?"),
                   {upload.savedChunk, upload.hashState, m_database.nowMs(), upload.id, before})
        > 0;
}

void LargeFiles::remove(const QString &id)
{
    execute(m_database, QStringLiteral("DELETE FROM large_file WHERE id = ?"), {id});
}

} // namespace service
