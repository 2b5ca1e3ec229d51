#include <service/records/Shares.h>

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
    return readShares(Statement(
        m_database,
        selectShares()
            + QStringLiteral("WHERE (? = '' OR project_id = ?) AND (? = '' OR created_by = ?) "
                             "ORDER BY created_at DESC, id DESC"),
        {projectId, projectId, userId, userId}));
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
    return readAll(
        Statement(m_database,
                  QStringLiteral("SELECT %1 FROM document d WHERE d.project_id = ? "
                                 "AND d.parent_id = ? AND d.recycle = 0 "
                                 "ORDER BY d.type, d.name, d.id LIMIT ? OFFSET ?")
                      .arg(Documents::columns(m_database)),
                  {QString(), QString(), folder.projectId, folder.id, rowLimit(limit), skip}));
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
