#pragma once

#include <QString>

#include <memory>

namespace service {

class DataFolder;
class RawFile;

//! \brief Reserves a data folder for one program while the object lives.
//!
//! The kernel keeps the lock and releases it with the process, however that ends: a lock never has to be removed
//! by hand, not in a container either, where process ids and host names repeat.
class FolderLock
{
public:
    enum class Holder {
        Service,
        OneOfMany, //!< a service or a command on a shared database: beside others of its kind
        Command, //!< holds it for a moment: a service that starts waits for it
    };

    ~FolderLock();

    //! \param folder must exist
    //! \return null with a sentence in \a error when another program has it, or the lock file cannot be opened
    static std::unique_ptr<FolderLock> take(const DataFolder &folder, Holder holder,
                                            QString *error);

    //! Returns true if some program holds the lock of \a folder.
    static bool isTaken(const DataFolder &folder);

private:
    explicit FolderLock(std::unique_ptr<RawFile> file);

    std::unique_ptr<RawFile> m_file;
};

} // namespace service
