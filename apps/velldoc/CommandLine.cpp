#include <velldoc/CommandLine.h>

#include <velldoc/Context.h>
#include <velldoc/GlobalOptions.h>
#include <velldoc/Help.h>
#include <velldoc/Text.h>
#include <velldoc/commands/Commands.h>

namespace velldoc {

namespace {

bool takesValue(const QString &argument)
{
    for (const CommandOption &option : globalOptions()) {
        if (option.valueName != nullptr
            && argument == QLatin1String("--") + QString::fromLatin1(option.names))
            return true;
    }
    return false;
}

//! Where the command stands: the first argument that is neither a global option nor its value.
int commandPosition(const QStringList &arguments)
{
    for (int i = 0; i < arguments.size(); ++i) {
        if (!arguments.at(i).startsWith(QLatin1Char('-')))
            return i;
        if (takesValue(arguments.at(i)))
            ++i;
    }
    return -1;
}

//! Known before the line is understood, so that an error in it is JSON, too.
bool asksForJson(const QStringList &arguments)
{
    const int end = arguments.indexOf(QStringLiteral("--"));
    return arguments.mid(0, end).contains(QStringLiteral("--json"));
}

int fail(Output &output, const Failure &failure)
{
    output.error(failure.sentence());
    output.finish(&failure);
    return failure.code();
}

int succeed(Output &output)
{
    if (output.finish(nullptr))
        return ExitOk;
    output.error(Text::tr("The output could not be written."));
    return ExitFailed;
}

//! Why \a parser could not read \a arguments.
Failure unreadable(const QCommandLineParser &parser, const QStringList &arguments,
                   const QString &help)
{
    QString sentence = Text::tr("An option has a value, but takes none.");
    const QStringList unknown = parser.unknownOptionNames();
    if (!unknown.isEmpty()) {
        const QString &name = unknown.constFirst();
        sentence = Text::tr("There is no option %1; names that begin with a dash go behind a --.")
                       .arg(QLatin1String(name.size() == 1 ? "-" : "--") + name);
    } else if (!arguments.constLast().contains(QLatin1Char('='))) {
        sentence = Text::tr("The option %1 needs a value.").arg(arguments.constLast());
    }
    return {ExitUsage, sentence + QLatin1Char(' ') + Text::tr("See \"%1\".").arg(help)};
}

//! A line without a command.
int runProgram(const QStringList &arguments, Output &output)
{
    QCommandLineParser parser;
    addOptions(parser, globalOptions());
    const QString version = QStringLiteral("version");
    parser.addOption(QCommandLineOption(version));
    if (!parser.parse(QStringList{QStringLiteral("velldoc")} + arguments))
        return fail(output, unreadable(parser, arguments, QStringLiteral("velldoc help")));
    if (parser.isSet(version)) {
        output.setCommand(version);
        showVersion(output);
    } else {
        output.setCommand(QStringLiteral("help"));
        showProgramHelp(output);
    }
    return succeed(output);
}

QString helpLine(const Command &command)
{
    const QString help = QStringLiteral("velldoc help");
    return &command == &helpCommand() ? help
                                      : help + QLatin1Char(' ') + QString::fromLatin1(command.name);
}

int runCommand(const Command &command, const QCommandLineParser &parser, Output &output)
{
    try {
        Context context(parser, settingsOf(parser), output);
        command.run(context);
    } catch (const Failure &failure) {
        if (failure.code() != ExitUsage)
            return fail(output, failure);
        const QString advice = Text::tr("See \"%1\".").arg(helpLine(command));
        return fail(output, {ExitUsage, failure.sentence() + QLatin1Char(' ') + advice});
    }
    return succeed(output);
}

} // namespace

int runCommandLine(const QStringList &arguments)
{
    Output output;
    output.setJson(asksForJson(arguments));
    const int position = commandPosition(arguments);
    if (position < 0)
        return runProgram(arguments, output);
    const QString &name = arguments.at(position);
    const Command *const command = findCommand(name);
    output.setCommand(name);
    if (command == nullptr) {
        return fail(
            output,
            Failure(ExitUsage,
                    Text::tr("There is no command \"%1\": see \"velldoc help\".").arg(name)));
    }
    QCommandLineParser parser;
    addOptions(parser, globalOptions());
    addOptions(parser, command->options);
    QStringList rest = arguments;
    rest.removeAt(position);
    if (!parser.parse(QStringList{QStringLiteral("velldoc")} + rest))
        return fail(output, unreadable(parser, rest, helpLine(*command)));
    if (parser.isSet(QStringLiteral("help"))) {
        output.setCommand(QStringLiteral("help"));
        showCommandHelp(*command, output);
        return succeed(output);
    }
    return runCommand(*command, parser, output);
}

} // namespace velldoc
