#include <service/cli/Commands.h>
#include <service/cli/Output.h>
#include <service/records/Sweep.h>
#include <service/storage/ContentStore.h>
#include <service/storage/DataFolder.h>
#include <service/storage/Database.h>

#include <QFile>

#include <cmath>

namespace service {

namespace {

constexpr double MsPerHour = 3600.0 * 1000.0;

int sweep(const QString &folder, qint64 olderThanMs, bool isDryRun)
{
    const QString records = folder + QStringLiteral("/records.sqlite");
    if (!QFile::exists(records))
        return fail(QStringLiteral("%1 is no data folder of the service.").arg(folder));
    QString error;
    const auto lock = FolderLock::take(folder, &error);
    if (!lock)
        return fail(error);
    try {
        Database database(records);
        database.open();
        ContentStore contents(folder, 0);
        const SweepResult result = Sweep(database, contents, folder).run(olderThanMs, isDryRun);
        printLine(
            QStringLiteral("%1 %2 abandoned uploads, %3 unused contents, %4 stray files: %5 bytes")
                .arg(isDryRun ? QStringLiteral("would remove") : QStringLiteral("removed"))
                .arg(result.abandonedUploads)
                .arg(result.unusedContents)
                .arg(result.strayFiles)
                .arg(result.bytes));
        return 0;
    } catch (const std::exception &failure) {
        return fail(QString::fromUtf8(failure.what()));
    }
}

} // namespace

int runSweep(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Removes abandoned uploads, contents that nothing holds, and stray files.\n"
                       "The service must not be running on the data folder."));
    parser.addOptions({
        {QStringLiteral("data"), QStringLiteral("The data folder of the service."),
         QStringLiteral("DIR")},
        {QStringLiteral("older-than"), QStringLiteral("What is younger stays (24)."),
         QStringLiteral("HOURS"), QStringLiteral("24")},
        {QStringLiteral("dry-run"), QStringLiteral("Only say what would be removed.")},
    });
    int code = 0;
    if (!parseArguments(parser, arguments, &code))
        return code;
    const QString folder = parser.value(QStringLiteral("data"));
    if (folder.isEmpty() || !parser.positionalArguments().isEmpty())
        return fail(QStringLiteral("The command is: vell-service sweep --data DIR."), ExitUsage);
    bool isNumber = false;
    const double hours = parser.value(QStringLiteral("older-than")).toDouble(&isNumber);
    if (!isNumber || !std::isfinite(hours) || hours < 0 || hours > 1e6)
        return fail(QStringLiteral("--older-than takes a number of hours."), ExitUsage);
    return sweep(folder, std::llround(hours * MsPerHour), parser.isSet(QStringLiteral("dry-run")));
}

} // namespace service
