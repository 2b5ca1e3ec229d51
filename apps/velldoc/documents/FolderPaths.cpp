#include <velldoc/documents/FolderPaths.h>

#include <velldoc/session/Session.h>

namespace velldoc {

FolderPaths::FolderPaths(Session &session)
{
    VellDocumentConditon condition;
    condition.hasParentId = false;
    condition.type = QStringLiteral("dir");
    condition.selectTree = true;
    const QList<VellDocument> folders = session.await(session.documents().list(condition));
    for (const VellDocument &folder : folders)
        m_folders.insert(folder._id, {folder.name, folder.parentId});
}

QString FolderPaths::pathOf(const VellDocument &document) const
{
    QString path = document.name;
    QString parentId = document.parentId;
    // No path has more names than there are folders, even if damaged records form a circle.
    for (int steps = m_folders.size(); !parentId.isEmpty(); --steps) {
        const auto folder = m_folders.constFind(parentId);
        if (folder == m_folders.constEnd() || steps < 0)
            return QStringLiteral("…/") + path;
        path = folder->name + QLatin1Char('/') + path;
        parentId = folder->parentId;
    }
    return QLatin1Char('/') + path;
}

} // namespace velldoc
