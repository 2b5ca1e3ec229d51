#include <document_model/DocumentConstants.h>
#include <document_model/VellDocument.h>
#include <file_types/FileTypes.h>

#include <QTest>

namespace {

QString iconPath(const QString &name)
{
    return QString(":/item/Resources/item/") + name + ".png";
}

struct SuffixRow
{
    const char *suffix;
    const char *category;
    const char *icon;
};

// Every suffix that any of the tables knows, and what must not be taken for one.
constexpr SuffixRow SuffixTable[] = {
    {"bmp", "image", "pic"},      {"jpg", "image", "pic"},       {"png", "image", "pic"},
    {"jpeg", "image", "unknown"}, {"txt", "office", "txt"},      {"xlsx", "office", "excel"},
    {"xls", "office", "excel"},   {"doc", "office", "word"},     {"docx", "office", "word"},
    {"dot", "office", "word"},    {"pdf", "office", "pdf"},      {"ppt", "office", "ppt"},
    {"pptx", "office", "ppt"},    {"dwg", "dwg", "dwg"},         {"dwf", "dwg", "dwg"},
    {"dxf", "dwg", "dwg"},        {"dws", "dwg", "dwg"},         {"dwt", "dwg", "dwg"},
    {"mp3", "video", "music"},    {"wav", "video", "music"},     {"mid", "video", "music"},
    {"avi", "video", "video"},    {"rmvb", "video", "video"},    {"mp4", "video", "video"},
    {"wmv", "video", "video"},    {"zip", "other", "zip"},       {"rar", "other", "zip"},
    {"7z", "other", "zip"},       {"", "other", "unknown"},      {"gif", "other", "unknown"},
    {"tar", "other", "unknown"},  {"dotx", "other", "unknown"},  {"xlsm", "other", "unknown"},
    {"pn", "other", "unknown"},   {"pngx", "other", "unknown"},  {".png", "other", "unknown"},
    {"png ", "other", "unknown"}, {"a.png", "other", "unknown"}, {"图纸", "other", "unknown"},
};

QString inMixedCase(const QString &text)
{
    QString mixed = text.toLower();
    for (int i = 0; i < mixed.size(); i += 2)
        mixed[i] = mixed.at(i).toUpper();
    return mixed;
}

VellDocument fileRecord(const QString &suffix)
{
    VellDocument doc;
    doc.type = "file";
    doc.suffix = suffix;
    return doc;
}

void addSuffixRows()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("path");
    for (const SuffixRow &row : SuffixTable) {
        const QString suffix = QString::fromUtf8(row.suffix);
        const QString category = QString::fromUtf8(row.category);
        const QString path = iconPath(QString("type/") + QString::fromUtf8(row.icon));
        QTest::addRow("\"%s\"", row.suffix) << suffix << category << path;
        if (suffix.toUpper() == suffix)
            continue;
        QTest::addRow("\"%s\" in capitals", row.suffix) << suffix.toUpper() << category << path;
        QTest::addRow("\"%s\" in mixed case", row.suffix)
            << inMixedCase(suffix) << category << path;
    }
}

} // namespace

class TestFileTypes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void suffixDecidesTheCategory_data() { addSuffixRows(); }
    void suffixDecidesTheCategory();
    void suffixDecidesTheIconOfAFile_data() { addSuffixRows(); }
    void suffixDecidesTheIconOfAFile();
    void iconIsThePictureAtItsPath_data() { addSuffixRows(); }
    void iconIsThePictureAtItsPath();
    void typeComesBeforeSuffix_data();
    void typeComesBeforeSuffix();
    void onlyTypeAndSuffixDecideTheIcon();
    void everyKnownSuffixIsInTheTable();
    void categoryHasAName_data();
    void categoryHasAName();
    void filtersAreTheTenOfTheDialog();
};

void TestFileTypes::suffixDecidesTheCategory()
{
    QFETCH(QString, suffix);
    QFETCH(QString, category);
    QCOMPARE(VellPubDoc::getFileType(suffix), category);
}

void TestFileTypes::suffixDecidesTheIconOfAFile()
{
    QFETCH(QString, suffix);
    QFETCH(QString, path);
    QCOMPARE(VellPubDoc::getFileTypeIconPath(fileRecord(suffix)), path);
}

void TestFileTypes::iconIsThePictureAtItsPath()
{
    QFETCH(QString, suffix);
    QFETCH(QString, path);
    const QImage expected = QImage(path).convertToFormat(QImage::Format_ARGB32);
    QVERIFY(!expected.isNull());
    const QIcon icon = VellPubDoc::getFileTypeIcon(fileRecord(suffix));
    QCOMPARE(icon.pixmap(expected.size()).toImage().convertToFormat(QImage::Format_ARGB32),
             expected);
}

