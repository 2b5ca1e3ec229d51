#pragma once

#include <service/http/HttpMessages.h>

namespace service {

class ContentStore;
struct StoredFile;

//! Returns the response to \a request for the content of \a file: all of it (200), a range (206), not modified (304), or range not
//! satisfiable (416). It is streamed from the disk.
//! \param saveAs the file name for a browser; empty for none
HttpResponse downloadResponse(const HttpRequest &request, const StoredFile &file,
                              const ContentStore &contents, const QString &saveAs = {});

} // namespace service
