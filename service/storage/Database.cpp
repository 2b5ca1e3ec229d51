#include <service/storage/Database.h>

#include <service/storage/RegexFunction.h>
#include <service/storage/Statement.h>

#include <QFile>
#include <QHash>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QUuid>

#include <sqlite3.h>

// A static library's resources are not registered by themselves; the macro needs the global scope.
static void initMigrations()
{
    Q_INIT_RESOURCE(migrations);
}

namespace service {

namespace {

constexpr int NewestSchema = 1;
constexpr int BusyTimeoutMs = 20000;

//! Whether this thread's connections are closed already: objects with static lifetime outlive those of
//! the main thread.
thread_local bool hasEnded = false;

//! The connections of one thread, by instance; closes them when the thread ends.
class ThreadConnections
{
public:
    ~ThreadConnections()
    {
        for (const QString &name : qAsConst(m_names))
            QSqlDatabase::removeDatabase(name);
        hasEnded = true;
    }

    QString find(const QString &instance) const { return m_names.value(instance); }
    void insert(const QString &instance, const QString &name) { m_names.insert(instance, name); }
    void remove(const QString &instance)
    {
        const QString name = m_names.take(instance);
        if (!name.isEmpty())
            QSqlDatabase::removeDatabase(name);
    }

private:
    QHash<QString, QString> m_names;
};

ThreadConnections &threadConnections()
{
    thread_local ThreadConnections connections;
    return connections;
}

void configure(QSqlDatabase &connection)
{
    auto *handle = *static_cast<sqlite3 **>(connection.driver()->handle().data());
    // synchronous=FULL: what has been acknowledged survives the loss of power, not only of the process.
    const char *const settings = "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL;"
                                 "PRAGMA foreign_keys=ON; PRAGMA temp_store=MEMORY;"
                                 "PRAGMA cache_size=-16000; PRAGMA mmap_size=268435456;";
    sqlite3_busy_timeout(handle, BusyTimeoutMs);
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

DatabaseError::DatabaseError(const QString &message, int sqliteCode)
    : std::runtime_error(message.toStdString()), m_sqliteCode(sqliteCode)
{}

bool DatabaseError::isFull() const
{
    return (m_sqliteCode & 0xff) == SQLITE_FULL;
}

Database::Database(const QString &fileName)
    : m_fileName(fileName), m_instance(QUuid::createUuid().toString())
{}

Database::~Database()
{
    if (!hasEnded)
        threadConnections().remove(m_instance);
}

void Database::open()
{
    initMigrations();
    migrate();
    // A connection reads the planner's figures when it is opened; this one was there before them.
    threadConnections().remove(m_instance);
}

QSqlDatabase Database::connection()
{
    const QString known = threadConnections().find(m_instance);
    if (!known.isEmpty())
        return QSqlDatabase::database(known, false);

    const QString name = QUuid::createUuid().toString();
    {
        QSqlDatabase fresh = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        fresh.setDatabaseName(m_fileName);
        if (fresh.open()) {
            configure(fresh);
            threadConnections().insert(m_instance, name);
            return fresh;
        }
    }
    QSqlDatabase::removeDatabase(name);
    throw DatabaseError(QStringLiteral("The database %1 cannot be opened").arg(m_fileName),
                        SQLITE_CANTOPEN);
}

void Database::migrate()
{
    QSqlDatabase link = connection();
    for (;;) {
        Transaction transaction(*this);
        Statement current(*this, QStringLiteral("PRAGMA user_version"));
        current.next();
        const int version = static_cast<int>(current.number(0));
        current.finish();
        if (version > NewestSchema) {
            throw DatabaseError(
                QStringLiteral("%1 was written by a newer version (schema %2, known is %3)")
                    .arg(m_fileName)
                    .arg(version)
                    .arg(NewestSchema),
                SQLITE_ERROR);
        }
        if (version == NewestSchema)
            return;
        const int next = version + 1;
        executeScript(link,
                      QStringLiteral(":/vell-service/%1.sql").arg(next, 3, 10, QLatin1Char('0')));
        execute(*this, QStringLiteral("PRAGMA user_version = %1").arg(next));
        transaction.commit();
    }
}

} // namespace service
