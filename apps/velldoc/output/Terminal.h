#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <cstdio>
#include <memory>

namespace velldoc {

//! \file
//! \brief What differs from one operating system to another: terminals and files.

namespace terminal {

//! Texts of the program, its arguments and file names are UTF-8 everywhere, whatever the locale.
void prepare();

bool isTerminal(std::FILE *stream);

//! Columns of the terminal on \a stream; 0 when it is none.
int width(std::FILE *stream);

//! The same without asking the environment; 0 also when the terminal does not tell.
int columnsOf(std::FILE *stream);

//! Whether \a stream is a terminal that knows the escape sequences of colour and of erasing.
bool hasSequences(std::FILE *stream);

//! Whether \a stream may be written to in colour: such a terminal, and the user has not set NO_COLOR.
bool hasColour(std::FILE *stream);

//! Writes \a text, which is shown when the stream is flushed. False when not all could be written; errno
//! tells why.
bool write(std::FILE *stream, const QString &text);

//! One byte of the standard input, unbuffered, so that Ctrl-C ends the wait; -1 at the end.
int readByte();

//! Reads one line from the standard input without its end. False at the end of the input and after
//! Ctrl-C.
bool readLine(QString *line);

//! The same behind a \a prompt on the standard error, with what is typed hidden, for secrets.
bool readHiddenLine(const QString &prompt, QString *line);

//! Turns the echo of the standard input off while it lives.
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

//! Makes \a path readable and writable for its owner alone.
bool makePrivate(const QString &path);

//! Shows the file \a path in the program that the desktop has for its kind. \return whether that could be started
bool openWithDesktop(const QString &path);

//! Whether a file can have this name here.
bool isFileName(const QString &name);

//! The names of everything in the folder \a path, sorted.
//! \param notText those that are no text, and so cannot be sent, as far as they can be shown
QStringList entriesOf(const QString &path, QStringList *notText);

//! The same text for paths that name the same file, as those do that differ in case on Windows.
QString uniqueKey(const QString &path);

} // namespace system_files

} // namespace velldoc
