#pragma once

#include <service/storage/dialect/SqlDialect.h>

#include <QString>

#include <memory>
#include <mutex>

class QSqlDatabase;
class QSqlQuery;

namespace service {

class DataFolder;

//! \brief The records of one data folder, in SQLite or PostgreSQL.
//!
//! Every thread gets a connection of its own on first use, closed when the thread ends. Readers never
//! wait for writers; writers queue up (see Transaction). What is committed is on the disk.
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

    //! Looks for damage and brings the schema up to date, each migration in a transaction of its own; SQLite's also with a
    //! copy of the database made before, and only under the FolderLock. \throws DatabaseError also for what a newer
    //! version has written
    void open();

    //! Opens the database that another program is using. \throws DatabaseError also for another schema than this
    //! version's
    void openBesideService();

    //! Closes the connection of the calling thread; the next use opens another.
    void close();

    //! Writes a copy of SQLite's database that is consistent in itself, while others go on writing. \a fileName is replaced;
    //! nobody but the owner may read it.
    void copyTo(const QString &fileName);

    //! The connection of the calling thread.
    QSqlDatabase connection();

    //! A query with \a sql prepared on the calling thread's connection, from those that were kept if there is one.
    //! \throws DatabaseError
    QSqlQuery prepared(const QString &sql);
    //! Keeps \a query, which prepared() has returned for \a sql, for the next time. Parsing takes longer than most
    //! statements do.
    void keep(const QString &sql, QSqlQuery &query);

    //! Closes a connection that was lost, so that the next use opens another. \return false within a transaction, which is lost, too
    bool reconnect();
    //! Whether the calling thread has begun a transaction that has not ended.
    void setInTransaction(bool isInTransaction);

    std::mutex &writeLock() { return m_writeLock; }

private:
    void migrate();

    const std::unique_ptr<const SqlDialect> m_dialect;
    const QString m_instance; //!< tells the connections of several databases in one thread apart
    std::mutex m_writeLock;
};

} // namespace service
