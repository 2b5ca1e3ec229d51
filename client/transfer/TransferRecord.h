#pragma once

#include <operations/ServiceScope.h>
#include <transfer/VellTransfer.h>

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <vector>

class QDataStream;

//! \brief The state of a target when the conflict was decided. A target in another state is not replaced.
struct ReplaceBase
{
    bool isSet() const { return !id.isEmpty(); }

    static ReplaceBase of(const VellDocument &document);
    //! Returns the state of the local file at \a path; not set if there is none.
    static ReplaceBase ofFile(const QString &path);

    bool operator==(const ReplaceBase &other) const;
    bool operator!=(const ReplaceBase &other) const { return !(*this == other); }

    QString id; // the path of a local file
    QString name;
    QString parentId;
    QString fileId; // the size of a local file
    QDateTime updatedAt;
};

//! \brief A request for a document that the service may have received.
struct UploadTrace
{
    bool isSet() const { return !name.isEmpty(); }

    QString name; // of the document
    ReplaceBase base; // of a new version
};

//! \brief All fields of a transfer, as stored in the journal and used by an attempt.
struct TransferRecord
{
    QString localPath() const { return localFolder + QLatin1Char('/') + localName; }
    bool isLarge() const;

    qint64 id = 0;
    qint64 folderTransferId = 0;
    qint64 order = 0;
    qint64 sizeBytes = -1;
    int scope = 0;
    int batch = 0;
    VellTransferDirection direction = VellTransferDirection::Upload;
    VellTransferState state = VellTransferState::Waiting;
    bool isFolder = false;
    bool isSkipped = false;
    QString localFolder; // without a "/" at the end, except for the root
    QString localName;
    QString name;
    QString folderId;
    QString documentId;

    // Rarely used.
    VellError error;
    std::optional<VellConflictPolicy> decision; // the answer for this transfer only
    ReplaceBase base; // the state of the document or file to be replaced
    UploadTrace trace;
    QByteArray entityTag; // of the temporary file of a download
    QString contentId; // of a download of an older version
};

//! \brief An entry of a folder that is transferred.
struct FolderEntry
{
    QString localName;
    QString name;
    QString documentId;
    qint64 sizeBytes = -1;
    bool isFolder = false;
    VellError error; // the reason if it cannot be transferred
};

//! Returns the transfer of an entry of \a folder. The record of the folder has the target.
TransferRecord childRecord(const TransferRecord &folder, const FolderEntry &entry, qint64 id);

QDataStream &operator<<(QDataStream &stream, const TransferRecord &record);
QDataStream &operator>>(QDataStream &stream, TransferRecord &record);
QDataStream &operator<<(QDataStream &stream, const UploadTrace &trace);
QDataStream &operator>>(QDataStream &stream, UploadTrace &trace);
QDataStream &operator<<(QDataStream &stream, const FolderEntry &entry);
QDataStream &operator>>(QDataStream &stream, FolderEntry &entry);
