#include <document_model/DocumentConstants.h>
#include <file_types/FileTypes.h>
#include <velldoc/commands/Commands.h>
#include <velldoc/output/Table.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>

#include <QFileInfo>
#include <QJsonArray>

namespace velldoc {

namespace {

void classify(Context &context, const QStringList &names)
{
    Table table;
    table.addColumn(Text::tr("Name"), Qt::AlignLeft, Table::Fit::Shrinks);
    table.addColumn(Text::tr("Type"));
    table.addColumn(Text::tr("Meaning"));
    QJsonArray array;
    for (const QString &name : names) {
        const QString kind = VellPubDoc::getFileType(QFileInfo(name).suffix());
        table.addRow({name, kind, VellPubDoc::getFileTypeName(kind)});
        array.append(QJsonObject{{QStringLiteral("name"), name}, {QStringLiteral("kind"), kind}});
    }
    context.out.setResult({{QStringLiteral("files"), array}});
    context.out.print(table);
}

//! Returns all known suffixes by file type.
QMap<QString, QStringList> suffixesByKind()
{
    const QStringList more{SUFFIX_TXT, SUFFIX_XLS, SUFFIX_7Z, SUFFIX_RAR, SUFFIX_ZIP};
    QMap<QString, QStringList> suffixes;
    for (const QStringList &list : {DRAWING_SUFFIXES, SHEET_SUFFIXES, MEDIA_SUFFIXES,
                                    OFFICE_SUFFIXES, IMAGE_SUFFIXES, more}) {
        for (const QString &suffix : list)
            suffixes[VellPubDoc::getFileType(suffix)].append(suffix);
    }
    return suffixes;
}

void list(Context &context)
{
    Table table;
    table.addColumn(Text::tr("Type"));
    table.addColumn(Text::tr("Meaning"));
    table.addColumn(Text::tr("Suffixes"), Qt::AlignLeft, Table::Fit::Wraps);
    QJsonArray array;
    const QMap<QString, QStringList> suffixes = suffixesByKind();
    for (const QString &kind :
         {FILE_TYPE_DWG, FILE_TYPE_IMAGE, FILE_TYPE_OFFICE, FILE_TYPE_VIDEO, FILE_TYPE_OTHER}) {
        table.addRow(
            {kind, VellPubDoc::getFileTypeName(kind), suffixes.value(kind).join(QLatin1Char(' '))});
        array.append(QJsonObject{
            {QStringLiteral("kind"), kind},
            {QStringLiteral("suffixes"), QJsonArray::fromStringList(suffixes.value(kind))}});
    }
    context.out.setResult({{QStringLiteral("kinds"), array}});
    context.out.print(table);
}

void run(Context &context)
{
    const QStringList names = context.arguments();
    if (names.isEmpty())
        list(context);
    else
        classify(context, names);
}

} // namespace

const Command &typesCommand()
{
    static const Command command{
        "types",
        "[NAME...]",
        QT_TRANSLATE_NOOP("velldoc", "list the file types and their suffixes"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Lists the file types with their suffixes, or prints the type of each file NAME."),
        {},
        {{"velldoc types plan.dwg", QT_TRANSLATE_NOOP("velldoc", "the type of a drawing")}},
        run,
    };
    return command;
}

} // namespace velldoc
