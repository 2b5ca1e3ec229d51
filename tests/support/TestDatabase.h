#pragma once

#include <QString>

//! The records of the services under test, where the tests are to run on PostgreSQL: VELL_TEST_POSTGRES is the address of a
//! server on which databases can be made, as "postgresql://USER@/postgres?host=FOLDER".
namespace TestDatabase {

//! Whether there is such a server. Otherwise the services have SQLite in their data folders.
bool isPostgres();

//! The address of the database of the service on \a dataDir, which is made when it is missing. Empty for SQLite.
QString addressFor(const QString &dataDir);

//! Runs \a statement on that PostgreSQL database. \return its first value
QString run(const QString &dataDir, const QString &statement, bool *isDone);

} // namespace TestDatabase
