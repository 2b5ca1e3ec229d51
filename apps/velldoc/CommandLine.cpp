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

int fail(Output &output, const Failure &failure)
{
    output.error(failure.sentence());
    output.finish(&failure);
    return failure.code();
}

int runCommand(const Command &command, const QCommandLineParser &parser, Output &output)
{
    try {
        Context context(parser, settingsOf(parser), output);
        command.run(context);
    } catch (const Failure &failure) {
        Failure shown = failure;
        if (failure.code() == ExitUsage) {
            shown = Failure(
                ExitUsage,
                failure.sentence() + QLatin1Char(' ')
                    + Text::tr("See \"velldoc help %1\".").arg(QString::fromLatin1(command.name)));
        }
        return fail(output, shown);
    }
    if (output.finish(nullptr))
        return ExitOk;
    output.error(Text::tr("The output could not be written."));
    return ExitFailed;
}

} // namespace

int runCommandLine(const QStringList &arguments)
{
    Output output;
    const int position = commandPosition(arguments);
    if (position < 0)
        return showProgramHelp(arguments, output);
    const QString &name = arguments.at(position);
    const Command *const command = findCommand(name);
    if (command == nullptr) {
        return fail(
            output,
            Failure(ExitUsage,
                    Text::tr("There is no command \"%1\": see \"velldoc help\".").arg(name)));
    }
    output.setCommand(name);

    QCommandLineParser parser;
    addOptions(parser, globalOptions());
    addOptions(parser, command->options);
    QStringList rest = arguments;
    rest.removeAt(position);
    rest.prepend(QStringLiteral("velldoc"));
    const bool isReadable = parser.parse(rest);
    output.setJson(parser.isSet(QStringLiteral("json")));
    if (!isReadable) {
        const QString advice = Text::tr("See \"velldoc help %1\".").arg(name);
        return fail(output, Failure(ExitUsage, parser.errorText() + QLatin1Char(' ') + advice));
    }
    if (parser.isSet(QStringLiteral("help"))) {
        output.setJson(false);
        showCommandHelp(*command, output);
        return output.finish(nullptr) ? ExitOk : ExitFailed;
    }
    return runCommand(*command, parser, output);
}

} // namespace velldoc
