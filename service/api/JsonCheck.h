#pragma once

#include <QByteArray>

namespace service {

//! Checks a JSON text before it is passed to Qt's parser, which leaks memory if a key occurs twice in an object.
//! \return a static text with the error: not JSON by RFC 8259, nested too deep, a duplicate key; null if there is none. Invalid UTF-8
//! is detected by Qt.
const char *findJsonFault(const QByteArray &text);

} // namespace service
