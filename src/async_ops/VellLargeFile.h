#pragma once

#include <QString>

//! \brief The upload record that the service keeps for an upload by chunks, identified by the MD5 of the file.
//!
//! A value type. A default-constructed one means that the service has none.
//!
//! \since 0.1
struct VellLargeFile
{
    QString _id; //!< identifier of the upload record; empty if there is none
    QString md5; //!< of the whole file
    QString fileName; //!< name of the file
    QString fsFileId; //!< identifier of the content, once it is complete
    int totalChunk = 0; //!< number of chunks of the file
    int savedChunk =
        0; //!< number of chunks that the service has; also the number of the next chunk
};
