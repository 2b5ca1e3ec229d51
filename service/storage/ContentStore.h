#pragma once

#include <service/storage/ContentHash.h>
#include <service/storage/DataFolder.h>
#include <service/storage/FileSync.h>

#include <QString>

#include <atomic>
#include <memory>

namespace service {

class ContentStore;

//! \brief A content that is arriving, in a temporary file that goes with the object unless it is kept.
class IncomingFile
{
public:
    IncomingFile(ContentStore &store, const QString &path);
    ~IncomingFile();
    IncomingFile(const IncomingFile &) = delete;
    IncomingFile &operator=(const IncomingFile &) = delete;

    //! Appends. \throws StorageError
    void write(const char *data, qint64 length);
    //! Of all that was written; call it once.
    ContentDigest digest() { return m_hash.result(); }

private:
    friend class ContentStore;

    ContentStore &m_store;
    QString m_path;
    RawFile m_file;
    ContentHash m_hash;
    qint64 m_size = 0;
    bool m_isKept = false;
};

//! \brief The contents of one data folder: files named by their MD5, the same content once.
//!
//! A content has its name only when it is whole and on the disk. All functions may be called from any
//! thread and throw StorageError; what gives a name or takes it away is called under the ContentLock of the MD5.
class ContentStore
{
public:
    //! \param quotaBytes how much contents may take together; 0 for no limit but the disk's
    ContentStore(const DataFolder &folder, qint64 quotaBytes);

    //! Removes what a crash left in the temporary folder. Where \a isShared, another process may be writing there: what is
    //! younger than a day stays.
    void open(bool isShared = false);

    const DataFolder &folder() const { return m_folder; }

    std::unique_ptr<IncomingFile> newFile();

    QString contentPath(const QString &md5) const;
    //! Returns true if the content is on the disk with that size. What is in it only a check can tell.
    bool holds(const QString &md5, qint64 size) const;
    //! Reads a whole file of the folder.
    ContentDigest digestOf(const QString &path) const;

    //! Gives a whole file its name; on return it is safe on the disk. What had the name before is replaced.
    void keep(IncomingFile &file, const QString &md5);
    //! The same for a part file whose MD5 has been compared.
    void keepPart(const QString &part, const QString &md5);

    //! Gives a copy of the file at \a path its name.
    void copyIn(const QString &path, const QString &md5);

    QString partPath(const QString &part) const;
    //! Writes \a bytes into a part file; on return they are on the disk.
    void writePart(const QString &part, qint64 offset, const QByteArray &bytes);
    void dropPart(const QString &part);

    void removeContent(const QString &md5) { remove(contentPath(md5)); }
    //! Moves a file of this folder to where it is out of the way, and nothing is lost. \return where that is
    QString moveAside(const QString &path);

    //! \throws StorageError that says the disk is full when \a bytes more are above the quota.
    void takeRoom(qint64 bytes);
    void giveRoom(qint64 bytes) { m_usedBytes -= bytes; }

private:
    void nameContent(const QString &from, const QString &md5);
    void remove(const QString &path);

    const DataFolder m_folder;
    const qint64 m_quotaBytes = 0;
    std::atomic<qint64> m_usedBytes{0};
};

} // namespace service
