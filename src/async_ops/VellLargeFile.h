#pragma once

#include <QString>

//! \brief The file store's record of one chunked upload, kept under the file's MD5.
//!
//! A plain value; a default record means that the store has none.
struct VellLargeFile
{
    QString _id; //!< the record's identifier; empty when the store has no record
    QString md5; //!< of the whole file
    QString fileName; //!< as given at the upload
    QString fsFileId; //!< the stored file, once it is complete
    int totalChunk = 0; //!< chunks that the file has
    int savedChunk = 0; //!< chunks that the store holds, which is also the next one to send
};
