#include <velldoc/commands/Commands.h>
#include <velldoc/documents/RemotePatterns.h>
#include <velldoc/documents/Renaming.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/output/Json.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

void move(Context &context, const QList<VellDocument> &documents, const QString &folderId)
{
    QStringList ids;
    for (const VellDocument &document : documents) {
        if (document.parentId != folderId)
            ids.append(document._id);
    }
    if (context.isDryRun())
        return;
    if (!ids.isEmpty())
        context.session().awaitAll(context.session().documents().move(ids, folderId));
}

void moveInto(Context &context, const QList<NamedDocument> &sources, const VellDocument &folder,
              const RemotePath &path)
{
    QList<VellDocument> documents;
    QJsonArray moved;
    QSet<QString> names;
    for (const NamedDocument &source : sources) {
        VellDocument document = source.document;
        if (document.parentId != folder._id)
            requireFreeName(context, folder._id, path.text(), document.name);
        if (names.contains(document.name))
            throw Failure(ExitUsage,
                          Text::tr("Two of them have the name \"%1\".").arg(document.name));
        names.insert(document.name);
        context.leaves(source.path.text());
        documents.append(document);
        document.parentId = folder._id;
        moved.append(documentJson(document, path.child(document.name).text()));
    }
    move(context, documents, folder._id);
    context.out.setResult({{QStringLiteral("documents"), moved}});
}

//! Restores the old name of \a document, which could not be moved because of \a reason.
void takeBack(Context &context, const VellDocument &document, const QString &oldName,
              const Failure &reason)
{
    try {
        renameDocument(context, document, oldName);
    } catch (const Failure &) {
        const QString state =
            Text::tr("It is still in the same folder, but its name is \"%1\" now.");
        throw Failure(reason.code(), joinedSentences({reason.sentence(), state.arg(document.name)}),
                      reason.httpStatus());
    }
}

//! Moves a document into another folder, renames it, or both.
void moveTo(Context &context, const NamedDocument &source, const RemotePath &target)
{
    VellDocument document = source.document;
    const VellDocument folder = context.tree().findFolder(target.parent());
    if (document.parentId != folder._id)
        requireFreeName(context, folder._id, target.parent().text(), target.name());
    if (context.leaves(source.path.text()))
        return;
    // Renaming first, because this is more likely to be refused.
    const QString oldName = document.name;
    document = renameDocument(context, document, target.name());
    try {
        move(context, {document}, folder._id);
    } catch (const Failure &failure) {
        takeBack(context, document, oldName, failure);
        throw;
    }
    document.parentId = folder._id;
    context.out.setResult(
        {{QStringLiteral("documents"), QJsonArray{documentJson(document, target.text())}}});
}

void run(Context &context)
{
    QStringList texts = context.arguments(2);
    const RemotePath target = RemotePath::parse(texts.takeLast());
    const QList<NamedDocument> sources = namedDocuments(context, texts);
    for (const NamedDocument &source : sources) {
        if (source.document._id.isEmpty())
            throw Failure(ExitUsage, Text::tr("The top level itself cannot be moved."));
    }
    const std::optional<VellDocument> there = context.tree().tryFind(target);
    if (there && isFolder(*there)) {
        moveInto(context, sources, *there, target);
        return;
    }
    if (there)
        throw Failure(ExitFailed,
                      Text::tr("%1 already exists: choose another name.").arg(target.text()));
    if (sources.size() > 1 || target.endsWithSlash()) {
        throw Failure(ExitNotFound,
                      Text::tr("There is no folder %1: create it with \"velldoc mkdir -p\".")
                          .arg(target.text()));
    }
    moveTo(context, sources.constFirst(), target);
}

} // namespace

const Command &mvCommand()
{
    static const Command command{
        "mv",
        "SOURCE... TARGET",
        QT_TRANSLATE_NOOP("velldoc", "move documents and folders"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Moves each SOURCE into the folder TARGET, or a single SOURCE to the path TARGET."),
        {dryRunOption()},
        {
            {"velldoc mv /in/a.dwg /in/b.dwg /Drawings",
             QT_TRANSLATE_NOOP("velldoc", "two documents into a folder")},
            {"velldoc mv /in/a.dwg /Drawings/plan.dwg",
             QT_TRANSLATE_NOOP("velldoc", "to another folder with another name")},
        },
        run,
    };
    return command;
}

} // namespace velldoc
