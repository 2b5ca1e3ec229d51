#pragma once

#include <QList>
#include <QString>

namespace velldoc {

struct Command;

//! \brief One argument in the usage line of a command.
struct UsageWord
{
    QString name; //!< "PATH", "LOCAL"
    bool isRepeated = false;
};

//! Returns the arguments of \a command in their order, without options. If the command has several forms: those of the first one,
//! or those after the word \a action.
QList<UsageWord> usageWords(const Command &command, const QString &action = {});

//! Returns the usage line of \a command.
QString usageLine(const Command &command);

//! Returns the most similar one of \a words, if \a word may be a misspelling of it; otherwise an empty string.
QString mostAlike(const QString &word, const QStringList &words);

//! Returns the question whether \a like was meant; empty if \a like is empty.
QString didYouMean(const QString &like);

} // namespace velldoc
