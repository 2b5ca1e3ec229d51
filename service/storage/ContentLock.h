#pragma once

#include <service/storage/FileSync.h>

namespace service {

class DataFolder;

//! \brief The lock of one content, by its MD5, held while the object lives: against other threads and, unlike a
//! mutex, other processes on the same data folder.
//!
//! Whoever gives a content its name or removes it holds it, until the database says the same. A thread holds one at
//! a time. \throws StorageError
class ContentLock
{
public:
    ContentLock(const DataFolder &folder, const QString &md5);

private:
    RawFile m_file;
};

} // namespace service
