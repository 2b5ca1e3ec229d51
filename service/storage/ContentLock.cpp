#include <service/storage/ContentLock.h>

#include <service/storage/DataFolder.h>

namespace service {

namespace {

constexpr int OffsetDigits = 15; //!< as many as fit into a file offset

} // namespace

ContentLock::ContentLock(const DataFolder &folder, const QString &md5)
    : m_file(folder.contentLocks(), RawFile::Mode::ReadWrite)
{
    m_file.lockByte(md5.left(OffsetDigits).toLongLong(nullptr, 16));
}

} // namespace service
