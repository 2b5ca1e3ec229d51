#pragma once

#include <QString>

//! Writes the file \a path with \a bytes bytes, in which no two blocks of 64 KiB are equal. Files with another \a salt have no block in
//! common with it, so that a chunk in the wrong place or the wrong file is always noticed. Ends the program on failure.
void writeUnequalFile(const QString &path, qint64 bytes, quint32 salt = 0);
