#include <velldoc/commands/Commands.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Help.h>
#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

void run(Context &context)
{
    const QStringList names = context.arguments(0, 1);
    if (names.isEmpty()) {
        showProgramHelp(context.out);
        return;
    }
    const Command *const command = findCommand(names.constFirst());
    if (command == nullptr) {
        throw Failure(ExitUsage, Text::tr("There is no command \"%1\".").arg(names.constFirst()));
    }
    showCommandHelp(*command, context.out);
}

} // namespace

const Command &helpCommand()
{
    static const Command command{
        "help",
        "[COMMAND]",
        QT_TRANSLATE_NOOP("velldoc", "show the help of velldoc or of a command"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Shows the help of a command with its options and examples, or lists all commands."),
        {},
        {{"velldoc help put", QT_TRANSLATE_NOOP("velldoc", "everything about uploads")}},
        run,
    };
    return command;
}

} // namespace velldoc
