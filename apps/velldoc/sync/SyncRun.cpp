#include <velldoc/sync/SyncRun.h>

#include <velldoc/output/HumanText.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Interrupt.h>
#include <velldoc/transfer/LocalFilter.h>
#include <velldoc/transfer/Transfers.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
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

SyncRun::SyncRun(Context &context, VellSyncDirection direction, const QString &localRoot,
                 const RemotePath &remote)
    : m_context(context), m_direction(direction),
      m_localRoot(QDir::cleanPath(QDir().absoluteFilePath(localRoot))), m_remote(remote)
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
    const FilterOptions filter(m_context);
    VellSyncOptions options;
    options.direction = m_direction;
    options.include = filter.include;
    options.exclude = filter.exclude;
    options.ignoreFile = filter.ignoreFile;
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
        fail(step, Text::tr("the local file is newer: pass --force to replace it"));
    }
}

void SyncRun::show()
{
    const bool isUp = m_direction == VellSyncDirection::Up;
    for (const VellSyncStep &step : qAsConst(m_plan.steps)) {
        if (step.action == Action::Leave)
            continue;
        m_context.out.printName(stepText(step, isUp));
        m_done.append(stepJson(step, isUp));
    }
    finish();
}

void SyncRun::execute()
{
    try {
        makeFolders();
        move();
        transfer();
        remove();
    } catch (const Failure &failure) {
        m_context.out.setResult(resultJson());
        m_memory->noteSame(m_plan);
        m_memory->save();
        throw Failure(failure.code(),
                      failure.sentence() + QLatin1Char(' ')
                          + Text::tr("The same command continues from here."),
                      failure.httpStatus());
    }
    m_memory->noteSame(m_plan);
    m_memory->save();
    finish();
}

QString SyncRun::parentIdOf(const VellSyncStep &step) const
{
    return step.parentId.isEmpty() && !step.parentPath.isEmpty()
        ? m_folderIds.value(step.parentPath)
        : step.parentId;
}

void SyncRun::makeFolders()
{
    const bool isUp = m_direction == VellSyncDirection::Up;
    if (!isUp && !QDir().mkpath(m_localRoot))
        throw Failure(
            ExitFailed,
            Text::tr("%1: %2.").arg(m_localRoot, Text::tr("the folder cannot be created")));
    for (const VellSyncStep &step : qAsConst(m_plan.steps)) {
        if (step.action != Action::CreateFolder)
            continue;
        Interrupt::check();
        const QString name = step.path.section(QLatin1Char('/'), -1);
        if (isUp)
            m_folderIds.insert(step.path, m_context.tree().makeFolder(parentIdOf(step), name)._id);
        else if (!QDir().mkpath(step.localPath))
            fail(step, Text::tr("the folder cannot be created"));
        m_done.append(stepJson(step, isUp));
        if (m_context.verbosity() > 0)
            m_context.out.printName(stepText(step, isUp));
    }
}

void SyncRun::move()
{
    const bool isUp = m_direction == VellSyncDirection::Up;
    Session &session = m_context.session();
    for (const VellSyncStep &step : qAsConst(m_plan.steps)) {
        if (step.action != Action::Move)
            continue;
        Interrupt::check();
        if (isUp) {
            const QString folderId = parentIdOf(step);
            const QString name = step.path.section(QLatin1Char('/'), -1);
            if (step.document.name != name)
                session.await(session.documents().rename(step.document._id, name));
            if (step.document.parentId != folderId)
                session.awaitAll(session.documents().move({step.document._id}, folderId));
        } else if (!QFile::rename(step.fromLocalPath, step.localPath)) {
            fail(step, Text::tr("it cannot be moved"));
            continue;
        }
        m_memory->note(step.path, step.localPath, step.document.fileId);
        m_done.append(stepJson(step, isUp));
        if (m_context.verbosity() > 0)
            m_context.out.printName(stepText(step, isUp));
    }
}

