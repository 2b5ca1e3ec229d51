#include "LocalFile.h"

#include <QCryptographicHash>
#include <QFile>
#include <QtEndian>

namespace {

constexpr qint64 BlockBytes = qint64(64) * 1024;

void openOrDie(QFile &file, QIODevice::OpenMode mode)
{
    if (!file.open(mode))
        qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
}

} // namespace

LocalFile::LocalFile(const QString &path, qint64 bytes, quint32 salt) : m_path(path)
{
    rewrite(bytes, salt);
}

QByteArray LocalFile::content() const
{
    QFile file(m_path);
    openOrDie(file, QIODevice::ReadOnly);
    return file.readAll();
}

QByteArray LocalFile::md5() const
{
    return QCryptographicHash::hash(content(), QCryptographicHash::Md5).toHex();
}

void LocalFile::rewrite(qint64 bytes, quint32 salt)
{
    QFile file(m_path);
    openOrDie(file, QIODevice::WriteOnly);
    QByteArray block(BlockBytes, 'v');
    qToBigEndian<quint32>(salt, block.data());
    for (qint64 written = 0; written < bytes; written += BlockBytes) {
        qToBigEndian<qint64>(written, block.data() + sizeof(salt));
        if (file.write(block.constData(), qMin(BlockBytes, bytes - written)) < 0)
            qFatal("%s: %s", qPrintable(m_path), qPrintable(file.errorString()));
    }
    m_size = bytes;
}

void LocalFile::resize(qint64 bytes)
{
    if (!QFile::resize(m_path, bytes))
        qFatal("%s cannot be resized", qPrintable(m_path));
    m_size = bytes;
}

void LocalFile::touchByte(qint64 offset)
{
    QFile file(m_path);
    openOrDie(file, QIODevice::ReadWrite);
    file.seek(offset);
    const char old = file.read(1).at(0);
    file.seek(offset);
    file.putChar(static_cast<char>(~old));
}
