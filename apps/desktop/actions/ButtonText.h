#pragma once

#include <QString>

namespace desktop {

//! The text of an action for a tool button: \a text without what is for menus only, the key, also as some languages append it
//! in parentheses, and the dots.
QString buttonText(const QString &text);

} // namespace desktop
