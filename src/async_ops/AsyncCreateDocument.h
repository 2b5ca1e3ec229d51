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

//! \brief Uploads a local file, and creates a document or a new version of a document from it.
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
//! Create a job for each upload. It is owned by its creator or its parent, and does not delete itself. It may be deleted at any
//! time: also in a slot that is connected to one of its signals, and before createDocument() or updateDocument() has returned.
//! Afterwards nothing is emitted and nothing is sent.
//!
//! \par Small and large files
//! A file whose VellDocument::fileSize is at most 10,485,760 bytes (VellUploadLimits) is sent in one request, streamed from the
//! disk. For a larger file the MD5 is computed on the global thread pool; then the service is asked which chunks with that MD5 it
//! has, and only the missing chunks of 4 MiB are sent, one after the other. After a lost connection, or a crash of the client or
//! the service, a new job for the same file continues with the first missing chunk; a file that the service has already is not
//! sent again.
//!
//! \par States
//! \code{.unparsed}
//! small file:  Idle --start--> Sending file --response--> Document request --response--> Finished
//!
//! large file:  Idle --start--> Hashing --> Upload record --complete--> Document request --response--> Finished
//!                                            |                           ^
//!                                            | chunks missing            | after the last chunk: finishUpload()
//!                                            v                           |
//!                                     Sending chunk ---------------------+
//!                                            ^        |
//!                                            +--------+ the response names the next chunk
//!
//! pause(true)   Sending file, Document request of a small file, Sending chunk --> Paused
//!               no effect in other states
//! error()       Sending file, Document request, Sending chunk --> Failed
//! pause(false)  small file:  Paused, Failed --> Sending file, from byte 0; see the warning at pause()
//!               large file:  Paused, Failed --> Sending chunk, the interrupted one;
//!                            after the last chunk --> Document request
//! cancel()      small file:  Sending file, Document request --> Canceled
//!               large file:  Document request --> Canceled; chunks continue
//! deletion      any state --> nothing more is sent or emitted
//! \endcode
//!
//! \par Failure
//! error() reports a network error. The job then does nothing until it is deleted or until pause(false) is called, which rarely
//! helps: create a new job instead. A job ends without a signal
//! - if the local file cannot be opened;
//! - if the response to the whole file of a new document contains no file;
//! - if the response to a chunk is not a JSON object, or reports more saved chunks than the file has;
//! - if the last chunk is acknowledged after an earlier chunk has failed;
//! - if the service has all chunks of a new document, but the upload record or, after finishUpload(), the response to the last
//!   chunk contains no file;
//! - after a cancel() that stopped a request.
//!
//! A new version is requested even if no file is named: the request then has an empty file, and the service decides. A program
//! that must know the outcome asks the service, for example with AsyncGetDocInfo.
//!
//! \par Threads
//! Belongs to the thread that created it, which must run an event loop. For a large file createDocument() and updateDocument()
//! return when the first chunk is being sent; the events of the thread are processed meanwhile. If the application quits, they
//! return when the MD5 has been computed.
//!
//! \since 0.1
class VELLDOCUMENTDATA_EXPORT AsyncCreateDocument : public QObject
{
    Q_OBJECT

public:
    explicit AsyncCreateDocument(QObject *parent = nullptr);
    ~AsyncCreateDocument() override;

    //! Uploads the file at `filePath` of \a doc and creates a document in the open project with its `type`, `category`, `parentId`
    //! and `name`. Each request uses the project that is open, and the address of the service, at the time of the request.
    //!
    //! If the file cannot be opened, nothing is sent or emitted. Do not call it while the job is uploading: the record is
    //! replaced and the file is closed, so that the upload fails with error() or, if the file has been sent already, becomes a
    //! document with the name of the new record; this also happens if the second file cannot be opened.
    //! \param hostId stored in the job's copy of the record; not sent for a new document.
    //! \sa VellPubDoc::getVellDocument()
    void createDocument(const QString &hostId, const VellDocument &doc);

    //! Uploads the file at `filePath` of \a doc as a new version of the existing document `_id`. Its host, `type`, `category`,
    //! `parentId` and `name` are sent with it. Otherwise like createDocument().
    void updateDocument(const QString &hostId, const VellDocument &doc);

    //! Pauses or resumes the upload. Pausing emits nothing, and has no effect before the first chunk of a large file and during
    //! its document request.
    //!
    //! Resuming continues a large file with the interrupted chunk. If that chunk had failed with error(), the job sends the
    //! remaining chunks but never finishes. After the last chunk it repeats the document request with the file that the upload
    //! record contained before the first chunk; if it contained none, nothing is sent for a new document.
    //!
    //! \warning Resuming sends a small file again from its first byte. If it was paused or failed while the file was being sent,
    //! the response is taken for that of the document request: createDocumentFinish() then has a record without `_id`, and \b no
    //! \b document is created. To interrupt the upload of a small file, delete the job and start a new one.
    //!
    //! \warning Call pause(false) only after pause(true) or error(). In other states it sends requests again: the file, or for a
    //! new version the document request with an empty file.
    //! \sa cancel()
    void pause(bool pause);

    //! Stops the upload of a small file and closes the local file. The chunks of a large file are not stopped: call pause(true) or
    //! delete the job for that. Chunks that the service has stay there for the next attempt.
    //!
    //! The document request, of a small or a large file, is aborted too. Emits nothing, even if the service has already created
    //! the document.
    //! \sa pause()
    void cancel();

Q_SIGNALS:
    //! The job has finished. \a doc is the document as it is on the service, also for a new version: a default-constructed record
    //! if the last response was empty or not JSON, and a record without `_id` if it was not a document.
    void createDocumentFinish(const VellDocument &doc);

    //! The number of bytes sent and the total. For small files both values include the multipart overhead. For large files the
    //! total is the size of the file, and the first value may exceed it by the overhead of one request.
    void uploadProgress(qint64 bytesReceived, qint64 bytesTotal);

    //! A request failed; \a code is the QNetworkReply::NetworkError.
    void error(int code);

    //! The service has all chunks of a large file. The document request follows if the response contains the file. Not emitted
    //! for a small file, nor if the service had the whole file before.
    void finishUpload();

private Q_SLOTS:
    void uploadComplete(const QByteArray &content);

private:
    Q_DISABLE_COPY(AsyncCreateDocument)

    // Whole files and the document request.
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
