#include <service/records/Shares.h>

#include <service/records/DocumentQuery.h>
#include <service/records/Documents.h>
#include <service/records/Ids.h>
#include <service/records/Times.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

constexpr int CodeDigits = 32;

QList<Document> readAll(Statement row)
{
    QList<Document> documents;
    while (row.next())
        documents.append(Documents::read(row));
    return documents;
}

QString selectShares()
{
    return QStringLiteral("SELECT id, project_id, allow_download, expired_at, created_at, "
                          "created_by FROM share ");
}

QList<Share> readShares(Statement row)
{
    QList<Share> shares;
    while (row.next()) {
        Share share{row.text(0), row.text(1), row.number(2) != 0, {}, row.number(4), row.text(5)};
        if (!row.isNull(3))
            share.expiredAt = row.number(3);
        shares.append(share);
    }
    return shares;
}

//! What Shares::list() selects from "share"; not one condition with "or", whose plan would fit no case.
struct ShareFilter
{
    ShareFilter(const QString &projectId, const QString &userId)
    {
        if (!projectId.isEmpty())
            add(QStringLiteral("project_id = ? "), projectId);
        if (!userId.isEmpty())
            add(QStringLiteral("created_by = ? "), userId);
    }

    QString sql;
    QVariantList values;

private:
    void add(const QString &condition, const QString &value)
    {
        sql += (sql.isEmpty() ? QStringLiteral("WHERE ") : QStringLiteral("AND ")) + condition;
        values += value;
    }
};

} // namespace

Shares::Shares(Database &database) : m_database(database) {}

QString Shares::insert(const Share &share, const QStringList &documentIds)
{
    const QString id = newId();
    QString code = newSecret().left(CodeDigits);
    const QVariant expiry = share.expiredAt ? QVariant(*share.expiredAt) : QVariant();
    execute(
        m_database,
        QStringLiteral("INSERT INTO share (id, code_hash, project_id, allow_download, expired_at, "
                       "created_at, created_by) VALUES (?, ?, ?, ?, ?, ?, ?)"),
        {id, secretHash(code), share.projectId, share.allowsDownload ? 1 : 0, expiry,
         m_database.nowMs(), share.createdBy});
    for (int i = 0; i < documentIds.size(); ++i) {
        execute(m_database,
                QStringLiteral("INSERT INTO share_document (share_id, document_id, position) "
                               "VALUES (?, ?, ?) ON CONFLICT DO NOTHING"),
                {id, documentIds.at(i), i});
    }
    return code;
}

std::optional<Share> Shares::findByCode(const QString &code)
{
    const QList<Share> found = readShares(Statement(
        m_database, selectShares() + QStringLiteral("WHERE code_hash = ?"), {secretHash(code)}));
    return found.isEmpty() ? std::nullopt : std::optional<Share>(found.first());
}

std::optional<Share> Shares::find(const QString &id)
{
    const QList<Share> found =
        readShares(Statement(m_database, selectShares() + QStringLiteral("WHERE id = ?"), {id}));
    return found.isEmpty() ? std::nullopt : std::optional<Share>(found.first());
}

QList<Share> Shares::list(const QString &projectId, const QString &userId)
{
    const ShareFilter filter(projectId, userId);
    return readShares(
        Statement(m_database,
                  selectShares() + filter.sql + QStringLiteral("ORDER BY created_at DESC, id DESC"),
                  filter.values));
}

QHash<QString, QList<Document>> Shares::documentsOfList(const QString &projectId,
                                                        const QString &userId)
{
    const ShareFilter filter(projectId, userId);
    Statement row(m_database,
                  QStringLiteral("SELECT s.share_id, d.id, d.name, d.type FROM share_document s "
                                 "JOIN document d ON d.id = s.document_id AND d.recycle = 0 "
                                 "WHERE s.share_id IN (SELECT id FROM share %1) "
                                 "ORDER BY s.position")
                      .arg(filter.sql),
                  filter.values);
    QHash<QString, QList<Document>> documents;
    while (row.next()) {
        Document document;
        document.id = row.text(1);
        document.name = row.text(2);
        document.type = row.text(3);
        documents[row.text(0)].append(document);
    }
    return documents;
}

bool Shares::remove(const QString &id)
{
    return execute(m_database, QStringLiteral("DELETE FROM share WHERE id = ?"), {id}) > 0;
}

QList<Document> Shares::documents(const Share &share, int limit, int skip)
{
    return readAll(
        Statement(m_database,
                  QStringLiteral(
                      "SELECT %1 FROM share_document s JOIN document d ON d.id = s.document_id "
                      "WHERE s.share_id = ? AND d.recycle = 0 ORDER BY s.position LIMIT ? OFFSET ?")
                      .arg(Documents::columns(m_database)),
                  {QString(), QString(), share.id, rowLimit(limit), skip}));
}

QList<Document> Shares::children(const Document &folder, int limit, int skip)
{
    DocumentQuery query;
    query.projectId = folder.projectId;
    query.where = {{QStringLiteral("parentId"), folder.id}};
    query.order = QStringLiteral("type name");
    query.limit = limit;
    query.skip = skip;
    QList<Document> documents;
    DocumentLister(m_database, QString()).list(query, [&documents](const Document &document) {
        documents.append(document);
    });
    return documents;
}

std::optional<Document> Shares::findDocument(const Share &share, const QString &documentId)
{
    Statement row(
        m_database,
        QStringLiteral("WITH RECURSIVE above (id) AS (SELECT id FROM document WHERE id = ? UNION "
                       "SELECT p.parent_id FROM document p JOIN above a ON p.id = a.id "
                       "WHERE p.recycle = 0 AND p.parent_id IS NOT NULL) "
                       "SELECT 1 FROM above a JOIN share_document s ON s.document_id = a.id "
                       "WHERE s.share_id = ?"),
        {documentId, share.id});
    if (!row.next())
        return std::nullopt;
    const std::optional<Document> found = Documents(m_database, QString()).find(documentId);
    return found && found->recycle == Document::Present ? found : std::nullopt;
}

} // namespace service
