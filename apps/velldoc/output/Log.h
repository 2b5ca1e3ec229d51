#pragma once

#include <QString>

namespace velldoc {

//! Appends what is logged, and what writeLog() is given, to \a file from now on, if it has a name.
//! \param showsRequests on the standard error, too
//! \throws Failure
void startLog(const QString &file, bool showsRequests);

//! Appends \a line with its time to the log file, if there is one.
void writeLog(const QString &line);

} // namespace velldoc
