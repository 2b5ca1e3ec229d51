#include <velldoc/commands/Commands.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Help.h>
#include <velldoc/program/Text.h>
#include <velldoc/program/Usage.h>
#include <velldoc/system/Terminal.h>

#include <QFile>

#include <cstdio>

namespace velldoc {

namespace {

//! Returns \a text escaped for roff.
QString escaped(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\e"))
        .replace(QLatin1Char('-'), QLatin1String("\\-"))
        .replace(QLatin1Char('\''), QLatin1String("\\(aq"))
        .replace(QLatin1Char('"'), QLatin1String("\\(dq"));
    return text.startsWith(QLatin1Char('.')) ? QLatin1String("\\&") + text : text;
}

QString optionsText(const QVector<CommandOption> &options)
{
    QString text;
    for (const CommandOption &option : options) {
        text += QLatin1String(".TP\n.B \"") + escaped(optionText(option)) + QLatin1String("\"\n")
            + escaped(Text::tr(option.help)) + QLatin1Char('\n');
    }
    return text;
}

QString commandText(const Command &command)
{
    QString text = QStringLiteral(".SS %1\n.B \"%2\"\n.PP\n%3\n")
                       .arg(QString::fromLatin1(command.name), escaped(usageLine(command)),
                            escaped(Text::tr(command.description)));
    text += optionsText(command.options);
    for (const CommandExample &example : command.examples) {
        text +=
            QStringLiteral(".PP\n.EX\n    %1\n.EE\n.RS 8\n%2\n.RE\n")
                .arg(escaped(QString::fromUtf8(example.line)), escaped(Text::tr(example.meaning)));
    }
    return text;
}

void run(Context &context)
{
    QFile file(context.arguments(1, 1).constFirst());
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(ExitFailed, file.errorString());
    QString commands;
    for (const Command *const command : allCommands())
        commands += commandText(*command);
    QString page = QString::fromUtf8(file.readAll());
    page.replace(QLatin1String("@OPTIONS@\n"), optionsText(globalOptions()));
    page.replace(QLatin1String("@COMMANDS@\n"), commands);
    page.replace(QLatin1String("@VERSION@"), QCoreApplication::applicationVersion());
    terminal::write(stdout, page);
}

} // namespace

const Command &manualCommand()
{
    static const Command command{
        "__manual",
        "FILE",
        QT_TRANSLATE_NOOP("velldoc", "the manual page"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Prints the page FILE with the options and the commands inserted."),
        {},
        {},
        run,
    };
    return command;
}

} // namespace velldoc
