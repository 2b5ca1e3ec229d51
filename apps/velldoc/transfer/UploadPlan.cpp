#include <velldoc/transfer/UploadPlan.h>

#include <velldoc/output/HumanText.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Interrupt.h>
#include <velldoc/system/Terminal.h>

#include <sync/VellSyncPlan.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace velldoc {

UploadPlan::UploadPlan(Context &context)
    : m_context(context), m_policy(context), m_filterOptions(context)
{
    const QString links = context.word("links");
    if (links == QLatin1String("skip"))
        m_links = Links::Skip;
    else if (links == QLatin1String("follow"))
        m_links = Links::Follow;
}

void UploadPlan::add(const QFileInfo &local, const VellDocument &folder, const RemotePath &path,
                     const QString &name)
{
    if (local.isDir())
        m_filter.emplace(m_filterOptions.filterFor(local.filePath()));
    addEntry(local, {folder, path, name, {}});
    m_filter.reset();
}

void UploadPlan::addEntry(const QFileInfo &local, const Place &place)
{
    Interrupt::check();
    if (isLeftOut(local, place))
        return;
    // By default links to folders are not followed, so that no folder is read endlessly.
    if (local.isDir() && local.isSymLink() && m_links != Links::Follow)
        refuse(local, Text::tr("it is a link to a folder"));
    else if (local.isDir() && isCircle(local))
        refuse(local, Text::tr("it is a link to one of the folders above it"));
    else if (m_links == Links::Follow && local.isSymLink() && local.exists())
        addTarget(QFileInfo(local.canonicalFilePath()),
                  place); // Windows opens the shortcut, not its target
    else
        addTarget(local, place);
}

void UploadPlan::addTarget(const QFileInfo &local, const Place &place)
{
    if (local.isDir())
        addFolder(local, place);
    else
        addFile(local, place);
}

bool UploadPlan::isLeftOut(const QFileInfo &local, const Place &place) const
{
    if (place.inRoot.isEmpty())
        return false;
    if (m_links == Links::Skip && local.isSymLink())
        return true;
    return m_filter && m_filter->leavesOut(place.inRoot, local.isDir());
}

bool UploadPlan::isCircle(const QFileInfo &local) const
{
    return local.isSymLink() && m_above.contains(local.canonicalFilePath());
}

//! Returns true if a file below \a folder is included by the filter.
bool UploadPlan::holdsWanted(const QString &folder, const QString &inRoot) const
{
    if (m_filterOptions.include.isEmpty() || !m_filter || inRoot.isEmpty())
        return true;
    QDirIterator it(folder, QDir::Files | QDir::Hidden | QDir::System,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next().mid(folder.size() + 1);
        if (!m_filter->leavesOut(inRoot + QLatin1Char('/') + path, false))
            return true;
    }
    return false;
}

void UploadPlan::addFolder(const QFileInfo &local, const Place &place)
{
    if (!local.isReadable() || !local.isExecutable()) {
        refuse(local, Text::tr("it cannot be read"));
        return;
    }
    if (!holdsWanted(local.filePath(), place.inRoot))
        return;
    const auto &names = m_context.tree().namesIn(place.folder._id);
    const auto taken = names.constFind(place.name);
    if (taken != names.constEnd() && !isFolder(taken.value())) {
        throw Failure(ExitFailed,
                      Text::tr("%1 is a file, so the folder %2 cannot be stored there.")
                          .arg(place.path.child(place.name).text(), local.filePath()));
    }
    Place inside{taken == names.constEnd() ? m_context.tree().makeFolder(
                     place.folder._id, place.name, m_context.isDryRun())
                                           : taken.value(),
                 place.path.child(place.name),
                 {},
                 {}};
    m_above.append(local.canonicalFilePath());
    const QString before = place.inRoot.isEmpty() ? QString() : place.inRoot + QLatin1Char('/');
    const QDir folderOnDisk(local.filePath());
    QStringList notText;
    const QStringList entries = system_files::entriesOf(local.filePath(), &notText);
    for (const QString &entry : entries) {
        inside.name = entry;
        inside.inRoot = before + entry;
        addEntry(QFileInfo(folderOnDisk.filePath(entry)), inside);
    }
    for (const QString &entry : qAsConst(notText))
        refuse(QFileInfo(folderOnDisk.filePath(entry)), Text::tr("its name is not valid UTF-8"));
    m_above.removeLast();
}

