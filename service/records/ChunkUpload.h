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

//! \brief Puts the chunks that one user sends together to a content.
//!
//! A chunk is written, on the disk, and only then counted, so that the record of an upload never says more than what
//! is held. The digests are computed as the chunks come and their state kept with the record: the last chunk
//! is answered as fast as any other, after a restart too.
class ChunkUpload
{
public:
    ChunkUpload(Database &database, ContentStore &store, Access &access);

    //! Takes a chunk that is the next one; another is not kept. Of a content that the user may download already
    //! nothing is needed. \return the record after it
    //! \throws ServiceError: Conflict when the chunk has another file size than the record, or the service holds
    //! another file with that MD5; Mismatch when the last chunk is there and the MD5 is not the one claimed, and
    //! the record is dropped then
    QJsonObject take(const Chunk &chunk, bool isToBeForgotten);

    //! The record of the user's upload with that MD5, complete for a content that is there and that the user may
    //! download; empty without one.
    QJsonObject find(const QString &md5);

    //! Ends the user's upload and removes what is held of it.
    //! \throws ServiceError: NotFound, Forbidden for another user's, Conflict for one that is complete
    void drop(const QString &id);

private:
    LargeFile uploadFor(const Chunk &chunk);
    bool isHeld(const LargeFile &upload) const;
    void startAgain(LargeFile &upload);
    void setSaved(const LargeFile &upload);
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
