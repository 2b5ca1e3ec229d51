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

enum class VellSyncDirection {
    Up, //!< the folder on the service becomes like the local one
    Down, //!< the local folder becomes like the one on the service
};

//! \brief What is to be compared, and how.
struct VellSyncOptions
{
    //! How two files of one path are told to be the same.
    enum class Comparison {
        //! Of equal size, and the source has not been changed later than the target. The service's time is that of the record's latest
        //! change, which may be another one than that of the content.
        SizeAndTime,
        //! Of equal size and MD5. Reads every local file whose size is right, and asks the service about each.
        Content,
    };

    //! What happens to entries of the target that the source does not have.
    enum class Extras {
        Keep,
        Remove, //!< also looks for files that have been moved, among new ones and extras of the same size
    };

    VellSyncDirection direction = VellSyncDirection::Up;
    Comparison comparison = Comparison::SizeAndTime;
    Extras extras = Extras::Keep;

    //! If there are any, only files that match one of these patterns, and the folders on the way to them.
    //!
    //! `*` and `?` stand for characters other than `/`, `**` for any, `[...]` for one of a set. A pattern with a `/` is for the path
    //! from the root, any other one for a name at any depth; one that ends with `/` is for folders only. Windows does not regard case.
    QStringList include;
    //! Without what matches one of these patterns, with everything below it. A pattern that begins with `!` takes back
    //! what an earlier one excludes.
    QStringList exclude;
    //! A file in the local root whose lines are added to #exclude; empty lines and those that begin with `#` have no meaning.
    QString ignoreFile = QStringLiteral(".vellignore");
};

//! \brief One thing to do, or to leave as it is, with all that is needed for it.
struct VellSyncStep
{
    enum class Action {
        CreateFolder,
        Move, //!< the entry #fromPath of the target gets the path #path
        Create, //!< upload a new document, or download to a new file
        Replace, //!< upload a new version, or download over the local file
        Remove,
        Leave,
    };
    enum class Reason {
        New, //!< the target has nothing of this path
        OtherSize,
        SourceIsNewer,
        OtherContent,
        SameContentElsewhere, //!< of Move
        NotInSource, //!< of Remove, and of Leave if extras are kept
        Same,
    };

    Action action = Action::Leave;
    Reason reason = Reason::Same;
    QString path; //!< from the root, separated by "/"
    QString fromPath; //!< of Move, in the target
    bool isFolder = false;
    bool isTargetNewer = false; //!< of Replace: the target has been changed later than the source
    qint64 sizeBytes = 0; //!< that are transferred
    QString localPath; //!< absolute; also if the file is not there yet
    QString fromLocalPath; //!< of Move
    VellDocument document; //!< on the service; without `_id` if there is none yet
    QString
        parentId; //!< on the service, of #path; empty at the top level, and for a folder that is not there yet
    QString parentPath; //!< of #path: tells which CreateFolder makes its folder
};

//! \brief An entry that the plan leaves out on both sides, with everything below it, because it cannot be transferred.
//!
//! A link, which is not followed; what is neither a file nor a folder, or cannot be read; a name that the service or the local disk cannot
//! have, or that the service has several times; a file on one side and a folder on the other.
struct VellSyncProblem
{
    QString path; //!< from the root, separated by "/"
    VellError error;
};

//! \brief How a local folder and a folder of the service differ, and what makes one like the other.
//!
//! The plan itself is the dry run: nothing is changed by making it. The steps are in an order in which they can be
//! done: folders from the top, moves, contents, removals from the bottom. Entries may change until then: verify what a step relies on.
struct VELLCLIENT_EXPORT VellSyncPlan
{
    VellSyncOptions options;
    QString localRoot; //!< absolute
    QString remoteRootId; //!< empty for the top level
    QString projectId;

    QList<VellSyncStep> steps; //!< one for each path of both sides that is in none of the next two
    QList<VellSyncProblem> problems;
    QStringList
        excluded; //!< paths that the filters leave out; of a folder with everything below it

    qint64 bytesToTransfer() const;
    int count(VellSyncStep::Action action) const;
    bool hasChanges() const;

    //! Compares the local folder \a localRoot with the folder \a remoteRootId of the open project. VellOperation::progressed() tells the
    //! bytes of local files that have been read.
    //!
    //! Works on another thread, with one request for the whole remote tree, which a service may limit to 100,000 entries. Fails with
    //! VellError::Kind::LocalFile if \a localRoot is no folder that can be read; for Down it may be missing.
    static VellResult<VellSyncPlan> *make(VellSession *session, const QString &localRoot,
                                          const QString &remoteRootId,
                                          const VellSyncOptions &options);

    //! The service's identifiers of the contents of the local files \a paths, by path: `fileId` of a document with the same content. Empty
    //! for a content that the service does not have, or that the user may not download; a file that cannot be read is missing.
    //!
    //! Reads each file, and asks the service about each. VellOperation::progressed() tells the bytes that have been read.
    static VellResult<QHash<QString, QString>> *contentIds(VellSession *session,
                                                           const QStringList &paths);
};

Q_DECLARE_METATYPE(VellSyncPlan)
