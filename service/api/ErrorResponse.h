#pragma once

#include <exception>

namespace service {

struct HttpResponse;

//! \return what a request that ended with \a error is answered: the one place that turns exceptions into
//! statuses. What is the service's own fault goes to the log, and the client learns no more than that.
HttpResponse errorResponse(const std::exception &error);

} // namespace service
