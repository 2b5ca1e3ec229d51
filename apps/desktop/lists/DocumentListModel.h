#pragma once

#include <models/VellDocumentModel.h>

#include <functional>

namespace desktop {

//! \brief The documents of a place, with names that can be edited, dragged documents and dropped files.
//!
//! Only asks: whoever listens makes the changes. The names are checked there.
class DocumentListModel : public VellDocumentModel
{
    Q_OBJECT

public:
    //! \param documents must outlive the model
    explicit DocumentListModel(VellDocuments *documents, QObject *parent = nullptr);

    using Fetch = std::function<QStringList(const QList<VellDocument> &documents)>;

    //! What brings documents that are dragged into other programs: their local paths, or nothing if it fails.
    void setFetch(const Fetch &fetch) { m_fetch = fetch; }

    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDragActions() const override
    {
        return Qt::MoveAction | Qt::CopyAction;
    }
    Qt::DropActions supportedDropActions() const override
    {
        return Qt::MoveAction | Qt::CopyAction;
    }
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

Q_SIGNALS:
    void renameRequested(const VellDocument &document, const QString &name);
    void moveRequested(const QStringList &ids, const QString &folderId);
    void uploadRequested(const QStringList &paths, const QString &folderId);

private:
    //! The folder that a drop on \a index goes to; nothing where nothing can be dropped.
    std::optional<QString> dropTarget(const QModelIndex &index) const;

    VellDocuments *const m_documents;
    Fetch m_fetch;
};

} // namespace desktop
