#pragma once

#include <QString>

#include <mutex>
#include <stdexcept>

class QSqlDatabase;
class QSqlQuery;

namespace service {

class DataFolder;

//! \brief A statement or the connection has failed; what() is the message of SQLite.
class DatabaseError : public std::runtime_error
{
public:
    //! \param systemError the errno that caused \a sqliteCode; 0 for none
    DatabaseError(const QString &message, int sqliteCode, int systemError = 0);
    //! The error of \a query.
    explicit DatabaseError(const QSqlQuery &query);

    //! Returns true if the disk or the database is full.
    bool isFull() const;
    //! Returns true if the disk is read-only.
    bool isReadOnly() const;
    //! Returns true if another program has been writing for too long.
    bool isBusy() const;
    //! Returns true if the file is damaged or not a database.
    bool isDamage() const;

private:
    int m_sqliteCode = 0;
    int m_systemError = 0;
};

//! \brief The SQLite database of one data folder.
//!
//! Each thread has its own connection, which is opened on first use and closed when the thread ends. Readers never wait for writers
//! (WAL); writers wait for each other (see Transaction). A commit returns when it has been written to the disk.
class Database
{
public:
    static constexpr int UsualBusyTimeoutMs = 20000;

    //! \param busyTimeoutMs how long a change waits for another program that writes
    explicit Database(const DataFolder &folder, int busyTimeoutMs = UsualBusyTimeoutMs);
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    //! Checks the database for damage and updates the schema, each migration in a separate transaction and after the database has been
    //! copied. Requires the FolderLock. \throws DatabaseError also for a file of a newer version
    void open();

    //! Opens a database that another program is using. \throws DatabaseError also for the schema of another version
    void openBesideService();

    //! Closes the connection of the calling thread; the next use opens a new one.
    void close();

    //! Writes a consistent copy, while other threads and programs may write. Replaces \a fileName, which is readable by its owner only.
    void copyTo(const QString &fileName);

    //! Returns the connection of the calling thread.
    QSqlDatabase connection();

    //! Returns a query with \a sql prepared on the connection of the calling thread, a kept one if there is any.
    //! \throws DatabaseError
    QSqlQuery prepared(const QString &sql);
    //! Keeps \a query, which prepared() has returned for \a sql, for reuse. Parsing takes longer than most statements.
    void keep(const QString &sql, QSqlQuery &query);

    std::mutex &writeLock() { return m_writeLock; }

private:
    int schema();
    void requireSound();
    void migrate();
    void migrateTo(int version);

    const DataFolder &m_folder;
    const int m_busyTimeoutMs;
    const QString m_instance; //!< distinguishes the connections of several databases in a thread
    std::mutex m_writeLock;
};

} // namespace service
