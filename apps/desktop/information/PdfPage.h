#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace desktop {

//! Draws the first page of PDF files, if the program was built with a library for this. May be used in any thread.
namespace pdf_page {

bool isAvailable();

//! \return null if \a content cannot be read without a password, or if it takes too long
QImage readFirst(const QByteArray &content, const QSize &most);

} // namespace pdf_page

} // namespace desktop