void UploadPlan::addFile(const QFileInfo &local, const Place &place)
{
    if (!local.exists() || !local.isFile()) {
        refuse(local,
               local.exists() ? Text::tr("it is not a regular file")
                              : Text::tr("it does not exist"));
        return;
    }
    // For a shortcut of Windows, QFileInfo returns the size of its target.
    QFile file(local.filePath());
    if (!file.open(QIODevice::ReadOnly)) {
        refuse(local, Text::tr("it cannot be read"));
        return;
    }
    UploadTask task;
    task.localPath = local.filePath();
    task.folderPath = place.path;
    task.remotePath = place.path.child(place.name).text();
    task.parentId = place.folder._id;
    task.name = place.name;
    task.sizeBytes = file.size();
    m_found.append(task);
}

//! Returns the contents of the files that may already be stored, by local path.
QHash<QString, QString> UploadPlan::readContents()
{
    QStringList paths;
    for (const UploadTask &task : qAsConst(m_found)) {
        const VellDocument taken = m_context.tree().namesIn(task.parentId).value(task.name);
        if (!taken._id.isEmpty() && !isFolder(taken) && task.sizeBytes > 0
            && (taken.fileSize == task.sizeBytes || m_policy.renames()))
            paths.append(task.localPath);
    }
    if (paths.isEmpty())
        return {};
    Session &session = m_context.session();
    return session.await(VellSyncPlan::contentIds(session.documents().session(), paths));
}

//! Returns true if the target already has the content, with the wanted name or, if files are renamed, with a free one.
bool UploadPlan::isThere(const UploadTask &task, const QHash<QString, QString> &contents)
{
    const QHash<QString, VellDocument> &names = m_context.tree().namesIn(task.parentId);
    const QString content = contents.value(task.localPath);
    const auto isEqual = [&](const VellDocument &document) {
        return !document._id.isEmpty() && !isFolder(document) && document.fileSize == task.sizeBytes
            && (task.sizeBytes == 0 || (!content.isEmpty() && document.fileId == content));
    };
    if (isEqual(names.value(task.name)))
        return true;
    if (!m_policy.renames() || content.isEmpty())
        return false;
    const QString base = QFileInfo(task.name).completeBaseName() + QLatin1Char('(');
    return std::any_of(names.cbegin(), names.cend(), [&](const VellDocument &document) {
        return document.name.startsWith(base) && isEqual(document);
    });
}

void UploadPlan::settle()
{
    const QHash<QString, QString> contents = readContents();
    for (UploadTask &task : m_found) {
        Interrupt::check();
        auto &names = m_context.tree().namesIn(task.parentId);
        const auto taken = names.constFind(task.name);
        if (taken != names.constEnd()) {
            if (isThere(task, contents)) {
                m_unchanged.append(task.localPath);
                continue;
            }
            if (!settleConflict(task, taken.value())) {
                m_skipped.append(task.localPath);
                continue;
            }
        }
        VellDocument reserved; // a second file of the batch with this name is a conflict, too
        reserved.name = task.name;
        reserved.type = QStringLiteral("file");
        reserved.fileSize = -1;
        if (!task.replaced)
            names.insert(task.name, reserved);
        m_totalBytes += task.sizeBytes;
        m_tasks.append(task);
    }
    m_found.clear();
}

bool UploadPlan::settleConflict(UploadTask &task, const VellDocument &taken)
{
    const QStringList reserved = m_context.tree().namesIn(task.parentId).keys();
    const QString freeName = m_context.session().await(
        m_context.session().documents().freeName(task.parentId, task.name, QString(), reserved));
    const QFileInfo local(task.localPath);
    ConflictPolicy::Question question{task.remotePath, freeName, false, {}, {}};
    // A document that this batch will create does not exist yet, so that it cannot get a new version.
    question.canReplace = !isFolder(taken) && !taken._id.isEmpty();
    const QString form = QStringLiteral("%1, %2");
    if (question.canReplace)
        question.there = form.arg(sizeText(taken.fileSize), timeText(taken.updatedAt));
    question.here = form.arg(sizeText(task.sizeBytes), timeText(local.lastModified()));
    switch (m_policy.decide(question)) {
    case Conflict::Replace:
        task.replaced = taken;
        return true;
    case Conflict::Rename:
        task.name = freeName;
        task.remotePath = task.folderPath.child(freeName).text();
        task.isRenamed = true;
        return true;
    case Conflict::Skip:
        return false;
    case Conflict::Ask:
    case Conflict::Cancel:
        break;
    }
    throw Failure(ExitFailed,
                  Text::tr("%1 already exists, so no file was sent: pass --update for a new "
                           "version, or --on-conflict rename or skip.")
                      .arg(task.remotePath));
}

void UploadPlan::refuse(const QFileInfo &local, const QString &reason)
{
    m_unreadable.append({local.filePath(), reason});
}

} // namespace velldoc
