#pragma once

#include <QCache>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

namespace service {

class SqlDialect;

//! How many connections there are, and who waits for one. Outlives the pool: threads close their connections when they end.
struct ConnectionCount
{
    std::mutex lock;
    std::condition_variable hasChanged;
    int open = 0;
};

//! \brief A connection to a database, with its prepared statements. Used by one thread at a time.
class PooledConnection
{
public:
    //! Opens it for the calling thread. \throws DatabaseError
    PooledConnection(const SqlDialect &dialect, std::shared_ptr<ConnectionCount> count);
    ~PooledConnection();
    PooledConnection(const PooledConnection &) = delete;
    PooledConnection &operator=(const PooledConnection &) = delete;

    QSqlDatabase link() const { return m_link; }
    //! Lets another thread take the connection.
    void leaveThread();
    //! Takes a connection that another thread has left.
    void enterThread();

    QCache<QString, QSqlQuery> statements;
    bool isInTransaction = false;

private:
    const QString m_name;
    const std::shared_ptr<ConnectionCount> m_count;
    QSqlDatabase m_link;
};

//! \brief The connections that no thread uses at the moment, and a limit for all of them. Thread-safe.
class ConnectionPool
{
public:
    //! \param limit of connections; 0 for none
    //! \param patience how long take() waits for one
    ConnectionPool(const SqlDialect &dialect, int limit, std::chrono::milliseconds patience);

    //! Returns an idle connection or opens one. \throws DatabaseError, of the kind NoConnection if none gets free
    std::unique_ptr<PooledConnection> take();
    void giveBack(std::unique_ptr<PooledConnection> connection);
    //! Closes the idle connections.
    void clear();

    int openCount() const;

private:
    std::unique_ptr<PooledConnection> takeIdle();

    const SqlDialect &m_dialect;
    const int m_limit;
    const std::chrono::milliseconds m_patience;
    const std::shared_ptr<ConnectionCount> m_count = std::make_shared<ConnectionCount>();
    std::vector<std::unique_ptr<PooledConnection>> m_idle; //!< guarded by the lock of the count
};

} // namespace service
