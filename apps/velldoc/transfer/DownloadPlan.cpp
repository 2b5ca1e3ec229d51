#include <velldoc/transfer/DownloadPlan.h>

#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Terminal.h>

#include <sync/VellSyncPlan.h>

#include <QDir>
#include <QFileInfo>

namespace velldoc {

DownloadPlan::DownloadPlan(Context &context) : m_context(context), m_filterOptions(context)
{
    if (context.isSet("force") && context.isSet("no-clobber"))
        throw Failure(ExitUsage,
                      Text::tr("%1 and %2 cannot be used together.")
                          .arg(QStringLiteral("--force"), QStringLiteral("--no-clobber")));
}

void DownloadPlan::add(const VellDocument &document, const QString &target, int sourceCount,
                       bool isVersion, bool isOwn)
{
    if (isFolder(document) && !m_context.isSet("recursive")) {
        throw Failure(ExitFailed,
                      Text::tr("%1 is a folder: pass -r to download it with all its contents.")
                          .arg(document.name.isEmpty() ? QStringLiteral("/") : document.name));
    }
    QString path = target;
    if ((QFileInfo(target).isDir() && !isOwn) || sourceCount > 1
        || target.endsWith(QLatin1Char('/'))) {
        if (!QFileInfo(target).isDir())
            throw Failure(ExitNotFound,
                          Text::tr("There is no local folder %1: create it first.").arg(target));
        if (!document.name.isEmpty() && !system_files::isFileName(document.name)) {
            refuse(document.name,
                   Text::tr("the name is not valid for a local file: download it separately, with "
                            "another name"));
            return;
        }
        // The top level has no name.
        if (!document.name.isEmpty())
            path = QDir(target).filePath(document.name);
    }
    if (isFolder(document)) {
        m_filter.emplace(m_filterOptions.filterFor(path));
        addFolder(document, path, {});
    } else
        addFile(document, path, isVersion);
}

void DownloadPlan::addFolder(const VellDocument &folder, const QString &path, const QString &inRoot)
{
    if (!m_context.isDryRun() && m_filterOptions.include.isEmpty() && !QDir().mkpath(path)) {
        refuse(path, Text::tr("the folder cannot be created"));
        return;
    }
    const QList<VellDocument> entries = m_context.tree().entries(folder._id);
    for (const VellDocument &entry : entries) {
        const QString entryPath = QDir(path).filePath(entry.name);
        const QString entryInRoot =
            inRoot.isEmpty() ? entry.name : inRoot + QLatin1Char('/') + entry.name;
        if (m_filter->leavesOut(entryInRoot, isFolder(entry)))
            continue;
        if (!system_files::isFileName(entry.name))
            refuse(entryPath,
                   Text::tr("the name is not valid for a local file: download it separately, with "
                            "another name"));
        else if (isFolder(entry))
            addFolder(entry, entryPath, entryInRoot);
        else
            addFile(entry, entryPath, false);
    }
}

void DownloadPlan::addFile(const VellDocument &document, const QString &path, bool isVersion)
{
    // The service may have several documents with the same name; a local folder cannot.
    const QString key = system_files::uniqueKey(path);
    if (m_planned.contains(key)) {
        refuse(path,
               Text::tr("there are several documents with this name: download them one by one, by "
                        "their identifiers"));
        return;
    }
    m_planned.insert(key);
    const QFileInfo local(path);
    if (local.isDir()) {
        refuse(path, Text::tr("it is a local folder"));
        return;
    }
    if (local.isSymLink() && !local.exists()) {
        refuse(path, Text::tr("it is a broken link"));
        return;
    }
    DownloadTask task;
    task.document = document;
    task.isVersion = isVersion;
    task.isStream = local.exists() && !local.isFile();
    // The target of a link is written; the link remains.
    task.localPath = local.isSymLink() && local.isFile() ? local.canonicalFilePath() : path;
    m_found.append(task);
}

//! Returns the contents of the local files that may already be up to date, by path.
QHash<QString, QString> DownloadPlan::readContents()
{
    QStringList paths;
    for (const DownloadTask &task : qAsConst(m_found)) {
        const QFileInfo local(task.localPath);
        // Histories do not contain the sizes of large contents.
        const bool canBeEqual = local.size() == task.document.fileSize
            || (task.isVersion && task.document.fileSize <= 0);
        if (local.isFile() && local.size() > 0 && canBeEqual)
            paths.append(task.localPath);
    }
    if (paths.isEmpty())
        return {};
    Session &session = m_context.session();
    return session.await(VellSyncPlan::contentIds(session.documents().session(), paths));
}

void DownloadPlan::settle()
{
    const QHash<QString, QString> contents = readContents();
    for (const DownloadTask &task : qAsConst(m_found)) {
        const QFileInfo local(task.localPath);
        const QString content = contents.value(task.localPath);
        const bool isEmpty =
            local.isFile() && local.size() == 0 && task.document.fileSize == 0 && !task.isVersion;
        if (isEmpty || (!content.isEmpty() && content == task.document.fileId)) {
            m_unchanged.append(task.localPath);
        } else if (isToFetch(task)) {
            m_totalBytes += qMax(qint64(0), task.document.fileSize);
            m_tasks.append(task);
        }
    }
    m_found.clear();
}

//! Returns true if an existing target must be replaced. \throws Failure if no option says so
bool DownloadPlan::isToFetch(const DownloadTask &task)
{
    if (!QFileInfo::exists(task.localPath) || m_context.isSet("force"))
        return true;
    if (!m_context.isSet("no-clobber")) {
        throw Failure(
            ExitFailed,
            Text::tr("%1 already exists: pass --force to replace it, or --no-clobber to skip it.")
                .arg(task.localPath));
    }
    m_skipped.append(task.localPath);
    return false;
}

void DownloadPlan::refuse(const QString &path, const QString &reason)
{
    m_unwritable.append({path, reason});
}

} // namespace velldoc
