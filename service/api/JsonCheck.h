#pragma once

#include <QByteArray>

namespace service {

//! Looks through a JSON text before Qt's parser gets it, which loses memory for good over a key that occurs twice in one
//! object.
//! \return what is wrong, a static text: not JSON by RFC 8259, nested too deep, a key twice; null if it is in order. Whether
//! the text is valid UTF-8 is left to Qt.
const char *findJsonFault(const QByteArray &text);

} // namespace service
