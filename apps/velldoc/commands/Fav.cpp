#include <document_service/VellDocumentData.h>
#include <velldoc/Context.h>
#include <velldoc/Marks.h>
#include <velldoc/Text.h>
#include <velldoc/commands/Commands.h>

namespace velldoc {

namespace {

constexpr int FavouriteRecord = 3;

QList<VellDocument> list(Context &context)
{
    VellDocumentConditon condition;
    condition.hasParentId = false;
    condition.recordType = FavouriteRecord;
    VellDocumentSort sort;
    sort.sortField = QStringLiteral("name");
    sort.isAsc = true;
    QList<VellDocument> documents;
    context.session().change(
        [&] { return VellDocumentData::instance()->getFavorDocs(documents, condition, sort); });
    return documents;
}

bool set(const QString &id, bool isOn)
{
    QString unused;
    return VellDocumentData::instance()->restoreFile(id, {}, FavouriteRecord, isOn, unused);
}

//! Tells of one document whether it is a favourite.
void check(Context &context, const QString &path)
{
    const VellDocument document = context.tree().find(RemotePath::parse(path));
    int type = 0;
    context.session().change(
        [&] { return VellDocumentData::instance()->getFavorDoc(type, document._id); });
    const bool isFavourite = type == FavouriteRecord;
    context.out.setResult({{QStringLiteral("favorite"), isFavourite}});
    context.out.print(isFavourite ? Text::tr("yes") : Text::tr("no"));
}

void run(Context &context)
{
    const QStringList arguments = context.arguments();
    if (arguments.value(0) == QLatin1String("check"))
        check(context, context.arguments(2, 2).constLast());
    else
        runMarkCommand(context, {list, set});
}

} // namespace

const Command &favCommand()
{
    static const Command command{
        "fav",
        "[list | add PATH... | remove PATH... | check PATH]",
        QT_TRANSLATE_NOOP("velldoc", "your favourites"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Lists your favourites, marks documents as such, unmarks them, or tells "
                          "whether one is."),
        {{"l,long", nullptr,
          QT_TRANSLATE_NOOP("velldoc", "A table with size, time and who changed it.")}},
        {{"velldoc fav add /Drawings/plan.dwg", QT_TRANSLATE_NOOP("velldoc", "a new favourite")}},
        run,
        {"list", "add", "remove", "check"},
    };
    return command;
}

} // namespace velldoc
