#include <document_model/VellRecordType.h>
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
    condition.recordType = VellRecordType::Favorite;
    VellDocumentSort sort;
    sort.sortField = QStringLiteral("name");
    sort.isAsc = true;
    Session &session = context.session();
    return session.await(session.documents().favorites(condition, sort));
}

//! Prints whether a document is a favourite.
void check(Context &context, const QString &path)
{
    const VellDocument document = context.tree().find(RemotePath::parse(path));
    Session &session = context.session();
    const bool isFavourite = session.await(session.documents().isFavorite(document._id));
    context.out.setResult({{QStringLiteral("favorite"), isFavourite}});
    context.out.print(isFavourite ? Text::tr("yes") : Text::tr("no"));
}

void run(Context &context)
{
    const QStringList arguments = context.arguments();
    if (arguments.value(0) == QLatin1String("check"))
        check(context, context.arguments(2, 2).constLast());
    else
        runMarkCommand(context, {list, &VellDocuments::setFavorite});
}

} // namespace

const Command &favCommand()
{
    static const Command command{
        "fav",
        "[list | add PATH... | remove PATH... | check PATH]",
        QT_TRANSLATE_NOOP("velldoc", "your favourites"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Lists your favourites, adds or removes documents, or checks whether a "
                          "document is a favourite."),
        {{"l,long", nullptr,
          QT_TRANSLATE_NOOP("velldoc",
                            "Print a table with size, time and user of the last change.")},
         dryRunOption()},
        {{"velldoc fav add /Drawings/plan.dwg", QT_TRANSLATE_NOOP("velldoc", "a new favourite")}},
        run,
        {"list", "add", "remove", "check"},
    };
    return command;
}

} // namespace velldoc
