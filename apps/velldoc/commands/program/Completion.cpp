#include <velldoc/commands/Commands.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Terminal.h>

#include <QFile>

#include <cstdio>

namespace velldoc {

namespace {

void run(Context &context)
{
    const QString shell = context.arguments(1, 1).constFirst();
    QFile script(QLatin1String(":/velldoc/completion/") + shell);
    if (!script.open(QIODevice::ReadOnly))
        throw Failure(ExitUsage, Text::tr("\"%1\" is not one of bash, zsh and fish.").arg(shell));
    terminal::write(stdout, QString::fromUtf8(script.readAll()));
}

} // namespace

const Command &completionCommand()
{
    static const Command command{
        "completion",
        "SHELL",
        QT_TRANSLATE_NOOP("velldoc", "print the completion script of a shell"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Prints the completion script for SHELL (bash, zsh or fish): for "
                          "commands, options, their values, paths of the project and local files."),
        {},
        {{"source <(velldoc completion bash)", QT_TRANSLATE_NOOP("velldoc", "in ~/.bashrc")},
         {"velldoc completion zsh > \"${fpath[1]}/_velldoc\"",
          QT_TRANSLATE_NOOP("velldoc", "once, before compinit in ~/.zshrc")},
         {"velldoc completion fish > ~/.config/fish/completions/velldoc.fish",
          QT_TRANSLATE_NOOP("velldoc", "once")}},
        run,
        {},
        {"bash", "zsh", "fish"},
    };
    return command;
}

} // namespace velldoc
