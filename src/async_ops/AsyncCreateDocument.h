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
//! A record whose VellDocument::fileSize is at most 10,485,760 bytes goes up in one request, streamed
//! from the disk. Of a larger one the MD5 is computed on the global thread pool; then the store is asked what it has of that
//! MD5, and only the missing chunks of 4 MiB are sent, one after another. After a lost connection or a
//! crash of either side a new job for the same file continues where the store stopped; a file that
//! the store has already is not sent again.
//!
//! \par Failure
//! error() tells a network error; the job then waits for pause(false) or for its deletion. A job
//! also ends silently: when the local file cannot be opened, when the store's answer to a new document names
//! no file, when its answer to a chunk is not a JSON object, and when the last chunk is acknowledged after an
//! earlier chunk had failed. Ask the service for the outcome where it matters.
//!
//! \par Threads
//! Belongs to the thread that made it, which must run an event loop. Of a large file the two
//! starting methods return only once the first chunk is on its way; the thread's events run meanwhile.
class VELLDOCUMENTDATA_EXPORT AsyncCreateDocument : public QObject
{
    Q_OBJECT

public:
    explicit AsyncCreateDocument(QObject *parent = nullptr);
    ~AsyncCreateDocument() override;

    //! Uploads the file at `filePath` of \a doc and makes a document in the open project with its
    //! `type`, `category`, `parentId` and `name`. Does nothing when the file cannot be opened.
    //! \param hostId kept with the job's copy of the record; a new document is sent without it.
    void createDocument(const QString &hostId, const VellDocument &doc);

    //! Uploads the file at `filePath` of \a doc and makes it the content of the existing document `_id`,
    //! whose host, `type`, `category`, `parentId` and `name` are sent with it. Does nothing when
    //! the file cannot be opened.
    void updateDocument(const QString &hostId, const VellDocument &doc);

    //! Suspends or resumes the transfer. Suspending emits nothing and does nothing before the
    //! first chunk of a large file. Resuming sends a small file again from its first byte, a large one from
    //! the chunk that was under way.
    void pause(bool pause);

    //! Stops the upload of a small file and closes the local file. Of a large file the chunk under way is left
    //! to finish, and the next ones follow: use pause(true) or delete the job to stop them. What the store
    //! holds stays there for the next attempt. Emits nothing.
    void cancel();

Q_SIGNALS:
    //! The job is done: \a doc is the document as the service has it, for a new version too. A default record
    //! when the last reply was empty or no JSON.
    void createDocumentFinish(const VellDocument &doc);

    //! Bytes sent and their total. Of a small file these are the request's, framing included; of a large one the
    //! total is the file's size and the first figure may exceed it by the framing of one request.
    void uploadProgress(qint64 bytesReceived, qint64 bytesTotal);

    //! A request failed; \a code is the QNetworkReply::NetworkError.
    void error(int code);

    //! The store has all chunks of a large file; the document's request follows. Not emitted for a small
    //! file, nor when the store had the whole file before.
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
