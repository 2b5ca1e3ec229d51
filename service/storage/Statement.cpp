#include <service/storage/Statement.h>

#include <QSqlError>

namespace service {

Statement::Statement(Database &database, const QString &sql, const QVariantList &values)
    : m_database(database), m_sql(sql), m_query(database.prepared(sql))
{
    for (const QVariant &value : values) {
        const bool isNullText = value.type() == QVariant::String && value.isNull();
        m_query.addBindValue(isNullText ? QVariant(QStringLiteral("")) : value);
    }
    if (!m_query.exec())
        throw DatabaseError(m_query);
}

Statement::~Statement()
{
    m_database.keep(m_sql, m_query);
}

bool Statement::next()
{
    const bool hasRow = m_query.next();
    if (!hasRow && m_query.lastError().isValid())
        throw DatabaseError(m_query);
    return hasRow;
}

int execute(Database &database, const QString &sql, const QVariantList &values)
{
    const Statement statement(database, sql, values);
    return statement.changedRows();
}

Transaction::Transaction(Database &database) : m_database(database), m_locker(database.writeLock())
{
    execute(m_database, QStringLiteral("BEGIN IMMEDIATE"));
    m_isOpen = true;
}

Transaction::~Transaction()
{
    if (!m_isOpen)
        return;
    try {
        execute(m_database, QStringLiteral("ROLLBACK"));
    } catch (const std::exception &) {
        // SQLite has already rolled back, for example because the disk is full.
        m_isOpen = false;
    }
}

void Transaction::commit()
{
    execute(m_database, QStringLiteral("COMMIT"));
    m_isOpen = false;
}

QString placeholders(int count)
{
    QString list = QStringLiteral("?,").repeated(count);
    list.chop(1);
    return list;
}

} // namespace service
