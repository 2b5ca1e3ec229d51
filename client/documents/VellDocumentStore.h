#pragma once

#include <document_model/VellDocument.h>
#include <vellclient_export.h>

#include <QHash>
#include <QObject>
#include <QStringList>

#include <optional>

//! \brief What the client knows of the documents of the open project: one record for each, and signals when it changes.
//!
//! Every operation of VellDocuments enters what it learns here before it ends, and so do uploads. Models and windows follow
//! the signals instead of asking again. Belongs to the thread of its session; emptied when another project is opened.
class VELLCLIENT_EXPORT VellDocumentStore : public QObject
{
    Q_OBJECT

public:
    explicit VellDocumentStore(QObject *parent = nullptr);
    ~VellDocumentStore() override;

    //! The record of the document \a id, if it is known.
    std::optional<VellDocument> document(const QString &id) const;

    //! The name of the folder \a id; empty if it is not known.
    QString folderName(const QString &id) const;

    //! \name Entering what was learned
    //! For whoever has asked the service without the session's operations.
    //! \{

    //! Enters \a documents, as they are on the service.
    void insert(const QList<VellDocument> &documents);
    void insert(const VellDocument &document) { insert(QList<VellDocument>{document}); }

    //! The documents \a ids are no longer where they were: deleted for good or in the recycle bin.
    void remove(const QStringList &ids);

    //! The entries of the folder \a id have changed in a way that is not known.
    void markFolderChanged(const QString &id);

    void clear();
    //! \}

Q_SIGNALS:
    //! New, or with another content than before.
    void documentsChanged(const QList<VellDocument> &documents);

    void documentsRemoved(const QStringList &ids);

    //! Entries of the folder \a id have come, gone or changed their order; empty for the top level.
    void folderChanged(const QString &id);

    //! Everything is forgotten: another project has been opened.
    void cleared();

private:
    QHash<QString, VellDocument> m_documents;
};
