#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

namespace service {

//! \brief Keeps a data folder to one service while the object lives, across processes.
class FolderLock
{
public:
    //! Makes the folder when it is missing. \return null with a sentence in \a error when it cannot be
    //! had; a lock that a dead process has left does not count
    static std::unique_ptr<FolderLock> take(const QString &folder, QString *error);

private:
    explicit FolderLock(const QString &fileName);

    QLockFile m_file;
};

} // namespace service
