#pragma once

#include <operations/VellError.h>
#include <vellclient_export.h>

#include <document_model/VellDocument.h>

#include <QMetaType>
#include <QString>

#include <array>
#include <chrono>
#include <optional>

enum class VellTransferDirection {
    Upload,
    Download,
};

//! \brief Where a transfer is. The last three are its ends.
enum class VellTransferState {
    Waiting, //!< for its turn, for the next attempt, or for the service to come back
    Hashing, //!< a large file is read for its MD5
    Sending,
    Receiving,
    Saving, //!< the content is there; the document is made, or the local file put into its place
    Asking, //!< VellTransferQueue::asked() has been emitted, or will be once earlier questions are answered
    Paused,
    Done, //!< also if it was skipped
    Failed,
    Cancelled,
};

//! \brief What to do if the name is taken at the target.
enum class VellConflictPolicy {
    Ask,
    Replace, //!< an upload becomes a new version, a download replaces the local file
    KeepBoth, //!< under a free name
    Skip,
    NewerOnly, //!< Replace if the source has been changed later than the target, else Skip
};

//! \brief One transfer as it is now: a copy that does not change.
struct VellTransfer
{
    qint64 id = 0; //!< 0 for none
    qint64 folderTransferId = 0; //!< of the transfer of a folder that has found it; 0 for none
    VellTransferDirection direction = VellTransferDirection::Upload;
    VellTransferState state = VellTransferState::Waiting;
    bool isFolder = false; //!< its Done means that its entries are in the queue
    bool isSkipped = false; //!< nothing was transferred, by the conflict policy
    QString localPath;
    QString name; //!< on the service
    QString folderId; //!< on the service; of uploads
    QString documentId; //!< of a download: the source. Of a finished upload: the result
    qint64 sizeBytes = -1; //!< -1 as long as it is not known
    qint64 doneBytes = 0; //!< sent or received; all of them only at the end
    int batch = 0; //!< see VellTransferQueue::addBatch()
    VellError error; //!< why it failed; while it waits, why the last attempt did

    bool isEnded() const
    {
        return state == VellTransferState::Done || state == VellTransferState::Failed
            || state == VellTransferState::Cancelled;
    }
};

//! \brief All transfers of a queue together.
struct VELLCLIENT_EXPORT VellTransferTotals
{
    static constexpr int StateCount = 10;

    int count(VellTransferState state) const { return counts.at(std::size_t(state)); }
    //! How many have not ended.
    int openCount() const;

    std::array<int, StateCount> counts{}; //!< by state
    qint64 totalBytes = 0; //!< of all that have neither failed nor been cancelled
    qint64 doneBytes = 0; //!< of these
    qint64 bytesPerSecond = 0; //!< over the last seconds, both directions
    std::optional<std::chrono::seconds> timeLeft; //!< nothing while it cannot be told
};

//! \brief Something is at the target already, and the policy of the batch is VellConflictPolicy::Ask.
struct VellTransferQuestion
{
    qint64 id = 0; //!< of the transfer
    bool hasChanged = false; //!< the target has been changed since the last answer to this question
    VellDocument existing; //!< what an upload would replace; of a download the source
    QString localPath; //!< the source of an upload, or what a download would replace
    QString
        freeName; //!< the one that VellConflictPolicy::KeepBoth would give, by what is there now
    bool canReplace = true; //!< false if a folder is in the way
};

Q_DECLARE_METATYPE(VellTransfer)
Q_DECLARE_METATYPE(VellTransferTotals)
Q_DECLARE_METATYPE(VellTransferQuestion)
