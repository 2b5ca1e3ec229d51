#pragma once

#include <QString>
#include <QtGlobal>

#include <cstdio>

namespace velldoc {

//! \file
//! \brief What differs from one operating system to another: terminals, signals, file modes.

namespace terminal {

//! Texts of the program, its arguments and file names are UTF-8 everywhere, whatever the locale.
void prepare();

bool isTerminal(std::FILE *stream);

//! Columns of the terminal on \a stream; 0 when it is none.
int width(std::FILE *stream);

//! Whether \a stream may be written to in colour: a terminal, and the user has not set NO_COLOR.
bool hasColour(std::FILE *stream);

//! Reads one line from the standard input without its end. False at the end of the input and after
//! Ctrl-C.
bool readLine(QString *line);

//! The same behind a \a prompt on the standard error, with what is typed hidden, for secrets.
bool readHiddenLine(const QString &prompt, QString *line);

} // namespace terminal

namespace system_files {

//! Makes \a path readable and writable for its owner alone.
bool makePrivate(const QString &path);

//! How far this process has read the file \a path through any of its open handles; -1 when the system does
//! not tell.
qint64 readPosition(const QString &path);

} // namespace system_files

} // namespace velldoc
