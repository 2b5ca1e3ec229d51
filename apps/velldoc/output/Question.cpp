#include <velldoc/output/Question.h>

#include <velldoc/output/DisplayWidth.h>
#include <velldoc/program/Failure.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Interrupt.h>
#include <velldoc/system/Terminal.h>

#include <cstdio>

namespace velldoc {

bool canAsk()
{
    return terminal::isTerminal(stdin) && terminal::isTerminal(stderr);
}

bool confirm(const QString &question)
{
    say(printable(question) + QLatin1Char(' ') + Text::tr("[y/N] "));
    QString answer;
    const bool isAnswered = terminal::readLine(&answer);
    if (!isAnswered)
        say(QStringLiteral("\n"));
    Interrupt::check();
    const QString key = Text::tr("y", "the key for yes");
    return isAnswered && !answer.isEmpty()
        && (answer.startsWith(key, Qt::CaseInsensitive)
            || answer.startsWith(QLatin1Char('y'), Qt::CaseInsensitive));
}

void requireAgreement(const QString &question, bool isAgreed)
{
    if (isAgreed)
        return;
    if (!canAsk())
        throw Failure(ExitUsage, Text::tr("This cannot be undone: pass --yes to delete."));
    if (!confirm(question))
        throw Failure(ExitFailed, Text::tr("Nothing was deleted."));
}

void say(const QString &text)
{
    terminal::write(stderr, text);
    std::fflush(stderr);
}

} // namespace velldoc
