#pragma once

namespace service {

struct HttpRequest;

//! Guards a service that lets everybody on this machine do everything from the web pages in their browsers: the
//! request must be addressed to this machine by a name that always means it, and must not come from another site's page.
//! \throws HttpError 403
void requireLocalOrigin(const HttpRequest &request);

} // namespace service
