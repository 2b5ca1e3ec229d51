#include <service/storage/Backup.h>

#include <service/storage/ContentStore.h>
#include <service/storage/FolderLock.h>
#include <service/storage/Generation.h>
#include <service/storage/Statement.h>

#include <QFile>
#include <QFileInfo>

namespace service {

namespace {

[[noreturn]] void refuse(const QString &sentence)
{
    throw std::runtime_error(sentence.toStdString());
}

std::unique_ptr<FolderLock> lockOf(const DataFolder &folder)
{
    QString error;
    auto lock = FolderLock::take(folder, FolderLock::Holder::Command, &error);
    if (!lock)
        refuse(error);
    return lock;
}

//! Returns the contents in the database \a schema, "main" or the name of an attached database.
void copyContents(Database &database, const QString &schema, const ContentStore &from,
                  ContentStore &to, Backup::Result &result)
{
    Statement row(database, QStringLiteral("SELECT md5, size FROM %1.file").arg(schema));
    while (row.next()) {
        const QString md5 = row.text(0);
        const qint64 size = row.number(1);
        ++result.contents;
        if (to.holds(md5, size))
            continue;
        if (!from.holds(md5, size)) {
            ++result.missing;
            continue;
        }
        to.copyIn(from.contentPath(md5), md5);
        ++result.copied;
        result.copiedBytes += size;
    }
}

} // namespace

Backup::Result Backup::write(Database &database, const DataFolder &folder, const DataFolder &target)
{
    if (QFileInfo(folder.path()) == QFileInfo(target.path()))
        refuse(QStringLiteral("A backup belongs into another folder."));
    if (database.dialect().isShared()) {
        refuse(
            QStringLiteral("The records are in %1: save them with pg_dump, and then the folder %2.")
                .arg(database.dialect().name(), folder.contents()));
    }
    target.make();
    const auto lock = lockOf(target);
    ContentStore copies(target, 0);
    copies.open();
    Result result;
    const QString records = target.records() + QStringLiteral(".new");
    database.copyTo(records);
    execute(database, QStringLiteral("ATTACH ? AS backup"), {records});
    try {
        execute(database, QStringLiteral("DELETE FROM backup.large_file"));
        copyContents(database, QStringLiteral("backup"), ContentStore(folder, 0), copies, result);
    } catch (...) {
        execute(database, QStringLiteral("DETACH backup"));
        throw;
    }
    execute(database, QStringLiteral("DETACH backup"));
    for (const char *suffix :
         {"-wal", "-shm"}) // left by a service that was started on the last backup
        QFile::remove(target.records() + QLatin1String(suffix));
    QFile::remove(target.generation());
    renameFile(records, target.records());
    syncFolder(target.path());
    // From now on the folder is newer than the backup.
    Generation(database, folder).raise();
    return result;
}

Backup::Result Backup::restore(const DataFolder &source, const DataFolder &target)
{
    if (!source.hasRecords())
        refuse(QStringLiteral("%1 is no backup.").arg(source.path()));
    if (target.hasRecords()) {
        refuse(QStringLiteral("%1 has records; move its records.sqlite to another place first.")
                   .arg(target.path()));
    }
    target.make();
    const auto lock = lockOf(target);
    const auto sourceLock = lockOf(source);
    ContentStore store(target, 0);
    store.open();
    Result result;
    const QString records = target.records() + QStringLiteral(".new");
    {
        // The database is copied last, so that an interrupted restore can be repeated.
        Database backup(source);
        copyContents(backup, QStringLiteral("main"), ContentStore(source, 0), store, result);
        backup.copyTo(records);
    }
    QFile::remove(target.generation());
    renameFile(records, target.records());
    syncFolder(target.path());
    Database database(target);
    database.open();
    Generation(database, target).raise();
    return result;
}

} // namespace service
