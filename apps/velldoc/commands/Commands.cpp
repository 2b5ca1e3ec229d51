#include <velldoc/commands/Commands.h>

#include <QString>

namespace velldoc {

const QList<const Command *> &allCommands()
{
    static const QList<const Command *> commands{
        &lsCommand(), &infoCommand(), &putCommand(), &getCommand(), &mkdirCommand(), &helpCommand(),
    };
    return commands;
}

const Command *findCommand(const QString &name)
{
    for (const Command *const command : allCommands()) {
        if (name == QLatin1String(command->name))
            return command;
    }
    return nullptr;
}

} // namespace velldoc
