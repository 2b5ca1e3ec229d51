#include <velldoc/commands/Commands.h>

#include <QString>

namespace velldoc {

const QList<const Command *> &allCommands()
{
    static const QList<const Command *> commands{
        &lsCommand(),    &treeCommand(),    &searchCommand(), &infoCommand(),     &putCommand(),
        &getCommand(),   &mkdirCommand(),   &mvCommand(),     &renameCommand(),   &orderCommand(),
        &rmCommand(),    &trashCommand(),   &favCommand(),    &frequentCommand(), &recentCommand(),
        &shareCommand(), &historyCommand(), &remarkCommand(), &canCommand(),      &linksCommand(),
        &pwdCommand(),   &typesCommand(),   &loginCommand(),  &logoutCommand(),   &serveCommand(),
        &helpCommand(),
    };
    return commands;
}

const Command *findCommand(const QString &name)
{
    for (const Command *const command : allCommands()) {
        if (name == QLatin1String(command->name))
            return command;
    }
    return name == QLatin1String(completeCommand().name) ? &completeCommand() : nullptr;
}

} // namespace velldoc
