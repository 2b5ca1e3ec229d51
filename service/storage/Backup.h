#pragma once

#include <QString>
#include <QtGlobal>

namespace service {

class Database;
class DataFolder;

//! \brief Creates and restores backups of a data folder: the database at one moment, and all contents in it.
//!
//! A backup is a data folder. If another backup is written into the same folder, only new contents are copied. Functions throw
//! std::exception with a sentence.
class Backup
{
public:
    struct Result
    {
        int contents = 0; //!< number of contents in the backup
        int copied = 0;
        qint64 copiedBytes = 0;
        int missing = 0; //!< number of contents that are in the database, but not on the disk
    };

    //! Writes a backup of \a folder into \a target. A service may be running on it. Uploads by chunks that are in progress are excluded.
    static Result write(Database &database, const DataFolder &folder, const DataFolder &target);

    //! Restores the backup \a source into \a target, which must have no database. Contents that exist there are kept.
    static Result restore(const DataFolder &source, const DataFolder &target);
};

} // namespace service
