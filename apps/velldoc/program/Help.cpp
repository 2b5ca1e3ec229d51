#include <velldoc/program/Help.h>

#include <velldoc/commands/Commands.h>
#include <velldoc/output/DisplayWidth.h>
#include <velldoc/output/Output.h>
#include <velldoc/program/Command.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Terminal.h>

#include <QJsonArray>

namespace velldoc {

namespace {

constexpr int Indent = 2;
constexpr int NameColumn = 12;
constexpr int OptionColumn = 26;
constexpr int NarrowestText = 24; // beside the option; otherwise below it

int lineWidth()
{
    constexpr int Widest = 100;
    constexpr int Usual = 80;
    const int width = terminal::width(stdout);
    return width > 0 ? qMin(width, Widest) : Usual;
}

void printText(const QString &text, int indent, Output &output)
{
    const QStringList lines = wrapped(text, lineWidth() - indent);
    for (const QString &line : lines)
        output.print(QString(indent, QLatin1Char(' ')) + line);
}

void printPair(const QString &left, const QString &right, int column, Output &output)
{
    const QString margin(Indent, QLatin1Char(' '));
    if (lineWidth() - Indent - column < NarrowestText) {
        output.print(margin + left);
        printText(right, 3 * Indent, output);
        return;
    }
    QStringList lines = wrapped(right, lineWidth() - Indent - column);
    if (displayWidth(left) + 1 < column)
        output.print(margin + padded(left, column) + lines.takeFirst());
    else
        output.print(margin + left);
    for (const QString &line : qAsConst(lines))
        output.print(margin + QString(column, QLatin1Char(' ')) + line);
}

//! Returns the names as they are typed, the short one first.
QStringList optionNames(const CommandOption &option)
{
    QStringList names = QString::fromLatin1(option.names).split(QLatin1Char(','));
    for (QString &name : names)
        name.prepend(QLatin1String(name.size() == 1 ? "-" : "--"));
    return names;
}

QJsonArray optionsJson(const QVector<CommandOption> &options)
{
    QJsonArray array;
    for (const CommandOption &option : options) {
        const QString value = QString::fromLatin1(option.valueName);
        array.append(QJsonObject{
            {QStringLiteral("names"), QJsonArray::fromStringList(optionNames(option))},
            {QStringLiteral("value"), value.isEmpty() ? QJsonValue() : QJsonValue(value)},
            {QStringLiteral("help"), Text::tr(option.help)}});
    }
    return array;
}

QJsonObject summaryJson(const Command &command)
{
    return {{QStringLiteral("name"), QString::fromLatin1(command.name)},
            {QStringLiteral("arguments"), QString::fromLatin1(command.arguments)},
            {QStringLiteral("summary"), Text::tr(command.summary)}};
}

QJsonObject commandJson(const Command &command)
{
    QJsonArray examples;
    for (const CommandExample &example : command.examples)
        examples.append(QJsonObject{{QStringLiteral("line"), QString::fromUtf8(example.line)},
                                    {QStringLiteral("meaning"), Text::tr(example.meaning)}});
    QJsonObject object = summaryJson(command);
    object.insert(QStringLiteral("description"), Text::tr(command.description));
    object.insert(QStringLiteral("options"), optionsJson(command.options));
    object.insert(QStringLiteral("examples"), examples);
    return object;
}

void printOptions(const QString &title, const QVector<CommandOption> &options, Output &output)
{
    if (options.isEmpty())
        return;
    output.print(QString());
    output.print(Output::strong(title));
    for (const CommandOption &option : options)
        printPair(optionText(option), Text::tr(option.help), OptionColumn, output);
}

} // namespace

QString optionText(const CommandOption &option)
{
    QString text = optionNames(option).join(QStringLiteral(", "));
    if (option.valueName != nullptr)
        text += QLatin1Char(' ') + QString::fromLatin1(option.valueName);
    return text;
}

void showVersion(Output &output)
{
    const QString version = QCoreApplication::applicationVersion();
    output.setResult({{QStringLiteral("version"), version}});
    output.print(QStringLiteral("velldoc ") + version);
}

void showProgramHelp(Output &output)
{
    QJsonArray commands;
    for (const Command *const command : allCommands())
        commands.append(summaryJson(*command));
    output.setResult({{QStringLiteral("commands"), commands},
                      {QStringLiteral("options"), optionsJson(globalOptions())}});
    output.print(
        Output::strong(Text::tr("velldoc: the documents of a project, from the command line")));
    output.print(Text::tr("velldoc [OPTIONS] COMMAND [ARGUMENTS]"));
    output.print(QString());
    for (const Command *const command : allCommands())
        printPair(QString::fromLatin1(command->name), Text::tr(command->summary), NameColumn,
                  output);
    printOptions(Text::tr("Options of every command"), globalOptions(), output);
    output.print(QString());
    printText(Text::tr("\"velldoc help COMMAND\" shows the options and examples of a command. A "
                       "path consists of names from the top level (/Drawings/plan.dwg) or is an "
                       "identifier (id:...); write -- before names that begin with a dash."),
              0, output);
}

void showCommandHelp(const Command &command, Output &output)
{
    const QString name = QString::fromLatin1(command.name);
    output.setResult(commandJson(command));
    output.print(Output::strong(
        QStringLiteral("velldoc %1 %2").arg(name, QString::fromLatin1(command.arguments))));
    output.print(QString());
    printText(Text::tr(command.description), 0, output);
    printOptions(Text::tr("Options"), command.options, output);
    printOptions(Text::tr("Options of every command"), globalOptions(), output);
    if (command.examples.isEmpty())
        return;
    output.print(QString());
    output.print(Output::strong(Text::tr("Examples")));
    const QString margin(Indent, QLatin1Char(' '));
    for (const CommandExample &example : command.examples) {
        output.print(margin + QString::fromUtf8(example.line));
        printText(Text::tr(example.meaning), 3 * Indent, output);
    }
}

} // namespace velldoc
