#pragma once

#include <operations/ServiceScope.h>
#include <transfer/VellTransfer.h>

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <vector>

class QDataStream;

//! \brief The state of a target when it was looked at, which a replacement must find again.
struct ReplaceBase
{
    bool isSet() const { return !id.isEmpty(); }

    static ReplaceBase of(const VellDocument &document);
    //! Of the local file at \a path; not set if there is none.
    static ReplaceBase ofFile(const QString &path);

    bool operator==(const ReplaceBase &other) const;
    bool operator!=(const ReplaceBase &other) const { return !(*this == other); }

    QString id; // of a local file its path
    QString name;
    QString parentId;
    QString fileId; // of a local file its size
    QDateTime updatedAt;
};

//! \brief A document request that may have reached the service.
struct UploadTrace
{
    bool isSet() const { return !name.isEmpty(); }

    QString name; // of the document
    ReplaceBase base; // of a new version
};

//! \brief All that is known of one transfer: what is kept on the disk, and what an attempt is given.
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
    QString localFolder; // without a "/" at the end, but for that of the root
    QString localName;
    QString name;
    QString folderId;
    QString documentId;

    // What few have.
    VellError error;
    std::optional<VellConflictPolicy> decision; // the answer for this transfer alone
    ReplaceBase base; // what the decision or the caller wants to be replaced
    UploadTrace trace;
    QByteArray entityTag; // of the part of a download that is on the disk
    QString contentId; // of a download that is not of the current version
};

//! \brief An entry of a folder that is transferred.
struct FolderEntry
{
    QString localName;
    QString name;
    QString documentId;
    qint64 sizeBytes = -1;
    bool isFolder = false;
    VellError error; // why it cannot be transferred
};

//! The transfer of an entry of \a folder, whose own record tells where it has been put.
TransferRecord childRecord(const TransferRecord &folder, const FolderEntry &entry, qint64 id);

QDataStream &operator<<(QDataStream &stream, const TransferRecord &record);
QDataStream &operator>>(QDataStream &stream, TransferRecord &record);
QDataStream &operator<<(QDataStream &stream, const UploadTrace &trace);
QDataStream &operator>>(QDataStream &stream, UploadTrace &trace);
QDataStream &operator<<(QDataStream &stream, const FolderEntry &entry);
QDataStream &operator>>(QDataStream &stream, FolderEntry &entry);
