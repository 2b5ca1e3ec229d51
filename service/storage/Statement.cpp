#include <service/storage/Statement.h>

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlRecord>

#include <limits>

namespace service {

Statement::Statement(Database &database, const QString &sql, const QVariantList &values)
    : m_database(database), m_sql(sql)
{
    try {
        execute(values);
    } catch (const DatabaseError &error) {
        // PostgreSQL has been started again since the last statement of this thread.
        m_query = QSqlQuery(QSqlDatabase());
        if (error.kind() != DatabaseError::Kind::Lost || !m_database.reconnect())
            throw;
        execute(values);
    }
}

void Statement::execute(const QVariantList &values)
{
    m_query = m_database.prepared(m_sql);
    for (const QVariant &value : values) {
        // PostgreSQL ends texts with it.
        if (m_database.dialect().isShared() && value.type() == QVariant::String
            && value.toString().contains(QChar::Null)) {
            throw DatabaseError(QStringLiteral("a text has the character NUL"),
                                DatabaseError::Kind::BadText);
        }
        const bool isNullText = value.type() == QVariant::String && value.isNull();
        m_query.addBindValue(isNullText ? QVariant(QStringLiteral("")) : value);
    }
    if (!m_query.exec())
        throw m_database.dialect().error(m_query);
}

Statement::~Statement()
{
    m_database.keep(m_sql, m_query);
}

bool Statement::next()
{
    const bool hasRow = m_query.next();
    if (!hasRow && m_query.lastError().isValid())
        throw m_database.dialect().error(m_query);
    return hasRow;
}

QStringList Statement::columns() const
{
    const QSqlRecord record = m_query.record();
    QStringList names;
    for (int i = 0; i < record.count(); ++i)
        names.append(record.fieldName(i));
    return names;
}

int execute(Database &database, const QString &sql, const QVariantList &values)
{
    const Statement statement(database, sql, values);
    const int changedRows = statement.changedRows();
    if (changedRows > 0 && !database.isInTransaction())
        database.dialect().waitForDisk(database);
    return changedRows;
}

void executeDirectly(Database &database, const QString &sql)
{
    QSqlQuery query(database.connection());
    if (!query.exec(sql))
        throw database.dialect().error(query);
    while (query.nextResult()) {}
    if (query.lastError().isValid()) // of a later statement
        throw database.dialect().error(query);
}

namespace {

//! Who waits for the lock has a connection already: otherwise the one with the lock could wait for theirs. Where services share the
//! database, it has a lock of its own, which ends before the change is on the disk.
std::unique_lock<std::mutex> lockOf(Database &database)
{
    database.connection();
    return database.dialect().isShared() ? std::unique_lock<std::mutex>()
                                         : std::unique_lock<std::mutex>(database.writeLock());
}

} // namespace

Transaction::Transaction(Database &database) : m_database(database), m_locker(lockOf(database))
{
    m_database.dialect().begin(m_database);
    m_database.setInTransaction(true);
    m_isOpen = true;
}

Transaction::~Transaction()
{
    if (!m_isOpen)
        return;
    try {
        m_database.dialect().rollBack(m_database);
    } catch (const std::exception &) {
        // SQLite has already rolled back, for example because the disk is full, or the connection is lost.
        m_isOpen = false;
    }
    m_database.setInTransaction(false);
}

void Transaction::commit()
{
    try {
        m_database.dialect().commit(m_database);
    } catch (const DatabaseError &error) {
        if (error.kind() != DatabaseError::Kind::Lost)
            throw;
        // Nobody knows whether it has been committed, so that "try again" would be wrong.
        throw DatabaseError(QString::fromUtf8(error.what()));
    }
    m_database.setInTransaction(false);
    m_isOpen = false;
    if (m_locker.owns_lock())
        m_locker.unlock();
    m_database.dialect().waitForDisk(m_database);
}

qint64 rowLimit(qint64 limit)
{
    return limit > 0 ? limit : std::numeric_limits<qint64>::max();
}

QString placeholders(int count)
{
    QString list = QStringLiteral("?,").repeated(count);
    list.chop(1);
    return list;
}

} // namespace service
