#pragma once

#include <documents/VellRight.h>
#include <operations/VellOperation.h>

#include <document_model/VellDocument.h>
#include <document_model/VellDocumentLite.h>
#include <document_service/VellDocumentConditon.h>

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QStringList>

#include <functional>
#include <optional>

class VellDocumentData;
class VellDocumentStore;
class VellSession;

//! \brief The result of an operation on many documents.
//!
//! \since 0.1
//! \sa VellDocuments::move(), VellDocuments::remove(), VellDocuments::restore()
struct VellBulkResult
{
    QStringList succeeded; //!< identifiers
    QHash<QString, VellError> failed; //!< by identifier
    QList<VellDocument> documents; //!< the moved or restored documents as they are now
    QStringList sameNamed; //!< restored documents whose folder has another entry of the same name
};

//! \brief A share of documents with people who have no account.
//!
//! \since 0.1
//! \sa VellDocuments::share()
struct VellShare
{
    QString id;
    QString code; //!< returned only when the share is created; empty in lists
    QString address; //!< of the page for a browser; empty in lists
    QList<VellDocument> documents; //!< with `_id`, `name` and `type`
    bool isDownloadAllowed = false;
    QDateTime expiresAt; //!< invalid if the share does not expire
    QDateTime createdAt;
    QString createdBy;
};

//! \brief The number of matching documents, and one page of them.
//!
//! \since 0.1
//! \sa VellDocuments::page()
struct VellPage
{
    QList<VellDocument> documents;
    int skip = 0; //!< number of the first document, counted from 0
    int total = 0; //!< number of documents on all pages
};

//! \brief The operations on the documents of the open project.
//!
//! Each function returns at once. The returned VellOperation reports the end with a signal, has its own error, and can be
//! aborted. The received documents are in the store() before VellOperation::finished() is emitted.
//!
//! \par Concurrency
//! Short requests do not wait for lists, and lists do not wait for operations on many documents.
//!
//! \par Many documents
//! move(), remove() and restore() process several documents at once and continue after the failure of one. They always end with
//! VellOperation::finished() and a VellBulkResult. If the service cannot be reached or does not accept the token, or after
//! VellOperation::abort(), the remaining documents are not tried, and are reported with that error.
//!
//! \par Threads
//! Belongs to the thread of the session.
//!
//! \since 0.1
//! \sa VellDocumentStore, VellDocumentModel
class VELLCLIENT_EXPORT VellDocuments : public QObject
{
    Q_OBJECT

public:
    //! \param session must not be null, and must outlive this object
    explicit VellDocuments(VellSession *session, QObject *parent = nullptr);

    //! Returns the session of the constructor.
    VellSession *session() const { return m_session; }

    //! Returns the known documents of the open project. Owned by this object.
    VellDocumentStore *store() const { return m_store; }

    //! \name Lists
    //! \{

    //! Requests the documents that match \a condition: at most \a limit, starting with number \a skip; all if \a limit is 0.
    //! \sa page(), count()
    VellResult<QList<VellDocument>> *list(const VellDocumentConditon &condition,
                                          const VellDocumentSort &sort = {}, int skip = 0,
                                          int limit = 0);

    //! Like list(), with the total number. If the category of \a condition is "recycle", lists the recycle bin.
    VellResult<VellPage> *page(const VellDocumentConditon &condition, const VellDocumentSort &sort,
                               int skip, int limit);

    //! Requests the number of documents that match \a condition.
    VellResult<int> *count(const VellDocumentConditon &condition);

    //! Requests the documents that match \a condition and that the user has marked as favourites.
    //! \sa setFavorite()
    VellResult<QList<VellDocument>> *favorites(const VellDocumentConditon &condition,
                                               const VellDocumentSort &sort);

    //! Requests the newest 50 files of the user in \a category.
    //! \sa setRecent(), AsyncGetRecent
    VellResult<QList<VellDocument>> *recent(const QString &category);

    //! Requests the documents with a link to the entity \a entityGuid.
    //! \sa setLinks()
    VellResult<QList<VellDocumentLite>> *linkedTo(const QString &entityGuid);
    //! \}

    //! \name One document
    //! \{

    //! Requests the current record of the document \a id.
    VellResult<VellDocument> *document(const QString &id);

    //! Requests the entry \a name of the folder \a parentId, of any category. The result has no value if there is none; if there
    //! are several, it is the first.
    VellResult<std::optional<VellDocument>> *find(const QString &parentId, const QString &name);

    //! Requests the folders above the document \a id, from the top level down to its parent.
    VellResult<QList<VellDocument>> *foldersAbove(const QString &id);

