#pragma once

#include <document_model/VellDocument.h>
#include <document_model/VellDocumentLite.h>
#include <document_service/VellDocumentConditon.h>
#include <velldocumentdata_export.h>

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

//! \brief Reads and changes documents with blocking functions, and caches them.
//!
//! \code
//! VellBaseApi::GetInstance().setBaseApi("https://documents.example.com/");
//! GetSoftCache()->setCurrentProjectId(projectId);
//!
//! QList<VellDocument> entries;
//! VellDocumentData::instance()->getDocuments(VellDocumentConditon(), entries);
//! \endcode
//!
//! \par Waiting
//! Each method that sends a request blocks until the response has arrived, or until nothing has been sent or received for
//! NetworkSettings::stallTimeout(). The events of the thread are processed meanwhile: timers fire, the user can click, and a
//! slot may call any method here again, clear() included. Arguments that are passed by reference must stay valid until the
//! method returns.
//!
//! \par Failure
//! Nothing is thrown, logged or shown. A change returns true if the response has a 2xx status. Permissions, counts,
//! documents, lists without a result, names and passwords are read from the body of the response, whatever its status:
//! without a readable body the result is empty, 0 or `false`, which cannot be told from a real result; an error response whose
//! body has the form of a result is taken for one. NetworkManager::requestFailed() reports that a request failed, and why.
//!
//! \par Cache
//! Documents are cached by identifier, as complete copies, so that getDoc() and getFolderName() can return them without a
//! request. The description of each method says what it stores or removes; a method that says nothing does not change the
//! cache. Nothing expires, and opening another project does not empty the cache: call clear(). A failed request changes nothing
//! in the cache, except in restoreFile() and moveToFolder(), and in getDoc(), getDocuments() and getDocumentsRange() if the
//! body of the error response contains documents: these are stored.
//!
//! \par Addresses
//! Identifiers, category words and the open project are inserted into addresses unchanged, one after the other. In a value
//! that contains "%1", "%2" and so on, these are replaced by the values that follow it.
//!
//! \par Threads
//! Not thread-safe: use an object on one thread at a time, normally the GUI thread. Only instance() may be called from
//! several threads at once.
//!
//! \par Copies
//! A copy is an independent object with its own cache; only instance() is shared.
//!
//! \since 0.1
class VELLDOCUMENTDATA_EXPORT VellDocumentData
{
public:
    //! Returns the object of this process, which is created by the first call and destroyed when the library is unloaded.
    static VellDocumentData *instance();

    //! \name Cache
    //! @{

    //! Stores \a doc under its identifier, which may be empty, and replaces an earlier entry.
    //! \sa getDoc()
    void addDocToCache(const VellDocument &doc);

    //! Empties the cache.
    void clear();

    //! Returns the name of the cached document \a id, or an empty string if it is not cached. Sends no request: a folder that
    //! was never fetched, listed or created through this object has no name here.
    //! \sa getDoc()
    QString getFolderName(const QString &id);
    //! @}

    //! \name Permissions
    //! Each asks the service whether the current user is allowed to do it in the open project, and returns the result. False
    //! also if the request fails, unless the body of the error response grants it.
    //! \param rId identifier of the folder or document
    //! \param category the service's plain category word
    //! @{
    bool canDeleteDocFolder(const QString &rId, const QString &category);
    bool canDownloadDocFolder(const QString &rId, const QString &category);
    bool canEditDocFolder(const QString &rId, const QString &category);
    bool canUploadDocFolder(const QString &rId, const QString &category);
    //! The same for the user's own documents in \a category.
    bool canDeleteSelf(const QString &category);
    bool canEditSelf(const QString &category);
    //! @}

    //! \name One document
    //! @{

    //! Copies the document \a id to \a doc.
    //!
    //! If \a fromCache is true and the document is cached, no request is sent. Otherwise the document is requested and \a doc is
    //! filled by VellPubDoc::jsonToDocObject(), also from the body of an error response; `_id` is empty if the body contains no
    //! document. The document is stored in the cache unless \a id is cached already: an older entry stays as it is.
    //! \sa AsyncGetDocInfo, addDocToCache()
    void getDoc(const QString &id, VellDocument &doc, bool fromCache);

