#pragma once

#include <QString>

namespace velldoc {

class Output;
struct Command;
struct CommandOption;

//! "-l, --long", "--sort FIELD": how \a option is written.
QString optionText(const CommandOption &option);

//! What velldoc answers without a command: the list of commands.
void showProgramHelp(Output &output);

void showVersion(Output &output);

void showCommandHelp(const Command &command, Output &output);

} // namespace velldoc
