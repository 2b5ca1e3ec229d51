#pragma once

#include <QString>

namespace service {

//! Returns true if \a host is a loopback address, without brackets, or "localhost".
bool isLoopback(const QString &host);

} // namespace service
