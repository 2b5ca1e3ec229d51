#pragma once

#include <QByteArray>

#include <functional>
#include <stdexcept>

namespace service {

//! \brief The client has gone, or is to be treated as if it had: nobody waits for an answer.
class ConnectionLost : public std::runtime_error
{
public:
    ConnectionLost() : std::runtime_error("connection lost") {}
};

//! \brief The body of a request, read piece by piece from the connection.
class BodyReader
{
public:
    //! Fills up to the given number of bytes; 0 or less when the connection has ended.
    using Source = std::function<qint64(char *, qint64)>;

    BodyReader(Source source, qint64 length);

    qint64 length() const { return m_length; }
    qint64 remaining() const { return m_length - m_read; }

    //! \return how many bytes came, 0 at the end of the body. \throws ConnectionLost
    qint64 read(char *data, qint64 maxLength);

    //! The rest of the body. \throws HttpError 413 above \a limitBytes, before anything is read
    QByteArray readAll(qint64 limitBytes);

    //! Reads the rest and forgets it; \return false when it is more than \a limitBytes.
    bool drain(qint64 limitBytes);

    //! The connection counts as lost once \a bytes of the body have been read.
    void dropAfter(qint64 bytes) { m_dropAfter = bytes; }

private:
    Source m_source;
    qint64 m_length = 0;
    qint64 m_read = 0;
    qint64 m_dropAfter = -1;
};

} // namespace service
