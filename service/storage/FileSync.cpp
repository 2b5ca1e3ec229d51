#include <service/storage/FileSync.h>

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace service {

namespace {

constexpr mode_t OwnerBits = S_IRWXU;
constexpr size_t CopyBlock = size_t(1024) * 1024;

QByteArray nativeName(const QString &path)
{
    return QFile::encodeName(path);
}

int openFlags(RawFile::Mode mode)
{
    switch (mode) {
    case RawFile::Mode::ReadOnly:
        return O_RDONLY | O_CLOEXEC;
    case RawFile::Mode::CreateNew:
        return O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
    case RawFile::Mode::ReadWrite:
        return O_RDWR | O_CREAT | O_CLOEXEC;
    }
    return O_RDONLY;
}

struct flock byteRange(qint64 offset)
{
    struct flock range = {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    range.l_start = offset;
    range.l_len = 1;
    return range;
}

} // namespace

StorageError::StorageError(const QString &doing, int errorNumber)
    : std::runtime_error(
        QStringLiteral("%1: %2").arg(doing, qt_error_string(errorNumber)).toStdString()),
      m_errorNumber(errorNumber)
{}

bool StorageError::isFull() const
{
    return m_errorNumber == ENOSPC || m_errorNumber == EDQUOT || m_errorNumber == EFBIG;
}

bool StorageError::isReadOnly() const
{
    return m_errorNumber == EROFS;
}

RawFile::RawFile(const QString &path, Mode mode)
    : m_path(path), m_descriptor(::open(nativeName(path).constData(), openFlags(mode), 0600))
{
    if (m_descriptor < 0)
        throw StorageError(QStringLiteral("opening %1").arg(path), errno);
}

RawFile::~RawFile()
{
    ::close(m_descriptor);
}

void RawFile::writeAt(qint64 offset, const char *data, qint64 length)
{
    while (length > 0) {
        const ssize_t written = ::pwrite(m_descriptor, data, static_cast<size_t>(length), offset);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            throw StorageError(QStringLiteral("writing %1").arg(m_path), errno);
        data += written;
        offset += written;
        length -= written;
    }
}

qint64 RawFile::readAt(qint64 offset, char *data, qint64 length) const
{
    for (;;) {
        const ssize_t count = ::pread(m_descriptor, data, static_cast<size_t>(length), offset);
        if (count >= 0)
            return count;
        if (errno != EINTR)
            throw StorageError(QStringLiteral("reading %1").arg(m_path), errno);
    }
}

qint64 RawFile::size() const
{
    struct stat status = {};
    if (::fstat(m_descriptor, &status) != 0)
        throw StorageError(QStringLiteral("looking at %1").arg(m_path), errno);
    return status.st_size;
}

void RawFile::sync()
{
    if (::fdatasync(m_descriptor) != 0)
        throw StorageError(QStringLiteral("writing %1 to the disk").arg(m_path), errno);
}

void RawFile::truncate()
{
    if (::ftruncate(m_descriptor, 0) != 0)
        throw StorageError(QStringLiteral("emptying %1").arg(m_path), errno);
}

bool RawFile::tryLock(Lock lock)
{
    if (::flock(m_descriptor, (lock == Lock::Shared ? LOCK_SH : LOCK_EX) | LOCK_NB) == 0)
        return true;
    if (errno != EWOULDBLOCK)
        throw StorageError(QStringLiteral("locking %1").arg(m_path), errno);
    return false;
}

void RawFile::lockByte(qint64 offset)
{
    struct flock range = byteRange(offset);
    while (::fcntl(m_descriptor, F_OFD_SETLKW, &range) != 0) {
        if (errno != EINTR)
            throw StorageError(QStringLiteral("locking %1").arg(m_path), errno);
    }
}

bool RawFile::tryLockByte(qint64 offset)
{
    struct flock range = byteRange(offset);
    if (::fcntl(m_descriptor, F_OFD_SETLK, &range) == 0)
        return true;
    if (errno != EAGAIN && errno != EACCES)
        throw StorageError(QStringLiteral("locking %1").arg(m_path), errno);
    return false;
}

bool makePrivateFolder(const QString &path)
{
    if (::mkdir(nativeName(path).constData(), OwnerBits) == 0)
        return true;
    if (errno != EEXIST)
        throw StorageError(QStringLiteral("making the folder %1").arg(path), errno);
    return false;
}

void restrictToOwner(const QString &path)
{
    const QByteArray name = nativeName(path);
    struct stat status = {};
    if (::stat(name.constData(), &status) != 0)
        throw StorageError(QStringLiteral("looking at %1").arg(path), errno);
    if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0
        && ::chmod(name.constData(), status.st_mode & OwnerBits) != 0)
        throw StorageError(QStringLiteral("restricting %1").arg(path), errno);
}

void syncFolder(const QString &folder)
{
    RawFile entries(folder, RawFile::Mode::ReadOnly);
    entries.sync();
}

void copyFile(const QString &from, const QString &to)
{
    const RawFile source(from, RawFile::Mode::ReadOnly);
    RawFile target(to, RawFile::Mode::ReadWrite);
    target.truncate();
    std::vector<char> block(CopyBlock);
    qint64 offset = 0;
    while (const qint64 count =
               source.readAt(offset, block.data(), static_cast<qint64>(block.size()))) {
        target.writeAt(offset, block.data(), count);
        offset += count;
    }
    target.sync();
}

void renameFile(const QString &from, const QString &to)
{
    if (std::rename(nativeName(from).constData(), nativeName(to).constData()) != 0)
        throw StorageError(QStringLiteral("naming %1").arg(to), errno);
}

} // namespace service
