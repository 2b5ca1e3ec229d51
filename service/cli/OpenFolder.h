#pragma once

#include <service/storage/ContentStore.h>
#include <service/storage/DataFolder.h>
#include <service/storage/Database.h>
#include <service/storage/FolderLock.h>

#include <QCommandLineParser>

#include <functional>
#include <memory>

namespace service {

//! \brief The data folder of a command, which a running service may be using.
class OpenFolder
{
public:
    enum class Missing { Refuse, Make };

    //! \throws std::exception with a sentence: there is no data folder at \a path, and \a missing is Refuse; it has another version
    OpenFolder(const QString &path, const QString &databaseAddress, Missing missing);

    //! Returns false if a service is running on the folder.
    bool isAlone() const { return m_lock != nullptr; }

    const DataFolder folder;
    Database database;
    ContentStore store;

private:
    std::unique_ptr<FolderLock> m_lock; //!< null if a service is running on the folder with SQLite
};

//! --data and --database, which every command has.
QList<QCommandLineOption> dataOptions();

//! The database that --database names, or the environment: a command line can be read by every user of the machine.
QString databaseAddress(const QCommandLineParser &parser);

//! Runs a command on the data folder of --data. \return the exit code of the program; errors have been printed
int withFolder(const QCommandLineParser &parser, OpenFolder::Missing missing,
               const std::function<int(OpenFolder &)> &command);

//! Prints the usage of a command, and returns the exit code for a wrong command line.
int wrongUse(const QString &usage);

} // namespace service
