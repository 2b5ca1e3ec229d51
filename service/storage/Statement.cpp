#include <service/storage/Statement.h>

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>

#include <sqlite3.h>

namespace service {

namespace {

[[noreturn]] void fail(const QSqlQuery &query)
{
    const QSqlError error = query.lastError();
    auto *handle = *static_cast<sqlite3 **>(query.driver()->handle().data());
    throw DatabaseError(error.text(), error.nativeErrorCode().toInt(),
                        sqlite3_system_errno(handle));
}

} // namespace

Statement::Statement(Database &database, const QString &sql, const QVariantList &values)
    : m_query(database.connection())
{
    m_query.setForwardOnly(true);
    if (!m_query.prepare(sql))
        fail(m_query);
    for (const QVariant &value : values) {
        const bool isNullText = value.type() == QVariant::String && value.isNull();
        m_query.addBindValue(isNullText ? QVariant(QStringLiteral("")) : value);
    }
    if (!m_query.exec())
        fail(m_query);
}

bool Statement::next()
{
    const bool hasRow = m_query.next();
    if (!hasRow && m_query.lastError().isValid())
        fail(m_query);
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
        // SQLite has rolled back by itself, as it does when the disk is full.
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
