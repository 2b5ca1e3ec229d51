#pragma once

#include <QString>

namespace velldoc {

//! Appends all log messages and the lines of writeLog() to \a file, unless it is empty.
//! \param showsRequests prints requests to the standard error, too
//! \throws Failure
void startLog(const QString &file, bool showsRequests);

//! Appends \a line with its time to the log file, if there is one.
void writeLog(const QString &line);

} // namespace velldoc
