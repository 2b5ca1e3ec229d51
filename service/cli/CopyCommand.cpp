#include <service/cli/Commands.h>
#include <service/cli/OpenFolder.h>
#include <service/cli/Output.h>
#include <service/records/ContentCheck.h>
#include <service/storage/RecordsCopy.h>

#include <QFile>

namespace service {

namespace {

//! Moves the records into PostgreSQL, and the database of SQLite out of the way.
void copyRecords(const DataFolder &folder, const QString &address)
{
    OpenFolder source(folder.path(), QString(), OpenFolder::Missing::Refuse);
    if (!source.isAlone())
        throw std::runtime_error("A service is running on the data folder; stop it first.");
    Database target(folder, address);
    if (!target.dialect().isShared())
        throw std::runtime_error("--to takes the address of a database in PostgreSQL.");
    target.open();
    const QStringList lines = RecordsCopy(source.database, target).run();
    for (const QString &line : lines)
        printLine(line);
    // A service that was started without --database would go on with the old records.
    source.database.close();
    renameFile(folder.records(), folder.movedRecords());
    syncFolder(folder.path());
    printLine(QStringLiteral("The records are in %1 now; the old database is %2.")
                  .arg(target.dialect().name(), folder.movedRecords()));
}

int checkContents(const DataFolder &folder, const QString &address)
{
    Database database(folder, address);
    ContentStore store(folder, 0);
    ContentCheck contents(database, store);
    const QList<DamagedContent> damaged = contents.run();
    for (const DamagedContent &content : damaged)
        printLine(QStringLiteral("%1: %2").arg(content.md5, content.reason));
    printLine(QStringLiteral("%1 contents compared with their MD5, %2 damaged")
                  .arg(contents.checkedCount())
                  .arg(damaged.size()));
    return damaged.isEmpty() ? 0 : ExitFailure;
}

} // namespace

int runCopy(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Copies the records of a data folder from SQLite into an empty database in PostgreSQL.\n"
        "The contents stay in the folder, which the services share from then on. The service must "
        "be stopped.\nThe records are copied in one transaction and compared; then every content "
        "is compared with its MD5."));
    parser.addOptions(
        {{QStringLiteral("from"), QStringLiteral("The data folder."), QStringLiteral("DIR")},
         {QStringLiteral("to"),
          QStringLiteral("postgresql://USER@HOST:PORT/NAME; VELL_SERVICE_DATABASE "
                         "does the same and keeps a password from others."),
          QStringLiteral("ADDRESS")}});
    int code = 0;
    if (!parseArguments(parser, arguments, &code))
        return code;
    const DataFolder folder(parser.value(QStringLiteral("from")));
    const QString address = parser.isSet(QStringLiteral("to"))
        ? parser.value(QStringLiteral("to"))
        : qEnvironmentVariable("VELL_SERVICE_DATABASE");
    if (!parser.positionalArguments().isEmpty() || folder.path().isEmpty() || address.isEmpty())
        return wrongUse(QStringLiteral("copy --from DIR --to postgresql://USER@HOST:PORT/NAME."));
    try {
        copyRecords(folder, address);
        return checkContents(folder, address);
    } catch (const std::exception &error) {
        return fail(QString::fromUtf8(error.what()));
    }
}

} // namespace service
