#include <velldoc/commands/Commands.h>

#include <QString>

namespace velldoc {

const QList<const Command *> &allCommands()
{
    static const QList<const Command *> commands{
        &lsCommand(),       &treeCommand(),     &searchCommand(), &infoCommand(),
        &duCommand(),       &catCommand(),      &openCommand(),   &putCommand(),
        &getCommand(),      &syncCommand(),     &watchCommand(),  &checkCommand(),
        &mkdirCommand(),    &mvCommand(),       &cpCommand(),     &renameCommand(),
        &orderCommand(),    &rmCommand(),       &trashCommand(),  &favCommand(),
        &frequentCommand(), &recentCommand(),   &shareCommand(),  &historyCommand(),
        &remarkCommand(),   &canCommand(),      &linksCommand(),  &pwdCommand(),
        &typesCommand(),    &projectsCommand(), &whoamiCommand(), &loginCommand(),
        &logoutCommand(),   &configCommand(),   &serveCommand(),  &completionCommand(),
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
    for (const Command *const hidden : {&completeCommand(), &manualCommand()}) {
        if (name == QLatin1String(hidden->name))
            return hidden;
    }
    return nullptr;
}

} // namespace velldoc
