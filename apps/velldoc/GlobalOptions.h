#pragma once

#include <velldoc/Command.h>

#include <QStringList>

class QCommandLineParser;

namespace velldoc {

struct Settings;

//! The options that every command takes, before or behind its name.
const QVector<CommandOption> &globalOptions();

//! Whether \a argument is one of \a options, and what follows it is its value.
bool takesValue(const QVector<CommandOption> &options, const QString &argument);

//! The long names of \a options, without dashes.
QStringList optionWords(const QVector<CommandOption> &options);

void addOptions(QCommandLineParser &parser, const QVector<CommandOption> &options);

//! --dry-run, for commands that change something.
const CommandOption &dryRunOption();

//! Which files of a folder are meant.
QVector<CommandOption> filterOptions();

//! \a options and those of all commands that transfer folders.
QVector<CommandOption> withTransferOptions(const QVector<CommandOption> &options);

//! The settings with what the command line says on top. \throws Failure
Settings settingsOf(const QCommandLineParser &parser);

} // namespace velldoc
