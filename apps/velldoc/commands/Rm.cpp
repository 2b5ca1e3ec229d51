#include <velldoc/Context.h>
#include <velldoc/Text.h>
#include <velldoc/commands/Commands.h>
#include <velldoc/output/Json.h>

namespace velldoc {

namespace {

QList<VellDocument> findAll(Context &context)
{
    const QStringList paths = context.arguments(1, 0);
    QList<VellDocument> documents;
    for (const QString &text : paths) {
        const VellDocument document = context.tree().find(RemotePath::parse(text));
        if (document._id.isEmpty())
            throw Failure(ExitUsage, Text::tr("The top level itself cannot be deleted."));
        if (isFolder(document) && !context.isSet("recursive")) {
            throw Failure(
                ExitFailed,
                Text::tr("%1 is a folder: pass -r to delete it with everything in it.").arg(text));
        }
        documents.append(document);
    }
    return documents;
}

void run(Context &context)
{
    // All are looked up before the first one goes.
    const QList<VellDocument> documents = findAll(context);
    QJsonArray deleted;
    for (const VellDocument &document : documents) {
        Session &session = context.session();
        session.awaitAll(session.documents().remove({document._id}));
        deleted.append(documentJson(document));
        context.out.setResult({{QStringLiteral("deleted"), deleted}});
    }
    context.out.note(
        Text::tr("%n document(s) moved to the recycle bin; \"velldoc trash\" brings them back.",
                 nullptr, documents.size()));
}

} // namespace

const Command &rmCommand()
{
    static const Command command{
        "rm",
        "[-r] PATH...",
        QT_TRANSLATE_NOOP("velldoc", "move to the recycle bin"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Moves each document PATH, or with -r each folder with everything below, "
                          "to the recycle bin."),
        {{"r,recursive", nullptr,
          QT_TRANSLATE_NOOP("velldoc", "Folders as well, with everything below.")}},
        {{"velldoc rm -r /old", QT_TRANSLATE_NOOP("velldoc", "a folder with everything in it")}},
        run,
    };
    return command;
}

} // namespace velldoc