    //! Appends the versions of the document \a id to \a list, newest first, as
    //! VellPubDoc::jsonToDocHistoryObject() reads them.
    //! \return true on success. After a failure \a list contains the versions of the response's body, if there are any.
    //! \sa updateDocRemake()
    bool getDocHistory(const QString &id, QList<VellDocument> &list);

    //! Sets \a pwd to the access password of the document \a id; empty if it has none or if the request fails.
    void getDocPwd(const QString &id, QString &pwd);

    //! Looks up the user's favourite mark on the document \a id.
    //! \param value set to the type of the mark, VellRecordType::Favorite; unchanged if there is none.
    //! \return true on success, with or without a mark.
    //! \sa restoreFile(), getFavorDocs()
    bool getFavorDoc(int &value, const QString &id);
    //! @}

    //! \name Lists
    //! All work in the open project and append to the caller's list, in the order of the response.
    //! @{

    //! Appends all documents that match \a cond, unsorted. Stores them, unless \a cond selects only names or only the fields
    //! of a tree.
    //! \sa getDocumentsRange()
    void getDocuments(const VellDocumentConditon &cond, QList<VellDocument> &list);

    //! Appends one page of the documents that match \a cond: \a limit documents, after the first \a skip; all documents if
    //! \a limit is 0 or less. Stores them, whichever fields \a cond selects.
    //! \sa getDocumentsRangeCount()
    void getDocumentsRange(QList<VellDocument> &list, int skip, int limit,
                           const VellDocumentConditon &cond, const VellDocumentSort &sort);

    //! Returns the number of documents that match \a cond; 0 also if the request fails, unless the body of the error response
    //! contains a count.
    //! \sa getDocumentsRange()
    int getDocumentsRangeCount(const VellDocumentConditon &cond);

    //! Appends one page of the recycle bin. The category of \a cond must be the category word of the recycle bin. \a limit and
    //! \a skip are always sent, and VellDocumentSort::isDefault is ignored.
    //! \sa getDocumentsRecycledRangeCount(), uploadRecycleDoc()
    void getRecycledDocumentsRange(QList<VellDocument> &list, int skip, int limit,
                                   const VellDocumentConditon &cond, const VellDocumentSort &sort);

    //! Returns the number of documents in the recycle bin that match \a cond, whose category must be the category word of the
    //! recycle bin.
    //! \sa getRecycledDocumentsRange()
    int getDocumentsRecycledRangeCount(const VellDocumentConditon &cond);

    //! Appends the favourites that match \a cond, and sets its `projectId` to the open project. VellDocumentSort::isDefault is
    //! ignored.
    //! \sa getFavorDoc()
    bool getFavorDocs(QList<VellDocument> &list, VellDocumentConditon &cond,
                      const VellDocumentSort &sort);

    //! Appends the documents that are linked to the entity \a guid. Sizes of 2 GiB and more are read as 0.
    //! \sa updateDoc()
    bool getEntityDocByGuid(const QString &guid, QList<VellDocumentLite> &list);
    //! @}

    //! \name Changes
    //! @{

    //! Creates the folder \a doc. `parentId` (empty for the top level), `name`, `type` and `category` are sent. \a doc is filled
    //! from the response, including `_id`; after a failure its fields are lost. Stores \a doc on success.
    //! \sa AsyncCreateDocument
    bool createDocFolder(VellDocument &doc);

    //! Sends the changes that `codeList` of \a doc contains: VellDocumentChange::EntityLinks sends `entity`; other codes send
    //! nothing. \a doc is filled from the response, also after a failure. Stores \a doc on success.
    //! \return true on success; false, without a request, if `codeList` is empty.
    //! \sa getEntityDocByGuid()
    bool updateDoc(VellDocument &doc);

    //! Sets the positions of documents in their folder. \a orders maps identifiers to positions. Cached documents keep the old
    //! positions.
    bool changeDocOrder(const QMap<QString, int> &orders);

    //! Moves the documents \a ids into the folder \a folderId; empty moves them to the top level. On
    //! success each document is fetched and stored; if that fails, an empty record is stored under the empty identifier, and
    //! the failure is not reported.
    bool moveToFolder(const QStringList &ids, const QString &folderId);

