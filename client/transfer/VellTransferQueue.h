#pragma once

#include <transfer/VellTransfer.h>
#include <vellclient_export.h>

#include <QObject>
#include <QStringList>
#include <QVector>

#include <memory>

class VellDocuments;

//! \brief Uploads and downloads, each brought to its end once.
//!
//! \code
//! VellTransferQueue queue;
//! queue.attach(&documents);
//! connect(&queue, &VellTransferQueue::ended, this, &Window::showEnd);
//! queue.upload(path, folderId, VellConflictPolicy::KeepBoth);
//! \endcode
//!
//! \par Order
//! In each direction up to four small files and folders are transferred at once, beside one large file (more than
//! VellUploadLimits::WholeFileLimit bytes), in the order in which they were added. Transfers to one name in one folder follow one
//! another.
//!
//! \par Service
//! Each transfer keeps the connection, the project and the user that the session had when it was added. After a failure that can
//! pass (VellError::isTemporary()) it is tried again, after growing pauses, until ten attempts in a row (setAttemptLimit()) have moved
//! nothing. While the session is offline the transfers wait, and go on by themselves when it is back.
//!
//! \par One document for each upload
//! Before an attempt that follows another one, and after each failure, the service is asked whether the document is there all the
//! same. What a conflict policy or an answer decides is verified at the service immediately before the document
//! is made. A document that has been changed since it was looked at is not replaced: the transfer asks again, or ends with
//! VellError::Kind::ChangedMeanwhile.
//!
//! \par Disk
//! A download is received into a file beside the target, which gets the target's name once its MD5 is right. Pausing keeps
//! it, and the rest is fetched later; cancelling and failing remove it.
//!
//! \par Restart
//! After open() the queue is on the disk, without the token; nothing is done for a transfer before it is there. Transfers that were under way when the program ended, however it
//! ended, wait in the queue again, and go on once a session is attached that is connected to their address with their
//! project open.
//!
//! \par Threads
//! Belongs to the thread of the session. No function waits for the network or the disk. The destructor aborts what is
//! under way, and is done in less than a second.
class VELLCLIENT_EXPORT VellTransferQueue : public QObject
{
    Q_OBJECT

public:
    explicit VellTransferQueue(QObject *parent = nullptr);
    ~VellTransferQueue() override;

    //! Keeps the queue in the file \a path from now on, and brings back what is in it. opened() or openFailed() follows. Call it
    //! once, before anything is added.
    void open(const QString &path);

    //! Transfers that are added from now on, and those that were brought back, go over the session of \a documents, whose
    //! store learns of each finished upload. Null for none. \a documents may be deleted at any time.
    void attach(VellDocuments *documents);

    //! \name Adding
    //! Without an open project the transfer fails, with VellError::Kind::NotSignedIn.
    //! \{

    //! Transfers that belong together: an answer "for all" is for those of one batch.
    //! \param category of the documents that uploads make
    int addBatch(VellConflictPolicy policy, const QString &category = {});

    //! Uploads the file or the folder with everything below it at \a path into the folder \a folderId; empty for the top level.
    //!
    //! A folder of the same name is taken, and else one is made. What cannot be uploaded - an entry that cannot be read, is neither
    //! a file nor a folder, is a link to a folder, or has a name that the service does not take - becomes a
    //! failed transfer with the reason.
    //! \return the identifier of the transfer, valid in this queue object
    qint64 upload(const QString &path, const QString &folderId, int batch);
    qint64 upload(const QString &path, const QString &folderId,
                  VellConflictPolicy policy = VellConflictPolicy::Ask);

    //! The same under the name \a name.
    qint64 uploadAs(const QString &path, const QString &folderId, const QString &name, int batch);

    //! Makes the file at \a path a new version of \a document, unless that has been changed since it was as \a document
    //! says: the transfer fails with VellError::Kind::ChangedMeanwhile then.
    qint64 uploadVersion(const QString &path, const VellDocument &document);

    //! Fetches \a document, of which `_id`, `name`, `type` and `fileSize` are needed, a folder with everything below it, into the
    //! local folder \a folder, which is made if it is missing.
    //!
    //! A document whose name no local file can have fails with VellError::Kind::BadName; of two documents with one name in a folder one
    //! gets a number. A target that is a link, a device or the like is not touched: VellError::Kind::LocalFile.
    qint64 download(const VellDocument &document, const QString &folder, int batch);
    qint64 download(const VellDocument &document, const QString &folder,
                    VellConflictPolicy policy = VellConflictPolicy::Ask);

