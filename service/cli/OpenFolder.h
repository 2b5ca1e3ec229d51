#pragma once

#include <service/storage/ContentStore.h>
#include <service/storage/DataFolder.h>
#include <service/storage/Database.h>
#include <service/storage/FolderLock.h>

#include <QCommandLineParser>

#include <functional>
#include <memory>

namespace service {

//! \brief A data folder that a command works on: alone, or beside the service that is running on it.
class OpenFolder
{
public:
    enum class Missing { Refuse, Make };

    //! \throws std::exception with a sentence: no data folder at \a path and none to be made, one of another version
    OpenFolder(const QString &path, const QString &databaseAddress, Missing missing);

    const DataFolder folder;
    Database database;
    ContentStore store;

private:
    std::unique_ptr<FolderLock>
        m_lock; //!< none while a service is running on the folder with SQLite
};

//! --data and --database, which every command has.
QList<QCommandLineOption> dataOptions();

//! The database that --database names, or the environment: a command line can be read by every user of the machine.
QString databaseAddress(const QCommandLineParser &parser);

//! Runs a command on the data folder of --data. \return the exit code of the program; a failure was told
int withFolder(const QCommandLineParser &parser, OpenFolder::Missing missing,
               const std::function<int(OpenFolder &)> &command);

//! Says how a command is written, and returns the exit code for that.
int wrongUse(const QString &usage);

} // namespace service
