#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <cstdio>
#include <memory>

namespace velldoc {

//! \file
//! \brief Functions that depend on the operating system: terminals and files.

namespace terminal {

//! Sets the encoding of texts, arguments and file names to UTF-8, independently of the locale.
void prepare();

bool isTerminal(std::FILE *stream);

//! Returns the number of columns of the terminal on \a stream; 0 if it is not a terminal.
int width(std::FILE *stream);

//! Like columns(), without the environment; returns 0 also if the terminal does not report its width.
int columnsOf(std::FILE *stream);

//! Returns true if \a stream is a terminal with the escape sequences for colours and for erasing.
bool hasSequences(std::FILE *stream);

//! Returns true if \a stream is such a terminal, and the user has not set NO_COLOR.
bool hasColour(std::FILE *stream);

//! Writes \a text, which is shown when the stream is flushed. Returns false if not all could be written; errno
//! has the reason.
bool write(std::FILE *stream, const QString &text);

//! Reads one byte from the standard input, unbuffered, so that Ctrl-C ends the wait. Returns -1 at the end.
int readByte();

//! Reads one line from the standard input, without the newline. Returns false at the end of the input and after
//! Ctrl-C.
bool readLine(QString *line);

//! Like readLine(), with a \a prompt on the standard error and without echo, for secrets.
bool readHiddenLine(const QString &prompt, QString *line);

//! Turns off the echo of the standard input during its lifetime.
class HiddenInput
{
public:
    HiddenInput();
    ~HiddenInput();
    Q_DISABLE_COPY(HiddenInput)

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace terminal

namespace system_files {

//! Makes \a path readable and writable only for its owner.
bool makePrivate(const QString &path);

//! Opens the file \a path in the default program of the desktop. \return true if the program was started
bool openWithDesktop(const QString &path);

//! Returns true if the name is valid for a local file.
bool isFileName(const QString &name);

//! Returns the names of all entries of the folder \a path, sorted.
//! \param notText set to the names that are not valid UTF-8, in a readable form
QStringList entriesOf(const QString &path, QStringList *notText);

//! Returns a key that is equal for paths of the same file, for example for paths that differ only in case on Windows.
QString uniqueKey(const QString &path);

} // namespace system_files

} // namespace velldoc
