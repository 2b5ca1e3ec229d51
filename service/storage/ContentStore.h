#pragma once

#include <service/storage/FileSync.h>
#include <service/storage/Md5.h>

#include <QByteArray>
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
    qint64 size() const { return m_size; }
    qint64 readAt(qint64 offset, char *data, qint64 length) const;

private:
    friend class ContentStore;

    ContentStore &m_store;
    QString m_path;
    RawFile m_file;
    Md5 m_md5;
    qint64 m_size = 0;
    bool m_isKept = false;
};

//! \brief The contents of one data folder: files named by their MD5, the same content once.
//!
//! Below the folder: `content/` in two levels, `parts/` for uploads by chunks, `tmp/` for what is
//! arriving. A content stands under its name only when it is whole and on the disk. All functions
//! may be called from any thread and throw StorageError.
class ContentStore
{
public:
    //! \param quotaBytes how much the three folders may hold together; 0 for no limit but the disk's
    ContentStore(const QString &folder, qint64 quotaBytes);

    //! Makes the folders and removes what a crash left in `tmp/`.
    void open();

    std::unique_ptr<IncomingFile> newFile();

    //! Gives a whole file its name, unless the same content is there, and returns the MD5. On return
    //! it is safe on the disk.
    QByteArray keep(IncomingFile &file);

    QString contentPath(const QString &md5) const;
    bool contains(const QString &md5) const;

    QString partPath(const QString &md5) const;
    //! Writes \a chunk into the part file of \a md5 at \a offset, adding it to \a hash; on return the bytes are
    //! on the disk.
    void writePart(const QString &md5, qint64 offset, const IncomingFile &chunk, Md5 &hash);
    //! Names the part file of \a md5 as content; it is whole and its MD5 has been compared.
    void keepPart(const QString &md5);
    void dropPart(const QString &md5);

    //! \throws StorageError that says the disk is full when \a bytes more are above the quota.
    void takeRoom(qint64 bytes);
    void giveRoom(qint64 bytes) { m_usedBytes -= bytes; }

private:
    void makeContentFolder(const QString &md5);

    const QString m_folder;
    const qint64 m_quotaBytes = 0;
    std::atomic<qint64> m_usedBytes{0};
};

} // namespace service