void SyncRun::transfer()
{
    const bool isUp = m_direction == VellSyncDirection::Up;
    if (m_plan.bytesToTransfer() == 0 && m_plan.count(Action::Create) == 0
        && m_plan.count(Action::Replace) == 0)
        return;
    Transfers transfers(m_context, m_plan.bytesToTransfer());
    VellTransferQueue &queue = transfers.queue();
    const int replacing = queue.addBatch(VellConflictPolicy::Replace);
    QHash<qint64, VellSyncStep> steps;
    QString firstName;
    for (const VellSyncStep &step : qAsConst(m_plan.steps)) {
        const bool isNew = step.action == Action::Create;
        if (!isNew && step.action != Action::Replace)
            continue;
        const QString name = step.path.section(QLatin1Char('/'), -1);
        if (firstName.isEmpty())
            firstName = name;
        qint64 id = 0;
        if (!isUp)
            id = queue.downloadAs(step.document, step.localPath,
                                  isNew ? transfers.batch() : replacing);
        else if (isNew)
            id = queue.uploadAs(step.localPath, parentIdOf(step), name, transfers.batch());
        else
            id = queue.uploadVersion(step.localPath, step.document);
        steps.insert(id, step);
    }
    const auto report = [&] {
        for (const Transfers::Done &entry : transfers.done()) {
            const VellSyncStep step = steps.value(entry.id);
            // For the next comparison in the other direction.
            if (!isUp) {
                QFile file(step.localPath);
                if (file.open(QIODevice::ReadWrite))
                    file.setFileTime(entry.document.updatedAt, QFileDevice::FileModificationTime);
            }
            m_memory->note(step.path, step.localPath, entry.document.fileId);
            m_done.append(stepJson(step, isUp));
            ++m_doneCount;
            if (m_context.verbosity() > 0)
                m_context.out.printName(stepText(step, isUp));
        }
        m_bytes += transfers.doneBytes();
        for (const Transfers::Failed &entry : transfers.failed())
            fail(steps.value(entry.id), entry.reason.sentence());
    };
    try {
        transfers.run(firstName);
    } catch (const Failure &) {
        report();
        throw;
    }
    report();
}

void SyncRun::remove()
{
    const bool isUp = m_direction == VellSyncDirection::Up;
    QStringList ids;
    QSet<QString> removed;
    for (const VellSyncStep &step : qAsConst(m_plan.steps)) {
        if (step.action == Action::Remove)
            removed.insert(step.path);
    }
    for (const VellSyncStep &step : qAsConst(m_plan.steps)) {
        if (step.action != Action::Remove)
            continue;
        Interrupt::check();
        if (!isUp && !removeLocal(step))
            continue;
        // The contents of a folder are removed with it.
        if (isUp && !removed.contains(step.parentPath))
            ids.append(step.document._id);
        m_done.append(stepJson(step, isUp));
        if (m_context.verbosity() > 0)
            m_context.out.printName(stepText(step, isUp));
    }
    if (!ids.isEmpty())
        m_context.session().awaitAll(m_context.session().documents().remove(ids));
}

bool SyncRun::removeLocal(const VellSyncStep &step)
{
    const QFileInfo info(step.localPath);
    if (!step.isFolder && info.lastModified() >= m_comparedAt) {
        fail(step, Text::tr("it has been changed meanwhile"));
        return false;
    }
    const bool isGone =
        step.isFolder ? QDir().rmdir(step.localPath) : QFile::remove(step.localPath);
    if (!isGone)
        fail(step, Text::tr("it cannot be removed"));
    return isGone;
}

void SyncRun::fail(const VellSyncStep &step, const QString &reason)
{
    m_failed.append({step.path, reason});
}

QJsonObject SyncRun::resultJson() const
{
    QJsonArray failed;
    for (const auto &entry : m_failed)
        failed.append(QJsonObject{{QStringLiteral("path"), entry.first},
                                  {QStringLiteral("message"), entry.second}});
    return {{QStringLiteral("actions"), m_done}, {QStringLiteral("failed"), failed}};
}

void SyncRun::finish()
{
    reportProblems(m_context, m_plan, &m_failed);
    for (const auto &entry : qAsConst(m_failed))
        m_context.out.error(Text::tr("%1: %2").arg(entry.first, entry.second));
    m_context.out.setResult(resultJson());
    const bool isDryRun = m_context.isDryRun();
    const int files =
        isDryRun ? m_plan.count(Action::Create) + m_plan.count(Action::Replace) : m_doneCount;
    const qint64 bytes = isDryRun ? m_plan.bytesToTransfer() : m_bytes;
    m_context.out.note(
        Text::tr("%n file(s) transferred, %1;", nullptr, files).arg(sizeText(bytes))
        + QLatin1Char(' ') + Text::tr("%n removed;", nullptr, m_plan.count(Action::Remove))
        + QLatin1Char(' ') + Text::tr("%n unchanged.", nullptr, m_plan.count(Action::Leave)));
    if (!m_failed.isEmpty())
        throw Failure(ExitFailed,
                      Text::tr("%n file(s) could not be synchronized.", nullptr, m_failed.size()));
}

int reportProblems(Context &context, const VellSyncPlan &plan,
                   QList<QPair<QString, QString>> *failed)
{
    int count = 0;
    const bool skipsLinks = context.value("links") == QLatin1String("skip");
    for (const VellSyncProblem &problem : plan.problems) {
        const QString path = plan.localRoot + QLatin1Char('/') + problem.path;
        if (skipsLinks && QFileInfo(path).isSymLink())
            continue;
        failed->append({problem.path, problem.error.text});
        ++count;
    }
    return count;
}

} // namespace velldoc
