#include <velldoc/commands/Commands.h>
#include <velldoc/documents/Renaming.h>
#include <velldoc/output/Json.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

void run(Context &context)
{
    const QStringList arguments = context.arguments(2, 2);
    const RemotePath path = RemotePath::parse(arguments.constFirst());
    const VellDocument document = context.tree().find(path);
    if (document._id.isEmpty())
        throw Failure(ExitUsage, Text::tr("The top level has no name."));
    const QString &name = arguments.constLast();
    if (name.isEmpty())
        throw Failure(ExitUsage, Text::tr("A name must have at least one character."));
    if (context.leaves(path.text()))
        return;
    const VellDocument renamed = renameDocument(context, document, name);
    context.out.setResult({{QStringLiteral("document"), documentJson(renamed)}});
}

} // namespace

const Command &renameCommand()
{
    static const Command command{
        "rename",
        "PATH NAME",
        QT_TRANSLATE_NOOP("velldoc", "rename a document or a folder"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Renames the document or folder PATH to NAME, in the same folder."),
        {dryRunOption()},
        {{"velldoc rename /Drawings/plan.dwg 'Level 1.dwg'",
          QT_TRANSLATE_NOOP("velldoc", "another name for a drawing")}},
        run,
    };
    return command;
}

} // namespace velldoc
