#pragma once

#include <QJsonObject>
#include <QString>

//! \file
//! \brief Requests that velldoc makes, sent by nothing but the library's transport: one after the other, each
//! after the answer to the one before.
//!
//! All work on the service of VellBaseApi in the project "default". A refused request ends the program.

//! Sends what velldoc sends for the files of the local \a folder into a new folder \a name.
void putFolder(const QString &folder, const QString &name);

//! Finds the folder \a name and then asks for all its entries, as the library does for velldoc.
//! \return "seconds" from the question for the entries to the last byte of the answer, and "bytes" of that
QJsonObject listFolder(const QString &name);

//! Makes a folder \a name with \a count documents of one content.
void fillFolder(const QString &name, int count);

//! Makes \a count folders at the top level.
void makeFolders(int count);
