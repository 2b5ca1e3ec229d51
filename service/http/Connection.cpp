#include <service/http/Connection.h>

#include <boost/asio/post.hpp>

#include <sys/socket.h>
#include <utility>

namespace service {

namespace {

using namespace std::chrono_literals;
using Socket = boost::asio::ip::tcp::socket;

} // namespace

Connection::Connection(Socket socket, const QString &client, WaitingThread &home,
                       ServerContext &context, std::atomic<int> &count)
    : m_counted(count), m_socket(std::move(socket)), m_timer(home.io), m_home(home),
      m_context(context), m_conversation(m_socket.native_handle(), client, context),
      m_idlePlace(home.idle.end())
{}

void Connection::start()
{
    m_home.connections.insert(shared_from_this());
    work(0ms, false);
}

void Connection::stop()
{
    if (!m_isAtWork && mayStop())
        end();
}

//! A request that is arriving is not broken off when the service has been drained.
bool Connection::mayStop() const
{
    return m_context.isDraining ? m_conversation.isIdle() : !m_conversation.isResponding();
}

void Connection::end()
{
    m_isEnding = true;
    if (m_isAtWork) {
        // A worker is using the descriptor: it is closed when the worker has finished.
        ::shutdown(m_socket.native_handle(), SHUT_RDWR);
        return;
    }
    ++m_waitNumber;
    leaveIdle();
    boost::system::error_code ignored;
    m_timer.cancel();
    m_socket.close(ignored);
    m_home.connections.erase(shared_from_this());
}

void Connection::work(std::chrono::milliseconds waited, bool isTimedOut)
{
    m_isAtWork = true;
    m_context.workers.post([self = shared_from_this(), waited, isTimedOut] {
        const Wait wait =
            isTimedOut ? self->m_conversation.timedOut() : self->m_conversation.advance(waited);
        boost::asio::post(self->m_home.io, [self, wait] { self->waitFor(wait); });
    });
}

void Connection::waitFor(const Wait &wait)
{
    m_isAtWork = false;
    const bool isToStop = m_context.isStopping && mayStop();
    if (m_isEnding || isToStop || wait.what == Wait::For::Nothing)
        end();
    else if (wait.what == Wait::For::Turn)
        work(0ms, false);
    else
        waitForSocket(wait);
}

void Connection::waitForSocket(const Wait &wait)
{
    const unsigned number = ++m_waitNumber;
    m_waitStart = Clock::now();
    if (m_conversation.isIdle())
        m_idlePlace = m_home.idle.insert(m_home.idle.end(), this);
    const bool isTimeWanted = wait.what == Wait::For::Time;
    m_timer.expires_after(wait.patience);
    m_timer.async_wait(
        [self = shared_from_this(), number, isTimeWanted](const boost::system::error_code &) {
            if (number == self->m_waitNumber)
                self->waited(!isTimeWanted);
        });
    if (isTimeWanted)
        return;
    const auto direction = wait.what == Wait::For::Room ? Socket::wait_write : Socket::wait_read;
    m_socket.async_wait(direction,
                        [self = shared_from_this(), number](const boost::system::error_code &) {
                            if (number == self->m_waitNumber)
                                self->waited(false);
                        });
}

//! The socket is ready or was closed by the client, or the time has expired.
void Connection::waited(bool isTimedOut)
{
    ++m_waitNumber;
    leaveIdle();
    m_timer.cancel();
    if (isTimedOut) {
        boost::system::error_code ignored;
        m_socket.cancel(ignored);
    }
    const auto time = Clock::now() - m_waitStart;
    work(std::chrono::duration_cast<std::chrono::milliseconds>(time), isTimedOut);
}

void Connection::leaveIdle()
{
    if (m_idlePlace != m_home.idle.end())
        m_home.idle.erase(std::exchange(m_idlePlace, m_home.idle.end()));
}

} // namespace service
