#pragma once

#include <QString>

namespace velldoc {

//! Whether there is somebody at a terminal who can be asked.
bool canAsk();

//! Asks a question that is answered with yes or no; anything but a clear yes is a no.
//! \throws Failure after Ctrl-C
bool confirm(const QString &question);

//! Writes \a text to the standard error, as it is, at once.
void say(const QString &text);

} // namespace velldoc
