#pragma once

#include <desktop/settings/AppSettings.h>

namespace desktop {

//! The colours of the program. Needs a QApplication.
namespace appearance {

//! Applies \a scheme to all windows.
void apply(AppSettings::ColorScheme scheme);

} // namespace appearance

} // namespace desktop
