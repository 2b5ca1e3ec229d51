#pragma once

#include <QRegularExpression>
#include <QString>

struct sqlite3;

namespace service {

//! Adds the function `name_matches(pattern, options, text)` to a connection. It returns 1 if the regular expression is found in the text.
//!
//! The effort is limited for each text and for each statement. If a limit is exceeded, the statement fails with the error
//! regexLimitMessage().
void registerRegexFunction(sqlite3 *connection);

//! \return the expression for name_matches(), which may be invalid. Supported \a options are "i", "m", "s" and "x".
QRegularExpression boundedExpression(const QString &pattern, const QString &options);

//! Returns the error message for an expression that takes too long.
QString regexLimitMessage();

} // namespace service
