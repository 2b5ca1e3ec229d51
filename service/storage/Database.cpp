#include <service/storage/Database.h>

#include <service/storage/DataFolder.h>
#include <service/storage/FileSync.h>
#include <service/storage/RegexFunction.h>
#include <service/storage/Statement.h>

#include <QCache>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>

#include <cerrno>
#include <map>
#include <memory>
#include <sqlite3.h>

// The resources of a static library must be registered; the macro needs the global scope.
static void initMigrations()
{
    Q_INIT_RESOURCE(migrations);
}

namespace service {

namespace {

constexpr int NewestSchema = 2;
constexpr int KeptStatements = 64; // for each connection
constexpr int LongestKeptStatement = 4000; // characters

//! True if the connections of this thread have been closed: static objects outlive those of the main thread.
thread_local bool hasEnded = false;

//! The connection of a thread to a database, with its prepared statements.
struct ThreadConnection
{
    explicit ThreadConnection(const QString &connectionName) : name(connectionName) {}
    ~ThreadConnection()
    {
        statements.clear();
        QSqlDatabase::removeDatabase(name);
    }
    ThreadConnection(const ThreadConnection &) = delete;
    ThreadConnection &operator=(const ThreadConnection &) = delete;

    const QString name;
    QCache<QString, QSqlQuery> statements{KeptStatements};
};

//! The connections of a thread, by instance. Closes them when the thread ends.
class ThreadConnections
{
public:
    ~ThreadConnections()
    {
        m_connections.clear();
        hasEnded = true;
    }

