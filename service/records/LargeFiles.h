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
    QString fileName;
    qint64 fileSize = 0;
    int savedChunk = 0; //!< how many are held; also the next one's number
    QByteArray md5State;
    QString createdBy;

    int totalChunk() const { return chunkCount(fileSize); }
    qint64 savedBytes() const { return static_cast<qint64>(savedChunk) * ChunkBytes; }
    //! How long the chunk with that number is.
    qint64 chunkLength(int index) const;

    static int chunkCount(qint64 fileSize);
};

//! \brief The table of uploads under way. Changes belong inside a Transaction of the caller.
class LargeFiles
{
public:
    explicit LargeFiles(Database &database);

    std::optional<LargeFile> find(const QString &id);
    std::optional<LargeFile> findByMd5(const QString &md5);

    //! Adds the record; its id is set here.
    void insert(LargeFile &record, const QString &userId);
    void setSaved(const LargeFile &record);
    void remove(const QString &id);

private:
    Database &m_database;
};

} // namespace service
