#pragma once

#include <QList>
#include <QString>

namespace velldoc {

struct Command;

//! \brief One argument of a command, as its usage line names it.
struct UsageWord
{
    QString name; //!< "PATH", "LOCAL"
    bool isRepeated = false;
};

//! The arguments of \a command in their order, without options; those of the first of several forms, or of the one that begins with
//! the word \a action, behind it.
QList<UsageWord> usageWords(const Command &command, const QString &action = {});

//! The line that shows how \a command is written.
QString usageLine(const Command &command);

//! Of \a words the one that is most like \a word, if it can be a slip of the finger; else an empty text.
QString mostAlike(const QString &word, const QStringList &words);

} // namespace velldoc
