#pragma once

#include <service/storage/Database.h>

#include <QSqlQuery>
#include <QVariantList>

namespace service {

//! \brief One SQL statement, executed on construction on the calling thread's connection.
//!
//! Values are bound to the question marks in order. A null QString is bound as empty text; SQL's NULL
//! is an invalid QVariant. \throws DatabaseError
class Statement
{
public:
    Statement(Database &database, const QString &sql, const QVariantList &values = {});
    ~Statement();
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    bool next();
    void finish() { m_query.finish(); }
    int changedRows() const { return m_query.numRowsAffected(); }

    QVariant value(int column) const { return m_query.value(column); }
    QString text(int column) const { return m_query.value(column).toString(); }
    qint64 number(int column) const { return m_query.value(column).toLongLong(); }
    QByteArray bytes(int column) const { return m_query.value(column).toByteArray(); }
    bool isNull(int column) const { return m_query.isNull(column); }

private:
    void execute(const QVariantList &values);

    Database &m_database;
    const QString m_sql;
    QSqlQuery m_query;
};

//! Executes a statement that has no rows to read. \return how many rows it has changed
int execute(Database &database, const QString &sql, const QVariantList &values = {});

//! Executes statements that cannot be prepared, or several at once. \throws DatabaseError
void executeDirectly(Database &database, const QString &sql);

//! \brief A change: all of it, or nothing. Rolled back unless commit() was called.
//!
//! Waits for its turn at once, so that what it reads cannot change before it writes. Within the process writers queue up
//! instead of polling.
class Transaction
{
public:
    explicit Transaction(Database &database);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    //! \throws DatabaseError when it did not reach the disk; nothing has changed then
    void commit();

private:
    Database &m_database;
    std::lock_guard<std::mutex> m_locker;
    bool m_isOpen = false;
};

//! The value for LIMIT: all rows unless \a limit is positive.
qint64 rowLimit(int limit);

//! "?,?,?" for \a count values.
QString placeholders(int count);

} // namespace service
