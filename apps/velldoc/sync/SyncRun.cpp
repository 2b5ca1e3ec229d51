#include <velldoc/sync/SyncRun.h>

#include <velldoc/output/HumanText.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>
#include <velldoc/sync/SyncExecution.h>
#include <velldoc/transfer/LocalFilter.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace velldoc {

namespace {

using Action = VellSyncStep::Action;

//! Returns the path of the VellSyncMemory of these two folders.
QString memoryPath(const Context &context, const QString &localRoot, const QString &rootId)
{
    const QStringList parts{context.settings.url, context.settings.dataDir,
                            context.settings.project, localRoot, rootId};
    const QByteArray digest =
        QCryptographicHash::hash(parts.join(QChar::Null).toUtf8(), QCryptographicHash::Md5);
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation)
        + QLatin1String("/velldoc/sync-") + QString::fromLatin1(digest.toHex());
}

} // namespace

SyncRun::SyncRun(Context &context, VellSyncDirection direction, const QString &localRoot,
                 const RemotePath &remote)
    : m_context(context), m_direction(direction),
      m_localRoot(QDir::cleanPath(QDir().absoluteFilePath(localRoot))), m_report(context, direction)
{
    const bool isUp = direction == VellSyncDirection::Up;
    if (isUp && !QFileInfo(m_localRoot).isDir())
        throw Failure(ExitNotFound, Text::tr("There is no local folder %1.").arg(localRoot));
    const std::optional<VellDocument> there = context.tree().tryFind(remote);
    if (there && !isFolder(*there))
        throw notAFolder(remote);
    if (there || !isUp) {
        m_rootId = context.tree().findFolder(remote)._id;
    } else {
        const VellDocument parent = context.tree().findFolder(remote.parent());
        m_rootId = context.tree().makeFolder(parent._id, remote.name(), context.isDryRun())._id;
    }
    m_memory.emplace(memoryPath(context, m_localRoot, m_rootId));
}

VellSyncOptions SyncRun::options() const
{
    VellSyncOptions options = FilterOptions(m_context).syncOptions();
    options.direction = m_direction;
    if (m_context.isSet("checksum"))
        options.comparison = VellSyncOptions::Comparison::Content;
    if (m_context.isSet("delete"))
        options.extras = VellSyncOptions::Extras::Remove;
    return options;
}

void SyncRun::compare()
{
    m_comparedAt = QDateTime::currentDateTime();
    Session &session = m_context.session();
    VellSession *const client = session.documents().session();
    m_plan = session.await(VellSyncPlan::make(client, m_localRoot, m_rootId, options()));
    if (m_plan.options.comparison == VellSyncOptions::Comparison::SizeAndTime) {
        const QStringList doubtful = m_memory->settleKnown(m_plan);
        if (!doubtful.isEmpty())
            m_memory->settle(m_plan, session.await(VellSyncPlan::contentIds(client, doubtful)));
    }
    keepNewerTargets();
}

//! A local file that has been changed since the comparison is not replaced by a download. On the service, the earlier version is kept.
void SyncRun::keepNewerTargets()
{
    if (m_direction == VellSyncDirection::Up || m_context.isSet("force"))
        return;
    for (VellSyncStep &step : m_plan.steps) {
        if (step.action != Action::Replace || !step.isTargetNewer)
            continue;
        step.action = Action::Leave;
        step.sizeBytes = 0;
        m_report.addFailed(step.path,
                           Text::tr("the local file is newer: pass --force to replace it"));
    }
}

void SyncRun::show()
{
    for (const VellSyncStep &step : qAsConst(m_plan.steps)) {
        if (step.action != Action::Leave)
            m_report.addDone(step);
    }
    finish();
}

void SyncRun::execute()
{
    const auto remember = [this] {
        m_memory->noteSame(m_plan);
        m_memory->save();
    };
    try {
        SyncExecution(m_context, m_plan, m_comparedAt, *m_memory, m_report).run();
    } catch (const Failure &failure) {
        m_context.out.setResult(m_report.resultJson());
        remember();
        throw Failure(failure.code(),
                      joinedSentences(
                          {failure.sentence(), Text::tr("The same command continues from here.")}),
                      failure.httpStatus());
    }
    remember();
    finish();
}

void SyncRun::finish()
{
    m_report.addProblems(m_plan);
    m_report.printFailures();
    m_context.out.setResult(m_report.resultJson());
    m_report.printSummary(m_plan.count(Action::Leave));
    if (m_report.failureCount() > 0)
        throw Failure(
            ExitFailed,
            Text::tr("%n file(s) could not be synchronized.", nullptr, m_report.failureCount()));
}

} // namespace velldoc
