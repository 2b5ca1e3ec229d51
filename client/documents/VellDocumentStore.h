#pragma once

#include <document_model/VellDocument.h>
#include <vellclient_export.h>

#include <QHash>
#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>

//! \brief The known documents of the open project: one record for each, with signals for changes.
//!
//! Each operation of VellDocuments stores the documents that it receives before it ends; uploads do so too. Connect models and
//! windows to the signals instead of fetching lists again. The store is emptied when another project is opened.
//!
//! A response that was requested before a change, and arrives after it, does not bring back the older record.
//!
//! Belongs to the thread of its session.
//!
//! \since 0.1
//! \sa VellDocuments::store(), VellChangePoll
class VELLCLIENT_EXPORT VellDocumentStore : public QObject
{
    Q_OBJECT

public:
    explicit VellDocumentStore(QObject *parent = nullptr);
    ~VellDocumentStore() override;

    //! Returns the record of the document \a id, or no value if it is not known.
    std::optional<VellDocument> document(const QString &id) const;

    //! Returns the name of the folder \a id, or an empty string if it is not known.
    QString folderName(const QString &id) const;

    //! \name Changing the store
    //! For programs that have received documents without an operation of the session.
    //! \{

    //! Stores \a documents, which are as on the service.
    void insert(const QList<VellDocument> &documents);
    void insert(const VellDocument &document) { insert(QList<VellDocument>{document}); }

    //! Removes the documents \a ids, which have been deleted, permanently or into the recycle bin.
    void remove(const QStringList &ids);

    //! Reports that the entries of the folder \a id have changed in an unknown way. Emits folderChanged().
    void markFolderChanged(const QString &id);

    //! Removes all documents.
    void clear();
    //! \}

Q_SIGNALS:
    //! Emitted when \a documents are new in the store, or their records have changed.
    void documentsChanged(const QList<VellDocument> &documents);

    //! Emitted when the documents \a ids have been removed.
    void documentsRemoved(const QStringList &ids);

    //! Emitted when entries of the folder \a id have been added or removed, or their order has changed. \a id is empty for the top
    //! level.
    void folderChanged(const QString &id);

    //! Emitted when all documents have been removed, because another project has been opened.
    void cleared();

private:
    friend class StoreReading;
    struct Content;

    void merge(const QList<VellDocument> &documents);

    const std::unique_ptr<Content> m_content;
};
