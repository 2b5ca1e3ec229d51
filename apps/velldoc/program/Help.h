#pragma once

#include <QString>

namespace velldoc {

class Output;
struct Command;
struct CommandOption;

//! Returns how \a option is written: "-l, --long", "--sort FIELD".
QString optionText(const CommandOption &option);

//! Prints the list of commands.
void showProgramHelp(Output &output);

void showVersion(Output &output);

void showCommandHelp(const Command &command, Output &output);

} // namespace velldoc
