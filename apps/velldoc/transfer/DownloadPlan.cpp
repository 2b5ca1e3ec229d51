#include <velldoc/transfer/DownloadPlan.h>

#include <velldoc/Context.h>
#include <velldoc/Text.h>
#include <velldoc/output/Terminal.h>

#include <QDir>
#include <QFileInfo>

namespace velldoc {

DownloadPlan::DownloadPlan(Context &context) : m_context(context)
{
    if (context.isSet("force") && context.isSet("no-clobber"))
        throw Failure(ExitUsage, Text::tr("--force and --no-clobber exclude each other."));
}

void DownloadPlan::add(const VellDocument &document, const QString &target, int sourceCount,
                       bool isVersion)
{
    if (isFolder(document) && !m_context.isSet("recursive")) {
        throw Failure(ExitFailed,
                      Text::tr("%1 is a folder: pass -r to fetch everything in it.")
                          .arg(document.name.isEmpty() ? QStringLiteral("/") : document.name));
    }
    QString path = target;
    if (QFileInfo(target).isDir() || sourceCount > 1 || target.endsWith(QLatin1Char('/'))) {
        if (!QFileInfo(target).isDir())
            throw Failure(ExitNotFound, Text::tr("There is no local folder %1.").arg(target));
        if (!document.name.isEmpty() && !system_files::isFileName(document.name)) {
            refuse(document.name,
                   Text::tr("no local file can have this name: fetch it alone, "
                            "under another name"));
            return;
        }
        // The whole project has no name of its own.
        if (!document.name.isEmpty())
            path = QDir(target).filePath(document.name);
    }
    if (isFolder(document))
        addFolder(document, path);
    else
        addFile(document, path, isVersion);
}

void DownloadPlan::addFolder(const VellDocument &folder, const QString &path)
{
    if (!QDir().mkpath(path)) {
        refuse(path, Text::tr("the folder cannot be made"));
        return;
    }
    const QList<VellDocument> entries = m_context.tree().entries(folder._id);
    for (const VellDocument &entry : entries) {
        const QString entryPath = QDir(path).filePath(entry.name);
        if (!system_files::isFileName(entry.name))
            refuse(entryPath,
                   Text::tr("no local file can have this name: fetch it alone, under "
                            "another name"));
        else if (isFolder(entry))
            addFolder(entry, entryPath);
        else
            addFile(entry, entryPath, false);
    }
}

void DownloadPlan::addFile(const VellDocument &document, const QString &path, bool isVersion)
{
    // The service may have several documents of one name; a folder on the disk cannot.
    const QString key = system_files::uniqueKey(path);
    if (m_planned.contains(key)) {
        refuse(path,
               Text::tr("there are several documents of this name: fetch them one by one, by "
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
        refuse(path, Text::tr("it is a link to something that is not there"));
        return;
    }
    if (local.exists() && m_context.isSet("no-clobber")) {
        m_skipped.append(path);
        return;
    }
    if (local.exists() && !m_context.isSet("force")) {
        throw Failure(
            ExitFailed,
            Text::tr("%1 is there already: pass --force to replace it, or --no-clobber to "
                     "skip it.")
                .arg(path));
    }
    DownloadTask task;
    task.document = document;
    task.isVersion = isVersion;
    task.isStream = local.exists() && !local.isFile();
    // What a link leads to is written, and the link stays.
    task.localPath = local.isSymLink() && local.isFile() ? local.canonicalFilePath() : path;
    m_totalBytes += qMax(qint64(0), document.fileSize);
    m_tasks.append(task);
}

void DownloadPlan::refuse(const QString &path, const QString &reason)
{
    m_unwritable.append({path, reason});
}

} // namespace velldoc