    //! Requests the versions of the file \a id, newest first, including the current one.
    //! \sa makeCurrent(), setVersionRemark(), VellTransferQueue::downloadVersion()
    VellResult<QList<VellDocument>> *history(const QString &id);

    //! Requests the MD5 of the content \a fileId as hexadecimal digits; empty if the service does not report it.
    VellResult<QString> *contentMd5(const QString &fileId);

    //! Requests the access password of the document \a id; empty if it has none.
    VellResult<QString> *password(const QString &id);

    //! Requests whether the user has marked the document \a id as a favourite.
    VellResult<bool> *isFavorite(const QString &id);

    //! Requests whether the user has the right \a right on the document \a id of \a category.
    VellResult<bool> *may(VellRight right, const QString &id, const QString &category);

    //! Requests a name for a new entry of the folder \a parentId: \a name, with a number if the service has an entry of that name
    //! or
    //! \a reserved contains it.
    VellResult<QString> *freeName(const QString &parentId, const QString &name,
                                  const QString &category, const QStringList &reserved = {});
    //! \}

    //! \name Changes
    //! If a name is already taken immediately before the change, the operation fails with VellError::Kind::NameTaken.
    //! \{

    //! Creates the folder \a name in the folder \a parentId; empty for the top level.
    VellResult<VellDocument> *createFolder(const QString &parentId, const QString &name,
                                           const QString &category = {});

    //! Creates the document \a name in the folder \a folderId with the content, the category and the remark of the file
    //! \a document, without a transfer. The history is not copied.
    VellResult<VellDocument> *copy(const VellDocument &document, const QString &folderId,
                                   const QString &name);

    //! Renames the document \a id.
    VellResult<VellDocument> *rename(const QString &id, const QString &name);

    //! Moves the documents \a ids into the folder \a folderId; empty for the top level.
    VellResult<VellBulkResult> *move(const QStringList &ids, const QString &folderId);

    //! Moves the documents \a ids into the recycle bin.
    //! \sa restore()
    VellResult<VellBulkResult> *remove(const QStringList &ids);

    //! Restores the documents \a ids from the recycle bin.
    VellResult<VellBulkResult> *restore(const QStringList &ids);

    //! Deletes the documents of \a category that are in the recycle bin permanently.
    VellResult<bool> *emptyRecycleBin(const QString &category);

    //! Deletes the documents \a ids, which are in the recycle bin, permanently, with everything that was deleted together with them.
    //! The service refuses documents that are not in the recycle bin, and those that were deleted with their folder.
    //! \sa remove(), emptyRecycleBin()
    VellResult<VellBulkResult> *purge(const QStringList &ids);

    //! Sets the positions of documents in their folders, by identifier.
    VellResult<bool> *setOrder(const QMap<QString, int> &positions);

    //! Replaces the links of a document by the `entity` of \a document.
    //! \sa linkedTo()
    VellResult<VellDocument> *setLinks(const VellDocument &document);

    //! Makes a new version of the document \a id from the content \a fileId of an earlier version, without a transfer.
    //! \sa history()
    VellResult<VellDocument> *makeCurrent(const QString &id, const QString &fileId);

    //! Deletes a version permanently. The service refuses to delete the current one.
    //! \param versionId `_id` of the version in history()
    VellResult<bool> *removeVersion(const QString &versionId);

    //! Sets the remark of the document \a id.
    VellResult<bool> *setRemark(const QString &id, const QString &remark);

    //! Sets the remark of a version.
    //! \param versionId `_id` of the version in history()
    VellResult<bool> *setVersionRemark(const QString &versionId, const QString &remark);

    //! Sets or removes the mark of the user as a favourite.
    VellResult<bool> *setFavorite(const QString &id, bool on);

    //! Sets or removes the mark of the user as frequently used.
    VellResult<bool> *setFrequent(const QString &id, bool on);

    //! Sets or removes the mark of the user as recently used.
    VellResult<bool> *setRecent(const QString &id, bool on);
    //! \}

    //! \name Shares
    //! \{

    //! Creates a share of the documents \a ids.
    //! \param expiresAt invalid for a share that does not expire
    VellResult<VellShare> *share(const QStringList &ids, const QDateTime &expiresAt,
                                 bool allowDownload);

    //! Requests the shares in the project: those of the user; all of them if the user may edit documents of others.
    VellResult<QList<VellShare>> *shares();

    //! Ends the share \a id.
    VellResult<bool> *revokeShare(const QString &id);
    //! \}

private:
    VellResult<bool> *startChange(const std::function<bool(VellDocumentData &)> &change,
                                  const std::function<void()> &apply = {});
    void updateKnown(const QStringList &ids, const std::function<void(VellDocument &)> &change);

    VellSession *const m_session;
    VellDocumentStore *const m_store;
};
