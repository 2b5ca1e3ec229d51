#pragma once

#include <QString>

//! Stores so many entries in a new data folder, every tenth a folder: in the project "p1", at the top level or in a folder of it.
//! \param folder the name of the folder; empty for the top level
void storeEntries(const QString &dataDir, int entries, const QString &folder = {});
