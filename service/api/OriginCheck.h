#pragma once

namespace service {

struct HttpRequest;

//! Protects a service without authentication from web pages in a browser on this machine: the host of the request must be a loopback
//! address or "localhost", and the request must not come from a page of another site.
//! \throws HttpError 403
void requireLocalOrigin(const HttpRequest &request);

} // namespace service
