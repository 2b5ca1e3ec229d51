#pragma once

#include <QString>

namespace velldoc {

//! Orders names as people do: without regard to case, and numbers in them by their value ("Level 2" before
//! "Level 10"), the same in every locale.
//! \return negative, 0 for equal names only, or positive
int compareNaturally(const QString &a, const QString &b);

} // namespace velldoc
