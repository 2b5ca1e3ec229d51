#pragma once

#include <QString>

namespace service {

//! \name Times in milliseconds since 1970 UTC, the form in which they are stored
//! @{

//! Returns a time as `yyyy-MM-ddTHH:mm:ss.zzzZ`; empty for 0.
QString timeText(qint64 ms);

//! Parses an ISO 8601 date-time (UTC if it has no zone). \throws ServiceError with \a what in its sentence
qint64 parseTime(const QString &text, const QString &what);
//! @}

} // namespace service
