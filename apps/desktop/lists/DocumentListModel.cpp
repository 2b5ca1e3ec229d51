#include <desktop/lists/DocumentListModel.h>

#include <desktop/changes/DocumentMime.h>
#include <desktop/changes/DraggedDocuments.h>
#include <desktop/window/Rights.h>

#include <documents/VellDocuments.h>
#include <session/VellSession.h>

#include <QMimeData>

namespace desktop {

namespace {

//! Returns the name and, for screen readers, the texts of the columns.
QString spokenText(const VellDocumentModel &model, const QModelIndex &index)
{
    QStringList parts;
    for (int column = 0; column < VellDocumentModel::ColumnCount; ++column) {
        const QString text = model.data(index.siblingAtColumn(column)).toString();
        if (!text.isEmpty())
            parts.append(text);
    }
    return parts.join(QStringLiteral(", "));
}

} // namespace

DocumentListModel::DocumentListModel(VellDocuments *documents, QObject *parent)
    : VellDocumentModel(documents, parent), m_documents(documents)
{}

Qt::ItemFlags DocumentListModel::flags(const QModelIndex &index) const
{
    const bool isBin = source().kind() == VellDocumentSource::Kind::RecycleBin;
    Qt::ItemFlags flags = VellDocumentModel::flags(index);
    if (!index.isValid())
        return source().kind() == VellDocumentSource::Kind::Folder ? flags | Qt::ItemIsDropEnabled
                                                                   : flags;
    const std::optional<VellDocument> entry = document(index);
    if (!entry || isBin)
        return flags;
    flags |= Qt::ItemIsDragEnabled;
    if (index.column() == NameColumn && rights::may(*entry, rights::edit()))
        flags |= Qt::ItemIsEditable;
    if (rights::isFolder(*entry))
        flags |= Qt::ItemIsDropEnabled;
    return flags;
}

QVariant DocumentListModel::data(const QModelIndex &index, int role) const
{
    switch (role) {
    case Qt::EditRole:
        return index.column() == NameColumn ? VellDocumentModel::data(index) : QVariant();
    case Qt::ToolTipRole: // for texts that are cut
        return VellDocumentModel::data(index, Qt::DisplayRole);
    case Qt::AccessibleTextRole:
        return spokenText(*this, index);
    default:
        return VellDocumentModel::data(index, role);
    }
}

bool DocumentListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const std::optional<VellDocument> entry = document(index);
    const QString name = value.toString();
    if (role != Qt::EditRole || !entry || name == entry->name || name.trimmed().isEmpty())
        return false;
    Q_EMIT renameRequested(*entry, name);
    return false; // the name changes after the response
}

QStringList DocumentListModel::mimeTypes() const
{
    return {document_mime::type(), QStringLiteral("text/uri-list")};
}

QMimeData *DocumentListModel::mimeData(const QModelIndexList &indexes) const
{
    QStringList ids;
    QList<VellDocument> documents;
    for (const QModelIndex &index : indexes) {
        const std::optional<VellDocument> entry = document(index);
        if (index.column() != NameColumn || !entry)
            continue;
        ids.append(entry->_id);
        if (rights::may(*entry, rights::download()))
            documents.append(*entry);
    }
    const QString projectId = m_documents->session()->projectId();
    if (!m_fetch || documents.size() < ids.size())
        return document_mime::make(projectId, ids);
    return new DraggedDocuments(projectId, ids,
                                [fetch = m_fetch, documents] { return fetch(documents); });
}

std::optional<QString> DocumentListModel::dropTarget(const QModelIndex &index) const
{
    const std::optional<VellDocument> entry = index.isValid() ? document(index) : std::nullopt;
    const bool isBin = source().kind() == VellDocumentSource::Kind::RecycleBin;
    if (entry && rights::isFolder(*entry) && !isBin)
        return entry->_id;
    if (source().kind() == VellDocumentSource::Kind::Folder)
        return source().condition().parentId;
    return std::nullopt;
}

bool DocumentListModel::canDropMimeData(const QMimeData *data, Qt::DropAction, int, int,
                                        const QModelIndex &parent) const
{
    const std::optional<QString> target = dropTarget(parent);
    if (!target)
        return false;
    const QStringList ids = document_mime::ids(data, m_documents->session()->projectId());
    if (ids.isEmpty())
        return !document_mime::localPaths(data).isEmpty();
    return !ids.contains(*target);
}

bool DocumentListModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row,
                                     int column, const QModelIndex &parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    const QString target = *dropTarget(parent);
    const QStringList ids = document_mime::ids(data, m_documents->session()->projectId());
    if (ids.isEmpty())
        Q_EMIT uploadRequested(document_mime::localPaths(data), target);
    else
        Q_EMIT moveRequested(ids, target);
    return false; // the view must not remove moved rows
}

} // namespace desktop
