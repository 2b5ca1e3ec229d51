#include <service/storage/FolderLock.h>

#include <service/storage/DataFolder.h>
#include <service/storage/FileSync.h>

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

namespace service {

namespace {

constexpr qint64 CommandWaitMs = 10000;
constexpr unsigned long RetryMs = 20;
const QByteArray commandMark = QByteArrayLiteral("command");

bool isHeldByCommand(const DataFolder &folder)
{
    QFile file(folder.lock());
    return file.open(QIODevice::ReadOnly) && file.readAll().startsWith(commandMark);
}

} // namespace

FolderLock::FolderLock(std::unique_ptr<RawFile> file) : m_file(std::move(file)) {}

FolderLock::~FolderLock() = default;

std::unique_ptr<FolderLock> FolderLock::take(const DataFolder &folder, Holder holder,
                                             QString *error)
{
    try {
        auto file = std::make_unique<RawFile>(folder.lock(), RawFile::Mode::ReadWrite);
        QElapsedTimer clock;
        clock.start();
        const bool isOneOfMany = holder == Holder::OneOfMany;
        const auto lock = isOneOfMany ? RawFile::Lock::Shared : RawFile::Lock::Exclusive;
        while (!file->tryLock(lock)) {
            if (!isHeldByCommand(folder) || clock.hasExpired(CommandWaitMs)) {
                *error = QStringLiteral("Another service is using the data folder %1.")
                             .arg(folder.path());
                return nullptr;
            }
            QThread::msleep(RetryMs);
        }
        try {
            if (!isOneOfMany)
                file->truncate();
            if (holder == Holder::Command)
                file->writeAt(0, commandMark.constData(), commandMark.size());
        } catch (const StorageError &) {
            // The disk is full: the lock is valid nevertheless.
        }
        return std::unique_ptr<FolderLock>(new FolderLock(std::move(file)));
    } catch (const StorageError &failure) {
        *error = QStringLiteral("The data folder %1 cannot be used: %2.")
                     .arg(folder.path(), QString::fromUtf8(failure.what()));
        return nullptr;
    }
}

bool FolderLock::isTaken(const DataFolder &folder)
{
    if (!QFile::exists(folder.lock()))
        return false;
    try {
        return !RawFile(folder.lock(), RawFile::Mode::ReadOnly).tryLock();
    } catch (const StorageError &) {
        return false;
    }
}

} // namespace service
