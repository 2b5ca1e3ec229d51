#pragma once

#include <QString>

#include <stdexcept>

namespace service {

//! \brief The disk refused; what() names the reason.
class StorageError : public std::runtime_error
{
public:
    StorageError(const QString &doing, int errorNumber);

    //! No room on the disk, or above the quota, or above the limit of a file's size.
    bool isFull() const;
    //! The disk can be read only.
    bool isReadOnly() const;

private:
    int m_errorNumber = 0;
};

//! \brief An open file descriptor, closed with the object, and its locks with it. All functions throw StorageError.
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
    void truncate(); //!< to nothing
    void sync(); //!< returns once the content is on the disk

    enum class Lock { Exclusive, Shared };
    //! Locks the file for this object. \return false when another one, here or in another process, has a lock that
    //! excludes this one
    bool tryLock(Lock lock = Lock::Exclusive);
    //! Waits for the lock of the byte at \a offset, which need not exist.
    void lockByte(qint64 offset);

private:
    QString m_path;
    int m_descriptor = -1;
};

//! Makes the entries of \a folder safe: a file made, renamed or removed in it.
void syncFolder(const QString &folder);

//! Makes a folder that nobody but its owner may enter, unless it is there. It is safe after syncFolder().
void makePrivateFolder(const QString &path);

//! Takes a file or folder from everybody but its owner.
void restrictToOwner(const QString &path);

//! Copies a file; on return the copy is on the disk. \a to is replaced, and nobody but its owner may read it.
void copyFile(const QString &from, const QString &to);

//! Gives \a from the name \a to, replacing what has it. Both are on one file system.
void renameFile(const QString &from, const QString &to);

} // namespace service
