#pragma once

#include <QStringList>

namespace velldoc {

//! Runs the command line \a arguments, without the name of the program. \return the exit code
int runCommandLine(const QStringList &arguments);

} // namespace velldoc
