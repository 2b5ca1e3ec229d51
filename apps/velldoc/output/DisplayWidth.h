#pragma once

#include <QString>
#include <QStringList>

namespace velldoc {

//! Returns the number of columns of \a text on a terminal: two for East Asian wide characters and pictographs,
//! none for combining marks and format characters.
int displayWidth(const QString &text);

//! Returns \a text cut to at most \a width columns. If it is cut, the last character is "…".
QString elided(const QString &text, int width);

//! Returns \a text padded with spaces to \a width columns.
QString padded(const QString &text, int width, Qt::Alignment alignment = Qt::AlignLeft);

//! Returns \a text in lines of at most \a width columns, broken at spaces and next to wide characters. A longer word
//! is not broken.
QStringList wrapped(const QString &text, int width);

//! Returns \a text with the control characters of terminals replaced, so that a name can neither hide nor
//! colour other text.
QString printable(const QString &text);

} // namespace velldoc
