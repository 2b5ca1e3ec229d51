#include <service/cli/Commands.h>
#include <service/cli/OpenFolder.h>
#include <service/cli/Output.h>
#include <service/records/ContentCheck.h>

namespace service {

namespace {

int check(OpenFolder &folder)
{
    ContentCheck contents(folder.database, folder.store);
    const QList<DamagedContent> damaged = contents.run();
    for (const DamagedContent &content : damaged) {
        printLine(QStringLiteral("%1: %2").arg(content.md5, content.reason));
        for (const QString &document : content.documents)
            printLine(QStringLiteral("    %1").arg(document));
    }
    printLine(QStringLiteral("%1 contents checked, %2 damaged")
                  .arg(contents.checkedCount())
                  .arg(damaged.size()));
    return damaged.isEmpty() ? 0 : ExitFailure;
}

} // namespace

int runCheck(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Reads every content, and prints which are damaged and the documents that have or had "
        "them.\n"
        "A damaged content is moved into the folder \"aside\"; uploading the same file again "
        "repairs it.\nThe service may be running on the data folder. The exit code is 1 if "
        "something is "
        "damaged."));
    parser.addOptions(dataOptions());
    int code = 0;
    if (!parseArguments(parser, arguments, &code))
        return code;
    if (!parser.positionalArguments().isEmpty())
        return wrongUse(QStringLiteral("check --data DIR."));
    return withFolder(parser, OpenFolder::Missing::Refuse, check);
}

} // namespace service
