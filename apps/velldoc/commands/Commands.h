#pragma once

#include <velldoc/Command.h>

#include <QList>

class QString;

namespace velldoc {

//! All commands, in the order of the help.
const QList<const Command *> &allCommands();

//! Null when there is none of that name.
const Command *findCommand(const QString &name);

//! \name One function for each file of this folder
//! @{
const Command &getCommand();
const Command &helpCommand();
const Command &infoCommand();
const Command &lsCommand();
const Command &mkdirCommand();
const Command &putCommand();
//! @}

} // namespace velldoc
