#pragma once

#include <transfer/VellTransfer.h>
#include <vellclient_export.h>

#include <QObject>
#include <QStringList>
#include <QVector>

#include <memory>

class VellDocuments;

//! \brief A queue of uploads and downloads.
//!
//! \code
//! VellTransferQueue queue;
//! queue.attach(&documents);
//! connect(&queue, &VellTransferQueue::ended, this, &Window::showEnd);
//! queue.upload(path, folderId, VellConflictPolicy::KeepBoth);
//! \endcode
//!
//! \par Order
//! In each direction, up to four small files and folders (setTransfersAtOnce()) are transferred at the same time as one large
//! file of more than VellUploadLimits::WholeFileLimit bytes, in the order in which they were added. Transfers to the same name in
//! the same folder are executed one after the other. VellTransferState has a diagram of the states.
//!
//! \par Retries
//! Each transfer keeps the connection, the project and the user that the session has when it is added. After a temporary failure
//! (VellError::isTemporary()) it is tried again, at growing intervals, until ten attempts in a row (setAttemptLimit()) have
//! transferred nothing. While the session is offline the transfers wait; they continue automatically when it is online again.
//!
//! \par One document for each upload
//! After each failure, and before each further attempt, the queue checks whether the service has created the document
//! nevertheless. The decision of a conflict policy or an answer is verified at the service immediately before the document is
//! created. A document that has been changed since the decision is not replaced: the transfer asks again, or fails with
//! VellError::Kind::ChangedMeanwhile.
//!
//! \par Local files
//! A download is written to a temporary file next to the target, which is renamed to the target when its MD5 is correct. The
//! temporary file is kept while the transfer is paused, so that only the rest must be fetched; it is removed if the transfer is
//! cancelled or fails.
//!
//! \par Restart
//! With open(), the queue is kept in a file, without the token. A transfer starts only after it has been written to the file. If
//! the program ends, even by a crash, unfinished transfers are in the queue again after the next open(). They continue when a
//! session is attached that is connected to their address and has their project open.
//!
//! \par Threads
//! Belongs to the thread of the session. Its functions do not wait for the network or the disk. The destructor aborts the running
//! transfers, and takes less than a second.
//!
//! \since 0.1
//! \sa VellTransfer, VellTransferState, VellContentReader, VellFileWatch
class VELLCLIENT_EXPORT VellTransferQueue : public QObject
{
    Q_OBJECT

public:
    explicit VellTransferQueue(QObject *parent = nullptr);
    ~VellTransferQueue() override;

    //! Reads the queue from the file at \a path, and keeps it in that file from now on. opened() or openFailed() follows. Call it
    //! once, before the first transfer is added.
    void open(const QString &path);

    //! Uses the session of \a documents for new transfers and for those that open() has read. The store of \a documents receives
    //! the document of each finished upload. \a documents may be null, and may be deleted at any time.
    void attach(VellDocuments *documents);

    //! \name Adding
    //! If no project is open, the transfer fails with VellError::Kind::NotSignedIn.
    //! \{

    //! Adds a batch: transfers with a common conflict policy, to which answerAll() applies.
    //! \param category the category of documents that uploads create
    //! \return the number of the batch
    int addBatch(VellConflictPolicy policy, const QString &category = {});

    //! Uploads the file at \a path, or the folder with all its contents, into the folder \a folderId; empty for the top level.
    //!
    //! A folder is merged with an existing folder of the same name; otherwise it is created. An entry that cannot be uploaded is
    //! added as a failed transfer with the reason: an entry that cannot be read, is neither a file nor a folder, is a link to a
    //! folder, or has a name that the service does not accept.
    //! \return the identifier of the transfer, valid for this queue object
    qint64 upload(const QString &path, const QString &folderId, int batch);
    qint64 upload(const QString &path, const QString &folderId,
                  VellConflictPolicy policy = VellConflictPolicy::Ask);

    //! Like upload(), with the name \a name on the service.
    qint64 uploadAs(const QString &path, const QString &folderId, const QString &name, int batch);

    //! Uploads the file at \a path as a new version of \a document. If the document on the service is no longer as in
    //! \a document, the transfer fails with VellError::Kind::ChangedMeanwhile.
    //! \sa VellFileWatch::queueVersion()
    qint64 uploadVersion(const QString &path, const VellDocument &document);

    //! Downloads \a document, or a folder with all its contents, into the local folder \a folder, which is created if necessary.
    //! \a document needs `_id`, `name`, `type` and `fileSize`.
    //!
    //! If the name is not valid for a local file, the transfer fails with VellError::Kind::BadName. If a folder has two documents
    //! of the same name, one gets a number. If the target is not a regular file, for example a link or a device, it is not
    //! changed, and the transfer fails with VellError::Kind::LocalFile.
    //! \return the identifier of the transfer, valid for this queue object
    qint64 download(const VellDocument &document, const QString &folder, int batch);
    qint64 download(const VellDocument &document, const QString &folder,
                    VellConflictPolicy policy = VellConflictPolicy::Ask);

