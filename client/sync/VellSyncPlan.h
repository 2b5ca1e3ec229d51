#pragma once

#include <operations/VellOperation.h>
#include <vellclient_export.h>

#include <document_model/VellDocument.h>

#include <QHash>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>

class VellSession;

//! The direction of a VellSyncPlan.
//! \since 0.1
enum class VellSyncDirection {
    Up, //!< the folder on the service is made equal to the local one
    Down, //!< the local folder is made equal to the one on the service
};

//! \brief Options of a comparison.
//!
//! \since 0.1
//! \sa VellSyncPlan::make()
struct VellSyncOptions
{
    //! How two files with the same path are compared.
    enum class Comparison {
        //! Files are equal if they have the same size and the source is not newer than the target. The time on the service is
        //! that of the last change of the record, which may be later than that of the content.
        SizeAndTime,
        //! Files are equal if they have the same size and MD5. Reads each local file of the same size, and sends a request for
        //! each.
        Content,
    };

    //! What happens to entries of the target that the source does not have.
    enum class Extras {
        Keep,
        Remove, //!< also detects moved files among the new and the extra files of the same size
    };

    VellSyncDirection direction = VellSyncDirection::Up;
    Comparison comparison = Comparison::SizeAndTime;
    Extras extras = Extras::Keep;

    //! If this is not empty, only files that match one of these patterns, and the folders above them, are included.
    //!
    //! `*` and `?` match characters other than `/`, `**` matches any characters, `[...]` one character of a set. A pattern with a
    //! `/` is matched with the path from the root, any other one with the name at any depth. A pattern that ends with `/` matches
    //! only folders. On Windows patterns are case-insensitive.
    QStringList include;
    //! Entries that match one of these patterns are excluded, with all their contents. A pattern that begins with `!` includes
    //! again what an earlier one has excluded.
    QStringList exclude;
    //! A file in the local root whose lines are added to #exclude. Empty lines and lines that begin with `#` are ignored.
    QString ignoreFile = QStringLiteral(".vellignore");
};

//! \brief One step of a VellSyncPlan.
//!
//! \since 0.1
struct VellSyncStep
{
    //! What the step does.
    enum class Action {
        CreateFolder,
        Move, //!< move the entry #fromPath of the target to #path
        Create, //!< upload a new document, or download a new file
        Replace, //!< upload a new version, or replace the local file
        Remove,
        Leave, //!< nothing
    };
    //! Why it does this.
    enum class Reason {
        New, //!< the target has no entry with this path
        OtherSize,
        SourceIsNewer,
        OtherContent,
        SameContentElsewhere, //!< Action::Move
        NotInSource, //!< Action::Remove, and Action::Leave if extras are kept
        Same,
    };

    Action action = Action::Leave;
    Reason reason = Reason::Same;
    QString path; //!< from the root, separated by "/"
    QString fromPath; //!< Action::Move: the present path in the target
    bool isFolder = false;
    bool isTargetNewer = false; //!< Action::Replace: the target is newer than the source
    qint64 sizeBytes = 0; //!< number of bytes to be transferred
    QString localPath; //!< absolute, also for a file that does not exist yet
    QString fromLocalPath; //!< Action::Move: the present local path
    VellDocument document; //!< on the service; without `_id` if it does not exist yet
    QString
        parentId; //!< the folder on the service; empty at the top level, and if it does not exist yet
    QString parentPath; //!< the path of the folder, which is the path of its Action::CreateFolder
};

//! \brief An entry that is excluded from a plan on both sides, with all its contents, because it cannot be transferred.
//!
//! These are: links, which are not followed; entries that are neither files nor folders, or cannot be read; names that are not
//! valid on the service or on the local disk; names that occur several times on the service; a file on one side and a folder on
//! the other.
//!
//! \since 0.1
struct VellSyncProblem
{
    QString path; //!< from the root, separated by "/"
    VellError error;
};

//! \brief The differences between a local folder and a folder of the service, and the steps that make one equal to the other.
//!
//! Making a plan changes nothing. The steps are in an order in which they can be executed: creation of folders from the top, moves,
//! transfers, removal from the bottom. Entries may change in the meantime: verify the conditions of each step.
//!
//! \since 0.1
//! \sa VellSyncMemory, VellTransferQueue
struct VELLCLIENT_EXPORT VellSyncPlan
{
    VellSyncOptions options;
    QString localRoot; //!< absolute
    QString remoteRootId; //!< empty for the top level
    QString projectId;

    QList<VellSyncStep> steps; //!< one for each path of both sides without #problems and #excluded
    QList<VellSyncProblem> problems;
    QStringList excluded; //!< paths that the filters exclude; a folder stands for all its contents

    //! Returns the number of bytes that the steps transfer.
    qint64 bytesToTransfer() const;

    //! Returns the number of steps with \a action.
    int count(VellSyncStep::Action action) const;

    //! Returns true if a step does more than VellSyncStep::Action::Leave.
    bool hasChanges() const;

    //! Compares the local folder \a localRoot with the folder \a remoteRootId of the open project. VellOperation::progressed()
    //! reports the bytes of local files that have been read.
    //!
    //! Runs on another thread, and sends one request for the whole remote tree, which a service may limit to 100,000 entries.
    //! Fails with VellError::Kind::LocalFile if \a localRoot is not a readable folder; for VellSyncDirection::Down it may be
    //! missing.
    static VellResult<VellSyncPlan> *make(VellSession *session, const QString &localRoot,
                                          const QString &remoteRootId,
                                          const VellSyncOptions &options);

    //! Requests the identifiers of the contents of the local files \a paths, by path: the `fileId` of documents with the same
    //! content. An identifier is empty if the service does not have the content, or the user must not download it. Files that
    //! cannot be read are not in the result.
    //!
    //! Reads each file, and sends a request for each. VellOperation::progressed() reports the bytes that have been read.
    static VellResult<QHash<QString, QString>> *contentIds(VellSession *session,
                                                           const QStringList &paths);
};

Q_DECLARE_METATYPE(VellSyncPlan)
