#include <service/storage/ConnectionPool.h>

#include <service/storage/dialect/SqlDialect.h>

#include <QSqlDriver>
#include <QThread>
#include <QUuid>

#include <utility>

namespace service {

namespace {

constexpr int KeptStatements = 64; // for each connection

} // namespace

PooledConnection::PooledConnection(const SqlDialect &dialect,
                                   std::shared_ptr<ConnectionCount> count)
    : statements(KeptStatements), m_name(QUuid::createUuid().toString()), m_count(std::move(count))
{
    try {
        dialect.connect(m_name);
    } catch (...) {
        QSqlDatabase::removeDatabase(m_name);
        throw;
    }
    m_link = QSqlDatabase::database(m_name, false);
}

PooledConnection::~PooledConnection()
{
    statements.clear();
    m_link = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_name);
    {
        const std::lock_guard<std::mutex> lock(m_count->lock);
        --m_count->open;
    }
    m_count->hasChanged.notify_one();
}

// The driver is an object of the thread that has opened it. Without a thread any other may take it.
void PooledConnection::leaveThread()
{
    m_link.driver()->moveToThread(nullptr);
}

void PooledConnection::enterThread()
{
    m_link.driver()->moveToThread(QThread::currentThread());
}

ConnectionPool::ConnectionPool(const SqlDialect &dialect, int limit,
                               std::chrono::milliseconds patience)
    : m_dialect(dialect), m_limit(limit), m_patience(patience)
{}

std::unique_ptr<PooledConnection> ConnectionPool::takeIdle()
{
    std::unique_lock<std::mutex> lock(m_count->lock);
    const bool isFree = m_count->hasChanged.wait_for(lock, m_patience, [this] {
        return !m_idle.empty() || m_limit == 0 || m_count->open < m_limit;
    });
    if (!isFree) {
        throw DatabaseError(
            QStringLiteral("all %1 connections to the database are in use").arg(m_limit),
            DatabaseError::Kind::NoConnection);
    }
    if (m_idle.empty()) {
        ++m_count->open;
        return nullptr;
    }
    auto connection = std::move(m_idle.back());
    m_idle.pop_back();
    return connection;
}

std::unique_ptr<PooledConnection> ConnectionPool::take()
{
    if (auto connection = takeIdle()) {
        connection->enterThread();
        return connection;
    }
    try {
        return std::make_unique<PooledConnection>(m_dialect, m_count);
    } catch (...) {
        {
            const std::lock_guard<std::mutex> lock(m_count->lock);
            --m_count->open; // there is no object that would do so
        }
        m_count->hasChanged.notify_one();
        throw;
    }
}

void ConnectionPool::giveBack(std::unique_ptr<PooledConnection> connection)
{
    connection->leaveThread();
    {
        const std::lock_guard<std::mutex> lock(m_count->lock);
        m_idle.push_back(std::move(connection));
    }
    m_count->hasChanged.notify_one();
}

void ConnectionPool::clear()
{
    std::vector<std::unique_ptr<PooledConnection>> idle;
    {
        const std::lock_guard<std::mutex> lock(m_count->lock);
        idle.swap(m_idle);
    }
    for (const auto &connection : idle)
        connection->enterThread();
}

int ConnectionPool::openCount() const
{
    const std::lock_guard<std::mutex> lock(m_count->lock);
    return m_count->open;
}

} // namespace service
