#pragma once

#include <models/VellDocumentModel.h>

#include <functional>

namespace desktop {

//! \brief The documents of a place, with editable names, drag and drop.
//!
//! It only emits requests for changes; the receiver checks the names and makes the changes.
class DocumentListModel : public VellDocumentModel
{
    Q_OBJECT

public:
    //! \param documents must outlive the model
    explicit DocumentListModel(VellDocuments *documents, QObject *parent = nullptr);

    using Fetch = std::function<QStringList(const QList<VellDocument> &documents)>;

    //! Sets the function that downloads documents for other programs. It returns their local paths, or an empty list if it fails.
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
    //! Returns the target folder of a drop on \a index, or no value if a drop is not possible.
    std::optional<QString> dropTarget(const QModelIndex &index) const;

    VellDocuments *const m_documents;
    Fetch m_fetch;
};

} // namespace desktop
