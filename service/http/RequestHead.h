#pragma once

#include <service/http/HttpMessages.h>

#include <string_view>

namespace service {

//! \brief How large the head of a request may be.
struct HeadLimits
{
    static constexpr qsizetype TargetBytes = 8192;
    static constexpr qsizetype Bytes = qsizetype(24) * 1024;
    static constexpr qsizetype Fields = 100;
};

//! \brief What the head of a request says.
struct RequestHead
{
    HttpRequest request;
    bool keepsAlive = true; //!< the client wants to send further requests on the connection
    bool expectsContinue = false; //!< the client waits for "100 Continue" before it sends the body
};

//! Reads a whole head, up to and with its empty line.
//!
//! Strict: what two programs could read in two ways is refused, because the body of one request must never be
//! taken for another request.
//! \throws HttpError 400 for everything that is not HTTP/1.1 or 1.0 by the letter; 411, 413, 414, 417, 431
RequestHead parseRequestHead(std::string_view head, qint64 maxBodyBytes);

//! The refusal of a head that has become too long before its end was seen: 414 or 431.
HttpError headTooLong(std::string_view start);

} // namespace service
