#include <service/records/Documents.h>

#include <service/records/DocumentFields.h>
#include <service/records/Ids.h>
#include <service/records/Names.h>
#include <service/records/ServiceError.h>
#include <service/records/Times.h>
#include <service/storage/Statement.h>

#include <algorithm>
#include <limits>

namespace service {

namespace {

//! That the parent is the folder \a id; the top level for an empty one. Not every database looks for null in an index.
QString inFolder(const QString &id)
{
    return id.isEmpty() ? QStringLiteral("parent_id IS NULL") : QStringLiteral("parent_id = ?");
}

QVariantList folderValue(const QString &id)
{
    return id.isEmpty() ? QVariantList() : QVariantList{id};
}

} // namespace

Documents::Documents(Database &database, const QString &userId)
    : m_database(database), m_userId(userId)
{}

std::optional<Document> Documents::find(const QString &id)
{
    Statement row(
        m_database,
        QStringLiteral("SELECT %1 FROM document d WHERE d.id = ?").arg(columns(m_database)),
        {m_userId, m_userId, id});
    if (!row.next())
        return std::nullopt;
    return read(row);
}

Document Documents::require(const QString &id)
{
    const std::optional<Document> found = find(id);
    if (!found)
        throw ServiceError(Refusal::NotFound,
                           QStringLiteral("There is no document %1.").arg(id.left(60)));
    return *found;
}

Document Documents::requireTarget(const QString &id, const QString &projectId)
{
    const std::optional<Document> found = find(id);
    if (!found || found->projectId != projectId)
        throw ServiceError(Refusal::NotFound,
                           QStringLiteral("The project has no folder %1.").arg(id.left(60)));
    if (!found->isFolder())
        throw ServiceError(Refusal::Invalid,
                           QStringLiteral("%1 is a file, not a folder.").arg(found->name));
    if (found->recycle != Document::Present)
        throw ServiceError(Refusal::Conflict,
                           QStringLiteral("The folder %1 is in the recycle bin.").arg(found->name));
    return *found;
}

void Documents::insert(Document &document)
{
    document.id = newId();
    document.createdAt = document.updatedAt = m_database.nowMs();
    document.createdBy = document.updatedBy = m_userId;
    document.suffix = document.isFolder() ? QString() : suffixOf(document.name);
    // If the folder was put in order, new documents are added at its end; otherwise all positions stay 0.
    Statement last(m_database,
                   QStringLiteral("SELECT max(ord) FROM document WHERE recycle = 0 "
                                  "AND project_id = ? AND type = ? AND ")
                       + inFolder(document.parentId),
                   QVariantList{document.projectId, document.type}
                       + folderValue(document.parentId));
    last.next();
    document.order = last.number(0) > 0
        ? static_cast<int>(std::min<qint64>(last.number(0) + 1, std::numeric_limits<int>::max()))
        : 0;
    last.finish();

    QStringList names;
    QVariantList values;
    for (const DocumentField &field : documentFields()) {
        if (!field.may(DocumentField::Inserted))
            continue;
        names.append(QLatin1String(field.column));
        values.append(field.value(document));
    }
    execute(m_database,
            QStringLiteral("INSERT INTO document (%1) VALUES (%2)")
                .arg(names.join(QLatin1Char(',')), placeholders(names.size())),
            values);
}

void Documents::update(Document &document)
{
    document.updatedAt = m_database.nowMs();
    document.updatedBy = m_userId;
    document.suffix = document.isFolder() ? QString() : suffixOf(document.name);
    QStringList settings;
    QVariantList values;
    for (const DocumentField &field : documentFields()) {
        if (!field.may(DocumentField::Updated))
            continue;
        settings.append(QLatin1String(field.column) + QStringLiteral(" = ?"));
        values.append(field.value(document));
    }
    execute(
        m_database,
        QStringLiteral("UPDATE document SET %1 WHERE id = ?").arg(settings.join(QLatin1Char(','))),
        values << document.id);
}

void Documents::setOrder(const QString &id, int order)
{
    execute(
        m_database,
        QStringLiteral("UPDATE document SET ord = ?, updated_at = ?, updated_by = ? WHERE id = ?"),
        {order, m_database.nowMs(), m_userId, id});
}

bool Documents::isNameTaken(const Document &document, const QString &parentId)
{
    Statement found(m_database,
                    QStringLiteral("SELECT 1 FROM document WHERE recycle = 0 AND project_id = ? "
                                   "AND name = ? AND id <> ? AND %1 LIMIT 1")
                        .arg(inFolder(parentId)),
                    QVariantList{document.projectId, document.name, document.id}
                        + folderValue(parentId));
    return found.next();
}

QString Documents::columns(const Database &database)
{
    static const QString fields = [] {
        QStringList names;
        for (const DocumentField &field : documentFields())
            names.append(field.sqlName());
        return names.join(QStringLiteral(", "));
    }();
    return QStringLiteral("EXISTS (SELECT 1 FROM mark m WHERE m.document_id = d.id "
                          "AND m.user_id = ? AND m.type IN (1, 3)), "
                          "(SELECT l.at FROM download l WHERE l.document_id = d.id "
                          "AND l.user_id = ?), "
                          "(SELECT %1 FROM (SELECT kind, entity_id FROM link "
                          "WHERE document_id = d.id ORDER BY kind, position) k), %2")
        .arg(
            database.dialect().jsonOfPairs(QStringLiteral("k.kind"), QStringLiteral("k.entity_id")),
            fields);
}

Document Documents::read(const Statement &row)
{
    Document document;
    int column = 0;
    document.isFavorite = row.number(column++) != 0;
    document.downloadedAt = row.number(column++);
    document.links = row.text(column++);
    for (const DocumentField &field : documentFields())
        field.setValue(document, row.value(column++));
    return document;
}

} // namespace service
