#pragma once

namespace service {

class Database;
class DataFolder;

//! \brief Tells whether a database belongs to the contents beside it.
//!
//! Both hold the same number, which every start and every backup raises. A database that somebody has put back from
//! an old copy, or lost, is behind its contents: documents made since would be missing, and their contents would
//! look unused.
class Generation
{
public:
    Generation(Database &database, const DataFolder &folder);

    //! \return false if the contents are newer than the database, or of another one
    bool fits();

    //! Raises both numbers. \throws DatabaseError, StorageError
    void raise();

private:
    Database &m_database;
    const DataFolder &m_folder;
};

} // namespace service
