#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace service {

class Database;

//! An upload by chunks that is under way.
struct LargeFile
{
    static constexpr qint64 ChunkBytes = Q_INT64_C(4) * 1024 * 1024;

    QString id;
    QString md5;
    QString part; //!< the name of the part file
    QString fileName;
    qint64 fileSize = 0;
    int savedChunk = 0; //!< how many are held; also the next one's number
    QByteArray hashState; //!< of the chunks held
    QString createdBy;

    int totalChunk() const { return chunkCount(fileSize); }
    //! All chunks are held and the MD5 is the one claimed.
    bool isVerified() const { return savedChunk == totalChunk(); }
    qint64 savedBytes() const { return static_cast<qint64>(savedChunk) * ChunkBytes; }
    //! How long the chunk with that number is.
    qint64 chunkLength(int index) const;

    static int chunkCount(qint64 fileSize);
};

//! \brief The table of uploads under way: one for each user and MD5, so that nobody can harm another's. Changes belong inside a Transaction of the caller.
class LargeFiles
{
public:
    explicit LargeFiles(Database &database);

    std::optional<LargeFile> find(const QString &id);
    std::optional<LargeFile> findByMd5(const QString &md5, const QString &userId);

    //! Adds the upload; its id and part are set here.
    void insert(LargeFile &upload, const QString &userId);
    void setSaved(const LargeFile &upload);
    void remove(const QString &id);

private:
    Database &m_database;
};

} // namespace service
