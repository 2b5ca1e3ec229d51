#pragma once

#include <velldoc/Command.h>

class QCommandLineParser;
class QString;

namespace velldoc {

struct Settings;

//! The options that every command takes, before or behind its name.
const QVector<CommandOption> &globalOptions();

void addOptions(QCommandLineParser &parser, const QVector<CommandOption> &options);

//! The settings with what the command line says on top.
Settings settingsOf(const QCommandLineParser &parser);

} // namespace velldoc
