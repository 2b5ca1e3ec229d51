#include <service/storage/Database.h>

#include <service/storage/FileSync.h>
#include <service/storage/Statement.h>

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QUuid>

#include <map>
#include <memory>

namespace service {

namespace {

constexpr int LongestKeptStatement = 4000; // characters

//! True if the connections of this thread have been closed: static objects outlive those of the main thread.
thread_local bool hasEnded = false;

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
    PooledConnection *find(const QString &instance) const
    {
        const auto found = m_connections.find(instance);
        return found == m_connections.end() ? nullptr : found->second.get();
    }
    PooledConnection *insert(const QString &instance, std::unique_ptr<PooledConnection> connection)
    {
        return (m_connections[instance] = std::move(connection)).get();
    }
    //! Null if there is none.
    std::unique_ptr<PooledConnection> take(const QString &instance)
    {
        auto node = m_connections.extract(instance);
        return node.empty() ? nullptr : std::move(node.mapped());
    }

private:
    std::map<QString, std::unique_ptr<PooledConnection>> m_connections;
};

ThreadConnections &threadConnections()
{
    thread_local ThreadConnections connections;
    return connections;
}

} // namespace

Database::Database(const DataFolder &folder, const QString &address, int busyTimeoutMs,
                   int maxConnections)
    : m_dialect(SqlDialect::of(address, folder, busyTimeoutMs)),
      m_instance(QUuid::createUuid().toString()),
      m_pool(*m_dialect, m_dialect->isShared() ? maxConnections : 0,
             std::chrono::milliseconds(busyTimeoutMs))
{}

Database::~Database()
{
    close();
}

void Database::close()
{
    if (!hasEnded)
        threadConnections().take(m_instance);
    m_pool.clear();
}

void Database::rest()
{
    const PooledConnection *const known = threadConnections().find(m_instance);
    if (m_dialect->isShared() && known != nullptr && !known->isInTransaction)
        m_pool.giveBack(threadConnections().take(m_instance));
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

PooledConnection &Database::current()
{
    if (PooledConnection *const known = threadConnections().find(m_instance))
        return *known;
    return *threadConnections().insert(m_instance, m_pool.take());
}

QSqlDatabase Database::connection()
{
    return current().link();
}

QSqlQuery Database::prepared(const QString &sql)
{
    PooledConnection &connection = current();
    const std::unique_ptr<QSqlQuery> kept(connection.statements.take(sql));
    if (kept)
        return *kept;
    QSqlQuery query(connection.link());
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
    if (PooledConnection *const known = threadConnections().find(m_instance))
        known->statements.insert(sql, new QSqlQuery(query));
}

bool Database::reconnect()
{
    const PooledConnection *const known = threadConnections().find(m_instance);
    if (known && known->isInTransaction)
        return false;
    close();
    return true;
}

void Database::setInTransaction(bool isInTransaction)
{
    if (PooledConnection *const known = threadConnections().find(m_instance))
        known->isInTransaction = isInTransaction;
}

bool Database::isInTransaction() const
{
    const PooledConnection *const known = threadConnections().find(m_instance);
    return known && known->isInTransaction;
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
