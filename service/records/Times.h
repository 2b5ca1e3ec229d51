#pragma once

#include <QString>

namespace service {

//! Milliseconds since 1970 UTC, how times are stored.
qint64 nowMs();

//! `yyyy-MM-ddTHH:mm:ss.zzzZ`; empty for 0.
QString timeText(qint64 ms);

//! Reads any ISO 8601 date-time (without a zone: UTC). \throws ServiceError that names \a what
qint64 parseTime(const QString &text, const QString &what);

} // namespace service
