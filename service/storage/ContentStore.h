#pragma once

#include <service/storage/ContentHash.h>
#include <service/storage/DataFolder.h>
#include <service/storage/FileSync.h>
#include <service/storage/TemporaryFolder.h>

#include <QString>

#include <atomic>
#include <bitset>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

namespace service {

class ContentStore;

//! \brief A content that is being received, in a temporary file that is removed with the object unless it is kept.
class IncomingFile
{
public:
    IncomingFile(ContentStore &store, const QString &path);
    ~IncomingFile();
    IncomingFile(const IncomingFile &) = delete;
    IncomingFile &operator=(const IncomingFile &) = delete;

    //! Appends. \throws StorageError
    void write(const char *data, qint64 length);
    //! Returns the digests of all bytes; to be called once.
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

//! \brief The contents of a data folder: files named by their MD5, each stored once.
//!
//! A content gets its name when it is complete and has been written to the disk. Thread-safe. All functions throw StorageError;
//! those that name or remove a content require the ContentLock of its MD5.
class ContentStore
{
public:
    //! \param quotaBytes how many bytes all contents may take; 0 for no limit
    ContentStore(const DataFolder &folder, qint64 quotaBytes);

    //! Makes the temporary folder, removes what a crash has left, and counts the bytes of the folder for the quota.
    void open();

    //! The same for a folder that other processes use at the same time. They store contents, too: the database tells how much.
    //! \param storedBytes returns the bytes of all contents and parts; called on several threads
    void openShared(std::function<qint64()> storedBytes);
    void close(); //!< removes the temporary folder
    //! Returns the folder for temporary files of this process; only while the store is open.
    QString temporaryPath() const { return m_temporary->path(); }

    const DataFolder &folder() const { return m_folder; }

    std::unique_ptr<IncomingFile> newFile();

    QString contentPath(const QString &md5) const;
    //! Returns true if the content is on the disk with that size; does not read it.
    bool holds(const QString &md5, qint64 size) const;
    //! Reads a whole file of the folder.
    ContentDigest digestOf(const QString &path) const;

    //! Gives a complete file its name, replacing an older one. On return it has been written to the disk.
    void keep(IncomingFile &file, const QString &md5);
    //! The same for a part file whose MD5 has been verified.
    void keepPart(const QString &part, const QString &md5);

    //! The same for a copy of the file at \a path.
    void copyIn(const QString &path, const QString &md5);

    QString partPath(const QString &part) const;
    //! Writes \a bytes to a part file; on return they have been written to the disk.
    void writePart(const QString &part, qint64 offset, const QByteArray &bytes);
    void dropPart(const QString &part);

    void removeContent(const QString &md5) { remove(contentPath(md5)); }
    //! Moves a file to the folder "aside". \return its new path
    QString moveAside(const QString &path);

    //! Returns the size of a file of the folder; -1 if it is not there.
    qint64 sizeOf(const QString &path) const;
    //! Returns the time by which the file system dates its files, in milliseconds since 1970 UTC.
    qint64 fileClockMs() const;

    //! \throws StorageError, as for a full disk, if \a storedBytes exceeds the quota
    void requireWithinQuota(qint64 storedBytes) const;
    bool hasQuota() const { return m_quotaBytes > 0; }

    //! Counts \a bytes more. \throws StorageError, as for a full disk, if this exceeds the quota
    void reserveBytes(qint64 bytes);
    void releaseBytes(qint64 bytes) { m_usedBytes -= bytes; }
    //! What was received is stored now: shared contents are counted in the database.
    void keptBytes(qint64 bytes);

private:
    void prepare(bool isShared);
    void nameContent(const QString &from, const QString &md5);
    //! A folder of contents, with its number in m_writtenFolders.
    struct Folder
    {
        QString path;
        size_t number;
    };
    //! Creates a folder unless it exists. Another upload may have created it and not yet written it to the disk.
    //! \return true if writeFolder() is needed
    bool makeFolder(const Folder &folder);
    void writeFolder(const Folder &folder);
    //! What is no longer there; shared contents are counted in the database.
    void forgetBytes(qint64 bytes);
    qint64 storedBytes();
    void remove(const QString &path);

    static constexpr size_t InnerFolders = 65536;
    static constexpr size_t OuterFolders = 256;

    const DataFolder m_folder;
    const qint64 m_quotaBytes = 0;
    std::atomic<qint64> m_usedBytes{0}; //!< of shared contents only what is being received
    std::function<qint64()> m_askStoredBytes; //!< only for shared contents
    std::mutex m_storedLock;
    std::chrono::steady_clock::time_point m_storedAt;
    qint64 m_storedBytes = -1; //!< the last answer; -1 if there was none
    std::mutex m_foldersLock;
    std::bitset<InnerFolders + OuterFolders> m_writtenFolders; //!< known to be on the disk
    std::unique_ptr<TemporaryFolder> m_temporary;
};

} // namespace service
