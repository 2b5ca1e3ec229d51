#pragma once

#include <QString>

#include <mutex>
#include <stdexcept>

class QSqlDatabase;

namespace service {

//! \brief A statement or the connection failed; what() names the reason as SQLite gave it.
class DatabaseError : public std::runtime_error
{
public:
    DatabaseError(const QString &message, int sqliteCode);

    //! The disk or the database has no room left.
    bool isFull() const;

private:
    int m_sqliteCode = 0;
};

//! \brief The SQLite database of one data folder.
//!
//! Every thread gets a connection of its own on first use, closed when the thread ends. Readers never
//! wait for writers (WAL); writers queue up (see Transaction). What is committed is on the disk.
class Database
{
public:
    explicit Database(const QString &fileName);
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    //! Makes the file if it is missing and brings its schema up to date, each migration in a transaction
    //! of its own. \throws DatabaseError also for a file that a newer version has written.
    void open();

    //! The connection of the calling thread.
    QSqlDatabase connection();

    std::mutex &writeLock() { return m_writeLock; }

private:
    void migrate();

    const QString m_fileName;
    const QString m_instance; //!< tells the connections of several databases in one thread apart
    std::mutex m_writeLock;
};

} // namespace service
