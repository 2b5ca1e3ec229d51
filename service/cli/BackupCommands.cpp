#include <service/cli/Commands.h>
#include <service/cli/OpenFolder.h>
#include <service/cli/Output.h>
#include <service/storage/Backup.h>
#include <service/storage/Generation.h>

namespace service {

namespace {

int report(const Backup::Result &result)
{
    printLine(QStringLiteral("%1 contents, %2 of them copied: %3 bytes")
                  .arg(result.contents)
                  .arg(result.copied)
                  .arg(result.copiedBytes));
    if (result.missing == 0)
        return 0;
    return fail(
        QStringLiteral("%1 contents are missing; \"vell-service check\" lists their documents.")
            .arg(result.missing));
}

//! \return false if the program is to end with the exit code \a code
bool parse(QCommandLineParser &parser, const QString &description, const QStringList &arguments,
           int *code)
{
    parser.setApplicationDescription(description);
    parser.addOptions(dataOptions());
    return parseArguments(parser, arguments, code);
}

} // namespace

int runBackup(const QStringList &arguments)
{
    QCommandLineParser parser;
    int code = 0;
    if (!parse(parser,
               QStringLiteral("backup DIR   writes a copy of the data folder into DIR\n\n"
                              "The service may be running. Into the folder of an earlier backup "
                              "only what is new is copied."),
               arguments, &code))
        return code;
    const QStringList words = parser.positionalArguments();
    if (words.size() != 1)
        return wrongUse(QStringLiteral("backup DIR --data DIR."));
    return withFolder(parser, OpenFolder::Missing::Refuse, [&words](OpenFolder &folder) {
        return report(Backup::write(folder.database, folder.folder, DataFolder(words.first())));
    });
}

int runRestore(const QStringList &arguments)
{
    QCommandLineParser parser;
    int code = 0;
    if (!parse(parser,
               QStringLiteral("restore DIR   restores a backup into a data folder without a "
                              "database\n\nContents that exist there are kept."),
               arguments, &code))
        return code;
    const QStringList words = parser.positionalArguments();
    const QString target = parser.value(QStringLiteral("data"));
    if (words.size() != 1 || target.isEmpty())
        return wrongUse(QStringLiteral("restore DIR --data DIR."));
    try {
        return report(Backup::restore(DataFolder(words.first()), DataFolder(target)));
    } catch (const std::exception &error) {
        return fail(QString::fromUtf8(error.what()));
    }
}

int runAccept(const QStringList &arguments)
{
    QCommandLineParser parser;
    int code = 0;
    if (!parse(parser,
               QStringLiteral(
                   "Continues with a database that is older than the contents in the folder.\n"
                   "Documents that were created since are lost; their contents stay, and a sweep "
                   "moves them into the folder \"aside\"."),
               arguments, &code))
        return code;
    if (!parser.positionalArguments().isEmpty())
        return wrongUse(QStringLiteral("accept --data DIR."));
    return withFolder(parser, OpenFolder::Missing::Refuse, [](OpenFolder &folder) {
        Generation(folder.database, folder.folder).raise();
        return 0;
    });
}

} // namespace service
