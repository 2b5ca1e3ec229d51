#include <velldoc/transfer/UploadTask.h>

#include <QFileInfo>

namespace velldoc {

void UploadTask::refresh()
{
    const QFileInfo info(localPath);
    sizeBytes = info.size();
    modifiedAt = info.lastModified();
}

bool UploadTask::hasChangedOnDisk() const
{
    const QFileInfo info(localPath);
    return info.size() != sizeBytes || info.lastModified() != modifiedAt;
}

} // namespace velldoc
