#pragma once

#include <service/http/HttpMessages.h>

namespace service {

class ContentStore;
struct StoredFile;

//! The content of \a file as an answer to \a request: whole, a range of it (206), not changed (304), or no
//! such range (416). Streamed from the disk.
//! \param saveAs the name that a browser stores it under; empty for none
HttpResponse downloadResponse(const HttpRequest &request, const StoredFile &file,
                              const ContentStore &contents, const QString &saveAs = {});

} // namespace service
