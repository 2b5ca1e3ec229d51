#pragma once

#include <QString>
#include <QStringList>

namespace velldoc {

//! How many columns of a terminal \a text takes: East Asian wide characters and pictographs take two,
//! combining marks and format characters none.
int displayWidth(const QString &text);

//! \a text cut to at most \a width columns, the last of which is "…" when something was cut.
QString elided(const QString &text, int width);

//! \a text filled up with blanks to \a width columns.
QString padded(const QString &text, int width, Qt::Alignment alignment = Qt::AlignLeft);

//! \a text in lines of at most \a width columns, broken at blanks and beside wide characters. A word that is longer
//! stays whole.
QStringList wrapped(const QString &text, int width);

//! \a text with characters that would steer a terminal replaced, so that a name can neither hide nor
//! colour anything.
QString printable(const QString &text);

} // namespace velldoc
