#include <velldoc/transfer/DownloadPlan.h>

#include <velldoc/Context.h>
#include <velldoc/Text.h>
#include <velldoc/output/Terminal.h>

#include <QDir>
#include <QFileInfo>

namespace velldoc {

namespace {

//! \a name as a local file name. \throws Failure for one that would lead elsewhere or cannot be one here
QString localName(const QString &name)
{
    if (!system_files::isFileName(name)) {
        throw Failure(ExitFailed,
                      Text::tr("\"%1\" cannot be the name of a local file: fetch it alone, under "
                               "another name.")
                          .arg(name));
    }
    return name;
}

} // namespace

DownloadPlan::DownloadPlan(Context &context) : m_context(context)
{
    if (context.isSet("force") && context.isSet("no-clobber"))
        throw Failure(ExitUsage, Text::tr("--force and --no-clobber exclude each other."));
}

void DownloadPlan::add(const VellDocument &document, const QString &target, int sourceCount,
                       qint64 sizeBytes)
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
        // The whole project has no name of its own.
        if (!document.name.isEmpty())
            path = QDir(target).filePath(localName(document.name));
    }
    if (isFolder(document))
        addFolder(document, path);
    else
        addFile(document, path, sizeBytes);
}

void DownloadPlan::addFolder(const VellDocument &folder, const QString &path)
{
    if (!QDir().mkpath(path))
        throw Failure(ExitFailed, Text::tr("The folder %1 cannot be made.").arg(path));
    const QList<VellDocument> entries = m_context.tree().entries(folder._id);
    for (const VellDocument &entry : entries) {
        const QString entryPath = QDir(path).filePath(localName(entry.name));
        if (isFolder(entry))
            addFolder(entry, entryPath);
        else
            addFile(entry, entryPath, entry.fileSize);
    }
}

void DownloadPlan::addFile(const VellDocument &document, const QString &path, qint64 sizeBytes)
{
    // The service may have several documents of one name; a folder on the disk cannot.
    if (m_planned.contains(system_files::uniqueKey(path))) {
        throw Failure(ExitFailed,
                      Text::tr("There are several documents for %1: fetch them one by one, by "
                               "their identifiers.")
                          .arg(path));
    }
    m_planned.insert(system_files::uniqueKey(path));
    if (QFileInfo(path).isDir())
        throw Failure(ExitFailed, Text::tr("%1 is a local folder.").arg(path));
    const bool isThere = QFileInfo::exists(path);
    if (isThere && m_context.isSet("no-clobber")) {
        m_skipped.append(path);
        return;
    }
    if (isThere && !m_context.isSet("force")) {
        throw Failure(
            ExitFailed,
            Text::tr("%1 is there already: pass --force to replace it, or --no-clobber to "
                     "skip it.")
                .arg(path));
    }
    m_totalBytes += qMax(qint64(0), sizeBytes);
    m_tasks.append({document, sizeBytes, path});
}

} // namespace velldoc
