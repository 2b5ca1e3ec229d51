#pragma once

#include <QString>

namespace velldoc {

//! Compares names case-insensitively, with numbers by their value ("Level 2" before
//! "Level 10"), the same in every locale.
//! \return a negative or positive number, or 0 only for equal names
int compareNaturally(const QString &a, const QString &b);

} // namespace velldoc
