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

//! \brief The one object through which a client reads and changes documents and waits for the answer.
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
//! Each method that asks the service blocks until the reply has finished or nothing has moved for the
//! time-out of NetworkSettings, but the events of the thread run meanwhile: timers fire, the user can
//! click, and a slot may call any method here again, clear() included. What the caller passes by
//! reference must live until the method returns.
//!
//! \par Failure
//! Nothing is thrown, logged or shown. A change returns whether the service answered with success. Permissions, counts,
//! documents, lists without a result, names and passwords are read from the body of the response, whatever its status:
//! without a readable body the result is empty, 0 or `false`, and looks like an honest answer; an error status whose body has
//! the form of an answer is taken for one. NetworkManager::requestFailed() tells that a request failed, and why.
//!
//! \par Cache
//! Documents are kept by their identifier, as whole copies, so that getDoc() and getFolderName()
//! can answer without the service. Each method says what it stores or removes; where it says
//! nothing the cache is not touched. Nothing expires, and a change of the open project empties
//! nothing: call clear(). A failed request changes nothing in the cache, except in
//! restoreFile() and moveToFolder(), and in getDoc(), getDocuments() and getDocumentsRange() if the body of the error
//! response holds documents: these are stored.
//!
//! \par Addresses
//! Identifiers, category words and the open project go into addresses as they are, one after the other: a value that holds
//! "%1", "%2" and so on is hit by the values that follow it.
//!
//! \par Threads
//! For one thread at a time, normally the user-interface thread. Only instance() may be called
//! from several threads at once.
//!
//! \par Copies
//! A copy is an independent object with its own cache; only instance() is shared.
class VELLDOCUMENTDATA_EXPORT VellDocumentData
{
public:
    //! The object of this process, made by the first call and destroyed when the library is unloaded.
    static VellDocumentData *instance();

    //! \name Cache
    //! @{

    //! Stores \a doc under its identifier, an empty one included, replacing what was there.
    void addDocToCache(const VellDocument &doc);

    //! Forgets every document.
    void clear();

    //! The name of the cached document \a id, empty when it is not cached. Asks the service for nothing: a
    //! folder that was never fetched, listed or made through this object has no name here.
    QString getFolderName(const QString &id);
    //! @}

    //! \name Permissions
    //! Whether the current user may do it in the open project, by the service's word at this moment. False
    //! also when the request fails, unless the body of the error response grants it.
    //! \param rId the folder or document in question
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

    //! Gives the document \a id in \a doc.
    //!
    //! With \a fromCache a cached document is copied and no request is made. Otherwise the
    //! service is asked and \a doc filled as VellPubDoc::jsonToDocObject() does, from the body of an error response too;
    //! without a document in it, `_id` is empty. A document that came is stored unless \a id is cached already: an
    //! older entry stays as it was.
    void getDoc(const QString &id, VellDocument &doc, bool fromCache);

    //! Appends the versions of the document \a id to \a list, newest first, as
    //! VellPubDoc::jsonToDocHistoryObject() reads them.
    //! \return success; after a failure \a list may have gained what arrived.
    bool getDocHistory(const QString &id, QList<VellDocument> &list);

    //! Gives the access password of the document \a id in \a pwd: empty when it has none or the request
    //! failed.
    void getDocPwd(const QString &id, QString &pwd);

    //! Looks up the user's favourite mark of the document \a id.
    //! \param value the type of the record that was found (3); keeps its value when there is none.
    //! \return success, with or without a record.
    bool getFavorDoc(int &value, const QString &id);
    //! @}

    //! \name Lists
    //! All speak of the open project and append to the caller's list, in the order of the reply.
    //! @{

    //! Every document that meets \a cond, unsorted. Stores them, unless \a cond asks for names or
    //! for the fields of a tree only.
    void getDocuments(const VellDocumentConditon &cond, QList<VellDocument> &list);

    //! One page of the documents that meet \a cond: \a limit of them, from number \a skip on; all
    //! of them when \a limit is 0 or less. Stores them, whatever fields \a cond asks for.
    void getDocumentsRange(QList<VellDocument> &list, int skip, int limit,
                           const VellDocumentConditon &cond, const VellDocumentSort &sort);

    //! How many documents meet \a cond; 0 also when the request fails, unless the body of the error response has a count.
    int getDocumentsRangeCount(const VellDocumentConditon &cond);

    //! One page of the recycle bin, whose category word \a cond carries. \a limit and \a skip are always
    //! sent, and VellDocumentSort::isDefault is not looked at.
    void getRecycledDocumentsRange(QList<VellDocument> &list, int skip, int limit,
                                   const VellDocumentConditon &cond, const VellDocumentSort &sort);

    //! How many documents of the recycle bin meet \a cond, which carries its category word.
    int getDocumentsRecycledRangeCount(const VellDocumentConditon &cond);

