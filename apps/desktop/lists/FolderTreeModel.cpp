#include <desktop/lists/FolderTreeModel.h>

#include <desktop/changes/DocumentMime.h>
#include <desktop/window/Rights.h>

#include <documents/VellDocuments.h>
#include <session/VellSession.h>

#include <QMimeData>

namespace desktop {

FolderTreeModel::FolderTreeModel(VellDocuments *documents, QObject *parent)
    : VellFolderModel(documents, QString(), parent), m_documents(documents)
{}

QString FolderTreeModel::projectId() const
{
    return m_documents->session()->projectId();
}

Qt::ItemFlags FolderTreeModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = VellFolderModel::flags(index) | Qt::ItemIsDropEnabled;
    if (!index.isValid())
        return flags;
    flags |= Qt::ItemIsDragEnabled;
    return rights::may(*folder(index), rights::edit()) ? flags | Qt::ItemIsEditable : flags;
}

QVariant FolderTreeModel::data(const QModelIndex &index, int role) const
{
    return VellFolderModel::data(index, role == Qt::EditRole ? int(Qt::DisplayRole) : role);
}

bool FolderTreeModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const std::optional<VellDocument> document = folder(index);
    const QString name = value.toString();
    if (role != Qt::EditRole || !document || name == document->name || name.trimmed().isEmpty())
        return false;
    Q_EMIT renameRequested(*document, name);
    return false; // the name changes after the response
}

QStringList FolderTreeModel::mimeTypes() const
{
    return {document_mime::type(), QStringLiteral("text/uri-list")};
}

QMimeData *FolderTreeModel::mimeData(const QModelIndexList &indexes) const
{
    QStringList ids;
    for (const QModelIndex &index : indexes)
        ids.append(data(index, VellModelRole::Id).toString());
    return document_mime::make(projectId(), ids);
}

bool FolderTreeModel::canDropMimeData(const QMimeData *data, Qt::DropAction, int, int,
                                      const QModelIndex &parent) const
{
    const QStringList ids = document_mime::ids(data, projectId());
    if (ids.isEmpty())
        return !document_mime::localPaths(data).isEmpty();
    for (QModelIndex above = parent; above.isValid(); above = above.parent()) {
        if (ids.contains(this->data(above, VellModelRole::Id).toString()))
            return false; // a folder cannot be moved into itself
    }
    return true;
}

bool FolderTreeModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row,
                                   int column, const QModelIndex &parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    const QString target = this->data(parent, VellModelRole::Id).toString();
    const QStringList ids = document_mime::ids(data, projectId());
    if (ids.isEmpty())
        Q_EMIT uploadRequested(document_mime::localPaths(data), target);
    else
        Q_EMIT moveRequested(ids, target);
    return false; // the store updates the tree
}

} // namespace desktop
