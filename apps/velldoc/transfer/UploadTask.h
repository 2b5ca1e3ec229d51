#pragma once

#include <async_ops/VellUploadLimits.h>
#include <document_model/VellDocument.h>

#include <QDateTime>
#include <QString>

#include <optional>

namespace velldoc {

//! \brief One local file on its way to a place in the project.
struct UploadTask
{
    QString localPath;
    QString remotePath; //!< for people and for --json
    QString parentId;
    QString name; //!< there
    std::optional<VellDocument> replaced; //!< the document that gets a new version
    bool isRenamed = false; //!< the wanted name was taken
    qint64 sizeBytes = 0;
    QDateTime modifiedAt; //!< of the local file, when its size was taken

    bool isChunked() const { return sizeBytes > VellUploadLimits::WholeFileLimit; }

    //! Whether the file can be opened now: a file that is there may be open elsewhere.
    bool isReadable() const;

    //! Takes size and time anew from the disk.
    void refresh();
    bool hasChangedOnDisk() const;
};

} // namespace velldoc
