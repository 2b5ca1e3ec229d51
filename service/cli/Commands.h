#pragma once

#include <QStringList>

namespace service {

//! \name The commands of vell-service
//! Each takes the arguments after its name and returns the exit code of the program: 0, 1 for a failure, 2 for a wrong command line.
//! Errors are printed to the standard error, in one sentence.
//! @{
int runServe(const QStringList &arguments);
int runUser(const QStringList &arguments);
int runProject(const QStringList &arguments);
int runRole(const QStringList &arguments);
int runShare(const QStringList &arguments);
int runSweep(const QStringList &arguments);
int runCheck(const QStringList &arguments);
int runBackup(const QStringList &arguments);
int runRestore(const QStringList &arguments);
int runCopy(const QStringList &arguments);
int runAccept(const QStringList &arguments);
//! @}

} // namespace service
