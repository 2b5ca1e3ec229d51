#pragma once

#include <async_ops/VellLargeFile.h>
#include <document_model/VellDocument.h>
#include <velldocumentdata_export.h>

#include <QList>
#include <QObject>
#include <QString>

class AsyncNetManager;
class NetworkEventLoop;
class QFile;
class QHttpMultiPart;
class QNetworkReply;

//! \brief Uploads one local file and makes a document, or a new version of one, of it.
//!
//! \code
//! VellDocument doc;
//! VellPubDoc::getVellDocument(path, doc); // name, size, local path, type
//! doc.parentId = folderId;
//!
//! auto *job = new AsyncCreateDocument(this);
//! connect(job, &AsyncCreateDocument::createDocumentFinish, this, &Client::uploaded);
//! connect(job, &AsyncCreateDocument::error, this, &Client::failed);
//! job->createDocument(QString(), doc);
//! \endcode
//!
//! \par One job, one file
//! Make a job for each upload. Its creator or its parent owns it; it never deletes itself. It may be deleted at
//! any time: inside its own signals, and while createDocument() or updateDocument() has not returned.
//! Nothing is emitted afterwards, and nothing more is sent.
//!
//! \par Small and large files
//! A record whose VellDocument::fileSize is at most 10,485,760 bytes (VellUploadLimits) goes up in one request, streamed
//! from the disk. For a larger one the MD5 is computed on the global thread pool; then the store is asked what it has of that
//! MD5, and only the missing chunks of 4 MiB are sent, one after another. After a lost connection or a
//! crash of either side a new job for the same file continues where the store stopped; a file that
//! the store has already is not sent again.
//!
//! \par States
//! \verbatim
//! small file:  Idle --start--> Sending file --reply--> Document request --reply--> Finished
//!
//! large file:  Idle --start--> Hashing --> Asking the store --complete--> Document request --reply--> Finished
//!                                                |                              ^
//!                                             missing                      last chunk's reply: finishUpload()
//!                                                v                              |
//!                                           Sending chunk --reply: the store's next chunk--> Sending chunk
//!
//! pause(true)   Sending file, Document request of a small file, Sending chunk --> Paused
//!               anywhere else nothing happens
//! error()       Sending file, Document request, Sending chunk --> Failed
//! pause(false)  small file:  Paused, Failed --> Sending file, from byte 0. See pause() for how that ends.
//!               large file:  Paused, Failed --> Sending chunk, the one that was under way;
//!                            after the last chunk --> Document request
//! cancel()      small file:  Sending file, Document request --> Canceled
//!               large file:  Document request --> Canceled; chunks go on
//! deletion      any state --> nothing more is sent or emitted
//! \endverbatim
//!
//! \par Failure
//! error() tells a network error. The job then does nothing until it is deleted or pause(false) is called, which helps
//! in few cases: make a new job instead. A job ends without a signal
//! - when the local file cannot be opened;
//! - when the store's answer to the whole file of a new document names no file;
//! - when its answer to a chunk is not a JSON object, or reports more chunks saved than there are;
//! - when the last chunk is acknowledged after an earlier chunk had failed;
//! - when the store has all chunks of a new document but names no file, in its record or, after finishUpload(), in its
//!   last answer;
//! - after a cancel() that stopped a request.
//!
//! Where no file is named, a new version is requested all the same, with an empty file, and the service decides. Ask the
//! service for the outcome where it matters.
//!
//! \par Threads
//! Belongs to the thread that made it, which must run an event loop. For a large file the two
//! starting methods return only once the first chunk is on its way; the thread's events run meanwhile. When the
//! application quits meanwhile, they return too, once the MD5 has been computed.
class VELLDOCUMENTDATA_EXPORT AsyncCreateDocument : public QObject
{
    Q_OBJECT

public:
    explicit AsyncCreateDocument(QObject *parent = nullptr);
    ~AsyncCreateDocument() override;