    //! Like download(), to the local file or folder \a path.
    qint64 downloadAs(const VellDocument &document, const QString &path, int batch);

    //! Downloads \a version, an element of VellDocuments::history(), to the local file \a path.
    qint64 downloadVersion(const VellDocument &version, const QString &path, int batch);
    //! \}

    //! \name Commands
    //! A command has no effect if the state of the transfer does not allow it. Requests in flight are aborted at once. Commands
    //! for all transfers apply to everything that is in the queue at the time of the call: first to running transfers, then, from
    //! the event loop, to the others.
    //! \{

    //! Pauses a transfer until resume(). A small upload then starts again; other transfers continue where they stopped.
    void pause(qint64 id);

    //! Continues a paused transfer.
    void resume(qint64 id);

    //! Cancels a transfer. If the service has already created the document, it is not deleted. If a folder is cancelled while
    //! its entries are being listed, these are not added; entries that are already in the queue remain there.
    void cancel(qint64 id);

    //! Starts a failed or cancelled transfer again, with the connection of the session if that has the same project of the same
    //! service open.
    void retry(qint64 id);

    //! Moves a waiting transfer to the front of the transfers of its direction and size.
    void moveToFront(qint64 id);

    //! Pauses all transfers.
    void pauseAll();

    //! Continues all paused transfers.
    void resumeAll();

    //! Cancels all transfers.
    void cancelAll();

    //! Starts all failed transfers again, but not the cancelled ones.
    void retryAll();

    //! Removes a transfer that has ended from the queue. removed() follows.
    //! \return false if the transfer has not ended
    bool remove(qint64 id);

    //! Removes all transfers that have ended.
    void removeEnded();

    //! Answers asked(). VellConflictPolicy::Ask asks again.
    void answer(qint64 id, VellConflictPolicy decision);

    //! Answers this conflict and all others of the batch of the transfer \a id, including later ones.
    void answerAll(qint64 id, VellConflictPolicy decision);
    //! \}

    //! Limits the total speed in each direction, in bytes per second; 0 for no limit. Running transfers share the limit. A
    //! request in flight keeps its share.
    void setSpeedLimits(qint64 sentPerSecond, qint64 receivedPerSecond);

    //! Sets after how many attempts in a row without progress a transfer fails: 1 to 255. The default is 10. No attempts are made
    //! while the session is offline.
    void setAttemptLimit(int attempts);

    //! Sets how many small transfers run at the same time in each direction: 1 to 64. The default is 4.
    void setTransfersAtOnce(int count);

    //! Sets whether downloads continue with the temporary files of earlier queues, for example of an earlier run of the program.
    //! The MD5 is verified in any case. If true, the temporary files of large downloads are kept when these are cancelled. The
    //! default is false: temporary files are removed.
    void setResumesParts(bool resumes);

    //! \name Transfers
    //! \{

    //! Returns the transfer \a id. If there is none, the identifier of the result is 0.
    VellTransfer transfer(qint64 id) const;

    //! Returns all identifiers, in the order in which they were added. This takes time for each transfer: keep a copy, and update
    //! it by the signals.
    //! \sa added(), removed()
    QVector<qint64> ids() const;

    //! Returns the number of transfers.
    int count() const;

    //! Returns the totals of all transfers.
    VellTransferTotals totals() const;

    //! Returns the open question of the transfer \a id. If there is none, the identifier of the result is 0.
    //! \sa asked()
    VellTransferQuestion question(qint64 id) const;
    //! \}

Q_SIGNALS:
    //! The transfers in the file of open() are in the queue. If \a isDamaged is true, the end of the file could not be read, and
    //! transfers may be missing.
    void opened(bool isDamaged);

    //! The queue is not kept in the file of open(), or no longer: the file cannot be read or written, is not a file of this
    //! class, or is in use by another queue. Transfers continue.
    void openFailed(const VellError &error);

    //! Transfers have been added.
    void added(const QVector<qint64> &ids);

    //! Transfers have been removed.
    void removed(const QVector<qint64> &ids);

    //! The state, the progress or the error of transfers, or the totals, have changed. Emitted at most ten times per second.
    void changed(const QVector<qint64> &ids);

    //! A transfer has ended: Done, Failed or Cancelled. Emitted once, and once more after each retry().
    //! \param document uploads: the document that was created or that caused a skip; downloads: the source; otherwise a
    //!        default-constructed record
    void ended(const VellTransfer &transfer, const VellDocument &document);

    //! A conflict must be decided, with answer() or answerAll(), now or later. Other transfers continue. The question is closed by
    //! answerAll() for another transfer of the batch, pause() and cancel().
    void asked(const VellTransferQuestion &question);

    //! No transfer is waiting or running. Paused transfers and open questions do not count.
    void idle();

private:
    std::unique_ptr<class TransferQueue> d;
};
