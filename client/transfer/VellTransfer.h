#pragma once

#include <operations/VellError.h>
#include <vellclient_export.h>

#include <document_model/VellDocument.h>

#include <QMetaType>
#include <QString>

#include <array>
#include <chrono>
#include <optional>

//! The direction of a transfer.
//! \since 0.1
enum class VellTransferDirection {
    Upload,
    Download,
};

//! \brief The state of a transfer. Done, Failed and Cancelled are final.
//!
//! \code{.unparsed}
//! upload, small file:  Waiting --> Sending --> Saving --> Done
//! upload, large file:  Waiting --> Hashing --> Sending --> Saving --> Done
//! upload, folder:      Waiting --> Sending --> Saving --> Done, with its entries in the queue
//! download, file:      Waiting --> Receiving --> Saving --> Done
//! download, folder:    Waiting --> Receiving --> Saving --> Done, with its entries in the queue
//!
//! Hashing, Sending, Receiving, Saving:
//!     the name is taken, and the policy is Ask            --> Asking
//!     the name is taken, and the policy is Skip           --> Done, VellTransfer::isSkipped is true
//!     another name must be used                           --> Sending
//!     temporary failure, and attempts are left            --> Waiting
//!     any other failure                                   --> Failed
//!
//! answer(), answerAll()   Asking --> Waiting
//! pause()                 any but the final states --> Paused;
//!                         if the document has been created or the file saved already --> Done
//! resume()                Paused --> Waiting
//! cancel()                any but the final states --> Cancelled
//! retry()                 Failed, Cancelled --> Waiting
//! \endcode
//! pause() and cancel() have no effect on a folder in the state Saving. The functions are those of VellTransferQueue.
//!
//! \since 0.1
enum class VellTransferState {
    Waiting, //!< for a free place, the next attempt, or the service
    Hashing, //!< the MD5 of a large file is computed
    Sending, //!< a content is sent, or a folder is created
    Receiving, //!< a content is received, or the entries of a folder are listed
    Saving, //!< the content is complete; the document is being created, or the local file renamed
    Asking, //!< VellTransferQueue::asked() has been emitted, or will be after earlier questions
    Paused,
    Done, //!< finished or skipped
    Failed,
    Cancelled,
};

//! \brief What happens if the name is already taken at the target.
//!
//! \since 0.1
enum class VellConflictPolicy {
    Ask, //!< VellTransferQueue::asked() is emitted
    Replace, //!< an upload creates a new version, a download replaces the local file
    KeepBoth, //!< a free name is used
    Skip,
    NewerOnly, //!< Replace if the source is newer than the target, otherwise Skip
};

//! \brief A snapshot of one transfer.
//!
//! \since 0.1
//! \sa VellTransferQueue::transfer()
struct VellTransfer
{
    qint64 id = 0; //!< 0 if there is no such transfer
    qint64 folderTransferId = 0; //!< the transfer of the folder above it; 0 if there is none
    VellTransferDirection direction = VellTransferDirection::Upload;
    VellTransferState state = VellTransferState::Waiting;
    bool isFolder = false; //!< a folder is Done when its entries are in the queue
    bool isSkipped = false; //!< nothing was transferred, because of the conflict policy
    QString localPath;
    QString name; //!< on the service
    QString folderId; //!< uploads: the folder on the service
    QString documentId; //!< downloads: the source; finished uploads: the result
    qint64 sizeBytes = -1; //!< -1 if it is not known
    qint64 doneBytes = 0; //!< sent or received; equal to sizeBytes only at the end
    int batch = 0; //!< see VellTransferQueue::addBatch()
    VellError error; //!< the reason of a failure, also of the last attempt while it waits

    //! Returns true if the state is final.
    bool isEnded() const
    {
        return state == VellTransferState::Done || state == VellTransferState::Failed
            || state == VellTransferState::Cancelled;
    }
};

//! \brief The totals of all transfers of a queue.
//!
//! \since 0.1
//! \sa VellTransferQueue::totals()
struct VELLCLIENT_EXPORT VellTransferTotals
{
    static constexpr int StateCount = 10; //!< number of values of VellTransferState

    //! Returns the number of transfers in \a state.
    int count(VellTransferState state) const { return counts.at(std::size_t(state)); }

    //! Returns the number of transfers that have not ended.
    int openCount() const;

    std::array<int, StateCount> counts{}; //!< by state
    qint64 totalBytes = 0; //!< without failed and cancelled transfers
    qint64 doneBytes = 0; //!< the transferred part of totalBytes
    qint64 bytesPerSecond = 0; //!< over the last seconds, in both directions
    std::optional<std::chrono::seconds> timeLeft; //!< no value if it cannot be estimated
};

//! \brief A conflict that the user must decide: the name is taken at the target, and the policy of the batch is
//! VellConflictPolicy::Ask.
//!
//! \since 0.1
//! \sa VellTransferQueue::asked(), VellTransferQueue::answer()
struct VellTransferQuestion
{
    qint64 id = 0; //!< of the transfer
    bool hasChanged = false; //!< the target has changed since the last answer to this question
    VellDocument existing; //!< uploads: the document to be replaced; downloads: the source
    QString localPath; //!< uploads: the source; downloads: the file to be replaced
    QString freeName; //!< the name for VellConflictPolicy::KeepBoth, as of now
    bool canReplace = true; //!< false if the existing entry is a folder
};

Q_DECLARE_METATYPE(VellTransfer)
Q_DECLARE_METATYPE(VellTransferTotals)
Q_DECLARE_METATYPE(VellTransferQuestion)
