#include <service/cli/Commands.h>
#include <service/cli/OpenFolder.h>
#include <service/cli/Output.h>
#include <service/records/Sweep.h>
#include <service/records/SweepLog.h>

#include <cmath>

namespace service {

namespace {

constexpr double MsPerHour = 3600.0 * 1000.0;

int sweep(OpenFolder &folder, qint64 olderThanMs, Sweep::Mode mode)
{
    const SweepResult result = Sweep(folder.database, folder.store).run(olderThanMs, mode);
    if (mode == Sweep::Mode::Remove)
        SweepLog::add(folder.folder, result, folder.database.nowMs());
    printLine(QStringLiteral("%1 %2 abandoned uploads and %3 unused contents, %4 %5 unknown files: "
                             "%6 bytes")
                  .arg(mode == Sweep::Mode::DryRun ? QStringLiteral("would remove")
                                                   : QStringLiteral("removed"))
                  .arg(result.abandonedUploads)
                  .arg(result.unusedContents)
                  .arg(mode == Sweep::Mode::DryRun ? QStringLiteral("move aside")
                                                   : QStringLiteral("moved aside"))
                  .arg(result.strayFiles)
                  .arg(result.bytes));
    return 0;
}

} // namespace

int runSweep(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Removes abandoned uploads and unused contents, and moves files that are not in the "
        "database into the folder \"aside\".\n"
        "The service may be running on the data folder."));
    parser.addOptions(dataOptions());
    parser.addOptions({
        {QStringLiteral("older-than"), QStringLiteral("Keep what is younger (24)."),
         QStringLiteral("HOURS"), QStringLiteral("24")},
        {QStringLiteral("dry-run"), QStringLiteral("Only print what would be removed.")},
    });
    int code = 0;
    if (!parseArguments(parser, arguments, &code))
        return code;
    if (!parser.positionalArguments().isEmpty())
        return wrongUse(QStringLiteral("sweep [--older-than HOURS] [--dry-run] --data DIR."));
    bool isNumber = false;
    const double hours = parser.value(QStringLiteral("older-than")).toDouble(&isNumber);
    if (!isNumber || !std::isfinite(hours) || hours < 0 || hours > 1e6)
        return fail(QStringLiteral("--older-than takes a number of hours."), ExitUsage);
    const auto mode =
        parser.isSet(QStringLiteral("dry-run")) ? Sweep::Mode::DryRun : Sweep::Mode::Remove;
    return withFolder(parser, OpenFolder::Missing::Refuse, [&](OpenFolder &folder) {
        return sweep(folder, std::llround(hours * MsPerHour), mode);
    });
}

} // namespace service
