#include <velldoc/commands/Commands.h>
#include <velldoc/documents/RemotePatterns.h>
#include <velldoc/output/Json.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

QList<NamedDocument> findAll(Context &context)
{
    const QList<NamedDocument> found = namedDocuments(context, context.arguments(1));
    for (const NamedDocument &entry : found) {
        if (entry.document._id.isEmpty())
            throw Failure(ExitUsage, Text::tr("The top level itself cannot be deleted."));
        if (isFolder(entry.document) && !context.isSet("recursive")) {
            throw Failure(ExitFailed,
                          Text::tr("%1 is a folder: pass -r to delete it with all its contents.")
                              .arg(entry.path.text()));
        }
    }
    return found;
}

void run(Context &context)
{
    // All documents are found before the first one is deleted.
    const QList<NamedDocument> documents = findAll(context);
    QJsonArray deleted;
    for (const NamedDocument &entry : documents) {
        Session &session = context.session();
        if (!context.leaves(entry.path.text()))
            session.awaitAll(session.documents().remove({entry.document._id}));
        deleted.append(documentJson(entry.document, entry.path.text()));
        context.out.setResult({{QStringLiteral("deleted"), deleted}});
    }
    if (!context.isDryRun()) {
        context.out.note(
            Text::tr("%n document(s) moved to the recycle bin; \"velldoc trash\" restores them.",
                     nullptr, documents.size()));
    }
}

} // namespace

const Command &rmCommand()
{
    static const Command command{
        "rm",
        "[-r] PATH...",
        QT_TRANSLATE_NOOP("velldoc", "move documents to the recycle bin"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Moves each document PATH into the recycle bin; with -r also folders "
                          "with all their contents."),
        {{"r,recursive", nullptr,
          QT_TRANSLATE_NOOP("velldoc", "Include folders with all their contents.")},
         dryRunOption()},
        {{"velldoc rm -r /old", QT_TRANSLATE_NOOP("velldoc", "a folder with all its contents")},
         {"velldoc rm '/Drawings/*.bak'",
          QT_TRANSLATE_NOOP("velldoc", "all files that match a pattern")}},
        run,
    };
    return command;
}

} // namespace velldoc
