#pragma once

#include <service/records/Files.h>
#include <service/records/LargeFiles.h>

#include <QJsonObject>
#include <QString>

namespace service {

class ContentStore;
class Database;
class IncomingFile;

//! One chunk as a client has sent it.
struct Chunk
{
    QString md5; //!< of the whole file
    QString fileName;
    qint64 fileSize = 0;
    int index = 0;
    const IncomingFile *bytes = nullptr;
};

//! \brief Puts chunks together to a content.
//!
//! A chunk is written, on the disk, and only then counted, so that the record never says more than what is
//! held. The MD5 is computed as the chunks come and its state kept with the record: the last chunk
//! is answered as fast as any other, after a restart too.
//!
//! One object serves one request, under the lock of the file's MD5.
class ChunkUpload
{
public:
    ChunkUpload(Database &database, ContentStore &contents, const QString &userId);

    //! Takes a chunk that is the next one; another is not kept. \return the record after it.
    //! \throws HttpError 409 when the chunk speaks of another file than the record, 422 when the last chunk is there
    //! and the MD5 is not the one claimed; the record is dropped then
    QJsonObject take(const Chunk &chunk, bool isToBeForgotten);

    //! The record of that MD5, complete for a content that is there; empty without one.
    QJsonObject find(const QString &md5);

    //! Ends an upload and removes what is held of it.
    void drop(const LargeFile &record);

private:
    LargeFile recordFor(const Chunk &chunk);
    void repair(LargeFile &record);
    QJsonObject store(const Chunk &chunk, LargeFile record);
    QJsonObject complete(const LargeFile &record);

    Database &m_database;
    ContentStore &m_contents;
    Files m_files;
    LargeFiles m_records;
    const QString m_userId;
};

} // namespace service
