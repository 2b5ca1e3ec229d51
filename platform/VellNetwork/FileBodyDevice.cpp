#include "FileBodyDevice.h"

FileBodyDevice::FileBodyDevice(QFile *file, QObject *parent)
    : QIODevice(parent), m_file(file), m_size(file->size())
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 FileBodyDevice::readData(char *data, qint64 maxSize)
{
    const qint64 wanted = qMin(maxSize, m_size - pos());
    if (wanted <= 0)
        return 0;
    if (!m_file || !m_file->isOpen())
        return -1;
    // The owner may have read from the file in between.
    if (m_file->pos() != pos() && !m_file->seek(pos()))
        return -1;
    const qint64 count = m_file->read(data, wanted);
    return count > 0 ? count : -1;
}

qint64 FileBodyDevice::writeData(const char *, qint64)
{
    return -1;
}
