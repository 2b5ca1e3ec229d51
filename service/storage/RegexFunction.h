#pragma once

#include <QRegularExpression>
#include <QString>

struct sqlite3;

namespace service {

//! Makes `name_matches(pattern, options, text)` known to a connection: 1 where the regular expression is
//! found in the text.
//!
//! The work is bounded, for each text and for each statement; an expression that exceeds a bound ends the
//! statement with an error whose text is regexLimitMessage().
void registerRegexFunction(sqlite3 *connection);

//! \return the expression as name_matches() runs it; check isValid(). Of \a options "i", "m", "s" and
//! "x" count.
QRegularExpression boundedExpression(const QString &pattern, const QString &options);

//! What an expression that takes too long is refused with.
QString regexLimitMessage();

} // namespace service
