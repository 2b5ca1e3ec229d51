#include <service/records/DocumentTree.h>

#include <service/records/Times.h>
#include <service/storage/Statement.h>

namespace service {

DocumentTree::DocumentTree(Database &database) : m_database(database) {}

bool DocumentTree::isAtOrBelow(const QString &id, const QString &folderId)
{
    Statement found(
        m_database,
        QStringLiteral("WITH RECURSIVE above (id) AS (SELECT id FROM document WHERE id = ? UNION "
                       "SELECT d.parent_id FROM document d JOIN above a ON d.id = a.id "
                       "WHERE d.parent_id IS NOT NULL) SELECT 1 FROM above WHERE id = ?"),
        {id, folderId});
    return found.next();
}

QList<QPair<QString, QString>> DocumentTree::foldersAbove(const QString &id)
{
    Statement found(
        m_database,
        QStringLiteral("WITH RECURSIVE above (id, parent_id, name, depth) AS ("
                       "SELECT id, parent_id, name, 0 FROM document WHERE id = ? UNION "
                       "SELECT d.id, d.parent_id, d.name, a.depth + 1 FROM document d "
                       "JOIN above a ON d.id = a.parent_id) "
                       "SELECT id, name FROM above WHERE depth > 0 ORDER BY depth DESC"),
        {id});
    QList<QPair<QString, QString>> folders;
    while (found.next())
        folders.append({found.text(0), found.text(1)});
    return folders;
}

bool DocumentTree::createdAllBelow(const Document &folder, const QString &userId)
{
    Statement other(m_database,
                    QStringLiteral("WITH RECURSIVE below (id, created_by) AS ("
                                   "SELECT id, created_by FROM document WHERE parent_id = ? "
                                   "AND recycle <> ? UNION ALL "
                                   "SELECT d.id, d.created_by FROM document d JOIN below b "
                                   "ON d.parent_id = b.id WHERE d.recycle <> ?) "
                                   "SELECT 1 FROM below WHERE created_by <> ? LIMIT 1"),
                    {folder.id, Document::Deleted, Document::Deleted, userId});
    return !other.next();
}

qint64 DocumentTree::childCount(const QString &id)
{
    Statement count(
        m_database,
        QStringLiteral("SELECT count(*) FROM document WHERE parent_id = ? AND recycle = 0"), {id});
    count.next();
    return count.number(0);
}

void DocumentTree::recycle(const Document &document, const QString &userId)
{
    const qint64 now = m_database.nowMs();
    execute(m_database,
            QStringLiteral("WITH RECURSIVE below (id) AS ("
                           "SELECT id FROM document WHERE parent_id = ? AND recycle = 0 UNION ALL "
                           "SELECT d.id FROM document d JOIN below b ON d.parent_id = b.id "
                           "WHERE d.recycle = 0) "
                           "UPDATE document SET recycle = 2, recycled_at = ? "
                           "WHERE id IN (SELECT id FROM below)"),
            {document.id, now});
    execute(m_database,
            QStringLiteral("UPDATE document SET recycle = 1, recycled_at = ?, updated_at = ?, "
                           "updated_by = ? WHERE id = ?"),
            {now, now, userId, document.id});
}

void DocumentTree::restore(const Document &document, const QString &userId)
{
    // Documents that were deleted themselves before their folder stay in the recycle bin: they end the recursion.
    execute(m_database,
            QStringLiteral("WITH RECURSIVE below (id) AS ("
                           "SELECT id FROM document WHERE parent_id = ? AND recycle = 2 UNION ALL "
                           "SELECT d.id FROM document d JOIN below b ON d.parent_id = b.id "
                           "WHERE d.recycle = 2) "
                           "UPDATE document SET recycle = 0, recycled_at = NULL "
                           "WHERE id IN (SELECT id FROM below)"),
            {document.id});
    execute(m_database,
            QStringLiteral("UPDATE document SET recycle = 0, recycled_at = NULL, updated_at = ?, "
                           "updated_by = ?, parent_id = (SELECT p.id FROM document p "
                           "WHERE p.id = document.parent_id AND p.recycle = 0) WHERE id = ?"),
            {m_database.nowMs(), userId, document.id});
}

int DocumentTree::purge(const QString &projectId, const QString &category)
{
    return purgeWhere(
        QStringLiteral(
            "project_id = ? AND recycle = 1 "
            "AND recycle > 0 " // for SQLite, which else does not use the index of the bin
            "AND (? = '' OR category = ?)"),
        {projectId, category, category});
}

int DocumentTree::purge(const Document &document)
{
    return purgeWhere(QStringLiteral("id = ? AND recycle = 1"), {document.id});
}

int DocumentTree::purgeWhere(const QString &condition, const QVariantList &values)
{
    executeDirectly(m_database,
                    QStringLiteral("CREATE TEMP TABLE IF NOT EXISTS doomed (id TEXT PRIMARY KEY)"));
    execute(m_database, QStringLiteral("DELETE FROM doomed"));
    execute(m_database,
            QStringLiteral("WITH RECURSIVE gone (id) AS (SELECT id FROM document WHERE %1 UNION "
                           "SELECT d.id FROM document d JOIN gone g ON d.parent_id = g.id "
                           "WHERE d.recycle = 2) INSERT INTO doomed SELECT id FROM gone")
                .arg(condition),
            values);
    // Documents that were deleted themselves, and are not to be removed, are kept without their folder.
    execute(m_database,
            QStringLiteral("UPDATE document SET parent_id = NULL WHERE parent_id IN "
                           "(SELECT id FROM doomed) AND id NOT IN (SELECT id FROM doomed)"));
    return execute(m_database,
                   QStringLiteral("DELETE FROM document WHERE id IN (SELECT id FROM doomed)"));
}

} // namespace service
