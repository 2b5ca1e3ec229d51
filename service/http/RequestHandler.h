#pragma once

#include <service/http/HttpMessages.h>

#include <exception>
#include <optional>

namespace service {

//! \brief The faults on the connection while a request is processed.
struct Misbehaviour
{
    qint64 dropAfterBytes = -1; //!< close the connection after so many bytes of the request's body
    qint64 cutAfterBytes = -1; //!< close the connection after so many bytes of the response's body
    qint64 delayMs = 0; //!< delay the response; below 0 until the client disconnects
    bool isReplyLost = false; //!< close the connection without a response
    bool isRequested = false; //!< true if there is any fault, also a wrong response
};

//! \brief Processes one request.
//!
//! The functions are called in the order in which they are declared, one after the other, on different threads of a pool. No thread
//! waits for the bytes of a body. Exceptions are passed to failure(), whose response ends the request.
class RequestHandler
{
public:
    virtual ~RequestHandler() = default;

    //! Does everything that needs no body. If it returns a response, the request ends and its body is not read.
    virtual std::optional<HttpResponse> begin() = 0;
    //! Takes the next bytes of the body.
    virtual void takeBody(const char *data, qint64 length) = 0;
    //! Called after the whole body.
    virtual HttpResponse finish() = 0;

    //! Returns the response to an exception of one of the other functions.
    virtual HttpResponse failure(const std::exception_ptr &error) = 0;

    const Misbehaviour &misbehaviour() const { return m_misbehaviour; }
    QString userName() const { return m_userName; } //!< for the log

protected:
    Misbehaviour m_misbehaviour;
    QString m_userName;
};

} // namespace service
