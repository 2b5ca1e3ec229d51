#pragma once

#include <QString>

#include <mutex>
#include <stdexcept>

class QSqlDatabase;
class QSqlQuery;

namespace service {

class DataFolder;

//! \brief A statement or the connection failed; what() names the reason as SQLite gave it.
class DatabaseError : public std::runtime_error
{
public:
    //! \param systemError the errno behind \a sqliteCode; 0 for none
    DatabaseError(const QString &message, int sqliteCode, int systemError = 0);
    //! Why \a query failed.
    explicit DatabaseError(const QSqlQuery &query);

    //! The disk or the database has no room left.
    bool isFull() const;
    //! The disk can be read only.
    bool isReadOnly() const;
    //! Another program has been writing for too long.
    bool isBusy() const;
    //! The file is damaged, or no database.
    bool isDamage() const;

private:
    int m_sqliteCode = 0;
    int m_systemError = 0;
};

//! \brief The SQLite database of one data folder.
//!
//! Every thread gets a connection of its own on first use, closed when the thread ends. Readers never
//! wait for writers (WAL); writers queue up (see Transaction). What is committed is on the disk.
class Database
{
public:
    static constexpr int UsualBusyTimeoutMs = 20000;

    //! \param busyTimeoutMs how long a change waits for another program that writes
    explicit Database(const DataFolder &folder, int busyTimeoutMs = UsualBusyTimeoutMs);
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    //! Looks for damage and brings the schema up to date, each migration in a transaction of its own and with a copy
    //! of the database made before. Only under the FolderLock. \throws DatabaseError also for a file that a newer
    //! version has written
    void open();

    //! Opens the database that another program is using. \throws DatabaseError also for another schema than this
    //! version's
    void openBesideService();

    //! Closes the connection of the calling thread; the next use opens another.
    void close();

    //! Writes a copy that is consistent in itself, while others go on writing. \a fileName is replaced; nobody
    //! but the owner may read it.
    void copyTo(const QString &fileName);

    //! The connection of the calling thread.
    QSqlDatabase connection();

    //! A query with \a sql prepared on the calling thread's connection, from those that were kept if there is one.
    //! \throws DatabaseError
    QSqlQuery prepared(const QString &sql);
    //! Keeps \a query, which prepared() has returned for \a sql, for the next time. Parsing takes longer than most
    //! statements do.
    void keep(const QString &sql, QSqlQuery &query);

    std::mutex &writeLock() { return m_writeLock; }

private:
    int schema();
    void requireSound();
    void migrate();
    void migrateTo(int version);

    const DataFolder &m_folder;
    const int m_busyTimeoutMs;
    const QString m_instance; //!< tells the connections of several databases in one thread apart
    std::mutex m_writeLock;
};

} // namespace service
