#pragma once

#include <QCommandLineParser>
#include <QString>

#include <cstdio>

namespace service {

constexpr int ExitFailure = 1;
constexpr int ExitUsage = 2;

inline void printLine(const QString &line)
{
    std::fprintf(stdout, "%s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

inline int fail(const QString &sentence, int code = ExitFailure)
{
    std::fprintf(stderr, "vell-service: %s\n", sentence.toUtf8().constData());
    return code;
}

//! Parses the arguments after the command. Returns false if the program is to end with the exit code \a code, after --help or for a
//! wrong command line.
inline bool parseArguments(QCommandLineParser &parser, const QStringList &arguments, int *code)
{
    const QCommandLineOption help = parser.addHelpOption();
    if (!parser.parse(QStringList{QStringLiteral("vell-service")} + arguments)) {
        *code = fail(parser.errorText() + QLatin1Char('.'), ExitUsage);
        return false;
    }
    if (parser.isSet(help)) {
        printLine(parser.helpText());
        *code = 0;
        return false;
    }
    return true;
}

} // namespace service