    //! The favourites that meet \a cond, whose `projectId` is set to the open project. The sort's
    //! VellDocumentSort::isDefault is not looked at.
    bool getFavorDocs(QList<VellDocument> &list, VellDocumentConditon &cond,
                      const VellDocumentSort &sort);

    //! The documents linked to the entity \a guid. Sizes of 2 GiB and more read as 0.
    bool getEntityDocByGuid(const QString &guid, QList<VellDocumentLite> &list);
    //! @}

    //! \name Changes
    //! @{

    //! Makes the folder \a doc, of which `parentId` (empty: top level), `name`, `type` and `category` are
    //! sent. \a doc takes the reply, its `_id` above all; after a failure it has lost its fields. On
    //! success it is stored.
    bool createDocFolder(VellDocument &doc);

    //! Sends the changes named in `codeList` of \a doc: VellDocumentChange::EntityLinks sends `entity`; other
    //! codes send nothing. \a doc takes the reply, also after a failure. On success it is stored.
    //! \return success; false without a request when `codeList` is empty.
    bool updateDoc(VellDocument &doc);

    //! Gives documents, by identifier, new positions in their folder. The cache keeps the old ones.
    bool changeDocOrder(const QMap<QString, int> &orders);

    //! Moves the documents \a ids into the folder \a folderId; empty moves them to the top level. On
    //! success each is fetched and stored; a fetch that fails stores an empty record under the empty
    //! identifier and is not reported.
    bool moveToFolder(const QStringList &ids, const QString &folderId);

    //! Moves the document or folder \a id into the recycle bin. On success it leaves the cache; what a
    //! folder held stays cached.
    bool deleteDoc(const QString &id);

    //! Deletes each of \a ids with a request of its own and goes on after a failure. Those that
    //! succeeded leave the cache.
    //! \return whether all succeeded; true for an empty list, without a request.
    bool deleteDoc(const QStringList &ids);

    //! Empties the open project's recycle bin of \a category, for good.
    bool emptyRecycled(const QString &category);

    //! Restores the document \a id from the recycle bin.
    //! \return whether its folder holds a document of the same name, as the body of the response says: normally false when
    //!         the request fails.
    bool uploadRecycleDoc(const QString &id);
    //! @}

    //! \name Marks, shares, remarks
    //! @{

    //! Sets or clears the user's record of \a type on the document \a id. The document leaves the
    //! cache before the request, whatever its outcome. \a list and \a out are not used.
    bool restoreFile(const QString &id, const QStringList &list, int type, bool flag, QString &out);

    //! Marks the document \a id as frequently used, or not. On success the cached document's `favorite`
    //! is set; without one an otherwise empty record is stored under \a id.
    bool setFrequentDocument(const QString &id, bool on);

    //! Marks the document \a id as recently used, or not.
    bool setRectentDocument(const QString &id, bool on);

    //! Shares the documents \a ids with whoever has the \a code that comes back.
    //! \param expiredAt when the share ends; an invalid time: never.
    //! \param code empty when the service gave none.
    bool shareDocument(const QStringList &ids, const QDateTime &expiredAt, QString &code,
                       bool allowDownload);

    //! Sets the remark of the document \a id, or with \a history of the version \a id. On success
    //! the remark of the entry cached under \a id is set; without one an otherwise empty record is stored.
    bool updateDocRemake(bool history, const QString &id, const QString &remark);
    //! @}

    //! \name Names
    //! A failed request counts as "not found", unless the body of the error response is a list of documents.
    //! @{

    //! Whether the open project has a document or folder \a name in the folder \a parentId, in \a category.
    bool isDocNameExist(const QString &parentId, const QString &name, const QString &category);

    //! Gives the identifier of the first document that meets \a cond in \a id, which otherwise keeps
    //! its value. Sets `projectId` and `selectName` of \a cond.
    //! \return whether there is one.
    bool getDocumentIdByName(VellDocumentConditon &cond, QString &id);

    //! A name for a new file in the folder \a parentId: \a name when it is free, else the first free one
    //! of name(2).ext, name(3).ext and so on.
    //!
    //! A name is taken when \a reservedNames holds it, when the cache or, asked for each candidate, the service
    //! has a file of that name there in \a category. Counting starts at 2 for every call, and the last
    //! "(digits)" of the name, wherever it stands, is replaced: plan(5).dwg gives plan(2).dwg. The
    //! suffix is what follows the last dot: archive.tar.gz gives archive.tar(2).gz.
    //! \param existingId when it is empty, receives the identifier of the first document found to be in the way;
    //!        names that are only reserved give none.
    QString getValidDocName(const QString &parentId, const QString &name, QString &existingId,
                            const QString &category, const QStringList &reservedNames);
    //! @}

    //! The folder for temporary PDF files, from the client's settings; neither created nor checked.
    QString getPdfFileTempPath();

private:
    void cacheDocuments(const QList<VellDocument> &documents);

    QMap<QString, VellDocument> docCache;
    // Carried with the object for the client; nothing here reads them.
    QMap<QString, bool> flagMapA;
    QMap<QString, bool> flagMapB;
};
