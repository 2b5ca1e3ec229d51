#pragma once

#include <QString>

namespace velldoc {

//! Returns \a text, a message of the service, in the language of the user; unchanged if there is no translation.
QString translatedServiceText(const QString &text);

} // namespace velldoc
