#pragma once

#include <QString>

namespace service {

//! Whether \a host, an IP address without brackets or a name, always means this machine.
bool isLoopback(const QString &host);

} // namespace service
