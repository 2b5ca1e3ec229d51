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

//! \brief The folders of the open project as a tree that asks for what is opened.
//!
//! Sorted by name, as people sort: without regard to case, numbers by their value. Follows the store of the documents; folders that
//! come, go, move or are renamed do so one by one, so that expanded folders and selections stay as they are, also on reload().
//! Without an open project, and until the view asks, it is empty. Belongs to the thread of the session, and needs a
//! QGuiApplication for the icon.
class VELLCLIENT_EXPORT VellFolderModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    //! \param documents must outlive the model
    //! \param category only folders of this category; empty for all
    explicit VellFolderModel(VellDocuments *documents, const QString &category = {},
                             QObject *parent = nullptr);
    ~VellFolderModel() override;

    //! Asks again for the folders that are known, and for those that could not be fetched.
    void reload();

    //! Whether a question to the service is under way.
    bool isLoading() const { return m_questionCount > 0; }

    //! The folder at \a index; nothing for an invalid index.
    std::optional<VellDocument> folder(const QModelIndex &index) const;

    //! The index of the folder \a id; invalid if it is not known.
    QModelIndex indexOf(const QString &id) const;

    //! The folders whose entries have been asked for, the top level as an empty identifier.
    QStringList openedFolders() const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    //! True also for a folder that has not been asked for.
    bool hasChildren(const QModelIndex &parent = {}) const override;
    bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void loadingChanged(bool isLoading);

    //! The folders below \a folderId have been fetched.
    void loaded(const QString &folderId);

    //! The folders below \a folderId could not be fetched. They are not asked for again until reload(), which follows by itself when
    //! the session is online again.
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
    QSet<QString> m_changed; // folders to be asked for again
    QSet<QString> m_failed; // the same, once the session is online again
    QTimer m_refresh;
    int m_questionCount = 0;
};
