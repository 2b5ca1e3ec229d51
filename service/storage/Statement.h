#pragma once

#include <service/storage/Database.h>

#include <QSqlQuery>
#include <QStringList>
#include <QVariantList>

namespace service {

//! \brief An SQL statement, executed by the constructor on the connection of the calling thread.
//!
//! Values are bound to the question marks in order. A null QString is bound as an empty string, an invalid QVariant as NULL.
//! \throws DatabaseError
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
    QStringList columns() const;
    bool isNull(int column) const { return m_query.isNull(column); }

private:
    void execute(const QVariantList &values);

    Database &m_database;
    const QString m_sql;
    QSqlQuery m_query;
};

//! Executes a statement that returns no rows. What it changes outside of a transaction is on the disk on return. \return the number of changed rows
int execute(Database &database, const QString &sql, const QVariantList &values = {});

//! Executes statements that cannot be prepared, or several at once. \throws DatabaseError
void executeDirectly(Database &database, const QString &sql);

//! \brief A transaction, which the destructor rolls back unless commit() was called.
//!
//! Waits at once until it is the only one that changes something, so that data cannot change between reading and writing. Waits for other
//! writers of this process instead of polling.
class Transaction
{
public:
    explicit Transaction(Database &database);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    //! Returns when the changes are on the disk; other writers may go on before.
    //! \throws DatabaseError if they could not be written; nothing has changed then, unless only the disk has failed
    void commit();

private:
    Database &m_database;
    std::unique_lock<std::mutex> m_locker;
    bool m_isOpen = false;
};

//! Returns the value for LIMIT: all rows unless \a limit is positive.
qint64 rowLimit(qint64 limit);

//! Returns "?,?,?" for \a count values.
QString placeholders(int count);

} // namespace service