    //! Uploads the file at `filePath` of \a doc and makes a document in the open project with its
    //! `type`, `category`, `parentId` and `name`. The project and the address of the service are those at the
    //! time of each request.
    //!
    //! When the file cannot be opened, nothing is sent or emitted. A job that is uploading is disturbed by a second
    //! start all the same: its record is replaced and its file is closed, so an upload under way fails with error(), or,
    //! if the file has gone up already, becomes a document with the new record's name.
    //! \param hostId kept with the job's copy of the record; a new document is sent without it.
    void createDocument(const QString &hostId, const VellDocument &doc);

    //! Uploads the file at `filePath` of \a doc and makes it the content of the existing document `_id`,
    //! whose host, `type`, `category`, `parentId` and `name` are sent with it. Otherwise as createDocument().
    void updateDocument(const QString &hostId, const VellDocument &doc);

    //! Suspends or resumes the transfer. Suspending emits nothing; it does nothing before the
    //! first chunk of a large file and in its document request.
    //!
    //! Resuming sends a large file from the chunk that was under way. After a chunk's error() such a job sends the rest
    //! but never finishes. After the last chunk it repeats the document's request with the file that the store's record named
    //! before the first chunk; when it named none, nothing is sent for a new document.
    //!
    //! \warning Resuming sends a small file again from its first byte, and takes the answer for the document's if the
    //! file was still going up before, paused or failed: createDocumentFinish() then has a record without `_id`, and \b no
    //! \b document is made. To suspend a small file, delete the job and start a new one.
    //!
    //! \warning Call pause(false) only after pause(true) or error(). On a job in another state it sends requests again:
    //! the file, or for a new version the document's request with an empty file.
    void pause(bool pause);

    //! Stops the upload of a small file and closes the local file. Of a large file the chunk under way is left
    //! to finish, and the next ones follow: use pause(true) or delete the job to stop them. What the store
    //! holds stays there for the next attempt.
    //!
    //! The document's request, of a small or a large file, is aborted too. Emits nothing, also if the service has made
    //! the document by then.
    void cancel();

Q_SIGNALS:
    //! The job is done: \a doc is the document as the service has it, for a new version too. A default record
    //! when the last reply was empty or no JSON, and a record without `_id` when it was no document.
    void createDocumentFinish(const VellDocument &doc);

    //! Bytes sent and their total. For a small file these are the request's, multipart overhead included; for a large one the
    //! total is the file's size and the first figure may exceed it by the overhead of one request.
    void uploadProgress(qint64 bytesReceived, qint64 bytesTotal);

    //! A request failed; \a code is the QNetworkReply::NetworkError.
    void error(int code);

    //! The store has all chunks of a large file; the document's request follows if the store names the file. Not
    //! emitted for a small file, nor when the store had the whole file before.
    void finishUpload();

private Q_SLOTS:
    void uploadComplete(const QByteArray &content);

private:
    Q_DISABLE_COPY(AsyncCreateDocument)

    // Whole files and the document's request.
    void wireNetManager();
    void start(const QString &hostId, const VellDocument &record);
    bool isChunked() const;
    void postWholeFile(QHttpMultiPart *body);
    void addOrUpdate(const QString &fileId);
    void addDocument(const QString &fileId);
    void addDocumentFinish(const QByteArray &content);
    void updateDoc(const QString &fileId);
    void updateDocFinish(const QByteArray &content);
    void uploadFinished(const QString &fileId);
    void closeFile();
    QString getFileInfoId(const QString &md5);

    // Chunks.
    void fileChunk();
    void fileChunkLoop();
    void chunkComplete(const QByteArray &content);
    void chunkFailed(int code);
    void chunkProgress(qint64 bytesSent, qint64 bytesTotal);
    void getFileInfoByMd5(const QString &md5, VellLargeFile &info);
    bool deleteFileInfoByLargefileId(QString id);

    AsyncNetManager *netManager = nullptr;
    AsyncNetManager *chunkNetManager = nullptr;
    QList<QNetworkReply *> pendingReplies;
    QList<NetworkEventLoop *> pendingLoops;
    int chunkCount = 0;
    QFile *file = nullptr;
    bool awaitingFile = true;
    VellDocument doc;
    QString fileMd5;
    VellLargeFile largeFile;
    int chunkIndex = 0;
    bool chunkOk = true;
    bool isCreate = true;
    bool canceled = false;
};
