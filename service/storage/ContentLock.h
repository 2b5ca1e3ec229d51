#pragma once

#include <service/storage/FileSync.h>

namespace service {

class DataFolder;

//! \brief Locks the content with an MD5 while the object exists, against other threads and other processes on the same data folder.
//!
//! Required to name or remove a content, until the database has been changed accordingly. A thread must hold only one at a time.
//! \throws StorageError
class ContentLock
{
public:
    ContentLock(const DataFolder &folder, const QString &md5);

private:
    RawFile m_file;
};

} // namespace service
