#pragma once

#include <desktop/settings/AppSettings.h>

namespace desktop {

//! The colours of the whole program. Needs a QApplication.
namespace appearance {

//! Applies \a scheme to all windows, also to those that are open.
void apply(AppSettings::ColorScheme scheme);

} // namespace appearance

} // namespace desktop
