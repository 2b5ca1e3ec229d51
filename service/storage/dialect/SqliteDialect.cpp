#include <service/storage/dialect/SqliteDialect.h>

#include <service/storage/DataFolder.h>
#include <service/storage/RegexFunction.h>
#include <service/storage/Statement.h>
#include <service/storage/dialect/MigrationScript.h>

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

#include <cerrno>
#include <sqlite3.h>

namespace service {

namespace {

using Kind = DatabaseError::Kind;

sqlite3 *handleOf(const QSqlDriver *driver)
{
    return *static_cast<sqlite3 **>(driver->handle().data());
}

Kind kindOf(int sqliteCode, int systemError, const QString &message)
{
    const int code = sqliteCode & 0xff;
    const bool isInputOutput = code == SQLITE_IOERR;
    // SQLite itself calls only ENOSPC full.
    if (code == SQLITE_FULL || (isInputOutput && (systemError == EDQUOT || systemError == EFBIG)))
        return Kind::Full;
    if (code == SQLITE_READONLY
        || ((isInputOutput || code == SQLITE_CANTOPEN) && systemError == EROFS))
        return Kind::ReadOnly;
    if (code == SQLITE_BUSY)
        return Kind::Busy;
    if (code == SQLITE_CORRUPT || code == SQLITE_NOTADB)
        return Kind::Damaged;
    return message.contains(regexLimitMessage()) ? Kind::SlowPattern : Kind::Other;
}

void run(sqlite3 *handle, const char *script)
{
    if (sqlite3_exec(handle, script, nullptr, nullptr, nullptr) != SQLITE_OK) {
        const QString message = QString::fromUtf8(sqlite3_errmsg(handle));
        throw DatabaseError(message,
                            kindOf(sqlite3_errcode(handle), sqlite3_system_errno(handle), message));
    }
}

} // namespace

SqliteDialect::SqliteDialect(const DataFolder &folder, int busyTimeoutMs)
    : m_folder(folder), m_busyTimeoutMs(busyTimeoutMs)
{}

QString SqliteDialect::name() const
{
    return m_folder.records();
}

void SqliteDialect::connect(const QString &connectionName) const
{
    QSqlDatabase connection = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName);
    connection.setDatabaseName(m_folder.records());
    if (!connection.open())
        throw DatabaseError(QStringLiteral("The database %1 cannot be opened").arg(name()));
    sqlite3 *const handle = handleOf(connection.driver());
    sqlite3_busy_timeout(handle, m_busyTimeoutMs);
    // synchronous=NORMAL: a commit does not wait for the disk while it keeps other writers waiting; waitForDisk() does.
    run(handle,
        "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL; PRAGMA wal_autocheckpoint=4000;"
        "PRAGMA foreign_keys=ON; PRAGMA temp_store=MEMORY;"
        "PRAGMA cache_size=-4000; PRAGMA mmap_size=268435456;");
    registerRegexFunction(handle);
}

DatabaseError SqliteDialect::error(const QSqlQuery &query) const
{
    const QString message = query.lastError().text();
    return DatabaseError(message,
                         kindOf(query.lastError().nativeErrorCode().toInt(),
                                sqlite3_system_errno(handleOf(query.driver())), message));
}

//! Takes the write lock at once.
void SqliteDialect::begin(Database &database) const
{
    const Statement statement(database, QStringLiteral("BEGIN IMMEDIATE"));
}

void SqliteDialect::commit(Database &database) const
{
    const Statement statement(database, QStringLiteral("COMMIT"));
}

void SqliteDialect::rollBack(Database &database) const
{
    const Statement statement(database, QStringLiteral("ROLLBACK"));
}

void SqliteDialect::waitForDisk(Database &database) const
{
    sqlite3 *const handle = handleOf(database.connection().driver());
    m_log.wait([&] {
        sqlite3_file *log = nullptr;
        sqlite3_file_control(handle, "main", SQLITE_FCNTL_JOURNAL_POINTER, &log);
        if (!log || !log->pMethods)
            return; // nothing has been written since the connection was opened
        const int code = log->pMethods->xSync(log, SQLITE_SYNC_NORMAL | SQLITE_SYNC_DATAONLY);
        if (code != SQLITE_OK) {
            throw DatabaseError(
                QStringLiteral("The log of %1 cannot be written to the disk").arg(name()),
                kindOf(code, errno, {}));
        }
    });
}

void SqliteDialect::requireSound(Database &database) const
{
    QString damage;
    try {
        Statement check(database, QStringLiteral("PRAGMA quick_check(1)"));
        damage = check.next() ? check.text(0) : QString();
    } catch (const DatabaseError &error) {
        if (error.kind() != Kind::Damaged)
            throw;
        damage = QString::fromUtf8(error.what());
    }
    if (damage != QLatin1String("ok")) {
        throw DatabaseError(
            QStringLiteral("%1 is damaged (%2); move it away and bring a backup with "
                           "\"vell-service restore\"")
                .arg(name(), damage),
            Kind::Damaged);
    }
}

int SqliteDialect::schema(Database &database) const
{
    Statement current(database, QStringLiteral("PRAGMA user_version"));
    current.next();
    return static_cast<int>(current.number(0));
}

void SqliteDialect::copyBefore(Database &database, int version) const
{
    database.copyTo(m_folder.recordsBefore(version));
}

void SqliteDialect::migrateTo(Database &database, int version) const
{
    // A table that is rebuilt would otherwise take with it what refers to it. Has no effect inside a transaction.
    execute(database, QStringLiteral("PRAGMA foreign_keys = OFF"));
    {
        Transaction transaction(database);
        run(handleOf(database.connection().driver()),
            migrationScript(QStringLiteral("sqlite"), version).constData());
        Statement dangling(database, QStringLiteral("PRAGMA foreign_key_check"));
        if (dangling.next()) {
            throw DatabaseError(
                QStringLiteral("the migration to schema %1 breaks a reference of %2")
                    .arg(version)
                    .arg(dangling.text(0)));
        }
        dangling.finish();
        execute(database, QStringLiteral("PRAGMA user_version = %1").arg(version));
        transaction.commit();
    }
    execute(database, QStringLiteral("PRAGMA foreign_keys = ON"));
}

void SqliteDialect::finishOpening(Database &database) const
{
    // Reads the planner's figures, which were not there yet when the connection was opened. Opening another one instead
    // would make SQLite empty its log and begin it anew, and wait four times for the disk.
    execute(database, QStringLiteral("ANALYZE sqlite_master"));
}

QString SqliteDialect::jsonOfPairs(const QString &first, const QString &second) const
{
    return QStringLiteral("json_group_array(json_array(%1, %2))").arg(first, second);
}

QString SqliteDialect::matches(const QString &column) const
{
    return QStringLiteral("name_matches(?, ?, %1)").arg(column);
}

QVariantList SqliteDialect::patternValues(const QString &pattern, const QString &options) const
{
    return {pattern, options};
}

} // namespace service
