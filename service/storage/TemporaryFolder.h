#pragma once

#include <service/storage/FileSync.h>

#include <QString>

namespace service {

class DataFolder;

//! \brief A folder for the temporary files of one process, below the one of the data folder. The destructor removes it.
//!
//! The process holds a lock as long as it lives, so that others on the same data folder remove what it has left after a crash, and
//! nothing else.
class TemporaryFolder
{
public:
    //! Also removes the folders of processes that are gone. \throws StorageError
    explicit TemporaryFolder(const DataFolder &folder);
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    QString path() const { return m_path; }

private:
    const QString m_name; //!< hexadecimal digits: the byte that is locked
    const QString m_path;
    RawFile m_lock;
};

} // namespace service
