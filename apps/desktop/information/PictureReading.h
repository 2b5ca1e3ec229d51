#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

namespace desktop {

//! Decodes pictures in the size in which they are shown. May be used in any thread.
namespace picture_reading {

//! Returns true if files with \a suffix can be shown.
bool canRead(const QString &suffix);

//! \return a picture not larger than \a most; null if \a content cannot be read or is a picture of too many pixels
QImage read(const QByteArray &content, const QString &suffix, const QSize &most);

} // namespace picture_reading

} // namespace desktop
