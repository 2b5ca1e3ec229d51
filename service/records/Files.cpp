#include <service/records/Files.h>

#include <service/records/Access.h>
#include <service/records/Ids.h>
#include <service/records/Times.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

constexpr qint64 PromiseStepMs = 60000; // so that repeated requests write only once

QString selectFile()
{
    return QStringLiteral("SELECT id, md5, sha256, size, name FROM file ");
}

std::optional<StoredFile> readOne(Statement row)
{
    if (!row.next())
        return std::nullopt;
    return StoredFile{row.text(0), row.text(1), row.text(2), row.number(3), row.text(4)};
}

//! One statement, so that readers do not wait. Its failure must not fail the request.
//! \return the number of changed rows, 1 after a failure
int note(Database &database, const QString &sql, const QVariantList &values)
{
    try {
        return execute(database, sql, values);
    } catch (const DatabaseError &error) {
        qWarning("vell-service: %s", error.what());
        return 1;
    }
}

} // namespace

Files::Files(Database &database) : m_database(database) {}

std::optional<StoredFile> Files::find(const QString &id)
{
    return readOne(Statement(m_database, selectFile() + QStringLiteral("WHERE id = ?"), {id}));
}

std::optional<StoredFile> Files::findByMd5(const QString &md5)
{
    return readOne(Statement(m_database, selectFile() + QStringLiteral("WHERE md5 = ?"), {md5}));
}

StoredFile Files::insert(StoredFile file, const QString &userId)
{
    const qint64 now = m_database.nowMs();
    if (const std::optional<StoredFile> known = findByMd5(file.md5)) {
        execute(m_database,
                QStringLiteral("UPDATE file SET sha256 = ?, promised_at = ? WHERE id = ?"),
                {file.sha256, now, known->id});
        file.id = known->id;
        file.name = known->name;
    } else {
        if (file.id.isEmpty())
            file.id = newId();
        execute(m_database,
                QStringLiteral("INSERT INTO file (id, md5, sha256, size, name, created_at, "
                               "promised_at) VALUES (?, ?, ?, ?, ?, ?, ?)"),
                {file.id, file.md5, file.sha256, file.size, file.name, now, now});
    }
    execute(m_database,
            QStringLiteral("INSERT INTO file_uploader (file_id, user_id) VALUES (?, ?) "
                           "ON CONFLICT DO NOTHING"),
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

bool Files::notePromise(const StoredFile &file)
{
    const qint64 now = m_database.nowMs();
    Statement recent(m_database,
                     QStringLiteral("SELECT 1 FROM file WHERE id = ? AND promised_at > ?"),
                     {file.id, now - PromiseStepMs});
    if (recent.next())
        return true;
    recent.finish();
    return note(m_database, QStringLiteral("UPDATE file SET promised_at = ? WHERE id = ?"),
                {now, file.id})
        > 0;
}

void Files::noteDownload(const QString &fileId, const QString &userId)
{
    note(m_database,
         QStringLiteral("INSERT INTO download (document_id, user_id, at) "
                        "SELECT id, ?, ? FROM document WHERE file_id = ? AND recycle = 0 "
                        "ON CONFLICT (document_id, user_id) DO UPDATE SET at = excluded.at"),
         {userId, m_database.nowMs(), fileId});
}

} // namespace service
