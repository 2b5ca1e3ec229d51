#include <VellPublicFun/VellPub.h>

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

QString VellPub::getFileMd5(const QString &path)
{
    constexpr int BlockBytes = 1024 * 1024;
    // Opening a pipe would wait for its other end.
    if (!QFileInfo(path).isFile())
        return {};
    QFile file(path);
    // No memory mapping: a file that is cut short meanwhile would end the process.
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    QCryptographicHash hash(QCryptographicHash::Md5);
    QByteArray block(BlockBytes, Qt::Uninitialized);
    for (;;) {
        const qint64 count = file.read(block.data(), block.size());
        if (count < 0)
            return {};
        if (count == 0)
            return QString::fromLatin1(hash.result().toHex());
        hash.addData(block.constData(), int(count));
    }
}
