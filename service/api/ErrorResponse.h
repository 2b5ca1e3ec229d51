#pragma once

#include <exception>

namespace service {

struct HttpResponse;

//! \return the response to a request that has failed with \a error. Only here exceptions are mapped to HTTP statuses. Internal
//! errors are logged, and the response contains no details of them.
HttpResponse errorResponse(const std::exception &error);

} // namespace service
