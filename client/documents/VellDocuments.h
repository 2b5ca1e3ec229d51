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

//! \brief What became of each document of an operation on many.
struct VellBulkResult
{
    QStringList succeeded;
    QHash<QString, VellError> failed; //!< by identifier
    QList<VellDocument> documents; //!< the moved or restored ones, as they are now
    QStringList sameNamed; //!< of restored documents: those beside another entry of the same name
};

//! \brief A share of documents with people without an account.
struct VellShare
{
    QString id;
    QString code; //!< told once, when the share is made; empty in lists
    QString address; //!< of the page to open in a browser; empty in lists
    QList<VellDocument> documents; //!< with `_id`, `name` and `type`
    bool isDownloadAllowed = false;
    QDateTime expiresAt; //!< invalid if it does not end
    QDateTime createdAt;
    QString createdBy;
};

//! \brief The number of matching documents and one page of them.
struct VellPage
{
    QList<VellDocument> documents;
    int skip = 0; //!< number of the first
    int total = 0; //!< of all pages
};

//! \brief The operations on the documents of the project that is open when they are made.
//!
//! Each function returns at once; the VellOperation tells the end, with an error of its own, and can be aborted. What is learned
//! stands in the store() before finished() is emitted.
//!
//! Questions that somebody waits for do not wait behind lists, and lists do not wait behind operations on many
//! documents. These work on several documents at once and go on after the failure of one; they always end with finished() and a
//! VellBulkResult. Once the service cannot be reached or does not know the user, or after abort(), the documents
//! that are left are not tried, and are reported with that error.
//!
//! Belongs to the thread of the session.
class VELLCLIENT_EXPORT VellDocuments : public QObject
{
    Q_OBJECT

public:
    //! \param session must outlive the object
    explicit VellDocuments(VellSession *session, QObject *parent = nullptr);

    VellSession *session() const { return m_session; }

    //! What is known of the documents of the open project. Lives as long as this object.
    VellDocumentStore *store() const { return m_store; }

    //! \name Lists
    //! \{

    //! The documents that meet \a condition: \a limit of them, from number \a skip on; all of them when \a limit is 0.
    VellResult<QList<VellDocument>> *list(const VellDocumentConditon &condition,
                                          const VellDocumentSort &sort = {}, int skip = 0,
                                          int limit = 0);

    //! As list(), and how many there are in all. A condition whose category
    //! is "recycle" lists the recycle bin.
    VellResult<VellPage> *page(const VellDocumentConditon &condition, const VellDocumentSort &sort,
                               int skip, int limit);

    VellResult<int> *count(const VellDocumentConditon &condition);
    VellResult<QList<VellDocument>> *favorites(const VellDocumentConditon &condition,
                                               const VellDocumentSort &sort);
    //! The user's newest 50 files of \a category.
    VellResult<QList<VellDocument>> *recent(const QString &category);
    VellResult<QList<VellDocumentLite>> *linkedTo(const QString &entityGuid);
    //! \}

    //! \name One document
    //! \{

    //! The document as the service has it now.
    VellResult<VellDocument> *document(const QString &id);
    //! The document called \a name in the folder \a parentId, whatever its category; nothing if there is none. Of several the first.
    VellResult<std::optional<VellDocument>> *find(const QString &parentId, const QString &name);
    //! The folders from the top level to the one that holds the document \a id.
    VellResult<QList<VellDocument>> *foldersAbove(const QString &id);
    //! Newest first, the current version included.
    VellResult<QList<VellDocument>> *history(const QString &id);
    //! The MD5 of the content \a fileId in hexadecimal digits, as the service tells it; empty if it does not.
    VellResult<QString> *contentMd5(const QString &fileId);
    VellResult<QString> *password(const QString &id);
    VellResult<bool> *isFavorite(const QString &id);
    VellResult<bool> *may(VellRight right, const QString &id, const QString &category);
    //! A name for a new entry of the folder \a parentId: \a name, or with a number if the service has an entry of that name
    //! or \a reserved holds it.
    VellResult<QString> *freeName(const QString &parentId, const QString &name,
                                  const QString &category, const QStringList &reserved = {});
    //! \}

    //! \name Changes
    //! A name that is taken at the moment of the change fails with VellError::Kind::NameTaken.
    //! \{
    VellResult<VellDocument> *createFolder(const QString &parentId, const QString &name,
                                           const QString &category = {});
    //! Makes a new document \a name in the folder \a folderId with the content, the category and the remark of the file \a document. Nothing
    //! is transferred. The history does not go with it.
    VellResult<VellDocument> *copy(const VellDocument &document, const QString &folderId,
                                   const QString &name);
    VellResult<VellDocument> *rename(const QString &id, const QString &name);
    VellResult<VellBulkResult> *move(const QStringList &ids, const QString &folderId);
    //! Into the recycle bin.
    VellResult<VellBulkResult> *remove(const QStringList &ids);
    //! From the recycle bin.
    VellResult<VellBulkResult> *restore(const QStringList &ids);
    //! For good.
    VellResult<bool> *emptyRecycleBin(const QString &category);
    VellResult<bool> *setOrder(const QMap<QString, int> &positions);
    //! Sends `entity` of \a document.
    VellResult<VellDocument> *setLinks(const VellDocument &document);
    //! Makes the content \a fileId of an earlier version the current one of the document \a id, as a new version. Nothing is transferred.
    VellResult<VellDocument> *makeCurrent(const QString &id, const QString &fileId);
    VellResult<bool> *setRemark(const QString &id, const QString &remark);
    VellResult<bool> *setVersionRemark(const QString &versionId, const QString &remark);
    VellResult<bool> *setFavorite(const QString &id, bool on);
    VellResult<bool> *setFrequent(const QString &id, bool on);
    VellResult<bool> *setRecent(const QString &id, bool on);
    //! \}

    //! \name Shares
    //! \{
    //! \param expiresAt invalid for a share that does not end
    VellResult<VellShare> *share(const QStringList &ids, const QDateTime &expiresAt,
                                 bool allowDownload);
    VellResult<QList<VellShare>> *shares();
    VellResult<bool> *revokeShare(const QString &id);
    //! \}

private:
    VellResult<bool> *startChange(const std::function<bool(VellDocumentData &)> &change,
                                  const std::function<void()> &apply = {});
    void updateKnown(const QStringList &ids, const std::function<void(VellDocument &)> &change);

    VellSession *const m_session;
    VellDocumentStore *const m_store;
};
