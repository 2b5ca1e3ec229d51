#include <file_types/FileTypes.h>

#include <document_model/DocumentConstants.h>
#include <document_model/VellDocument.h>

#include <QFileInfo>
#include <QImageReader>
#include <QObject>

QString VellPubDoc::getFileType(const QString &suffix)
{
    // OFFICE_SUFFIXES does not contain the suffixes of texts and sheets, and clients rely on that.
    static const QStringList documentSuffixes{SUFFIX_TXT, SUFFIX_XLSX, SUFFIX_XLS,
                                              SUFFIX_DOC, SUFFIX_DOCX, SUFFIX_DOT,
                                              SUFFIX_PDF, SUFFIX_PPT,  SUFFIX_PPTX};
    struct Row
    {
        const QStringList &suffixes;
        const QString &category;
    };
    static constexpr Row Rows[] = {
        {IMAGE_SUFFIXES, FILE_TYPE_IMAGE},
        {documentSuffixes, FILE_TYPE_OFFICE},
        {DRAWING_SUFFIXES, FILE_TYPE_DWG},
        {MEDIA_SUFFIXES, FILE_TYPE_VIDEO}, // also audio: the name of the category includes both
    };
    for (const Row &row : Rows) {
        if (row.suffixes.contains(suffix, Qt::CaseInsensitive))
            return row.category;
    }
    return FILE_TYPE_OTHER;
}

QString VellPubDoc::getFileTypeName(const QString &category)
{
    struct Row
    {
        const QString &category;
        const char *name;
    };
    static constexpr Row Rows[] = {
        {FILE_TYPE_DWG, QT_TRANSLATE_NOOP("QObject", "图纸")},
        {FILE_TYPE_IMAGE, QT_TRANSLATE_NOOP("QObject", "图片")},
        {FILE_TYPE_OFFICE, QT_TRANSLATE_NOOP("QObject", "文档")},
        {FILE_TYPE_VIDEO, QT_TRANSLATE_NOOP("QObject", "音/视频")},
    };
    for (const Row &row : Rows) {
        if (row.category == category)
            return QObject::tr(row.name);
    }
    return QObject::tr("其他");
}

QString VellPubDoc::getFileTypeIconPath(const VellDocument &doc)
{
    if (doc.type == QLatin1String("dir"))
        return QStringLiteral(":/item/Resources/item/folder.png");

    // Without "jpeg": such files have the icon for unknown files, although their category is "image".
    struct Row
    {
        const QString &suffix;
        const char *picture;
    };
    static constexpr Row Rows[] = {
        {SUFFIX_PNG, "pic"},    {SUFFIX_BMP, "pic"},    {SUFFIX_JPG, "pic"},
        {SUFFIX_DOCX, "word"},  {SUFFIX_DOC, "word"},   {SUFFIX_DOT, "word"},
        {SUFFIX_XLSX, "excel"}, {SUFFIX_XLS, "excel"},  {SUFFIX_PPTX, "ppt"},
        {SUFFIX_PPT, "ppt"},    {SUFFIX_PDF, "pdf"},    {SUFFIX_TXT, "txt"},
        {SUFFIX_MP3, "music"},  {SUFFIX_MID, "music"},  {SUFFIX_WAV, "music"},
        {SUFFIX_MP4, "video"},  {SUFFIX_RMVB, "video"}, {SUFFIX_WMV, "video"},
        {SUFFIX_AVI, "video"},  {SUFFIX_DWG, "dwg"},    {SUFFIX_DWT, "dwg"},
        {SUFFIX_DWF, "dwg"},    {SUFFIX_DWS, "dwg"},    {SUFFIX_DXF, "dwg"},
        {SUFFIX_ZIP, "zip"},    {SUFFIX_RAR, "zip"},    {SUFFIX_7Z, "zip"},
    };
    const char *picture = "unknown";
    for (const Row &row : Rows) {
        if (doc.suffix.compare(row.suffix, Qt::CaseInsensitive) == 0) {
            picture = row.picture;
            break;
        }
    }
    return QStringLiteral(":/item/Resources/item/type/%1.png").arg(QLatin1String(picture));
}

QIcon VellPubDoc::getFileTypeIcon(const VellDocument &doc)
{
    return QIcon(getFileTypeIconPath(doc));
}

QPixmap VellPubDoc::getFileIcon(const QString &path)
{
    const QString category = getFileType(QFileInfo(path).suffix());
    if (category == FILE_TYPE_IMAGE) {
        QImageReader reader(path, QByteArray());
        reader.setDecideFormatFromContent(true);
        return QPixmap::fromImageReader(&reader);
    }

    struct Row
    {
        const QString &category;
        const char *picture;
    };
    static constexpr Row Rows[] = {
        {FILE_TYPE_OFFICE, ":/DocumentManagement/Resources/file_show.png"},
        // The space is part of the name of the image in the clients.
        {FILE_TYPE_DWG, ":/DocumentManagement/Resources/drawing _show.png"},
        {FILE_TYPE_VIDEO, ":/DocumentManagement/Resources/movie_show.png"},
    };
    for (const Row &row : Rows) {
        if (row.category == category)
            return QPixmap(QLatin1String(row.picture));
    }
    return QPixmap(QStringLiteral(":/DocumentManagement/Resources/other_show.png"));
}

QStringList VellPubDoc::getNameFilters()
{
    // Irregular spaces, no "jpeg" and no "dwf" on purpose: clients compare these texts.
    return {
        QObject::tr("所有类型 (*.*)"),
        QStringLiteral("Image files (*.png *.bmp *.jpg)"),
        QStringLiteral("Text files (*.txt)"),
        QStringLiteral("Excel files(*.xlsx *.xls)"),
        QStringLiteral("PPT files(*.pptx *.ppt)"),
        QStringLiteral("Word files (*.doc *.docx *.dot)"),
        QStringLiteral("Pdf files(*.pdf) "),
        QStringLiteral("Drawing files (*.dwt *.dwg *.dws *.dxf)"),
        QStringLiteral("Music files (*.mp3 *.wav *.mid)"),
        QStringLiteral("Movie files (*.avi *.rmvb *.mp4 *.wmv)"),
    };
}
