#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

namespace desktop {

//! Pictures of contents, not larger than they are shown. On any thread.
namespace picture_reading {

//! Returns whether contents of files with \a suffix can be shown here.
bool canRead(const QString &suffix);

//! \return a picture not larger than \a most; null if \a content cannot be read or is a picture of too many pixels
QImage read(const QByteArray &content, const QString &suffix, const QSize &most);

} // namespace picture_reading

} // namespace desktop