void TestFileTypes::typeComesBeforeSuffix_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("icon");

    QTest::newRow("folder") << "dir"
                            << "folder";
    QTest::newRow("file") << "file"
                          << "type/pdf";
    QTest::newRow("no type") << QString() << "type/pdf";
    QTest::newRow("folder in capitals") << "DIR"
                                        << "type/pdf";
    QTest::newRow("folder and more") << "dirs"
                                     << "type/pdf";
}

void TestFileTypes::typeComesBeforeSuffix()
{
    QFETCH(QString, type);
    QFETCH(QString, icon);
    VellDocument doc = fileRecord("pdf");
    doc.type = type;
    QCOMPARE(VellPubDoc::getFileTypeIconPath(doc), iconPath(icon));
    const QImage expected = QImage(iconPath(icon)).convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(VellPubDoc::getFileTypeIcon(doc)
                 .pixmap(expected.size())
                 .toImage()
                 .convertToFormat(QImage::Format_ARGB32),
             expected);
}

void TestFileTypes::onlyTypeAndSuffixDecideTheIcon()
{
    VellDocument doc = fileRecord(QString());
    doc.name = "plan.dwg";
    doc.filePath = "/tmp/plan.dwg";
    doc.category = FILE_TYPE_DWG;
    QCOMPARE(VellPubDoc::getFileTypeIconPath(doc), iconPath("type/unknown"));
}

void TestFileTypes::everyKnownSuffixIsInTheTable()
{
    QStringList listed;
    for (const SuffixRow &row : SuffixTable)
        listed.append(QString::fromUtf8(row.suffix));
    const QStringList known{
        SUFFIX_7Z,  SUFFIX_AVI,  SUFFIX_BMP, SUFFIX_DOC, SUFFIX_DOCX, SUFFIX_DOT,  SUFFIX_DWF,
        SUFFIX_DWG, SUFFIX_DWS,  SUFFIX_DWT, SUFFIX_DXF, SUFFIX_JPG,  SUFFIX_JPEG, SUFFIX_MID,
        SUFFIX_MP3, SUFFIX_MP4,  SUFFIX_PDF, SUFFIX_PNG, SUFFIX_PPT,  SUFFIX_PPTX, SUFFIX_RAR,
        SUFFIX_TXT, SUFFIX_RMVB, SUFFIX_WAV, SUFFIX_WMV, SUFFIX_XLS,  SUFFIX_ZIP,  SUFFIX_XLSX};
    QCOMPARE(known.size(), 28);
    for (const QString &suffix : known + DRAWING_SUFFIXES + SHEET_SUFFIXES + MEDIA_SUFFIXES
             + OFFICE_SUFFIXES + IMAGE_SUFFIXES)
        QVERIFY2(listed.contains(suffix), qPrintable(suffix));
}

void TestFileTypes::categoryHasAName_data()
{
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("name");

    QTest::newRow("dwg") << "dwg"
                         << "图纸";
    QTest::newRow("image") << "image"
                           << "图片";
    QTest::newRow("office") << "office"
                            << "文档";
    QTest::newRow("video") << "video"
                           << "音/视频";
    QTest::newRow("other") << "other"
                           << "其他";
    QTest::newRow("empty") << QString() << "其他";
    QTest::newRow("capital letter") << "Video"
                                    << "其他";
    QTest::newRow("capitals") << "DWG"
                              << "其他";
    QTest::newRow("word of no category") << "recycle"
                                         << "其他";
    QTest::newRow("suffix of a category") << "pdf"
                                          << "其他";
}

void TestFileTypes::categoryHasAName()
{
    QFETCH(QString, category);
    QFETCH(QString, name);
    QCOMPARE(VellPubDoc::getFileTypeName(category), name);
}

void TestFileTypes::filtersAreTheTenOfTheDialog()
{
    const QStringList expected{
        "所有类型 (*.*)",
        "Image files (*.png *.bmp *.jpg)",
        "Text files (*.txt)",
        "Excel files(*.xlsx *.xls)",
        "PPT files(*.pptx *.ppt)",
        "Word files (*.doc *.docx *.dot)",
        "Pdf files(*.pdf) ",
        "Drawing files (*.dwt *.dwg *.dws *.dxf)",
        "Music files (*.mp3 *.wav *.mid)",
        "Movie files (*.avi *.rmvb *.mp4 *.wmv)",
    };
    QCOMPARE(VellPubDoc::getNameFilters(), expected);

    QStringList changed = VellPubDoc::getNameFilters();
    changed.removeFirst();
    QCOMPARE(VellPubDoc::getNameFilters(), expected);
}

QTEST_MAIN(TestFileTypes)

#include "tst_file_types.moc"
