#pragma once

#include <velldoc/program/Command.h>

#include <QStringList>

class QCommandLineParser;

namespace velldoc {

struct Settings;

//! Returns the options of all commands, which may be before or after the name of the command.
const QVector<CommandOption> &globalOptions();

//! Returns true if \a argument is one of \a options, and the next argument is its value.
bool takesValue(const QVector<CommandOption> &options, const QString &argument);

//! Returns the long names of \a options, without dashes.
QStringList optionWords(const QVector<CommandOption> &options);

void addOptions(QCommandLineParser &parser, const QVector<CommandOption> &options);

//! Returns --dry-run, for commands that change documents or files.
const CommandOption &dryRunOption();

//! Returns the options that select files of folders.
QVector<CommandOption> filterOptions();

//! Returns \a options and those of all commands that transfer folders.
QVector<CommandOption> withTransferOptions(const QVector<CommandOption> &options);

//! Returns the settings, overridden by the command line. \throws Failure
Settings settingsOf(const QCommandLineParser &parser);

} // namespace velldoc
