#pragma once

#include <QString>

namespace velldoc {

//! Whether Windows can have a file of this name: no device, no reserved character, no blank or full stop at the
//! end.
bool isWindowsFileName(const QString &name);

} // namespace velldoc
