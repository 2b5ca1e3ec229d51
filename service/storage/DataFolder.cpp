#include <service/storage/DataFolder.h>

#include <service/storage/FileSync.h>

#include <QDir>
#include <QFileInfo>

namespace service {

bool DataFolder::hasRecords() const
{
    return QFileInfo(records()).size() > 0;
}

void DataFolder::make() const
{
    QDir().mkpath(QFileInfo(QDir::cleanPath(m_path)).path());
    makePrivateFolder(m_path);
    for (const QString &folder : {contents(), parts(), temporary(), aside()}) {
        makePrivateFolder(folder);
        restrictToOwner(folder);
    }
    syncFolder(m_path);
    // SQLite creates its other files with the permissions of the database.
    const RawFile database(records(), RawFile::Mode::ReadWrite);
    for (const char *suffix : {"", "-wal", "-shm"}) {
        const QString name = records() + QLatin1String(suffix);
        if (QFile::exists(name))
            restrictToOwner(name);
    }
}

} // namespace service
