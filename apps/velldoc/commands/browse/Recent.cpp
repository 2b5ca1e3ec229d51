#include <document_model/VellRecordType.h>
#include <velldoc/commands/Commands.h>
#include <velldoc/commands/browse/Marks.h>
#include <velldoc/documents/FolderPaths.h>
#include <velldoc/documents/Listing.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

QList<VellDocument> listUsed(Context &context)
{
    VellDocumentConditon condition;
    condition.hasParentId = false;
    condition.recordType = VellRecordType::Recent;
    return context.tree().list(condition);
}

//! Lists the files that the user has stored last.
void listStored(Context &context)
{
    Session &session = context.session();
    if (session.userId().isEmpty())
        throw Failure(
            ExitFailed,
            Text::tr("The service does not report who you are, so it cannot list your files."));
    const QList<VellDocument> documents =
        session.await(session.documents().recent(context.value("category")));
    showDocuments(context, documents, QStringLiteral("documents"), FolderPaths(session));
    if (documents.isEmpty())
        context.out.note(Text::tr("You have stored no files here."));
}

void run(Context &context)
{
    if (context.arguments().isEmpty())
        listStored(context);
    else
        runMarkCommand(context, {listUsed, &VellDocuments::setRecent});
}

} // namespace

const Command &recentCommand()
{
    static const Command command{
        "recent",
        "[list | add PATH... | remove PATH...]",
        QT_TRANSLATE_NOOP("velldoc", "list the files that you stored or used last"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Lists the 50 files that you stored last. \"list\" shows the files "
                          "marked as recently used; \"add\" and \"remove\" change these marks."),
        {
            {"l,long", nullptr,
             QT_TRANSLATE_NOOP("velldoc",
                               "Print a table with size, time and user of the last change.")},
            {"category", "WORD", QT_TRANSLATE_NOOP("velldoc", "The category.")},
            dryRunOption(),
        },
        {{"velldoc recent -l", QT_TRANSLATE_NOOP("velldoc", "your last files with their times")}},
        run,
        {"list", "add", "remove"},
    };
    return command;
}

} // namespace velldoc
