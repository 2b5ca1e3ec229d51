#include <service/records/Versions.h>

#include <service/records/Document.h>
#include <service/records/Ids.h>
#include <service/records/Times.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

QString selectVersions()
{
    return QStringLiteral(
        "SELECT v.id, v.document_id, v.number, v.file_id, f.size, v.name, v.remark, "
        "v.created_at, v.created_by, v.updated_at FROM version v "
        "JOIN file f ON f.id = v.file_id ");
}

Version read(const Statement &row)
{
    Version version;
    version.id = row.text(0);
    version.documentId = row.text(1);
    version.number = static_cast<int>(row.number(2));
    version.fileId = row.text(3);
    version.fileSize = row.number(4);
    version.name = row.text(5);
    version.remark = row.text(6);
    version.createdAt = row.number(7);
    version.createdBy = row.text(8);
    version.updatedAt = row.number(9);
    return version;
}

} // namespace

Versions::Versions(Database &database) : m_database(database) {}

void Versions::add(const Document &document, const QString &userId)
{
    const qint64 now = m_database.nowMs();
    execute(
        m_database,
        QStringLiteral("INSERT INTO version (id, document_id, number, file_id, name, created_at, "
                       "created_by, updated_at) VALUES (?, ?, (SELECT coalesce(max(number), 0) + 1 "
                       "FROM version WHERE document_id = ?), ?, ?, ?, ?, ?)"),
        {newId(), document.id, document.id, document.fileId, document.name, now, userId, now});
}

QList<Version> Versions::list(const QString &documentId, bool isAscending)
{
    Statement row(m_database,
                  selectVersions()
                      + QStringLiteral("WHERE v.document_id = ? ORDER BY v.number %1")
                            .arg(isAscending ? QStringLiteral("ASC") : QStringLiteral("DESC")),
                  {documentId});
    QList<Version> versions;
    while (row.next())
        versions.append(read(row));
    return versions;
}

std::optional<Version> Versions::find(const QString &id)
{
    Statement row(m_database, selectVersions() + QStringLiteral("WHERE v.id = ?"), {id});
    if (!row.next())
        return std::nullopt;
    return read(row);
}

qint64 Versions::count(const QString &documentId)
{
    Statement count(m_database,
                    QStringLiteral("SELECT count(*) FROM version WHERE document_id = ?"),
                    {documentId});
    count.next();
    return count.number(0);
}

void Versions::setRemark(const QString &id, const QString &remark)
{
    execute(m_database,
            QStringLiteral("UPDATE version SET remark = ?, updated_at = ? WHERE id = ?"),
            {remark, m_database.nowMs(), id});
}

bool Versions::isCurrent(const Version &version)
{
    Statement newer(m_database,
                    QStringLiteral("SELECT 1 FROM version WHERE document_id = ? AND number > ?"),
                    {version.documentId, version.number});
    return !newer.next();
}

void Versions::remove(const QString &id)
{
    execute(m_database, QStringLiteral("DELETE FROM version WHERE id = ?"), {id});
}

} // namespace service
