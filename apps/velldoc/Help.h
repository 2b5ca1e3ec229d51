#pragma once

namespace velldoc {

class Output;
struct Command;

//! What velldoc answers without a command: the list of commands.
void showProgramHelp(Output &output);

void showVersion(Output &output);

void showCommandHelp(const Command &command, Output &output);

} // namespace velldoc
