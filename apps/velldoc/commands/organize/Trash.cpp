#include <velldoc/commands/Commands.h>
#include <velldoc/documents/FolderPaths.h>
#include <velldoc/documents/Listing.h>
#include <velldoc/documents/RecycleBin.h>
#include <velldoc/output/Json.h>
#include <velldoc/output/Question.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

VellDocumentConditon binCondition()
{
    VellDocumentConditon condition;
    condition.category = QStringLiteral("recycle");
    return condition;
}

VellDocument findInBin(const QList<VellDocument> &bin, const QString &text)
{
    const RemotePath path = RemotePath::parse(text);
    QList<VellDocument> found;
    for (const VellDocument &document : bin) {
        if (path.isBareId() ? document._id == path.id() : document.name == path.name())
            found.append(document);
    }
    if (found.isEmpty())
        throw Failure(ExitNotFound, Text::tr("There is no %1 in the recycle bin.").arg(text));
    if (found.size() == 1)
        return found.constFirst();
    QStringList ids;
    for (const VellDocument &document : qAsConst(found))
        ids.append(QStringLiteral("id:") + document._id);
    throw Failure(ExitFailed,
                  Text::tr("Several entries of the recycle bin have the name %1: choose one of %2.")
                      .arg(text, ids.join(QStringLiteral(", "))));
}

//! Lists the recycle bin, or a deleted folder.
void list(Context &context, const QStringList &names)
{
    QList<VellDocument> documents = readBin(context);
    if (!names.isEmpty()) {
        const VellDocument folder = findInBin(documents, names.constFirst());
        VellDocumentConditon condition = binCondition();
        condition.parentId = folder._id;
        documents = context.tree().list(condition);
    }
    showDocuments(context, documents, QStringLiteral("documents"), FolderPaths(context.session()));
    if (documents.isEmpty())
        context.out.note(names.isEmpty() ? Text::tr("The recycle bin is empty.")
                                         : Text::tr("%1 is empty.").arg(names.constFirst()));
}

void restore(Context &context, const QStringList &names)
{
    const QList<VellDocument> bin = readBin(context);
    QList<VellDocument> documents;
    for (const QString &name : names)
        documents.append(findInBin(bin, name));
    if (context.isSet("all"))
        documents = bin;
    if (documents.isEmpty() && !context.isSet("all"))
        throw Failure(ExitUsage, Text::tr("Name the documents to be restored, or pass --all."));
    QJsonArray restored;
    for (const VellDocument &document : qAsConst(documents)) {
        if (context.leaves(document.name))
            continue;
        Session &session = context.session();
        const bool hasTwin = session.awaitAll(session.documents().restore({document._id}))
                                 .sameNamed.contains(document._id);
        restored.append(QJsonObject{{QStringLiteral("document"), documentJson(document)},
                                    {QStringLiteral("nameTaken"), hasTwin}});
        context.out.setResult({{QStringLiteral("restored"), restored}});
        if (hasTwin) {
            context.out.note(Text::tr("%1 has been restored, but its folder has another entry with "
                                      "that name: rename it with \"velldoc rename id:%2 NAME\".")
                                 .arg(document.name, document._id));
        }
    }
    if (!context.isDryRun())
        context.out.note(Text::tr("%n document(s) restored.", nullptr, documents.size()));
}

//! Deletes documents permanently.
void purge(Context &context, const QStringList &names)
{
    if (names.isEmpty())
        throw Failure(ExitUsage, Text::tr("Name the documents to be deleted permanently."));
    const QList<VellDocument> bin = readBin(context);
    QList<VellDocument> documents;
    for (const QString &name : names) {
        const VellDocument document = findInBin(bin, name);
        if (!context.leaves(document.name))
            documents.append(document);
    }
    if (context.isDryRun())
        return;
    requireAgreement(Text::tr("Delete %n document(s) permanently?", nullptr, documents.size()),
                     context.isSet("yes"));
    QJsonArray deleted;
    for (const VellDocument &document : qAsConst(documents)) {
        Session &session = context.session();
        session.awaitAll(session.documents().purge({document._id}));
        deleted.append(documentJson(document));
        context.out.setResult({{QStringLiteral("deleted"), deleted}});
    }
    context.out.note(Text::tr("%n document(s) deleted permanently.", nullptr, documents.size()));
}

void empty(Context &context)
{
    Session &session = context.session();
    const int total = session.await(session.documents().count(binCondition()));
    if (context.isDryRun()) {
        list(context, {});
        return;
    }
    if (total == 0) {
        context.out.setResult({{QStringLiteral("deleted"), 0}});
        context.out.note(Text::tr("The recycle bin is empty."));
        return;
    }
    requireAgreement(Text::tr("Delete %n document(s) permanently?", nullptr, total),
                     context.isSet("yes"));
    session.await(session.documents().emptyRecycleBin(QStringLiteral("recycle")));
    context.out.setResult({{QStringLiteral("deleted"), total}});
    context.out.note(Text::tr("%n document(s) deleted permanently.", nullptr, total));
}

void run(Context &context)
{
    QStringList arguments = context.arguments();
    const QString action = arguments.isEmpty() ? QStringLiteral("list") : arguments.takeFirst();
    if (action == QLatin1String("restore")) {
        restore(context, arguments);
        return;
    }
    if (action == QLatin1String("purge")) {
        purge(context, arguments);
        return;
    }
    context.arguments(0, action == QLatin1String("list") ? 2 : 1);
    if (action == QLatin1String("list"))
        list(context, arguments);
    else if (action == QLatin1String("empty"))
        empty(context);
    else
        throw Failure(ExitUsage,
                      Text::tr("\"%1\" is not one of list, restore, purge and empty.").arg(action));
}

} // namespace

const Command &trashCommand()
{
    static const Command command{
        "trash",
        "[list [NAME] | restore NAME... | purge NAME... | empty]",
        QT_TRANSLATE_NOOP("velldoc", "list or empty the recycle bin, or restore documents"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Lists the recycle bin or the deleted folder NAME, or restores documents (by name or "
            "id:...). \"purge\" deletes documents permanently, \"empty\" everything in the recycle "
            "bin."),
        {
            {"l,long", nullptr,
             QT_TRANSLATE_NOOP("velldoc",
                               "Print a table with size, and the time and user of the deletion.")},
            {"all", nullptr, QT_TRANSLATE_NOOP("velldoc", "Restore everything.")},
            {"y,yes", nullptr, QT_TRANSLATE_NOOP("velldoc", "Delete without asking.")},
            dryRunOption(),
        },
        {{"velldoc trash restore plan.dwg", QT_TRANSLATE_NOOP("velldoc", "restore a document")},
         {"velldoc trash purge old.dwg",
          QT_TRANSLATE_NOOP("velldoc", "delete a document permanently")}},
        run,
        {"list", "restore", "purge", "empty"},
    };
    return command;
}

} // namespace velldoc
