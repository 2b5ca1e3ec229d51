#pragma once

namespace velldoc {

//! Loads the translations of the program, of the library and of Qt: Chinese if the locale is Chinese,
//! otherwise English. Call it in main(), after the application has been created.
void installLanguage();

} // namespace velldoc
