#include <velldoc/commands/Commands.h>
#include <velldoc/output/NaturalOrder.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>

#include <QJsonArray>

#include <algorithm>

namespace velldoc {

namespace {

QList<VellDocument> sortedByName(Context &context, const QString &path)
{
    QList<VellDocument> entries =
        context.tree().entries(context.tree().findFolder(RemotePath::parse(path))._id);
    std::sort(entries.begin(), entries.end(), [](const VellDocument &a, const VellDocument &b) {
        return compareNaturally(a.name, b.name) < 0;
    });
    return entries;
}

//! Returns the named entries in their order, then the other entries of their folder in their present order.
QList<VellDocument> startingWith(Context &context, const QStringList &paths)
{
    QList<VellDocument> ordered;
    QSet<QString> ids;
    for (const QString &text : paths) {
        const VellDocument document = context.tree().find(RemotePath::parse(text));
        if (document._id.isEmpty())
            throw Failure(ExitUsage, Text::tr("The top level has no position."));
        if (!ordered.isEmpty() && document.parentId != ordered.constFirst().parentId)
            throw Failure(ExitUsage, Text::tr("All entries must be in the same folder."));
        if (!ids.contains(document._id))
            ordered.append(document);
        ids.insert(document._id);
    }
    const QList<VellDocument> entries = context.tree().entries(ordered.constFirst().parentId);
    for (const VellDocument &entry : entries) {
        if (!ids.contains(entry._id))
            ordered.append(entry);
    }
    return ordered;
}

void run(Context &context)
{
    const bool isByName = context.isSet("by-name");
    const QStringList paths = isByName ? context.arguments(1, 1) : context.arguments(1);
    const QList<VellDocument> ordered =
        isByName ? sortedByName(context, paths.constFirst()) : startingWith(context, paths);
    QMap<QString, int> positions;
    QJsonArray names;
    for (const VellDocument &document : ordered) {
        positions.insert(document._id, positions.size() + 1);
        names.append(document.name);
        context.leaves(document.name);
    }
    if (!positions.isEmpty() && !context.isDryRun())
        context.session().await(context.session().documents().setOrder(positions));
    context.out.setResult({{QStringLiteral("order"), names}});
}

} // namespace

const Command &orderCommand()
{
    static const Command command{
        "order",
        "PATH... | --by-name FOLDER",
        QT_TRANSLATE_NOOP("velldoc", "set the order of the entries of a folder"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Moves the entries PATH of a folder to its start, in this order; the others follow in "
            "their present order. Lists still show folders before files."),
        {{"by-name", nullptr,
          QT_TRANSLATE_NOOP("velldoc",
                            "Sort a whole folder by name, with numbers by their value.")},
         dryRunOption()},
        {
            {"velldoc order /D/cover.pdf /D/plan.dwg",
             QT_TRANSLATE_NOOP("velldoc", "these two first")},
            {"velldoc order --by-name /D", QT_TRANSLATE_NOOP("velldoc", "Level 2 before Level 10")},
        },
        run,
    };
    return command;
}

} // namespace velldoc
