#pragma once

#include <velldoc/program/Command.h>

#include <QList>

class QString;

namespace velldoc {

//! Returns all commands, in the order of the help.
const QList<const Command *> &allCommands();

//! Returns the command with that name, also a hidden one; null if there is none.
const Command *findCommand(const QString &name);

//! \name One function for each file of this folder
//! @{
const Command &canCommand();
const Command &catCommand();
const Command &checkCommand();
const Command &completeCommand(); //!< hidden
const Command &completionCommand();
const Command &configCommand();
const Command &cpCommand();
const Command &duCommand();
const Command &favCommand();
const Command &searchCommand(); //!< "find"
const Command &frequentCommand();
const Command &getCommand();
const Command &helpCommand();
const Command &historyCommand();
const Command &infoCommand();
const Command &linksCommand();
const Command &loginCommand();
const Command &logoutCommand();
const Command &lsCommand();
const Command &manualCommand(); //!< hidden
const Command &mkdirCommand();
const Command &mvCommand();
const Command &openCommand();
const Command &orderCommand();
const Command &projectsCommand();
const Command &putCommand();
const Command &pwdCommand();
const Command &recentCommand();
const Command &remarkCommand();
const Command &renameCommand();
const Command &rmCommand();
const Command &serveCommand();
const Command &shareCommand();
const Command &syncCommand();
const Command &trashCommand();
const Command &treeCommand();
const Command &typesCommand();
const Command &watchCommand();
const Command &whoamiCommand();
//! @}

} // namespace velldoc
