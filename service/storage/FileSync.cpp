#include <service/storage/FileSync.h>

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace service {

namespace {

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

RawFile::RawFile(const QString &path, Mode mode)
    : m_path(path), m_descriptor(::open(QFile::encodeName(path).constData(), openFlags(mode), 0600))
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

void syncFolder(const QString &folder)
{
    RawFile entries(folder, RawFile::Mode::ReadOnly);
    entries.sync();
}

void renameFile(const QString &from, const QString &to)
{
    if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        throw StorageError(QStringLiteral("naming %1").arg(to), errno);
}

} // namespace service
