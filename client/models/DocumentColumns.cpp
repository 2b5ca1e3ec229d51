#include <models/DocumentColumns.h>

#include <file_types/FileTypes.h>
#include <models/VellDocumentModel.h>
#include <session/VellSession.h>

#include <QCoreApplication>
#include <QLocale>

#include <iterator>

namespace {

class ColumnText
{
    Q_DECLARE_TR_FUNCTIONS(VellDocumentModel)

public:
    static QString folder() { return tr("Folder"); }
};

bool isFolder(const VellDocument &document)
{
    return document.type == QLatin1String("dir");
}

QString name(const VellDocument &document, VellSession *)
{
    return document.name;
}

QString size(const VellDocument &document, VellSession *)
{
    return isFolder(document) ? QString() : QLocale().formattedDataSize(document.fileSize);
}

QString type(const VellDocument &document, VellSession *)
{
    return isFolder(document)
        ? ColumnText::folder()
        : VellPubDoc::getFileTypeName(VellPubDoc::getFileType(document.suffix));
}

QString changedAt(const VellDocument &document, VellSession *)
{
    return QLocale().toString(document.updatedAt.toLocalTime(), QLocale::ShortFormat);
}

QString changedBy(const VellDocument &document, VellSession *session)
{
    return document.updatedBy.isEmpty() ? QString() : session->userName(document.updatedBy);
}

QString remark(const VellDocument &document, VellSession *)
{
    return document.remark;
}

struct Column
{
    const char *title;
    QString (*text)(const VellDocument &document, VellSession *session);
    const char *sortField; // for the service
    bool (*differ)(const VellDocument &a, const VellDocument &b); // compares that field
};

using Document = const VellDocument &;

// In the order of VellDocumentModel::Column.
constexpr Column Columns[] = {
    {QT_TRANSLATE_NOOP("VellDocumentModel", "Name"), name, "name",
     [](Document a, Document b) { return a.name != b.name; }},
    {QT_TRANSLATE_NOOP("VellDocumentModel", "Size"), size, "fileSize",
     [](Document a, Document b) { return a.fileSize != b.fileSize; }},
    {QT_TRANSLATE_NOOP("VellDocumentModel", "Type"), type, "suffix",
     [](Document a, Document b) { return a.suffix != b.suffix; }},
    {QT_TRANSLATE_NOOP("VellDocumentModel", "Changed"), changedAt, "updatedAt",
     [](Document a, Document b) { return a.updatedAt != b.updatedAt; }},
    {QT_TRANSLATE_NOOP("VellDocumentModel", "Changed by"), changedBy, "updatedBy",
     [](Document a, Document b) { return a.updatedBy != b.updatedBy; }},
    {QT_TRANSLATE_NOOP("VellDocumentModel", "Remark"), remark, "remark",
     [](Document a, Document b) { return a.remark != b.remark; }},
};
static_assert(std::size(Columns) == VellDocumentModel::ColumnCount);

} // namespace

QString document_columns::title(int column)
{
    return VellDocumentModel::tr(Columns[column].title);
}

QString document_columns::text(const VellDocument &document, int column, VellSession *session)
{
    return Columns[column].text(document, session);
}

VellDocumentSort document_columns::sortBy(int column, Qt::SortOrder order)
{
    VellDocumentSort sort;
    sort.isDefault = false;
    sort.isAsc = true; // for the first key; each key has its own direction
    const QString sign = order == Qt::DescendingOrder ? QStringLiteral("-") : QString();
    sort.sortField =
        QStringLiteral("type ") + sign + QString::fromLatin1(Columns[column].sortField);
    // Equal sizes and times are rare, and without another key the service can use its index.
    const bool isOftenEqual = column == VellDocumentModel::TypeColumn
        || column == VellDocumentModel::ChangedByColumn
        || column == VellDocumentModel::RemarkColumn;
    if (isOftenEqual)
        sort.sortField += QStringLiteral(" name");
    return sort;
}

bool document_columns::isSortedApart(const VellDocument &a, const VellDocument &b, int column)
{
    if (column < 0)
        return a.order != b.order || a.updatedAt != b.updatedAt;
    return Columns[column].differ(a, b) || a.name != b.name;
}
