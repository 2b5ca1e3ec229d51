#pragma once

#include <service/storage/DatabaseError.h>

#include <QString>
#include <QVariantList>

#include <memory>

class QSqlQuery;

namespace service {

class Database;
class DataFolder;

//! \brief What one kind of database says and does in its own way. All the rest is the same for every kind.
//!
//! The functions may be called from any thread.
class SqlDialect
{
public:
    //! \param address "postgresql://…" for PostgreSQL; empty for SQLite in \a folder
    //! \param busyTimeoutMs how long a change waits for another program that writes
    static std::unique_ptr<SqlDialect> of(const QString &address, const DataFolder &folder,
                                          int busyTimeoutMs);

    virtual ~SqlDialect() = default;

    //! What messages call the database: no password.
    virtual QString name() const = 0;
    //! Returns true if services of several processes may use the database at the same time.
    virtual bool isShared() const = 0;

    //! \name Connections
    //! @{

    //! Adds the connection \a connectionName of this thread, opens it and sets it up. \throws DatabaseError
    virtual void connect(const QString &connectionName) const = 0;
    //! Why \a query failed.
    virtual DatabaseError error(const QSqlQuery &query) const = 0;
    //! Begins a transaction in which nothing that it reads changes before it has written.
    virtual void begin(Database &database) const = 0;
    virtual void commit(Database &database) const = 0;
    virtual void rollBack(Database &database) const = 0;
    //! Returns when everything that this thread has committed is on the disk. \throws DatabaseError
    virtual void waitForDisk(Database &database) const = 0;
    //! @}

    //! A query for the time of the database in milliseconds since 1970 UTC; empty if it is that of this process.
    virtual QString clockQuery() const = 0;

    //! \name Schema
    //! @{

    //! Looks for damage. \throws DatabaseError
    virtual void requireSound(Database &database) const = 0;
    //! The number of the last migration; 0 for an empty database.
    virtual int schema(Database &database) const = 0;
    //! The one that this version of the program works with.
    virtual int newestSchema() const = 0;
    //! Keeps a copy from before the migration to \a version, where that is the custom.
    virtual void copyBefore(Database &database, int version) const = 0;
    //! Runs the migration in a transaction of its own, unless another process has done so meanwhile.
    virtual void migrateTo(Database &database, int version) const = 0;
    //! After the last migration.
    virtual void finishOpening(Database &database) const = 0;
    //! @}

    //! \name Pieces of statements
    //! @{

    //! The column of document by which a page's rows are found again.
    virtual QString rowKey() const = 0;
    //! An array with one array of \a first and \a second for each row.
    virtual QString jsonOfPairs(const QString &first, const QString &second) const = 0;
    //! A condition on \a column; patternValues() are the values of its question marks.
    virtual QString matches(const QString &column) const = 0;
    virtual QVariantList patternValues(const QString &pattern, const QString &options) const = 0;
    //! @}
};

} // namespace service
