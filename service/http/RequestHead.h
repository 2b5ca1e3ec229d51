#pragma once

#include <service/http/HttpMessages.h>

#include <string_view>

namespace service {

//! \brief The limits for the head of a request.
struct HeadLimits
{
    static constexpr qsizetype TargetBytes = 8192;
    static constexpr qsizetype Bytes = qsizetype(24) * 1024;
    static constexpr qsizetype Fields = 100;
};

//! \brief The parsed head of a request.
struct RequestHead
{
    HttpRequest request;
    bool keepsAlive = true; //!< the client may send further requests on the connection
    bool expectsContinue = false; //!< the client waits for "100 Continue" before it sends the body
};

//! Parses a complete head, including its empty line.
//!
//! Heads that programs could interpret differently are refused, because the body of one request must never be taken for another
//! request.
//! \throws HttpError 400 for everything that does not conform to HTTP/1.1 or 1.0; 411, 413, 414, 417, 431
RequestHead parseRequestHead(std::string_view head, qint64 maxBodyBytes);

//! Returns the error for a head that is too long, before its end has arrived: 414 or 431.
HttpError headTooLong(std::string_view start);

} // namespace service
