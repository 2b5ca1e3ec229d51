#include <velldoc/program/CommandLine.h>

#include <velldoc/commands/Commands.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/output/Log.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Help.h>
#include <velldoc/program/Text.h>
#include <velldoc/program/Usage.h>

#include <VellNetwork/NetworkSettings.h>

#include <QRegularExpression>

namespace velldoc {

namespace {

//! Returns the index of the command: the first argument that is neither a global option nor its value.
int commandPosition(const QStringList &arguments)
{
    for (int i = 0; i < arguments.size(); ++i) {
        if (!arguments.at(i).startsWith(QLatin1Char('-')))
            return i;
        if (takesValue(globalOptions(), arguments.at(i)))
            ++i;
    }
    return -1;
}

//! Returns the format of the result. Read before the command line is parsed, so that its errors are printed as JSON, too.
Output::Format formatOf(const QStringList &arguments)
{
    const QStringList options = arguments.mid(0, arguments.indexOf(QStringLiteral("--")));
    const int position = options.indexOf(QStringLiteral("--output"));
    const QStringList joined = options.filter(QRegularExpression(QStringLiteral("^--output=")));
    QString word = position < 0 ? QString() : options.value(position + 1);
    if (!joined.isEmpty())
        word = joined.constLast().section(QLatin1Char('='), 1);
    if (word == QLatin1String("csv"))
        return Output::Format::Csv;
    if (word == QLatin1String("tsv"))
        return Output::Format::Tsv;
    if (word == QLatin1String("table"))
        return Output::Format::Table;
    const bool isJson = word == QLatin1String("json") || options.contains(QStringLiteral("--json"));
    return isJson ? Output::Format::Json : Output::Format::Text;
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

//! Returns why \a parser could not parse \a arguments.
//! \param options the options of the parser
Failure unreadable(const QCommandLineParser &parser, const QVector<CommandOption> &options,
                   const QStringList &arguments, const QString &help)
{
    QString sentence = Text::tr("An option has a value, but does not take one.");
    const QStringList unknown = parser.unknownOptionNames();
    if (!unknown.isEmpty()) {
        const QString &name = unknown.constFirst();
        sentence = Text::tr("There is no option %1; write -- before names that begin with a dash.")
                       .arg(QLatin1String(name.size() == 1 ? "-" : "--") + name);
        const QString like = mostAlike(name, optionWords(options));
        if (!like.isEmpty())
            sentence = joinedSentences({sentence, didYouMean(QLatin1String("--") + like)});
    } else if (!arguments.constLast().contains(QLatin1Char('='))) {
        sentence = Text::tr("The option %1 needs a value.").arg(arguments.constLast());
    }
    return {ExitUsage, joinedSentences({sentence, Text::tr("See \"%1\".").arg(help)})};
}

//! Runs a command line without a command.
int runProgram(const QStringList &arguments, Output &output)
{
    QCommandLineParser parser;
    addOptions(parser, globalOptions());
    const QString version = QStringLiteral("version");
    parser.addOption(QCommandLineOption(version));
    if (!parser.parse(QStringList{QStringLiteral("velldoc")} + arguments))
        return fail(output,
                    unreadable(parser, globalOptions(), arguments, QStringLiteral("velldoc help")));
    if (parser.isSet(version)) {
        output.setCommand(version);
        showVersion(output);
    } else {
        output.setCommand(QStringLiteral("help"));
        showProgramHelp(output);
    }
    return succeed(output);
}

QString suggestion(const QString &name)
{
    QStringList names;
    for (const Command *const command : allCommands())
        names.append(QString::fromLatin1(command->name));
    return didYouMean(mostAlike(name, names));
}

QString helpLine(const Command &command)
{
    const QString help = QStringLiteral("velldoc help");
    return &command == &helpCommand() ? help
                                      : help + QLatin1Char(' ') + QString::fromLatin1(command.name);
}

//! Sets up the process.
void applyOptions(const Context &context)
{
    context.word("output");
    context.out.setNulEnds(context.isSet("null"));
    if (context.isSet("columns"))
        context.out.setColumns(
            context.value("columns").split(QLatin1Char(','), Qt::SkipEmptyParts));
    constexpr int MsPerSecond = 1000;
    if (context.isSet("timeout")) {
        NetworkSettings::instance().setStallTimeout(
            std::chrono::milliseconds(qint64(context.number("timeout", 0)) * MsPerSecond));
    }
    startLog(context.value("log-file"), context.verbosity() > 1);
}

//! Refuses names of columns that are misspelled, instead of printing them empty.
void requireColumns(Output &output)
{
    const QStringList possible = output.possibleColumns();
    const QStringList columns = output.columns();
    for (const QString &column : columns) {
        if (possible.isEmpty() || possible.contains(column))
            continue;
        output.setResult({});
        const QString refusal = Text::tr("The result has no column \"%1\".").arg(column);
        throw Failure(ExitUsage,
                      joinedSentences({refusal, didYouMean(mostAlike(column, possible))}));
    }
}

int runCommand(const Command &command, const QCommandLineParser &parser, Output &output)
{
    try {
        Context context(command, parser, settingsOf(parser), output);
        applyOptions(context);
        command.run(context);
        requireColumns(output);
        if (context.isDryRun())
            output.note(Text::tr("Nothing was changed: this was a dry run."));
    } catch (const Failure &failure) {
        if (failure.code() != ExitUsage)
            return fail(output, failure);
        const QString advice = Text::tr("See \"%1\".").arg(helpLine(command));
        return fail(output, {ExitUsage, joinedSentences({failure.sentence(), advice})});
    }
    return succeed(output);
}

} // namespace

int runCommandLine(const QStringList &arguments)
{
    Output output;
    output.setFormat(formatOf(arguments));
    const int position = commandPosition(arguments);
    // Qt has replaced invalid UTF-8 by this character; it would be another name.
    if (arguments.join(QLatin1Char(' ')).contains(QChar(QChar::ReplacementCharacter)))
        return fail(output,
                    {ExitUsage,
                     Text::tr("An argument is not valid UTF-8: use the identifier of a document "
                              "(id:...), or rename a local file.")});
    if (position < 0)
        return runProgram(arguments, output);
    const QString &name = arguments.at(position);
    const Command *const command = findCommand(name);
    output.setCommand(name);
    if (command == nullptr) {
        return fail(
            output,
            Failure(ExitUsage,
                    joinedSentences(
                        {Text::tr("There is no command \"%1\": see \"velldoc help\".").arg(name),
                         suggestion(name)})));
    }
    QCommandLineParser parser;
    addOptions(parser, globalOptions());
    addOptions(parser, command->options);
    QStringList rest = arguments;
    rest.removeAt(position);
    if (!parser.parse(QStringList{QStringLiteral("velldoc")} + rest))
        return fail(
            output,
            unreadable(parser, globalOptions() + command->options, rest, helpLine(*command)));
    if (parser.isSet(QStringLiteral("help"))) {
        output.setCommand(QStringLiteral("help"));
        showCommandHelp(*command, output);
        return succeed(output);
    }
    return runCommand(*command, parser, output);
}

} // namespace velldoc
