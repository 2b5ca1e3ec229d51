#pragma once

#include <QtGlobal>

#include <array>
#include <chrono>
#include <httplib.h>
#include <string>

namespace service {

//! \brief One TCP connection as the HTTP library reads and writes it, with what that library's own stream
//! cannot do: a bound on each wait, an end without an answer, an answer cut short.
//!
//! Included by the sources of this folder only.
class Connection final : public httplib::Stream
{
public:
    Connection(socket_t socket, std::chrono::milliseconds timeout);
    ~Connection() override;
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    //! Waits for the first byte of a request; false when the client has gone or time is up.
    bool waitForRequest(std::chrono::milliseconds idle);

    //! Forgets what the last request has asked for.
    void beginRequest();

    //! Nothing more is written, and the connection ends with the request.
    void drop() { m_isDropped = true; }
    bool isDropped() const { return m_isDropped; }
    //! Only the headers and \a bodyBytes of the body are written.
    void cutReplyAfter(qint64 bodyBytes) { m_replyLimit = bodyBytes; }

    //! Ends the connection after this request.
    void closeAfterReply() { m_closes = true; }
    bool closes() const { return m_closes; }

    //! Whether the client has ended the connection.
    bool isPeerGone() const;

    //! Bytes of the response's body that were written.
    qint64 bodyBytesWritten() const { return m_bodyWritten; }

    //! Tells the client that nothing more comes and reads, for a moment, what it is still sending: closing
    //! at once would take the answer back from it.
    void linger();

    //! Wakes the thread that serves the connection; callable from any thread.
    void shutDown() const;

    bool is_readable() const override;
    bool is_writable() const override;
    ssize_t read(char *ptr, size_t size) override;
    ssize_t write(const char *ptr, size_t size) override;
    void get_remote_ip_and_port(std::string &ip, int &port) const override;
    void get_local_ip_and_port(std::string &ip, int &port) const override;
    socket_t socket() const override { return m_socket; }

private:
    ssize_t receive(char *data, size_t size) const;
    bool waitFor(short events, std::chrono::milliseconds timeout) const;
    bool writeAll(const char *data, size_t size);
    //! How many of the \a size bytes at \a data belong to the response's head.
    size_t headBytes(const char *data, size_t size);

    socket_t m_socket = INVALID_SOCKET;
    std::chrono::milliseconds m_timeout;
    std::array<char, size_t(64) * 1024> m_buffer{};
    size_t m_bufferStart = 0;
    size_t m_bufferEnd = 0;
    qint64 m_replyLimit = -1;
    qint64 m_bodyWritten = 0;
    bool m_isDropped = false;
    bool m_hasHead = false;
    bool m_closes = false;
};

} // namespace service
