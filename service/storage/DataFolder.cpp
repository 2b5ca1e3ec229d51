#include <service/storage/DataFolder.h>

#include <QDir>
#include <QFile>

namespace service {

std::unique_ptr<FolderLock> FolderLock::take(const QString &folder, QString *error)
{
    if (folder.isEmpty()) {
        *error = QStringLiteral("No data folder was given.");
        return nullptr;
    }
    const bool isNew = !QDir(folder).exists();
    if (!QDir().mkpath(folder)) {
        *error = QStringLiteral("The data folder %1 cannot be made.").arg(folder);
        return nullptr;
    }
    if (isNew) // contents and the hashes of tokens are nobody else's business
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    std::unique_ptr<FolderLock> lock(new FolderLock(folder + QStringLiteral("/lock")));
    if (lock->m_file.tryLock(0))
        return lock;
    *error = lock->m_file.error() == QLockFile::LockFailedError
        ? QStringLiteral("Another service is using the data folder %1.").arg(folder)
        : QStringLiteral("The data folder %1 cannot be written.").arg(folder);
    return nullptr;
}

FolderLock::FolderLock(const QString &fileName) : m_file(fileName)
{
    m_file.setStaleLockTime(0);
}

} // namespace service
