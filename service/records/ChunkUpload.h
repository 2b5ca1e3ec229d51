#pragma once

#include <service/records/Contents.h>
#include <service/records/LargeFiles.h>

#include <QByteArray>
#include <QJsonObject>
#include <QString>

namespace service {

//! One chunk as a client has sent it.
struct Chunk
{
    QString md5; //!< of the whole file
    QString fileName;
    qint64 fileSize = 0;
    int index = 0;
    QByteArray bytes;
};

//! \brief Assembles a content from the chunks that a user sends.
//!
//! A chunk is counted after it has been written to the disk, so that the upload record never counts chunks that are lost. The digests
//! are computed as the chunks arrive, and their state is stored with the upload record: the last chunk takes no longer than the
//! others, also after a restart.
class ChunkUpload
{
public:
    ChunkUpload(Database &database, ContentStore &store, Access &access);

    //! Stores \a chunk if it is the next one, and ignores it otherwise, or if the user may already download the content.
    //! \return the upload record afterwards
    //! \throws ServiceError: Conflict if the chunk and the upload record have different file sizes, or the service has another file with
    //! that MD5; Mismatch if all chunks have arrived and the MD5 is wrong: the upload is removed then
    QJsonObject take(const Chunk &chunk, bool isToBeForgotten);

    //! Returns the upload record of the user for that MD5; a complete one for a content that the user may download; nothing if there
    //! is none.
    QJsonObject find(const QString &md5);

    //! Ends an upload of the user and removes its chunks.
    //! \throws ServiceError: NotFound, Forbidden for the upload of another user, Conflict for a complete one
    void drop(const QString &id);

private:
    LargeFile uploadFor(const Chunk &chunk);
    bool isHeld(const LargeFile &upload) const;
    void startAgain(LargeFile &upload);
    bool setSaved(const LargeFile &upload, int before);
    QJsonObject present(const LargeFile &upload);
    QJsonObject store(const Chunk &chunk, LargeFile upload);
    QJsonObject finish(LargeFile upload);
    void remove(const LargeFile &upload);

    Database &m_database;
    ContentStore &m_store;
    Access &m_access;
    Contents m_contents;
    LargeFiles m_uploads;
};

} // namespace service
