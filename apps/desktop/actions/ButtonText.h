#pragma once

#include <QString>

namespace desktop {

//! Returns the text of an action for a tool button: \a text without the mnemonic, also in the form that some languages append
//! in parentheses, and without the dots.
QString buttonText(const QString &text);

} // namespace desktop
