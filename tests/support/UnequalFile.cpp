#include "UnequalFile.h"

#include <QFile>
#include <QtEndian>

void writeUnequalFile(const QString &path, qint64 bytes, quint32 salt)
{
    constexpr qint64 BlockBytes = 65'536;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("%s: %s", qPrintable(path), qPrintable(file.errorString()));
    QByteArray block(BlockBytes, 'v');
    qToBigEndian<quint32>(salt, block.data());
    for (qint64 written = 0; written < bytes; written += BlockBytes) {
        qToBigEndian<qint64>(written, block.data() + sizeof(salt));
        if (file.write(block.constData(), qMin(BlockBytes, bytes - written)) < 0)
            qFatal("%s: %s", qPrintable(path), qPrintable(file.errorString()));
    }
}
