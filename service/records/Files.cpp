#include <service/records/Files.h>

#include <service/records/Access.h>
#include <service/records/Ids.h>
#include <service/records/Times.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

std::optional<StoredFile> readOne(Statement &row)
{
    if (!row.next())
        return std::nullopt;
    return StoredFile{row.text(0), row.text(1), row.number(2), row.text(3)};
}

} // namespace

Files::Files(Database &database) : m_database(database) {}

std::optional<StoredFile> Files::find(const QString &id)
{
    Statement row(m_database, QStringLiteral("SELECT id, md5, size, name FROM file WHERE id = ?"),
                  {id});
    return readOne(row);
}

std::optional<StoredFile> Files::findByMd5(const QString &md5)
{
    Statement row(m_database, QStringLiteral("SELECT id, md5, size, name FROM file WHERE md5 = ?"),
                  {md5});
    return readOne(row);
}

StoredFile Files::insert(StoredFile file, const QString &userId)
{
    if (const std::optional<StoredFile> known = findByMd5(file.md5)) {
        file = *known;
    } else {
        if (file.id.isEmpty())
            file.id = newId();
        execute(m_database,
                QStringLiteral("INSERT INTO file (id, md5, size, name, created_at) "
                               "VALUES (?, ?, ?, ?, ?)"),
                {file.id, file.md5, file.size, file.name, nowMs()});
    }
    execute(m_database,
            QStringLiteral("INSERT OR IGNORE INTO file_uploader (file_id, user_id) VALUES (?, ?)"),
            {file.id, userId});
    return file;
}

bool Files::mayDownload(const QString &fileId, Access &access)
{
    Statement own(m_database,
                  QStringLiteral("SELECT 1 FROM file_uploader WHERE file_id = ? AND user_id = ?"),
                  {fileId, access.user().id});
    if (own.next())
        return true;
    Statement holders(
        m_database,
        QStringLiteral("SELECT DISTINCT project_id FROM document WHERE file_id = ? UNION "
                       "SELECT d.project_id FROM version v JOIN document d "
                       "ON d.id = v.document_id WHERE v.file_id = ?"),
        {fileId, fileId});
    while (holders.next()) {
        if (access.may(holders.text(0), Action::Download))
            return true;
    }
    return false;
}

void Files::noteDownload(const QString &fileId, const QString &userId)
{
    execute(m_database,
            QStringLiteral("INSERT OR REPLACE INTO download (document_id, user_id, at) "
                           "SELECT id, ?, ? FROM document WHERE file_id = ? AND recycle = 0"),
            {userId, nowMs(), fileId});
}

} // namespace service
