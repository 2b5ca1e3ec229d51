#include <document_model/DocumentConversions.h>
#include <velldoc/commands/Commands.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/output/Json.h>
#include <velldoc/output/Table.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

void show(Context &context, const VellDocument &document)
{
    Table table;
    table.addColumn(Text::tr("Type"));
    table.addColumn(Text::tr("Entity"), Qt::AlignLeft, Table::Fit::Shrinks);
    for (auto it = document.entity.begin(); it != document.entity.end(); ++it) {
        for (const QString &id : it.value())
            table.addRow({it.key(), id});
    }
    context.out.setResult({{QStringLiteral("document"), documentJson(document)}});
    if (document.entity.isEmpty())
        context.out.note(Text::tr("%1 has no links.").arg(document.name));
    else
        context.out.print(table);
}

//! Adds the links to \a document, or removes them.
void change(VellDocument &document, const QString &action, const QString &kind,
            const QStringList &ids)
{
    const bool isAdding = action == QLatin1String("add");
    if (!isAdding && action != QLatin1String("remove"))
        throw Failure(ExitUsage, Text::tr("\"%1\" is neither add nor remove.").arg(action));
    QStringList &linked = document.entity[kind];
    for (const QString &id : ids) {
        if (!isAdding && !linked.contains(id))
            throw Failure(ExitNotFound,
                          Text::tr("%1 has no link to %2 %3.").arg(document.name, kind, id));
        linked.removeAll(id);
        if (isAdding)
            linked.append(id);
    }
    if (linked.isEmpty())
        document.entity.remove(kind);
}

//! Lists the documents that are linked to an entity.
void showLinkedTo(Context &context, const QString &entity)
{
    const QList<VellDocumentLite> found =
        context.session().await(context.session().documents().linkedTo(entity));
    Table table;
    table.addColumn(Text::tr("Size"), Qt::AlignRight);
    table.addColumn(Text::tr("Created"));
    table.addColumn(Text::tr("Name"), Qt::AlignLeft, Table::Fit::Shrinks);
    table.addColumn(Text::tr("Identifier"));
    QJsonArray array;
    for (const VellDocumentLite &lite : qAsConst(found)) {
        VellDocument document;
        VellPubDoc::docLite2Document(lite, document);
        table.addRow({sizeText(document.fileSize), timeText(document.createdAt), document.name,
                      QStringLiteral("id:") + document._id});
        array.append(QJsonObject{{QStringLiteral("id"), document._id},
                                 {QStringLiteral("name"), document.name},
                                 {QStringLiteral("size"), document.fileSize},
                                 {QStringLiteral("createdBy"), document.createdBy}});
    }
    context.out.setResult({{QStringLiteral("documents"), array}});
    if (found.isEmpty())
        context.out.note(Text::tr("No document is linked to %1.").arg(entity));
    else
        context.out.print(table);
}

void run(Context &context)
{
    if (context.isSet("to")) {
        context.arguments(0, 0);
        showLinkedTo(context, context.value("to"));
        return;
    }
    const QStringList arguments = context.arguments(1);
    const VellDocument found = context.tree().find(RemotePath::parse(arguments.constFirst()));
    if (found._id.isEmpty())
        throw Failure(ExitUsage, Text::tr("The top level has no links."));
    VellDocument document =
        context.session().await(context.session().documents().document(found._id));
    if (arguments.size() > 1) {
        context.arguments(4);
        change(document, arguments.at(1), arguments.at(2), arguments.mid(3));
        if (context.leaves(arguments.constFirst()))
            return;
        document = context.session().await(context.session().documents().setLinks(document));
    }
    show(context, document);
}

} // namespace

const Command &linksCommand()
{
    static const Command command{
        "links",
        "PATH [add KIND ID... | remove KIND ID...] | --to ID",
        QT_TRANSLATE_NOOP("velldoc", "list or change the links of a document"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Lists the links of the document PATH to entities, adds or removes "
                          "links, or lists the documents that are linked to an entity."),
        {{"to", "ID",
          QT_TRANSLATE_NOOP("velldoc", "List the documents that are linked to this entity.")},
         dryRunOption()},
        {{"velldoc links /Drawings/plan.dwg add room 4711",
          QT_TRANSLATE_NOOP("velldoc", "link a drawing to a room")}},
        run,
    };
    return command;
}

} // namespace velldoc
