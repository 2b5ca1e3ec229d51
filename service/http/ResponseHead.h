#pragma once

#include <QByteArray>

#include <chrono>
#include <optional>

namespace service {

struct HttpResponse;

//! Returns the status line and the headers of \a response, with Date and, unless the status has no body, Content-Length.
//! \param keepAlive how long the connection stays open for another request; nothing if it is closed
QByteArray responseHead(const HttpResponse &response,
                        std::optional<std::chrono::milliseconds> keepAlive);

} // namespace service
