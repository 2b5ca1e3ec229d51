#pragma once

#include <QString>

namespace velldoc {

//! Returns true if the user can be asked on a terminal.
bool canAsk();

//! Asks a question. Returns true only if the answer is yes.
//! \throws Failure after Ctrl-C
bool confirm(const QString &question);

//! Asks before something is deleted permanently, unless \a isAgreed is true.
//! \throws Failure if the answer is no, or nobody can be asked
void requireAgreement(const QString &question, bool isAgreed);

//! Writes \a text unchanged to the standard error, and flushes it.
void say(const QString &text);

} // namespace velldoc
