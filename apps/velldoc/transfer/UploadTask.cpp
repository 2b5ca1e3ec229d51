#include <velldoc/transfer/UploadTask.h>

#include <QFile>
#include <QFileInfo>

namespace velldoc {

namespace {

//! Of what would be sent; -1 for a file that cannot be read. The size that QFileInfo has of a shortcut of
//! Windows is that of the file behind it.
qint64 readableBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.size() : -1;
}

} // namespace

bool UploadTask::isReadable() const
{
    return readableBytes(localPath) >= 0;
}

void UploadTask::refresh()
{
    sizeBytes = qMax(qint64(0), readableBytes(localPath));
    modifiedAt = QFileInfo(localPath).lastModified();
}

bool UploadTask::hasChangedOnDisk() const
{
    return readableBytes(localPath) != sizeBytes
        || QFileInfo(localPath).lastModified() != modifiedAt;
}

} // namespace velldoc
