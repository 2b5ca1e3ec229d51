#include <velldoc/documents/Listing.h>

#include <file_types/FileTypes.h>
#include <velldoc/documents/FolderPaths.h>
#include <velldoc/output/DisplayWidth.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/output/Json.h>
#include <velldoc/output/Output.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>

namespace velldoc {

Table longTable(const QList<VellDocument> &documents, Session &session)
{
    Table table;
    table.addColumn(Text::tr("Type"), Qt::AlignLeft, Table::Fit::Drops);
    table.addColumn(Text::tr("Size"), Qt::AlignRight);
    table.addColumn(Text::tr("Changed"), Qt::AlignLeft, Table::Fit::Drops);
    table.addColumn(Text::tr("By"), Qt::AlignLeft, Table::Fit::Drops);
    table.addColumn(Text::tr("Name"), Qt::AlignLeft, Table::Fit::Shrinks);
    for (const VellDocument &document : documents) {
        table.addRow({kindText(document), sizeCell(document), timeText(document.updatedAt),
                      session.userText(document.updatedBy), shownName(document)});
    }
    return table;
}

void showDocuments(Context &context, const QList<VellDocument> &documents, const QString &key,
                   const FolderPaths &paths)
{
    QJsonArray array;
    QList<VellDocument> shown = documents;
    for (VellDocument &document : shown) {
        const QString path = paths.pathOf(document);
        if (context.out.isJson())
            array.append(documentJson(document, path));
        document.name = path;
    }
    context.out.setResult({{key, array}});
    if (!context.isSet("l"))
        printNames(shown, context.out);
    else if (!shown.isEmpty())
        context.out.print(longTable(shown, context.session()));
}

void printNames(const QList<VellDocument> &documents, Output &output)
{
    for (const VellDocument &document : documents)
        output.printName(shownName(document));
}

QString shownName(const VellDocument &document)
{
    return isFolder(document) ? document.name + QLatin1Char('/') : document.name;
}

QString printedPath(const RemotePath &path)
{
    return printable(path.text());
}

QString kindText(const VellDocument &document)
{
    if (isFolder(document))
        return Text::tr("Folder");
    return VellPubDoc::getFileTypeName(VellPubDoc::getFileType(document.suffix));
}

QString sizeCell(const VellDocument &document)
{
    return isFolder(document) ? QString() : sizeText(document.fileSize);
}

} // namespace velldoc
