#pragma once

#include <service/storage/dialect/SqlDialect.h>

#include <QString>

#include <atomic>
#include <memory>
#include <mutex>

class QSqlDatabase;
class QSqlQuery;

namespace service {

class DataFolder;

//! \brief The records of one data folder, in SQLite or PostgreSQL.
//!
//! Each thread has its own connection, which is opened on first use and closed when the thread ends. Readers never wait for
//! writers; writers wait for each other (see Transaction). A commit returns when it has been written to the disk.
class Database
{
public:
    static constexpr int UsualBusyTimeoutMs = 20000;

    //! \param address of a PostgreSQL database; empty for SQLite in \a folder
    //! \param busyTimeoutMs how long a change waits for another program that writes
    explicit Database(const DataFolder &folder, const QString &address = {},
                      int busyTimeoutMs = UsualBusyTimeoutMs);
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    const SqlDialect &dialect() const { return *m_dialect; }

    //! Checks the database for damage and updates the schema, each migration in a separate transaction. SQLite's database is copied
    //! before each, and requires the FolderLock. \throws DatabaseError also for a database of a newer version
    void open();

    //! Opens a database that another program is using. \throws DatabaseError also for the schema of another version
    void openBesideService();

    //! Closes the connection of the calling thread; the next use opens a new one.
    void close();

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

    //! Returns the number of open connections.
    int connectionCount() const { return *m_connectionCount; }

    std::mutex &writeLock() { return m_writeLock; }

private:
    void migrate();

    const std::unique_ptr<const SqlDialect> m_dialect;
    const QString m_instance; //!< distinguishes the connections of several databases in a thread
    //! Outlives the database: threads close their connections when they end.
    const std::shared_ptr<std::atomic<int>> m_connectionCount =
        std::make_shared<std::atomic<int>>(0);
    std::mutex m_writeLock;
};

} // namespace service
