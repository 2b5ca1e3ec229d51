#pragma once

#include <QString>

#include <stdexcept>

namespace service {

//! \brief The disk refused; what() names the reason.
class StorageError : public std::runtime_error
{
public:
    StorageError(const QString &doing, int errorNumber);

    //! No room on the disk, or above the quota.
    bool isFull() const;

private:
    int m_errorNumber = 0;
};

//! \brief An open file descriptor, closed with the object. All functions throw StorageError.
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
    void sync(); //!< returns once the content is on the disk

private:
    QString m_path;
    int m_descriptor = -1;
};

//! Makes the entries of \a folder safe: a file made, renamed or removed in it.
void syncFolder(const QString &folder);

//! Gives \a from the name \a to, replacing what has it. Both are on one file system.
void renameFile(const QString &from, const QString &to);

} // namespace service
