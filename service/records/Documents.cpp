#include <service/records/Documents.h>

#include <service/http/HttpMessages.h>
#include <service/records/Ids.h>
#include <service/records/Names.h>
#include <service/records/Times.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

QVariant idOrNull(const QString &id)
{
    return id.isEmpty() ? QVariant() : QVariant(id);
}

} // namespace

Documents::Documents(Database &database, const QString &userId)
    : m_database(database), m_userId(userId)
{}

std::optional<Document> Documents::find(const QString &id)
{
    Statement row(m_database,
                  QStringLiteral("SELECT %1 FROM document d WHERE d.id = ?").arg(columns()),
                  {m_userId, m_userId, id});
    if (!row.next())
        return std::nullopt;
    return read(row);
}

Document Documents::require(const QString &id)
{
    const std::optional<Document> found = find(id);
    if (!found)
        throw HttpError(404, QStringLiteral("There is no document %1.").arg(id.left(60)));
    return *found;
}

Document Documents::requireTarget(const QString &id, const QString &projectId)
{
    const std::optional<Document> found = find(id);
    if (!found || found->projectId != projectId)
        throw HttpError(404, QStringLiteral("The project has no folder %1.").arg(id.left(60)));
    if (!found->isFolder())
        throw HttpError(400, QStringLiteral("%1 is a file, not a folder.").arg(found->name));
    if (found->recycle != Document::Present)
        throw HttpError(409,
                        QStringLiteral("The folder %1 is in the recycle bin.").arg(found->name));
    return *found;
}

void Documents::insert(Document &document)
{
    document.id = newId();
    document.createdAt = document.updatedAt = nowMs();
    document.createdBy = document.updatedBy = m_userId;
    document.suffix = document.isFolder() ? QString() : suffixOf(document.name);
    // Where somebody has put the folder in order new things go to its end; elsewhere all stay 0.
    Statement last(m_database,
                   QStringLiteral("SELECT max(ord) FROM document WHERE recycle = 0 "
                                  "AND project_id = ? AND parent_id IS ? AND type = ?"),
                   {document.projectId, idOrNull(document.parentId), document.type});
    last.next();
    document.order = last.number(0) > 0 ? static_cast<int>(last.number(0)) + 1 : 0;
    last.finish();

    execute(
        m_database,
        QStringLiteral("INSERT INTO document (id, project_id, parent_id, type, name, category, "
                       "host_id, host_type, ord, remark, pwd, preview_id, file_id, suffix, size, "
                       "created_at, created_by, updated_at, updated_by) VALUES (%1)")
            .arg(placeholders(19)),
        {document.id, document.projectId, idOrNull(document.parentId), document.type, document.name,
         document.category, document.hostId, document.hostType, document.order, document.remark,
         document.pwd, document.previewId, idOrNull(document.fileId), document.suffix,
         document.size, document.createdAt, document.createdBy, document.updatedAt,
         document.updatedBy});
}

void Documents::update(Document &document)
{
    document.updatedAt = nowMs();
    document.updatedBy = m_userId;
    document.suffix = document.isFolder() ? QString() : suffixOf(document.name);
    execute(
        m_database,
        QStringLiteral("UPDATE document SET parent_id = ?, name = ?, category = ?, host_id = ?, "
                       "host_type = ?, ord = ?, remark = ?, pwd = ?, preview_id = ?, file_id = ?, "
                       "suffix = ?, size = ?, updated_at = ?, updated_by = ? WHERE id = ?"),
        {idOrNull(document.parentId), document.name, document.category, document.hostId,
         document.hostType, document.order, document.remark, document.pwd, document.previewId,
         idOrNull(document.fileId), document.suffix, document.size, document.updatedAt,
         document.updatedBy, document.id});
}

void Documents::setOrder(const QString &id, int order)
{
    execute(
        m_database,
        QStringLiteral("UPDATE document SET ord = ?, updated_at = ?, updated_by = ? WHERE id = ?"),
        {order, nowMs(), m_userId, id});
}

bool Documents::isNameTaken(const Document &document, const QString &parentId)
{
    Statement found(m_database,
                    QStringLiteral("SELECT 1 FROM document WHERE recycle = 0 AND project_id = ? "
                                   "AND parent_id IS ? AND name = ? AND id <> ? LIMIT 1"),
                    {document.projectId, idOrNull(parentId), document.name, document.id});
    return found.next();
}

QString Documents::columns()
{
    return QStringLiteral(
        "EXISTS (SELECT 1 FROM mark m WHERE m.document_id = d.id AND m.user_id = ? AND m.type IN "
        "(1, 3)), "
        "(SELECT l.at FROM download l WHERE l.document_id = d.id AND l.user_id = ?), "
        "(SELECT json_group_array(json_array(k.kind, k.entity_id)) FROM (SELECT kind, entity_id "
        "FROM link WHERE document_id = d.id ORDER BY kind, position) k), "
        "d.id, d.project_id, d.parent_id, d.type, d.name, d.category, d.host_id, d.host_type, "
        "d.ord, "
        "d.remark, d.status, d.pwd, d.preview_id, d.file_id, d.suffix, d.size, d.recycle, "
        "d.created_at, "
        "d.created_by, d.updated_at, d.updated_by");
}

Document Documents::read(const Statement &row)
{
    Document document;
    int column = 0;
    document.isFavorite = row.number(column++) != 0;
    document.downloadedAt = row.number(column++);
    document.links = row.text(column++);
    document.id = row.text(column++);
    document.projectId = row.text(column++);
    document.parentId = row.text(column++);
    document.type = row.text(column++);
    document.name = row.text(column++);
    document.category = row.text(column++);
    document.hostId = row.text(column++);
    document.hostType = static_cast<int>(row.number(column++));
    document.order = static_cast<int>(row.number(column++));
    document.remark = row.text(column++);
    document.status = row.text(column++);
    document.pwd = row.text(column++);
    document.previewId = row.text(column++);
    document.fileId = row.text(column++);
    document.suffix = row.text(column++);
    document.size = row.number(column++);
    document.recycle = static_cast<int>(row.number(column++));
    document.createdAt = row.number(column++);
    document.createdBy = row.text(column++);
    document.updatedAt = row.number(column++);
    document.updatedBy = row.text(column++);
    return document;
}

} // namespace service
