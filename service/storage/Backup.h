#pragma once

#include <QString>
#include <QtGlobal>

namespace service {

class Database;
class DataFolder;

//! \brief Copies of a data folder: the database as it was at one moment, and every content that it names.
//!
//! A backup has the form of a data folder. Writing another one into the same folder copies only the contents that are
//! new. Functions throw std::exception with a sentence.
class Backup
{
public:
    struct Result
    {
        int contents = 0; //!< how many the backup has
        int copied = 0;
        qint64 copiedBytes = 0;
        int missing = 0; //!< named by the records, but not on the disk
    };

    //! Writes a backup of \a folder into \a target, while a service may be running on it. Uploads by chunks that are
    //! under way are left out.
    static Result write(Database &database, const DataFolder &folder, const DataFolder &target);

    //! Brings the backup \a source into \a target, which has no records. Contents that are there are kept.
    static Result restore(const DataFolder &source, const DataFolder &target);
};

} // namespace service
