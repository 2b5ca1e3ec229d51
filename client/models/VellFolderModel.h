#pragma once

#include <models/VellModelRole.h>
#include <operations/VellError.h>
#include <vellclient_export.h>

#include <document_model/VellDocument.h>

#include <QAbstractItemModel>
#include <QCollator>
#include <QHash>
#include <QSet>
#include <QStringList>
#include <QTimer>

#include <memory>
#include <optional>

class FileTypeIcons;
class VellDocuments;
struct FolderNode;

//! \brief The folders of the open project as a tree, fetched when they are expanded.
//!
//! Sorted by name, case-insensitively and with numbers by their value. The model follows the VellDocumentStore. Folders are
//! inserted, removed, moved and renamed one by one, also by reload(), so that expanded folders and selections are kept. The model
//! is empty if no project is open, and until a view fetches.
//!
//! Belongs to the thread of the session, and needs a QGuiApplication for the icons.
//!
//! \since 0.1
//! \sa VellDocumentModel, VellModelRole
class VELLCLIENT_EXPORT VellFolderModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    //! \param documents must not be null, and must outlive the model
    //! \param category if it is not empty, the model has only folders of this category
    explicit VellFolderModel(VellDocuments *documents, const QString &category = {},
                             QObject *parent = nullptr);
    ~VellFolderModel() override;

    //! Fetches the known folders again, and those that could not be fetched.
    void reload();

    //! Returns true while a request is in flight.
    //! \sa loadingChanged()
    bool isLoading() const { return m_questionCount > 0; }

    //! Returns the folder at \a index, or no value if the index is invalid.
    std::optional<VellDocument> folder(const QModelIndex &index) const;

    //! Returns the index of the folder \a id; invalid if it is not known.
    QModelIndex indexOf(const QString &id) const;

    //! Returns the folders whose entries have been requested. The top level is an empty identifier.
    QStringList openedFolders() const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    //! Returns true also for a folder whose entries have not been requested yet.
    bool hasChildren(const QModelIndex &parent = {}) const override;
    bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    //! Emitted when isLoading() has changed.
    void loadingChanged(bool isLoading);

    //! Emitted when the folders below \a folderId have been fetched.
    void loaded(const QString &folderId);

    //! Emitted when the folders below \a folderId could not be fetched. They are not requested again until reload(), which is
    //! called automatically when the session is online again.
    void loadFailed(const QString &folderId, const VellError &error);

private:
    FolderNode *nodeAt(const QModelIndex &index) const;
    QModelIndex indexOf(const FolderNode *node) const;
    bool isBefore(const VellDocument &a, const VellDocument &b) const;
    int placeFor(const FolderNode &parent, const VellDocument &folder,
                 const FolderNode *except = nullptr) const;
    void reset();
    void ask(FolderNode *node);
    void countQuestions(int change);
    void merge(FolderNode *node, QList<VellDocument> folders);
    void insert(FolderNode *parent, int row, const QList<VellDocument> &folders);
    void update(FolderNode *node, const VellDocument &folder);
    void remove(FolderNode *node);
    void forget(const FolderNode *node);
    void updateFolders(const QList<VellDocument> &documents);
    void askForChanged();

    VellDocuments *const m_documents;
    const QString m_category;
    const std::unique_ptr<FileTypeIcons> m_icons;
    QCollator m_collator;
    std::unique_ptr<FolderNode> m_root;
    QHash<QString, FolderNode *> m_nodes; // by identifier of the folder
    QSet<QString> m_changed; // folders to be requested again
    QSet<QString> m_failed; // folders to be requested again when the session is online
    QTimer m_refresh;
    int m_questionCount = 0;
};
