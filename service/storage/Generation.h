#pragma once

namespace service {

class Database;
class DataFolder;

//! \brief Detects a database that does not belong to the contents in its folder.
//!
//! Both have a number, which every start and every backup increases. If the database was replaced by an old copy or lost, its number is
//! smaller: documents that were created since would be missing, and their contents would seem to be unused.
class Generation
{
public:
    Generation(Database &database, const DataFolder &folder);

    //! \return false if the contents are newer than the database or belong to another one
    bool fits();

    //! Increases both numbers. \throws DatabaseError, StorageError
    void raise();

private:
    Database &m_database;
    const DataFolder &m_folder;
};

} // namespace service
