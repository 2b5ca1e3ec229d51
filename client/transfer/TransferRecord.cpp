#include <transfer/TransferRecord.h>

#include <async_ops/VellUploadLimits.h>

#include <QDataStream>
#include <QFile>
#include <QFileInfo>

namespace {

template <typename Enum>
void readEnum(QDataStream &stream, Enum &value, Enum last)
{
    qint32 number = 0;
    stream >> number;
    if (number < 0 || number > qint32(last))
        stream.setStatus(QDataStream::ReadCorruptData);
    else
        value = Enum(number);
}

template <typename Enum>
void writeEnum(QDataStream &stream, Enum value)
{
    stream << qint32(value);
}

QDataStream &operator<<(QDataStream &stream, const VellError &error)
{
    writeEnum(stream, error.kind);
    return stream << error.httpStatus << error.text << error.detail;
}

QDataStream &operator>>(QDataStream &stream, VellError &error)
{
    readEnum(stream, error.kind, VellError::Kind::Unclear);
    return stream >> error.httpStatus >> error.text >> error.detail;
}

QDataStream &operator<<(QDataStream &stream, const ReplaceBase &base)
{
    return stream << base.id << base.name << base.parentId << base.fileId << base.updatedAt;
}

QDataStream &operator>>(QDataStream &stream, ReplaceBase &base)
{
    return stream >> base.id >> base.name >> base.parentId >> base.fileId >> base.updatedAt;
}

} // namespace

ReplaceBase ReplaceBase::of(const VellDocument &document)
{
    return {document._id, document.name, document.parentId, document.fileId, document.updatedAt};
}

ReplaceBase ReplaceBase::ofFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return {};
    qint64 size = info.size();
    // For a shortcut of Windows this is the size of its target, but the shortcut itself is read.
    QFile file(path);
    if (info.isSymLink() && file.open(QIODevice::ReadOnly))
        size = file.size();
    return {path, info.fileName(), {}, QString::number(size), info.lastModified()};
}

bool ReplaceBase::operator==(const ReplaceBase &other) const
{
    return id == other.id && name == other.name && parentId == other.parentId
        && fileId == other.fileId && updatedAt == other.updatedAt;
}

bool TransferRecord::isLarge() const
{
    return !isFolder && sizeBytes > VellUploadLimits::WholeFileLimit;
}

TransferRecord childRecord(const TransferRecord &folder, const FolderEntry &entry, qint64 id)
{
    TransferRecord child;
    child.id = id;
    child.folderTransferId = folder.id;
    child.order = folder.order;
    child.scope = folder.scope;
    child.batch = folder.batch;
    child.direction = folder.direction;
    child.isFolder = entry.isFolder;
    child.localFolder = folder.localPath();
    child.localName = entry.localName;
    child.name = entry.name;
    child.sizeBytes = entry.sizeBytes;
    if (folder.direction == VellTransferDirection::Upload)
        child.folderId = folder.documentId;
    child.documentId = entry.documentId;
    child.error = entry.error;
    if (entry.error)
        child.state = VellTransferState::Failed;
    return child;
}

QDataStream &operator<<(QDataStream &stream, const TransferRecord &record)
{
    stream << record.id << record.folderTransferId << record.order << record.sizeBytes
           << record.scope << record.batch;
    writeEnum(stream, record.direction);
    writeEnum(stream, record.state);
    stream << record.isFolder << record.isSkipped << record.localFolder << record.localName
           << record.name << record.folderId << record.documentId;
    const bool isSpecial = record.error || record.decision || record.base.isSet()
        || record.trace.isSet() || !record.entityTag.isEmpty() || !record.contentId.isEmpty();
    stream << isSpecial;
    if (!isSpecial)
        return stream;
    stream << record.error << record.decision.has_value();
    writeEnum(stream, record.decision.value_or(VellConflictPolicy::Ask));
    return stream << record.base << record.trace << record.entityTag << record.contentId;
}

QDataStream &operator>>(QDataStream &stream, TransferRecord &record)
{
    stream >> record.id >> record.folderTransferId >> record.order >> record.sizeBytes
        >> record.scope >> record.batch;
    readEnum(stream, record.direction, VellTransferDirection::Download);
    readEnum(stream, record.state, VellTransferState::Cancelled);
    stream >> record.isFolder >> record.isSkipped >> record.localFolder >> record.localName
        >> record.name >> record.folderId >> record.documentId;
    bool isSpecial = false;
    stream >> isSpecial;
    if (!isSpecial)
        return stream;
    bool hasDecision = false;
    VellConflictPolicy decision = VellConflictPolicy::Ask;
    stream >> record.error >> hasDecision;
    readEnum(stream, decision, VellConflictPolicy::NewerOnly);
    if (hasDecision)
        record.decision = decision;
    return stream >> record.base >> record.trace >> record.entityTag >> record.contentId;
}

QDataStream &operator<<(QDataStream &stream, const UploadTrace &trace)
{
    return stream << trace.name << trace.base;
}

QDataStream &operator>>(QDataStream &stream, UploadTrace &trace)
{
    return stream >> trace.name >> trace.base;
}

QDataStream &operator<<(QDataStream &stream, const FolderEntry &entry)
{
    return stream << entry.localName << entry.name << entry.documentId << entry.sizeBytes
                  << entry.isFolder << entry.error;
}

QDataStream &operator>>(QDataStream &stream, FolderEntry &entry)
{
    return stream >> entry.localName >> entry.name >> entry.documentId >> entry.sizeBytes
        >> entry.isFolder >> entry.error;
}