    //! Null if there is none.
    ThreadConnection *find(const QString &instance) const
    {
        const auto found = m_connections.find(instance);
        return found == m_connections.end() ? nullptr : found->second.get();
    }
    void insert(const QString &instance, const QString &name)
    {
        m_connections[instance] = std::make_unique<ThreadConnection>(name);
    }
    void remove(const QString &instance) { m_connections.erase(instance); }

private:
    std::map<QString, std::unique_ptr<ThreadConnection>> m_connections;
};

ThreadConnections &threadConnections()
{
    thread_local ThreadConnections connections;
    return connections;
}

void configure(QSqlDatabase &connection, int busyTimeoutMs)
{
    auto *handle = *static_cast<sqlite3 **>(connection.driver()->handle().data());
    // synchronous=FULL: acknowledged changes survive a power failure, not only a crash of the process.
    const char *const settings = "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL;"
                                 "PRAGMA foreign_keys=ON; PRAGMA temp_store=MEMORY;"
                                 "PRAGMA cache_size=-4000; PRAGMA mmap_size=268435456;";
    sqlite3_busy_timeout(handle, busyTimeoutMs);
    if (sqlite3_exec(handle, settings, nullptr, nullptr, nullptr) != SQLITE_OK)
        throw DatabaseError(QString::fromUtf8(sqlite3_errmsg(handle)), sqlite3_errcode(handle));
    registerRegexFunction(handle);
}

void executeScript(QSqlDatabase &connection, const QString &fileName)
{
    QFile script(fileName);
    if (!script.open(QIODevice::ReadOnly))
        throw DatabaseError(QStringLiteral("migration %1 is missing").arg(fileName), SQLITE_ERROR);
    auto *handle = *static_cast<sqlite3 **>(connection.driver()->handle().data());
    if (sqlite3_exec(handle, script.readAll().constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        throw DatabaseError(QString::fromUtf8(sqlite3_errmsg(handle)), sqlite3_errcode(handle));
}

} // namespace

DatabaseError::DatabaseError(const QString &message, int sqliteCode, int systemError)
    : std::runtime_error(message.toStdString()), m_sqliteCode(sqliteCode),
      m_systemError(systemError)
{}

DatabaseError::DatabaseError(const QSqlQuery &query)
    : DatabaseError(query.lastError().text(), query.lastError().nativeErrorCode().toInt(),
                    sqlite3_system_errno(*static_cast<sqlite3 **>(query.driver()->handle().data())))
{}

bool DatabaseError::isFull() const
{
    const int code = m_sqliteCode & 0xff;
    // SQLite itself reports only ENOSPC as full.
    return code == SQLITE_FULL
        || (code == SQLITE_IOERR && (m_systemError == EDQUOT || m_systemError == EFBIG));
}

bool DatabaseError::isReadOnly() const
{
    const int code = m_sqliteCode & 0xff;
    return code == SQLITE_READONLY
        || ((code == SQLITE_IOERR || code == SQLITE_CANTOPEN) && m_systemError == EROFS);
}

bool DatabaseError::isBusy() const
{
    return (m_sqliteCode & 0xff) == SQLITE_BUSY;
}

bool DatabaseError::isDamage() const
{
    const int code = m_sqliteCode & 0xff;
    return code == SQLITE_CORRUPT || code == SQLITE_NOTADB;
}

Database::Database(const DataFolder &folder, int busyTimeoutMs)
    : m_folder(folder), m_busyTimeoutMs(busyTimeoutMs), m_instance(QUuid::createUuid().toString())
{}

Database::~Database()
{
    close();
}

void Database::close()
{
    if (!hasEnded)
        threadConnections().remove(m_instance);
}

void Database::open()
{
    initMigrations();
    requireSound();
    migrate();
    // Reads the planner's statistics, which did not exist when the connection was opened. Opening another connection instead
    // would make SQLite empty and restart its log, and wait for the disk four times.
    execute(*this, QStringLiteral("ANALYZE sqlite_master"));
}

void Database::openBesideService()
{
    const int found = schema();
    if (found != NewestSchema) {
        throw DatabaseError(QStringLiteral("the service that is running on %1 has another version")
                                .arg(m_folder.path()),
                            SQLITE_ERROR);
    }
}

void Database::copyTo(const QString &fileName)
{
    RawFile copy(fileName, RawFile::Mode::ReadWrite);
    copy.truncate(); // SQLite writes to an empty file and keeps its permissions
    execute(*this, QStringLiteral("VACUUM INTO ?"), {fileName});
    copy.sync();
}

QSqlDatabase Database::connection()
{
    if (const ThreadConnection *const known = threadConnections().find(m_instance))
        return QSqlDatabase::database(known->name, false);

    const QString name = QUuid::createUuid().toString();
    {
        QSqlDatabase fresh = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        fresh.setDatabaseName(m_folder.records());
        if (fresh.open()) {
            configure(fresh, m_busyTimeoutMs);
            threadConnections().insert(m_instance, name);
            return fresh;
        }
    }
    QSqlDatabase::removeDatabase(name);
    throw DatabaseError(QStringLiteral("The database %1 cannot be opened").arg(m_folder.records()),
                        SQLITE_CANTOPEN);
}

QSqlQuery Database::prepared(const QString &sql)
{
    QSqlDatabase link = connection();
    const std::unique_ptr<QSqlQuery> kept(
        threadConnections().find(m_instance)->statements.take(sql));
    if (kept)
        return *kept;
    QSqlQuery query(link);
    query.setForwardOnly(true);
    if (!query.prepare(sql))
        throw DatabaseError(query);
    return query;
}

void Database::keep(const QString &sql, QSqlQuery &query)
{
    query.finish();
    if (hasEnded || sql.size() > LongestKeptStatement)
        return;
    if (ThreadConnection *const known = threadConnections().find(m_instance))
        known->statements.insert(sql, new QSqlQuery(query));
}

int Database::schema()
{
    Statement current(*this, QStringLiteral("PRAGMA user_version"));
    current.next();
    return static_cast<int>(current.number(0));
}

void Database::requireSound()
{
    QString damage;
    try {
        Statement check(*this, QStringLiteral("PRAGMA quick_check(1)"));
        damage = check.next() ? check.text(0) : QString();
    } catch (const DatabaseError &error) {
        if (!error.isDamage())
            throw;
        damage = QString::fromUtf8(error.what());
    }
    if (damage != QLatin1String("ok")) {
        throw DatabaseError(
            QStringLiteral("%1 is damaged (%2); move it away and bring a backup with "
                           "\"vell-service restore\"")
                .arg(m_folder.records(), damage),
            SQLITE_CORRUPT);
    }
}

void Database::migrate()
{
    const bool isNew = schema() == 0;
    for (;;) {
        const int version = schema();
        if (version > NewestSchema) {
            throw DatabaseError(
                QStringLiteral("%1 was written by a newer version (schema %2, known is %3)")
                    .arg(m_folder.records())
                    .arg(version)
                    .arg(NewestSchema),
                SQLITE_ERROR);
        }
        if (version == NewestSchema)
            return;
        if (!isNew)
            copyTo(m_folder.recordsBefore(version + 1));
        migrateTo(version + 1);
    }
}

void Database::migrateTo(int version)
{
    QSqlDatabase link = connection();
    // Rebuilding a table would otherwise delete the rows that refer to it. Has no effect inside a transaction.
    execute(*this, QStringLiteral("PRAGMA foreign_keys = OFF"));
    {
        Transaction transaction(*this);
        executeScript(
            link, QStringLiteral(":/vell-service/%1.sql").arg(version, 3, 10, QLatin1Char('0')));
        Statement dangling(*this, QStringLiteral("PRAGMA foreign_key_check"));
        if (dangling.next()) {
            throw DatabaseError(
                QStringLiteral("the migration to schema %1 breaks a reference of %2")
                    .arg(version)
                    .arg(dangling.text(0)),
                SQLITE_CONSTRAINT);
        }
        dangling.finish();
        execute(*this, QStringLiteral("PRAGMA user_version = %1").arg(version));
        transaction.commit();
    }
    execute(*this, QStringLiteral("PRAGMA foreign_keys = ON"));
}

} // namespace service
