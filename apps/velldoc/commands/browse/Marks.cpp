#include <velldoc/commands/browse/Marks.h>

#include <velldoc/documents/FolderPaths.h>
#include <velldoc/documents/Listing.h>
#include <velldoc/output/Json.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

void setAll(Context &context, const Mark &mark, const QStringList &paths, bool isOn)
{
    QJsonArray marked;
    for (const QString &path : paths) {
        const VellDocument document = context.tree().find(RemotePath::parse(path));
        if (context.leaves(path))
            continue;
        Session &session = context.session();
        session.await((session.documents().*mark.set)(document._id, isOn));
        marked.append(documentJson(document));
        context.out.setResult(
            {{QStringLiteral("documents"), marked}, {QStringLiteral("marked"), isOn}});
    }
}

} // namespace

void runMarkCommand(Context &context, const Mark &mark)
{
    QStringList arguments = context.arguments();
    const QString action = arguments.isEmpty() ? QStringLiteral("list") : arguments.takeFirst();
    if (action == QLatin1String("add") || action == QLatin1String("remove")) {
        context.arguments(2);
        setAll(context, mark, arguments, action == QLatin1String("add"));
        return;
    }
    if (action != QLatin1String("list"))
        throw Failure(ExitUsage,
                      Text::tr("\"%1\" is not one of list, add and remove.").arg(action));
    context.arguments(0, 1);
    const QList<VellDocument> documents = mark.list(context);
    showDocuments(context, documents, QStringLiteral("documents"), FolderPaths(context.session()));
    if (documents.isEmpty())
        context.out.note(Text::tr("No document is marked."));
}

} // namespace velldoc
