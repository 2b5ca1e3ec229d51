#include "LocalFile.h"

#include <support/UnequalFile.h>

#include <QCryptographicHash>
#include <QFile>

namespace {

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
    writeUnequalFile(m_path, bytes, salt);
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
