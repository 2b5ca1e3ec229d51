#include <service/storage/TemporaryFolder.h>

#include <service/storage/DataFolder.h>

#include <QDir>
#include <QUuid>

namespace service {

namespace {

constexpr int NameDigits = 15; //!< as many as fit into a file offset

qint64 byteOf(const QString &name, bool *isNumber = nullptr)
{
    return name.toLongLong(isNumber, 16);
}

void removeAbandoned(const DataFolder &folder)
{
    const QStringList names = QDir(folder.temporary()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        bool isNumber = false;
        const qint64 byte = byteOf(name, &isNumber);
        RawFile lock(folder.temporaryLocks(), RawFile::Mode::ReadWrite);
        if (isNumber && lock.tryLockByte(byte))
            QDir(folder.temporary() + QLatin1Char('/') + name).removeRecursively();
    }
}

} // namespace

TemporaryFolder::TemporaryFolder(const DataFolder &folder)
    : m_name(QUuid::createUuid().toString(QUuid::Id128).left(NameDigits)),
      m_path(folder.temporary() + QLatin1Char('/') + m_name),
      m_lock(folder.temporaryLocks(), RawFile::Mode::ReadWrite)
{
    removeAbandoned(folder);
    m_lock.lockByte(byteOf(m_name)); // before the folder is there
    makePrivateFolder(m_path);
}

TemporaryFolder::~TemporaryFolder()
{
    QDir(m_path).removeRecursively();
}

} // namespace service
