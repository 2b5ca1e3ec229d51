#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace service {

class Database;

//! An upload by chunks that is in progress.
struct LargeFile
{
    static constexpr qint64 ChunkBytes = Q_INT64_C(4) * 1024 * 1024;

    QString id;
    QString md5;
    QString part; //!< the name of the part file
    QString fileName;
    qint64 fileSize = 0;
    int savedChunk = 0; //!< number of stored chunks; also the number of the next one
    QByteArray hashState; //!< of the stored chunks
    QString createdBy;

    int totalChunk() const { return chunkCount(fileSize); }
    //! Returns true if all chunks are stored and the MD5 is right.
    bool isVerified() const { return savedChunk == totalChunk(); }
    qint64 savedBytes() const { return static_cast<qint64>(savedChunk) * ChunkBytes; }
    //! Returns the size of the chunk with that number.
    qint64 chunkLength(int index) const;

    static int chunkCount(qint64 fileSize);
};

//! \brief The table of uploads by chunks: one for each user and MD5, so that users cannot damage uploads of others. Changes require a
//! Transaction.
class LargeFiles
{
public:
    explicit LargeFiles(Database &database);

    std::optional<LargeFile> find(const QString &id);
    std::optional<LargeFile> findByMd5(const QString &md5, const QString &userId);

    //! Adds an upload; sets its id and part.
    void insert(LargeFile &upload, const QString &userId);
    //! Stores the counter and the state of the digests, if the counter is still \a before. \return false if it is not, or the upload is gone
    bool setSaved(const LargeFile &upload, int before);
    void remove(const QString &id);

private:
    Database &m_database;
};

} // namespace service
