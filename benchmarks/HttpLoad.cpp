#include "HttpLoad.h"

#include <QtGlobal>

#include <arpa/inet.h>
#include <memory>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

HttpCaller::HttpCaller(quint16 port)
{
    m_socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) != 0)
        qFatal("no connection to port %d", port);
    const int on = 1;
    ::setsockopt(m_socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
}

HttpCaller::~HttpCaller()
{
    ::close(m_socket);
}

void HttpCaller::sendAll(const char *data, qint64 length) const
{
    while (length > 0) {
        const ssize_t count = ::send(m_socket, data, static_cast<size_t>(length), MSG_NOSIGNAL);
        if (count <= 0)
            qFatal("the service has ended the connection");
        data += count;
        length -= count;
    }
}

void HttpCaller::ask(const QByteArray &request)
{
    m_start = Clock::now();
    sendAll(request.constData(), request.size());
}

bool HttpCaller::isAnswered()
{
    char block[65536];
    const ssize_t count = ::recv(m_socket, block, sizeof(block), 0);
    if (count <= 0)
        qFatal("the service has ended the connection");
    m_in.append(block, static_cast<int>(count));
    const int end = m_in.indexOf("\r\n\r\n");
    if (end < 0)
        return false;
    const QByteArray name = "\r\ncontent-length: "; // proxies change the case
    const int field = m_in.left(end + 2).toLower().indexOf(name) + name.size();
    const int length = m_in.mid(field, m_in.indexOf('\r', field) - field).toInt();
    if (m_in.size() < end + 4 + length)
        return false;
    m_response = m_in;
    m_in.clear();
    return true;
}

QByteArray HttpCaller::answer()
{
    while (!isAnswered()) {}
    return m_response;
}

double HttpCaller::milliseconds() const
{
    return std::chrono::duration<double, std::milli>(Clock::now() - m_start).count();
}

HttpLoad runLoad(quint16 port, int connections, std::chrono::milliseconds duration,
                 const std::function<QByteArray()> &nextRequest)
{
    std::vector<std::unique_ptr<HttpCaller>> callers;
    std::vector<bool> isChange;
    std::vector<pollfd> entries;
    const auto ask = [&](size_t index) {
        const QByteArray request = nextRequest();
        isChange[index] = !request.startsWith("GET ");
        callers[index]->ask(request);
    };
    isChange.resize(static_cast<size_t>(connections));
    for (size_t i = 0; i < isChange.size(); ++i) {
        callers.push_back(std::make_unique<HttpCaller>(port));
        entries.push_back({callers[i]->socket(), POLLIN, 0});
        ask(i);
    }
    HttpLoad load;
    const auto begin = HttpCaller::Clock::now();
    while (HttpCaller::Clock::now() - begin < duration) {
        ::poll(entries.data(), entries.size(), 1000);
        for (size_t i = 0; i < entries.size(); ++i) {
            if ((entries[i].revents & POLLIN) == 0 || !callers[i]->isAnswered())
                continue;
            load.timesMs.push_back(callers[i]->milliseconds());
            load.isChange.push_back(isChange[i]);
            if (!callers[i]->isSuccess()) {
                ++load.failures;
                load.failure = callers[i]->response();
            }
            ask(i);
        }
    }
    load.seconds = std::chrono::duration<double>(HttpCaller::Clock::now() - begin).count();
    // Nobody may be at work when the next measurement begins.
    for (const auto &caller : callers)
        caller->answer();
    return load;
}
