#include <service/records/LargeFiles.h>

#include <service/records/Ids.h>
#include <service/records/Times.h>
#include <service/storage/Statement.h>

#include <algorithm>

namespace service {

namespace {

QString selectRecord()
{
    return QStringLiteral(
        "SELECT id, md5, file_name, file_size, saved_chunk, md5_state, created_by "
        "FROM large_file ");
}

std::optional<LargeFile> readOne(Statement &row)
{
    if (!row.next())
        return std::nullopt;
    LargeFile record;
    record.id = row.text(0);
    record.md5 = row.text(1);
    record.fileName = row.text(2);
    record.fileSize = row.number(3);
    record.savedChunk = static_cast<int>(row.number(4));
    record.md5State = row.bytes(5);
    record.createdBy = row.text(6);
    return record;
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
    Statement row(m_database, selectRecord() + QStringLiteral("WHERE id = ?"), {id});
    return readOne(row);
}

std::optional<LargeFile> LargeFiles::findByMd5(const QString &md5)
{
    Statement row(m_database, selectRecord() + QStringLiteral("WHERE md5 = ?"), {md5});
    return readOne(row);
}

void LargeFiles::insert(LargeFile &record, const QString &userId)
{
    record.id = newId();
    record.createdBy = userId;
    const qint64 now = nowMs();
    execute(m_database,
            QStringLiteral("INSERT INTO large_file (id, md5, file_name, file_size, total_chunk, "
                           "created_at, created_by, updated_at) VALUES (?, ?, ?, ?, ?, ?, ?, ?)"),
            {record.id, record.md5, record.fileName, record.fileSize, record.totalChunk(), now,
             userId, now});
}

void LargeFiles::setSaved(const LargeFile &record)
{
    execute(
        m_database,
        QStringLiteral(
            "UPDATE large_file SET saved_chunk = ?, md5_state = ?, updated_at = ? WHERE id = ?"),
        {record.savedChunk, record.md5State, nowMs(), record.id});
}

void LargeFiles::remove(const QString &id)
{
    execute(m_database, QStringLiteral("DELETE FROM large_file WHERE id = ?"), {id});
}

} // namespace service
