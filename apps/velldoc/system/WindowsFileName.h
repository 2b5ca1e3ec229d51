#pragma once

#include <QString>

namespace velldoc {

//! Returns true if the name is valid on Windows: no device, no reserved character, no space or full stop at the
//! end.
bool isWindowsFileName(const QString &name);

} // namespace velldoc
