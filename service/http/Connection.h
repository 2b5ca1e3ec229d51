#pragma once

#include <service/http/Conversation.h>
#include <service/http/ServerContext.h>

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>

#include <list>
#include <memory>
#include <set>
#include <thread>

namespace service {

class Connection;

//! \brief A thread that waits for the sockets of some of the connections.
struct WaitingThread
{
    boost::asio::io_context io{1};
    std::thread thread;
    std::set<std::shared_ptr<Connection>> connections; //!< used by this thread only
    std::list<Connection *>
        idle; //!< those that are idle, the one that has been idle longest first; used by this thread only
};

//! \brief A socket, for which its WaitingThread waits until its Conversation can continue, which then runs on a worker.
//!
//! All functions are called on the waiting thread.
class Connection : public std::enable_shared_from_this<Connection>
{
public:
    Connection(boost::asio::ip::tcp::socket socket, const QString &client, WaitingThread &home,
               ServerContext &context, std::atomic<int> &count);
    ~Connection() = default;
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    void start();
    //! Closes the connection, after the response if one is being sent.
    void stop();
    void end();

private:
    using Clock = std::chrono::steady_clock;

    //! Counts a connection until all its other members are destroyed, which use what the server destroys at the count of 0.
    class Counted
    {
    public:
        explicit Counted(std::atomic<int> &count) : m_count(count) { ++m_count; }
        ~Counted() { --m_count; }
        Counted(const Counted &) = delete;
        Counted &operator=(const Counted &) = delete;

    private:
        std::atomic<int> &m_count;
    };

    void work(std::chrono::milliseconds waited, bool isTimedOut);
    void waitFor(const Wait &wait);
    void waitForSocket(const Wait &wait);
    void waited(bool isTimedOut);
    void leaveIdle();
    bool mayStop() const;

    const Counted m_counted; // first, so that it is destroyed last
    boost::asio::ip::tcp::socket m_socket;
    boost::asio::steady_timer m_timer;
    WaitingThread &m_home;
    ServerContext &m_context;
    Conversation m_conversation;
    bool m_isAtWork = false;
    bool m_isEnding = false;
    unsigned m_waitNumber = 0; //!< distinguishes the current wait from earlier ones
    Clock::time_point m_waitStart;
    std::list<Connection *>::iterator m_idlePlace;
};

} // namespace service
