#include <velldoc/sync/SyncReport.h>

#include <velldoc/output/HumanText.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>

#include <QFileInfo>

namespace velldoc {

namespace {

using Action = VellSyncStep::Action;

QString actionWord(const VellSyncStep &step, bool isUp)
{
    switch (step.action) {
    case Action::CreateFolder:
        return QStringLiteral("mkdir");
    case Action::Move:
        return QStringLiteral("move");
    case Action::Create:
        return isUp ? QStringLiteral("send") : QStringLiteral("fetch");
    case Action::Replace:
        return QStringLiteral("replace");
    case Action::Remove:
        return QStringLiteral("remove");
    case Action::Leave:
        break;
    }
    return QStringLiteral("keep");
}

QJsonObject stepJson(const VellSyncStep &step, bool isUp)
{
    QJsonObject json{
        {QStringLiteral("action"), actionWord(step, isUp)},
        {QStringLiteral("path"), step.path},
        {QStringLiteral("type"), step.isFolder ? QStringLiteral("dir") : QStringLiteral("file")},
        {QStringLiteral("size"), step.sizeBytes}};
    if (step.action == Action::Move)
        json.insert(QStringLiteral("from"), step.fromPath);
    return json;
}

QString stepText(const VellSyncStep &step, bool isUp)
{
    const QString from =
        step.action == Action::Move ? step.fromPath + QLatin1String(" -> ") : QString();
    return actionWord(step, isUp).leftJustified(8) + from + step.path
        + QLatin1String(step.isFolder ? "/" : "");
}

} // namespace

void SyncReport::addDone(const VellSyncStep &step)
{
    const bool isUp = m_direction == VellSyncDirection::Up;
    m_done.append(stepJson(step, isUp));
    if (m_context.isDryRun() || m_context.verbosity() > 0)
        m_context.out.printName(stepText(step, isUp));
    m_bytes += step.sizeBytes;
    if (step.action == Action::Create || step.action == Action::Replace)
        ++m_fileCount;
    else if (step.action == Action::Move)
        ++m_movedCount;
    else if (step.action == Action::Remove)
        ++m_removedCount;
}

void SyncReport::addFailed(const QString &path, const QString &reason)
{
    m_failed.append({path, reason});
}

void SyncReport::addProblems(const VellSyncPlan &plan)
{
    const bool skipsLinks = m_context.value("links") == QLatin1String("skip");
    for (const VellSyncProblem &problem : plan.problems) {
        const QString path = plan.localRoot + QLatin1Char('/') + problem.path;
        if (!skipsLinks || !QFileInfo(path).isSymLink())
            addFailed(problem.path, problem.error.text);
    }
}

void SyncReport::printFailures() const
{
    for (const Failed &entry : m_failed)
        m_context.out.error(Text::tr("%1: %2").arg(entry.path, entry.reason));
}

void SyncReport::printSummary(int unchangedCount) const
{
    const bool isDryRun = m_context.isDryRun();
    QStringList clauses{(isDryRun ? Text::tr("%n file(s) to transfer, %1;", nullptr, m_fileCount)
                                  : Text::tr("%n file(s) transferred, %1;", nullptr, m_fileCount))
                            .arg(sizeText(m_bytes))};
    if (m_movedCount > 0)
        clauses += isDryRun ? Text::tr("%n to move;", nullptr, m_movedCount)
                            : Text::tr("%n moved;", nullptr, m_movedCount);
    clauses += isDryRun ? Text::tr("%n to remove;", nullptr, m_removedCount)
                        : Text::tr("%n removed;", nullptr, m_removedCount);
    clauses += Text::tr("%n unchanged.", nullptr, unchangedCount);
    m_context.out.note(joinedSentences(clauses));
}

QJsonObject SyncReport::resultJson() const
{
    QJsonArray failed;
    for (const Failed &entry : m_failed)
        failed.append(QJsonObject{{QStringLiteral("path"), entry.path},
                                  {QStringLiteral("message"), entry.reason}});
    return {{QStringLiteral("actions"), m_done}, {QStringLiteral("failed"), failed}};
}

} // namespace velldoc
