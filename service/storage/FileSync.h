#pragma once

#include <QString>

#include <stdexcept>

namespace service {

//! \brief An operation on the disk has failed; what() is the reason.
class StorageError : public std::runtime_error
{
public:
    StorageError(const QString &doing, int errorNumber);

    //! Returns true if the disk is full, or the quota or the maximum size of a file is exceeded.
    bool isFull() const;
    //! Returns true if the disk is read-only.
    bool isReadOnly() const;

private:
    int m_errorNumber = 0;
};

//! \brief An open file descriptor, which is closed, with its locks, by the destructor. All functions throw StorageError.
class RawFile
{
public:
    enum class Mode { ReadOnly, CreateNew, ReadWrite };

    RawFile(const QString &path, Mode mode);
    ~RawFile();
    RawFile(const RawFile &) = delete;
    RawFile &operator=(const RawFile &) = delete;

    void writeAt(qint64 offset, const char *data, qint64 length);
    qint64 readAt(qint64 offset, char *data, qint64 length) const;
    qint64 size() const;
    void truncate(); //!< to 0 bytes
    void sync(); //!< returns when the content has been written to the disk

    enum class Lock { Exclusive, Shared };
    //! Locks one byte, which need not exist. \return false if another object has locked it
    bool tryLockByte(qint64 offset);
    //! Locks the file. \return false if another object, in this or another process, has a lock that excludes this one
    bool tryLock(Lock lock = Lock::Exclusive);
    //! Waits for the lock of the byte at \a offset, which need not exist.
    void lockByte(qint64 offset);

private:
    QString m_path;
    int m_descriptor = -1;
};

//! Writes the entries of \a folder to the disk, after files were created, renamed or removed in it.
void syncFolder(const QString &folder);

//! Creates a folder that only its owner can access, unless it exists. It is on the disk after syncFolder() of the one above.
//! \return false if it existed
bool makePrivateFolder(const QString &path);

//! Removes all permissions on a file or folder except those of its owner.
void restrictToOwner(const QString &path);

//! Copies a file; on return the copy has been written to the disk. Replaces \a to, which is readable by its owner only.
void copyFile(const QString &from, const QString &to);

//! Renames \a from to \a to, replacing an older file. Both must be on the same file system.
void renameFile(const QString &from, const QString &to);

} // namespace service
