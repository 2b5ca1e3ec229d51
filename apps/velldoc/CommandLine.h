#pragma once

#include <QStringList>

namespace velldoc {

//! Runs the command line \a arguments, without the program's name. \return the exit code
int runCommandLine(const QStringList &arguments);

} // namespace velldoc