    //! Moves the document or folder \a id to the recycle bin. On success it is removed from the cache; the entries of a folder
    //! stay cached.
    //! \sa uploadRecycleDoc(), emptyRecycled()
    bool deleteDoc(const QString &id);

    //! Deletes each of \a ids with a separate request and continues after a failure. Deleted documents are removed from the
    //! cache.
    //! \return true if all succeeded; true for an empty list, without a request.
    bool deleteDoc(const QStringList &ids);

    //! Deletes the documents of \a category in the recycle bin of the open project permanently.
    //! \sa deleteDoc()
    bool emptyRecycled(const QString &category);

    //! Restores the document \a id from the recycle bin.
    //! \return true if its folder contains a document of the same name, according to the body of the response: normally false
    //!         if the request fails.
    //! \sa deleteDoc(), getRecycledDocumentsRange()
    bool uploadRecycleDoc(const QString &id);
    //! @}

    //! \name Marks, shares, remarks
    //! @{

    //! Sets or clears the user's mark of \a type on the document \a id. The document is removed from the cache before the
    //! request, whatever its outcome. \a list and \a out are not used.
    //! \sa VellRecordType, getFavorDoc()
    bool restoreFile(const QString &id, const QStringList &list, int type, bool flag, QString &out);

    //! Sets or clears the mark "frequent" on the document \a id. On success `favorite` of the cached document is set; if it is
    //! not cached, an otherwise empty record is stored under \a id.
    //! \sa restoreFile()
    bool setFrequentDocument(const QString &id, bool on);

    //! Sets or clears the mark "recent" on the document \a id.
    //! \sa AsyncGetRecent
    bool setRectentDocument(const QString &id, bool on);

    //! Shares the documents \a ids with everybody who has the \a code.
    //! \param expiredAt when the share ends; invalid for a share that does not end.
    //! \param code set to the code of the share; empty if the service returned none.
    bool shareDocument(const QStringList &ids, const QDateTime &expiredAt, QString &code,
                       bool allowDownload);

    //! Sets the remark of the document \a id, or of the version \a id if \a history is true. On success the remark of the
    //! document cached under \a id is set; if there is none, an otherwise empty record is stored.
    //! \sa getDocHistory()
    bool updateDocRemake(bool history, const QString &id, const QString &remark);
    //! @}

    //! \name Names
    //! A failed request counts as "not found", unless the body of the error response is a list of documents.
    //! @{

    //! Returns true if the open project has a document or folder called \a name in the folder \a parentId, in \a category.
    //! \sa getValidDocName()
    bool isDocNameExist(const QString &parentId, const QString &name, const QString &category);

    //! Sets \a id to the identifier of the first document that matches \a cond; unchanged if there is none. Sets `projectId`
    //! and `selectName` of \a cond.
    //! \return true if there is such a document.
    bool getDocumentIdByName(VellDocumentConditon &cond, QString &id);

    //! Returns a name for a new file in the folder \a parentId: \a name if it is free, otherwise the first free name of
    //! name(2).ext, name(3).ext and so on.
    //!
    //! A name is taken if \a reservedNames contains it, or if the cache or the service, which is asked for each candidate, has a
    //! file of that name in this folder and \a category. Counting always starts at 2, and the last "(digits)" of the name is
    //! replaced, wherever it is: plan(5).dwg becomes plan(2).dwg. The suffix is the text after the last dot: archive.tar.gz
    //! becomes archive.tar(2).gz.
    //! \param existingId if it is empty, set to the identifier of the first document whose name is in the way; reserved names
    //!        do not set it.
    //! \sa isDocNameExist()
    QString getValidDocName(const QString &parentId, const QString &name, QString &existingId,
                            const QString &category, const QStringList &reservedNames);
    //! @}

    //! Returns VellSettings::pdfFileTempPath(), the folder for temporary PDF files, which is neither created nor checked.
    QString getPdfFileTempPath();

private:
    void cacheDocuments(const QList<VellDocument> &documents);

    QMap<QString, VellDocument> docCache;
    // Part of the object's interface for clients; not used here.
    QMap<QString, bool> flagMapA;
    QMap<QString, bool> flagMapB;
};
