#include <service/http/Connection.h>

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>

namespace service {

namespace {

constexpr qint64 LingerBytes = Q_INT64_C(256) * 1024 * 1024;
constexpr std::chrono::milliseconds LingerWait{500};

using NameFunction = int (*)(int, sockaddr *, socklen_t *);

void readAddress(NameFunction function, int socket, std::string &ip, int &port)
{
    sockaddr_storage address = {};
    socklen_t length = sizeof(address);
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    char host[NI_MAXHOST];
    char service[NI_MAXSERV];
    if (function(socket, generic, &length) != 0
        || getnameinfo(generic, length, host, sizeof(host), service, sizeof(service),
                       NI_NUMERICHOST | NI_NUMERICSERV)
            != 0)
        return;
    ip = host;
    port = std::atoi(service);
}

} // namespace

Connection::Connection(socket_t socket, std::chrono::milliseconds timeout)
    : m_socket(socket), m_timeout(timeout)
{}

Connection::~Connection()
{
    ::close(m_socket);
}

bool Connection::waitForRequest(std::chrono::milliseconds idle)
{
    if (m_bufferStart < m_bufferEnd)
        return true;
    if (!waitFor(POLLIN, idle))
        return false;
    char byte = 0;
    return ::recv(m_socket, &byte, 1, MSG_PEEK) > 0;
}

void Connection::beginRequest()
{
    m_replyLimit = -1;
    m_bodyWritten = 0;
    m_isDropped = false;
    m_hasHead = false;
    m_closes = false;
}

bool Connection::isPeerGone() const
{
    pollfd entry{m_socket, POLLRDHUP, 0};
    return ::poll(&entry, 1, 0) > 0;
}

void Connection::linger()
{
    ::shutdown(m_socket, SHUT_WR);
    for (qint64 total = 0; total < LingerBytes && waitFor(POLLIN, LingerWait);) {
        const ssize_t count = ::recv(m_socket, m_buffer.data(), m_buffer.size(), 0);
        if (count <= 0)
            return;
        total += count;
    }
}

void Connection::shutDown() const
{
    ::shutdown(m_socket, SHUT_RDWR);
}

bool Connection::is_readable() const
{
    return m_bufferStart < m_bufferEnd || waitFor(POLLIN, m_timeout);
}

bool Connection::is_writable() const
{
    return waitFor(POLLOUT, m_timeout);
}

ssize_t Connection::read(char *ptr, size_t size)
{
    if (m_bufferStart == m_bufferEnd) {
        if (!waitFor(POLLIN, m_timeout))
            return -1;
        const bool isLarge = size >= m_buffer.size();
        const ssize_t count =
            isLarge ? receive(ptr, size) : receive(m_buffer.data(), m_buffer.size());
        if (count <= 0 || isLarge)
            return count;
        m_bufferStart = 0;
        m_bufferEnd = static_cast<size_t>(count);
    }
    const size_t count = std::min(size, m_bufferEnd - m_bufferStart);
    std::memcpy(ptr, m_buffer.data() + m_bufferStart, count);
    m_bufferStart += count;
    return static_cast<ssize_t>(count);
}

ssize_t Connection::write(const char *ptr, size_t size)
{
    if (m_isDropped)
        return -1;
    const size_t head = m_hasHead ? 0 : headBytes(ptr, size);
    size_t body = size - head;
    if (m_replyLimit >= 0)
        body = std::min(body, static_cast<size_t>(m_replyLimit - m_bodyWritten));
    if (!writeAll(ptr, head + body))
        return -1;
    m_bodyWritten += static_cast<qint64>(body);
    if (head + body == size)
        return static_cast<ssize_t>(size);
    m_isDropped = true;
    return -1;
}

void Connection::get_remote_ip_and_port(std::string &ip, int &port) const
{
    readAddress(&::getpeername, m_socket, ip, port);
}

void Connection::get_local_ip_and_port(std::string &ip, int &port) const
{
    readAddress(&::getsockname, m_socket, ip, port);
}

//! Clients that send head and body of a request one after the other, as Qt's does, hold the body back until
//! the head is acknowledged; without this the kernel takes 40 ms over it.
ssize_t Connection::receive(char *data, size_t size) const
{
    const ssize_t count = ::recv(m_socket, data, size, 0);
    const int on = 1;
    ::setsockopt(m_socket, IPPROTO_TCP, TCP_QUICKACK, &on, sizeof(on));
    return count;
}

bool Connection::waitFor(short events, std::chrono::milliseconds timeout) const
{
    pollfd entry{m_socket, events, 0};
    for (;;) {
        const int ready = ::poll(&entry, 1, static_cast<int>(timeout.count()));
        if (ready > 0)
            return true;
        if (ready == 0 || errno != EINTR)
            return false;
    }
}

bool Connection::writeAll(const char *data, size_t size)
{
    while (size > 0) {
        if (!waitFor(POLLOUT, m_timeout))
            return false;
        const ssize_t count = ::send(m_socket, data, size, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0 && (errno == EAGAIN || errno == EINTR))
            continue;
        if (count <= 0)
            return false;
        data += count;
        size -= static_cast<size_t>(count);
    }
    return true;
}

size_t Connection::headBytes(const char *data, size_t size)
{
    const std::string_view text(data, size);
    // The library writes the whole head at once, then the body; "100 Continue" stands alone.
    const size_t end = text.find("\r\n\r\n");
    m_hasHead = text.compare(0, 12, "HTTP/1.1 100") != 0;
    return end == std::string_view::npos ? size : end + 4;
}

} // namespace service
