#include <velldoc/commands/Commands.h>
#include <velldoc/commands/browse/Marks.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

QList<VellDocument> list(Context &context)
{
    VellDocumentConditon condition;
    condition.hasParentId = false;
    condition.isFrequent = true;
    return context.tree().list(condition);
}

void run(Context &context)
{
    runMarkCommand(context, {list, &VellDocuments::setFrequent});
}

} // namespace

const Command &frequentCommand()
{
    static const Command command{
        "frequent",
        "[list | add PATH... | remove PATH...]",
        QT_TRANSLATE_NOOP("velldoc", "the documents that you use often"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Lists the documents that you have marked as frequently used, or adds or "
                          "removes these marks."),
        {{"l,long", nullptr,
          QT_TRANSLATE_NOOP("velldoc",
                            "Print a table with size, time and user of the last change.")},
         dryRunOption()},
        {{"velldoc frequent add /Drawings/plan.dwg",
          QT_TRANSLATE_NOOP("velldoc", "a document for the list")}},
        run,
        {"list", "add", "remove"},
    };
    return command;
}

} // namespace velldoc
