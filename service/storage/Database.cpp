#include <service/storage/Database.h>

#include <service/storage/FileSync.h>
#include <service/storage/Statement.h>

#include <QCache>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QUuid>

#include <map>
#include <memory>

namespace service {

namespace {

constexpr int KeptStatements = 64; // for each connection
constexpr int LongestKeptStatement = 4000; // characters

//! True if the connections of this thread have been closed: static objects outlive those of the main thread.
thread_local bool hasEnded = false;

//! The connection of a thread to a database, with its prepared statements.
struct ThreadConnection
{
    ThreadConnection(const QString &connectionName,
                     const std::shared_ptr<std::atomic<int>> &counter)
        : name(connectionName), count(counter)
    {
        ++*count;
    }
    ~ThreadConnection()
    {
        statements.clear();
        QSqlDatabase::removeDatabase(name);
        --*count;
    }
    ThreadConnection(const ThreadConnection &) = delete;
    ThreadConnection &operator=(const ThreadConnection &) = delete;

    const QString name;
    const std::shared_ptr<std::atomic<int>> count;
    QCache<QString, QSqlQuery> statements{KeptStatements};
    bool isInTransaction = false;
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
    void insert(const QString &instance, std::unique_ptr<ThreadConnection> connection)
    {
        m_connections[instance] = std::move(connection);
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

} // namespace

Database::Database(const DataFolder &folder, const QString &address, int busyTimeoutMs)
    : m_dialect(SqlDialect::of(address, folder, busyTimeoutMs)),
      m_instance(QUuid::createUuid().toString())
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
    m_dialect->requireSound(*this);
    migrate();
    m_dialect->finishOpening(*this);
}

void Database::openBesideService()
{
    if (m_dialect->schema(*this) != m_dialect->newestSchema()) {
        throw DatabaseError(QStringLiteral("the service that is running on %1 has another version")
                                .arg(m_dialect->name()));
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
    try {
        m_dialect->connect(name);
    } catch (...) {
        QSqlDatabase::removeDatabase(name);
        throw;
    }
    threadConnections().insert(m_instance,
                               std::make_unique<ThreadConnection>(name, m_connectionCount));
    return QSqlDatabase::database(name, false);
}

QSqlQuery Database::prepared(const QString &sql)
{
    QSqlDatabase link = connection();
    const std::unique_ptr<QSqlQuery> kept(
        threadConnections().find(m_instance)->statements.take(sql));
    if (kept)
        return *kept;
    QSqlQuery query(link);
    // A forward-only query of QPSQL loses its rows when another one runs.
    query.setForwardOnly(!m_dialect->isShared());
    if (!query.prepare(sql))
        throw m_dialect->error(query);
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

bool Database::reconnect()
{
    const ThreadConnection *const known = threadConnections().find(m_instance);
    if (known && known->isInTransaction)
        return false;
    close();
    return true;
}

void Database::setInTransaction(bool isInTransaction)
{
    if (ThreadConnection *const known = threadConnections().find(m_instance))
        known->isInTransaction = isInTransaction;
}

void Database::migrate()
{
    const int newest = m_dialect->newestSchema();
    const bool isNew = m_dialect->schema(*this) == 0;
    for (;;) {
        const int version = m_dialect->schema(*this);
        if (version > newest) {
            throw DatabaseError(
                QStringLiteral("%1 was written by a newer version (schema %2, known is %3)")
                    .arg(m_dialect->name())
                    .arg(version)
                    .arg(newest));
        }
        if (version == newest)
            return;
        if (!isNew)
            m_dialect->copyBefore(*this, version + 1);
        m_dialect->migrateTo(*this, version + 1);
    }
}

} // namespace service
