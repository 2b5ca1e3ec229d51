#pragma once

#include <QString>

#include <memory>

namespace service {

class DataFolder;
class RawFile;

//! \brief Reserves a data folder for one program while the object exists.
//!
//! The kernel releases the lock when the process ends, also after a crash: a lock never has to be removed by hand, not even in
//! containers, where process ids and host names are not unique.
class FolderLock
{
public:
    enum class Holder {
        Service,
        OneOfMany, //!< a service or a command that uses a shared database, beside others
        Command, //!< holds it for a short time: a starting service waits for it
    };

    ~FolderLock();

    //! \param folder must exist
    //! \return null, with a sentence in \a error, if another program has the lock or the lock file cannot be opened
    static std::unique_ptr<FolderLock> take(const DataFolder &folder, Holder holder,
                                            QString *error);

    //! Returns true if a program holds the lock of \a folder.
    static bool isTaken(const DataFolder &folder);

private:
    explicit FolderLock(std::unique_ptr<RawFile> file);

    std::unique_ptr<RawFile> m_file;
};

} // namespace service
