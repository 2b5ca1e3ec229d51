#pragma once

#include <QStringList>

namespace velldoc {

class Output;
struct Command;

//! What velldoc without a command answers: the list of commands, or the version.
//! \return the exit code
int showProgramHelp(const QStringList &arguments, Output &output);

void showCommandHelp(const Command &command, Output &output);

} // namespace velldoc
