#include <velldoc/transfer/ConflictPolicy.h>

#include <velldoc/output/DisplayWidth.h>
#include <velldoc/output/Question.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Interrupt.h>
#include <velldoc/system/Terminal.h>

namespace velldoc {

namespace {

struct PolicyWord
{
    const char *word;
    char key;
    Conflict conflict;
};

constexpr PolicyWord PolicyWords[] = {
    {"ask", '\0', Conflict::Ask},      {"replace", 'r', Conflict::Replace},
    {"rename", 'n', Conflict::Rename}, {"skip", 's', Conflict::Skip},
    {"cancel", 'c', Conflict::Cancel},
};

Conflict policyFromWord(const QString &word)
{
    for (const PolicyWord &row : PolicyWords) {
        if (word == QLatin1String(row.word))
            return row.conflict;
    }
    return Conflict::Ask;
}

//! Returns the question with the possible answers.
QString questionText(const ConflictPolicy::Question &question)
{
    QStringList lines{Text::tr("%1 already exists.").arg(question.remotePath)};
    if (!question.there.isEmpty()) {
        lines += {Text::tr("  there: %1").arg(question.there),
                  Text::tr("  yours: %1").arg(question.here)};
    }
    if (question.canReplace)
        lines.append(Text::tr("  r  replace it: store the file as a new version"));
    lines += {Text::tr("  n  keep both: store the file as %1").arg(question.newName),
              Text::tr("  s  skip the file"), Text::tr("  c  cancel; no file is sent")};
    const QString margin(5, QLatin1Char(' '));
    QString text;
    for (const QString &line : qAsConst(lines)) {
        const QStringList parts = wrapped(printable(line), terminal::width(stderr) - margin.size());
        text += parts.join(QLatin1Char('\n') + margin) + QLatin1Char('\n');
    }
    const QString last = Text::tr("A capital letter applies to all following files, too: ");
    return text + wrapped(last, terminal::width(stderr)).join(QLatin1Char('\n'));
}

} // namespace

ConflictPolicy::ConflictPolicy(const Context &context)
{
    const QString word = context.word("on-conflict");
    if (context.isSet("update") && !word.isEmpty() && word != QLatin1String("replace"))
        throw Failure(
            ExitUsage,
            Text::tr("%1 and %2 cannot be used together.")
                .arg(QStringLiteral("--update"), QStringLiteral("--on-conflict ") + word));
    if (!word.isEmpty())
        m_policy = policyFromWord(word);
    else if (context.isSet("update"))
        m_policy = Conflict::Replace;
    else if (!canAsk())
        m_policy = Conflict::Cancel;
}

Conflict ConflictPolicy::decide(const Question &question)
{
    const Conflict decided = m_policy == Conflict::Ask ? ask(question) : m_policy;
    if (decided != Conflict::Replace || question.canReplace)
        return decided;
    throw Failure(ExitFailed,
                  Text::tr("%1 is a folder and cannot be replaced by a file: choose another name.")
                      .arg(question.remotePath));
}

Conflict ConflictPolicy::ask(const Question &question)
{
    say(questionText(question));
    for (;;) {
        QString answer;
        if (!terminal::readLine(&answer)) {
            say(QStringLiteral("\n"));
            Interrupt::check();
            return Conflict::Cancel;
        }
        for (const PolicyWord &row : PolicyWords) {
            const bool fits = answer.size() == 1 && answer.at(0).toLower() == QLatin1Char(row.key);
            if (!fits || row.key == '\0'
                || (row.conflict == Conflict::Replace && !question.canReplace))
                continue;
            if (answer.at(0).isUpper())
                m_policy = row.conflict;
            return row.conflict;
        }
        say(Text::tr("Press one of %1, then Enter: ")
                .arg(QLatin1String(question.canReplace ? "r, n, s, c" : "n, s, c")));
    }
}

} // namespace velldoc
