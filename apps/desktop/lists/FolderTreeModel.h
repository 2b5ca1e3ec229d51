#pragma once

#include <models/VellFolderModel.h>

namespace desktop {

//! \brief The folder tree with editable names, onto which documents and local files can be dropped. Like DocumentListModel, it only emits requests.
class FolderTreeModel : public VellFolderModel
{
    Q_OBJECT

public:
    //! \param documents must outlive the model
    explicit FolderTreeModel(VellDocuments *documents, QObject *parent = nullptr);

    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDragActions() const override { return Qt::MoveAction; }
    Qt::DropActions supportedDropActions() const override
    {
        return Qt::MoveAction | Qt::CopyAction;
    }
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

Q_SIGNALS:
    void renameRequested(const VellDocument &folder, const QString &name);
    void moveRequested(const QStringList &ids, const QString &folderId);
    void uploadRequested(const QStringList &paths, const QString &folderId);

private:
    QString projectId() const;

    VellDocuments *const m_documents;
};

} // namespace desktop
