#include <service/records/Marks.h>

#include <service/records/Times.h>
#include <service/storage/Statement.h>

namespace service {

Marks::Marks(Database &database, const QString &userId) : m_database(database), m_userId(userId) {}

void Marks::set(const QString &documentId, int type, bool isMarked)
{
    if (isMarked) {
        execute(m_database,
                QStringLiteral("INSERT INTO mark (user_id, document_id, type, created_at) "
                               "VALUES (?, ?, ?, ?) ON CONFLICT (user_id, type, document_id) "
                               "DO UPDATE SET created_at = excluded.created_at"),
                {m_userId, documentId, type, m_database.nowMs()});
    } else {
        execute(
            m_database,
            QStringLiteral("DELETE FROM mark WHERE user_id = ? AND document_id = ? AND type = ?"),
            {m_userId, documentId, type});
    }
}

QList<Mark> Marks::list(const QString &documentId, std::optional<int> type)
{
    // Not one statement with "or": its plan would fit neither case.
    QString condition = QStringLiteral("m.user_id = ?");
    QVariantList values{m_userId};
    if (!documentId.isEmpty()) {
        condition += QStringLiteral(" AND m.document_id = ?");
        values += documentId;
    }
    if (type) {
        condition += QStringLiteral(" AND m.type = ?");
        values += *type;
    }
    Statement row(m_database,
                  QStringLiteral("SELECT m.document_id, m.type, m.created_at FROM mark m "
                                 "JOIN document d ON d.id = m.document_id AND d.recycle = 0 "
                                 "WHERE %1 ORDER BY m.created_at DESC, m.document_id")
                      .arg(condition),
                  values);
    QList<Mark> marks;
    while (row.next())
        marks.append({row.text(0), static_cast<int>(row.number(1)), row.number(2)});
    return marks;
}

} // namespace service
