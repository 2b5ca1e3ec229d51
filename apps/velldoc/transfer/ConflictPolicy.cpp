#include <velldoc/transfer/ConflictPolicy.h>

#include <velldoc/Context.h>
#include <velldoc/Text.h>
#include <velldoc/output/DisplayWidth.h>
#include <velldoc/output/Interrupt.h>
#include <velldoc/output/Question.h>
#include <velldoc/output/Terminal.h>

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
    throw Failure(ExitUsage,
                  Text::tr("--on-conflict takes ask, replace, rename, skip or cancel, not \"%1\".")
                      .arg(word));
}

//! The question with the answers that are possible.
QString questionText(const QString &remotePath, const QString &newName, bool canReplace)
{
    QStringList lines{Text::tr("%1 is there already.").arg(remotePath)};
    if (canReplace)
        lines.append(Text::tr("  r  replace it: the file becomes its new version"));
    lines += {Text::tr("  n  keep it, and store the file as %1").arg(newName),
              Text::tr("  s  skip the file"), Text::tr("  c  cancel; no file is sent")};
    QString text;
    for (const QString &line : qAsConst(lines))
        text += printable(line) + QLatin1Char('\n');
    return text + Text::tr("A capital letter answers for all the following files, too: ");
}

} // namespace

ConflictPolicy::ConflictPolicy(const Context &context)
{
    if (context.isSet("on-conflict"))
        m_policy = policyFromWord(context.value("on-conflict"));
    else if (context.isSet("update"))
        m_policy = Conflict::Replace;
    else if (!canAsk())
        m_policy = Conflict::Cancel;
}

Conflict ConflictPolicy::decide(const QString &remotePath, const QString &newName, bool canReplace)
{
    const Conflict decided =
        m_policy == Conflict::Ask ? ask(remotePath, newName, canReplace) : m_policy;
    if (decided != Conflict::Replace || canReplace)
        return decided;
    throw Failure(ExitFailed,
                  Text::tr("%1 is a folder, which a file cannot replace: choose another name.")
                      .arg(remotePath));
}

Conflict ConflictPolicy::ask(const QString &remotePath, const QString &newName, bool canReplace)
{
    for (;;) {
        say(questionText(remotePath, newName, canReplace));
        QString answer;
        if (!terminal::readLine(&answer)) {
            say(QStringLiteral("\n"));
            Interrupt::check();
            return Conflict::Cancel;
        }
        for (const PolicyWord &row : PolicyWords) {
            const bool fits = answer.size() == 1 && answer.at(0).toLower() == QLatin1Char(row.key);
            if (!fits || row.key == '\0' || (row.conflict == Conflict::Replace && !canReplace))
                continue;
            if (answer.at(0).isUpper())
                m_policy = row.conflict;
            return row.conflict;
        }
    }
}

} // namespace velldoc