    //! The same, as the local file or folder \a path.
    qint64 downloadAs(const VellDocument &document, const QString &path, int batch);

    //! Fetches the content of \a version, as VellDocuments::history() has it, as the local file \a path.
    qint64 downloadVersion(const VellDocument &version, const QString &path, int batch);
    //! \}

    //! \name Commands
    //! Each does nothing for a transfer whose state it does not fit. What is on the wire is stopped at once. The commands for all take
    //! effect on everything that is in the queue now, running transfers first; the others follow from the event loop.
    //! \{

    //! Stops a transfer until resume(). A small upload starts again then, everything else goes on where it was.
    void pause(qint64 id);
    void resume(qint64 id);

    //! Ends a transfer as cancelled. If the service has made the document meanwhile it stays. What comes from a folder that is
    //! cancelled while its entries are being looked up is not added; its entries in the queue stay.
    void cancel(qint64 id);

    //! Starts a failed or cancelled transfer again. It takes the session's connection if that leads to the same project of the
    //! same service.
    void retry(qint64 id);

    //! Makes a waiting transfer the next one of its direction and size.
    void moveToFront(qint64 id);

    void pauseAll();
    void resumeAll();
    void cancelAll();
    //! Of the failed ones only.
    void retryAll();

    //! Forgets a transfer that has ended; removed() follows. \return false if it has not
    bool remove(qint64 id);
    void removeEnded();

    //! Answers asked(). VellConflictPolicy::Ask asks again.
    void answer(qint64 id, VellConflictPolicy decision);
    //! The same for all conflicts of the batch of \a id, also those to come.
    void answerAll(qint64 id, VellConflictPolicy decision);
    //! \}

    //! How much is sent and received in all, in bytes per second; 0 for no limit. The running transfers share it; a request that
    //! is under way keeps its share.
    void setSpeedLimits(qint64 sentPerSecond, qint64 receivedPerSecond);

    //! How many attempts in a row that move nothing a transfer has, from now on; at least 1, at most 255, ten at first. While
    //! the session is offline no attempts are made.
    void setAttemptLimit(int attempts);

    //! How many small transfers of each direction run at once, from now on; 1 to 64, four at first.
    void setTransfersAtOnce(int count);

    //! Whether downloads go on with what an earlier queue has left beside their targets, in another run of the program for example. What
    //! arrives is compared with the MD5 in any case. Then the parts of large files stay when their downloads are cancelled. False at
    //! first: such parts are removed.
    void setResumesParts(bool resumes);

    //! \name Looking
    //! \{
    //! With the identifier 0 if there is none.
    VellTransfer transfer(qint64 id) const;
    //! All identifiers, in the order of adding. Takes time for each; keep a copy and follow the signals.
    QVector<qint64> ids() const;
    int count() const;
    VellTransferTotals totals() const;
    //! The open question of the transfer \a id; with the identifier 0 if there is none.
    VellTransferQuestion question(qint64 id) const;
    //! \}

Q_SIGNALS:
    //! What the file of open() held is in the queue. \a isDamaged: its end could not be read, and transfers may be missing.
    void opened(bool isDamaged);
    //! The queue is not kept on the disk, or from now on not any more: the file cannot be read or written, is none of this
    //! class, or is in use by another queue. Transfers go on.
    void openFailed(const VellError &error);

    void added(const QVector<qint64> &ids);
    void removed(const QVector<qint64> &ids);

    //! State, progress or error of transfers, or the totals, have changed. Emitted at most ten times a second.
    void changed(const QVector<qint64> &ids);

    //! A transfer is Done, Failed or Cancelled. Once for each transfer and retry().
    //! \param document what an upload has made or has found in its place, or the source of a download; else a default record
    void ended(const VellTransfer &transfer, const VellDocument &document);

    //! Answer with answer() or answerAll(), now or later; other transfers go on. After an answer for all, pause() or
    //! cancel() the question is void.
    void asked(const VellTransferQuestion &question);

    //! No transfer waits or runs any more; those that ask or are paused do not count.
    void idle();

private:
    std::unique_ptr<class TransferQueue> d;
};
