#pragma once

#include <service/storage/ConnectionPool.h>
#include <service/storage/DatabaseClock.h>
#include <service/storage/dialect/SqlDialect.h>

#include <QString>

#include <memory>
#include <mutex>

namespace service {

class DataFolder;

//! \brief The records of one data folder, in SQLite or PostgreSQL.
//!
//! Each thread has its own connection, which is opened on first use and closed when the thread ends, or goes back to the pool (rest()). Readers never wait for
//! writers; writers wait for each other (see Transaction). A commit returns when it has been written to the disk.
class Database
{
public:
    static constexpr int UsualBusyTimeoutMs = 20000;

    //! \param address of a PostgreSQL database; empty for SQLite in \a folder
    //! \param busyTimeoutMs how long a change waits for another program that writes
    //! \param maxConnections of PostgreSQL; 0 for no limit
    explicit Database(const DataFolder &folder, const QString &address = {},
                      int busyTimeoutMs = UsualBusyTimeoutMs, int maxConnections = 0);
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    const SqlDialect &dialect() const { return *m_dialect; }

    //! Checks the database for damage and updates the schema, each migration in a separate transaction. SQLite's database is copied
    //! before each, and requires the FolderLock. \throws DatabaseError also for a database of a newer version
    void open();

    //! Opens a database that another program is using. \throws DatabaseError also for the schema of another version
    void openBesideService();

    //! Closes the connection of the calling thread and idle ones; the next use opens a new one.
    void close();

    //! Lets other threads use the connection of the calling thread, if it is one to PostgreSQL and no transaction is open.
    void rest();

    //! Returns milliseconds since 1970 UTC, by the clock of the database. \throws DatabaseError
    qint64 nowMs() { return m_clock.nowMs(*this); }

    //! Writes a consistent copy of SQLite's database, while other threads and programs may write. Replaces \a fileName, which is readable
    //! by its owner only.
    void copyTo(const QString &fileName);

    //! Returns the connection of the calling thread.
    QSqlDatabase connection();

    //! Returns a query with \a sql prepared on the connection of the calling thread, a kept one if there is any.
    //! \throws DatabaseError
    QSqlQuery prepared(const QString &sql);
    //! Keeps \a query, which prepared() has returned for \a sql, for reuse. Parsing takes longer than most statements.
    void keep(const QString &sql, QSqlQuery &query);

    //! Closes a connection that was lost, so that the next use opens another. \return false within a transaction, which is lost, too
    bool reconnect();
    //! Whether the calling thread has begun a transaction that has not ended.
    void setInTransaction(bool isInTransaction);
    bool isInTransaction() const;

    //! Returns the number of open connections.
    int connectionCount() const { return m_pool.openCount(); }

    std::mutex &writeLock() { return m_writeLock; }

private:
    void migrate();
    PooledConnection &current();

    const std::unique_ptr<const SqlDialect> m_dialect;
    const QString m_instance; //!< distinguishes the connections of several databases in a thread
    ConnectionPool m_pool;
    DatabaseClock m_clock;
    std::mutex m_writeLock;
};

//! \brief Lets the connection of the thread rest at the end of a piece of work.
class DatabaseUse
{
public:
    explicit DatabaseUse(Database &database) : m_database(database) {}
    ~DatabaseUse() { m_database.rest(); }
    DatabaseUse(const DatabaseUse &) = delete;
    DatabaseUse &operator=(const DatabaseUse &) = delete;

private:
    Database &m_database;
};

} // namespace service
