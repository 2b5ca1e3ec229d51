#pragma once

#include <service/http/HttpMessages.h>

#include <exception>
#include <optional>

namespace service {

//! \brief How the connection is to be mistreated while a request is answered.
struct Misbehaviour
{
    qint64 dropAfterBytes = -1; //!< end the connection once so much of the request's body was read
    qint64 cutAfterBytes = -1; //!< send so much of the response's body, then end the connection
    qint64 delayMs = 0; //!< respond so much later; below 0 until the client goes
    bool isReplyLost = false; //!< do not respond, end the connection
    bool isRequested = false; //!< whether any of this, or a wrong response, was asked for
};

//! \brief The work for one request.
//!
//! The functions are called in the order in which they stand here, on the threads of a pool: one after the other, but
//! not on the same thread, and no thread waits for the bytes of a body. What they throw goes to failure(), and the
//! request ends with its response.
class RequestHandler
{
public:
    virtual ~RequestHandler() = default;

    //! Everything that needs no body. A response ends the request, and its body is not read.
    virtual std::optional<HttpResponse> begin() = 0;
    //! The next bytes of the body.
    virtual void takeBody(const char *data, qint64 length) = 0;
    //! The whole body has been taken.
    virtual HttpResponse finish() = 0;

    //! The response to what one of the functions has thrown.
    virtual HttpResponse failure(const std::exception_ptr &error) = 0;

    const Misbehaviour &misbehaviour() const { return m_misbehaviour; }
    QString userName() const { return m_userName; } //!< for the log

protected:
    Misbehaviour m_misbehaviour;
    QString m_userName;
};

} // namespace service
