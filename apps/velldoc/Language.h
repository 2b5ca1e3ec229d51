#pragma once

namespace velldoc {

//! Makes the texts of the program, of the library and of Qt those of the user's language: Chinese where the locale
//! says so, else English. For main(), after the application was made.
void installLanguage();

} // namespace velldoc
