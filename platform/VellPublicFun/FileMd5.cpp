#include "FileMd5Memo.h"

#include <VellPublicFun/VellPub.h>

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

namespace {

QString readMd5(const QString &path, const std::function<bool(qint64)> &progress)
{
    constexpr int BlockBytes = 1024 * 1024;
    // Opening a pipe would block.
    if (!QFileInfo(path).isFile())
        return {};
    QFile file(path);
    // Not memory-mapped: if the file is truncated meanwhile, the process would crash.
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    QCryptographicHash hash(QCryptographicHash::Md5);
    QByteArray block(BlockBytes, Qt::Uninitialized);
    qint64 readBytes = 0;
    for (;;) {
        if (progress && !progress(readBytes))
            return {};
        const qint64 count = file.read(block.data(), block.size());
        if (count < 0)
            return {};
        if (count == 0)
            return QString::fromLatin1(hash.result().toHex());
        hash.addData(block.constData(), int(count));
        readBytes += count;
    }
}

} // namespace

QString VellPub::getFileMd5(const QString &path)
{
    const QString known = FileMd5Memo::instance().find(FileState::of(path));
    return known.isEmpty() ? readMd5(path, nullptr) : known;
}

QString VellPub::getFileMd5(const QString &path,
                            const std::function<bool(qint64 readBytes)> &progress)
{
    const FileState before = FileState::of(path);
    const QString known = FileMd5Memo::instance().find(before);
    if (!known.isEmpty())
        return known;
    const QString md5 = readMd5(path, progress);
    if (!md5.isEmpty() && before.isSettled && FileState::of(path) == before)
        FileMd5Memo::instance().insert(before, md5);
    return md5;
}
