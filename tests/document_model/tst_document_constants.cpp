#include <document_model/DocumentConstants.h>

#include <QTest>

namespace {

// Built before main(): what a client's own constants see of the library's.
const QStringList drawingSuffixesBeforeMain = DRAWING_SUFFIXES;

} // namespace

class TestDocumentConstants : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyWordHasItsText_data();
    void everyWordHasItsText();
    void everyListHasItsElements_data();
    void everyListHasItsElements();
    void theListsAreBuiltBeforeTheProgramRuns();
};

void TestDocumentConstants::everyWordHasItsText_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("text");

    QTest::newRow("FILE_TYPE_IMAGE") << FILE_TYPE_IMAGE << QStringLiteral("image");
    QTest::newRow("FILE_TYPE_OFFICE") << FILE_TYPE_OFFICE << QStringLiteral("office");
    QTest::newRow("FILE_TYPE_DWG") << FILE_TYPE_DWG << QStringLiteral("dwg");
    QTest::newRow("FILE_TYPE_VIDEO") << FILE_TYPE_VIDEO << QStringLiteral("video");
    QTest::newRow("FILE_TYPE_OTHER") << FILE_TYPE_OTHER << QStringLiteral("other");
    QTest::newRow("SUFFIX_7Z") << SUFFIX_7Z << QStringLiteral("7z");
    QTest::newRow("SUFFIX_AVI") << SUFFIX_AVI << QStringLiteral("avi");
    QTest::newRow("SUFFIX_BMP") << SUFFIX_BMP << QStringLiteral("bmp");
    QTest::newRow("SUFFIX_DOC") << SUFFIX_DOC << QStringLiteral("doc");
    QTest::newRow("SUFFIX_DOCX") << SUFFIX_DOCX << QStringLiteral("docx");
    QTest::newRow("SUFFIX_DOT") << SUFFIX_DOT << QStringLiteral("dot");
    QTest::newRow("SUFFIX_DWF") << SUFFIX_DWF << QStringLiteral("dwf");
    QTest::newRow("SUFFIX_DWG") << SUFFIX_DWG << QStringLiteral("dwg");
    QTest::newRow("SUFFIX_DWS") << SUFFIX_DWS << QStringLiteral("dws");
    QTest::newRow("SUFFIX_DWT") << SUFFIX_DWT << QStringLiteral("dwt");
    QTest::newRow("SUFFIX_DXF") << SUFFIX_DXF << QStringLiteral("dxf");
    QTest::newRow("SUFFIX_JPEG") << SUFFIX_JPEG << QStringLiteral("jpeg");
    QTest::newRow("SUFFIX_JPG") << SUFFIX_JPG << QStringLiteral("jpg");
    QTest::newRow("SUFFIX_MID") << SUFFIX_MID << QStringLiteral("mid");
    QTest::newRow("SUFFIX_MP3") << SUFFIX_MP3 << QStringLiteral("mp3");
    QTest::newRow("SUFFIX_MP4") << SUFFIX_MP4 << QStringLiteral("mp4");
    QTest::newRow("SUFFIX_PDF") << SUFFIX_PDF << QStringLiteral("pdf");
    QTest::newRow("SUFFIX_PNG") << SUFFIX_PNG << QStringLiteral("png");
    QTest::newRow("SUFFIX_PPT") << SUFFIX_PPT << QStringLiteral("ppt");
    QTest::newRow("SUFFIX_PPTX") << SUFFIX_PPTX << QStringLiteral("pptx");
    QTest::newRow("SUFFIX_RAR") << SUFFIX_RAR << QStringLiteral("rar");
    QTest::newRow("SUFFIX_RMVB") << SUFFIX_RMVB << QStringLiteral("rmvb");
    QTest::newRow("SUFFIX_TXT") << SUFFIX_TXT << QStringLiteral("txt");
    QTest::newRow("SUFFIX_WAV") << SUFFIX_WAV << QStringLiteral("wav");
    QTest::newRow("SUFFIX_WMV") << SUFFIX_WMV << QStringLiteral("wmv");
    QTest::newRow("SUFFIX_XLS") << SUFFIX_XLS << QStringLiteral("xls");
    QTest::newRow("SUFFIX_XLSX") << SUFFIX_XLSX << QStringLiteral("xlsx");
    QTest::newRow("SUFFIX_ZIP") << SUFFIX_ZIP << QStringLiteral("zip");
    QTest::newRow("KEY_CATEGORY") << KEY_CATEGORY << QStringLiteral("category");
    QTest::newRow("KEY_CREATED_AT") << KEY_CREATED_AT << QStringLiteral("createdAt");
    QTest::newRow("KEY_DOCUMENTS") << KEY_DOCUMENTS << QStringLiteral("documents");
    QTest::newRow("KEY_DOMAIN") << KEY_DOMAIN << QStringLiteral("domain");
    QTest::newRow("KEY_EXTEND_PROPERTIES")
        << KEY_EXTEND_PROPERTIES << QStringLiteral("extendProperties");
    QTest::newRow("KEY_FILE") << KEY_FILE << QStringLiteral("file");
    QTest::newRow("KEY_FILE_SIZE") << KEY_FILE_SIZE << QStringLiteral("file.fileSize");
    QTest::newRow("KEY_FORMS") << KEY_FORMS << QStringLiteral("forms");
    QTest::newRow("KEY_LABEL_ID") << KEY_LABEL_ID << QStringLiteral("labelId");
    QTest::newRow("KEY_TAG") << KEY_TAG << QStringLiteral("tag");
    QTest::newRow("KEY_MARK") << KEY_MARK << QStringLiteral("mark");
    QTest::newRow("KEY_NAME") << KEY_NAME << QStringLiteral("name");
    QTest::newRow("KEY_PROPERTIES") << KEY_PROPERTIES << QStringLiteral("properties");
    QTest::newRow("KEY_QRCODE") << KEY_QRCODE << QStringLiteral("qrcode");
    QTest::newRow("KEY_SPREADSHEETS") << KEY_SPREADSHEETS << QStringLiteral("spreadsheets");
    QTest::newRow("KEY_UPDATED_AT") << KEY_UPDATED_AT << QStringLiteral("updatedAt");
    QTest::newRow("SIZE_LIMIT_TEXT") << SIZE_LIMIT_TEXT << QStringLiteral("10G");
    QTest::newRow("MONTH_FORMAT_TEXT") << MONTH_FORMAT_TEXT << QStringLiteral("MMM");
}

void TestDocumentConstants::everyWordHasItsText()
{
    QFETCH(QString, word);
    QFETCH(QString, text);
    QCOMPARE(word, text);
}

void TestDocumentConstants::everyListHasItsElements_data()
{
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<QString>("elements");

    QTest::newRow("DRAWING_SUFFIXES") << DRAWING_SUFFIXES << QStringLiteral("dwg dwf dxf dws dwt");
    QTest::newRow("SHEET_SUFFIXES") << SHEET_SUFFIXES << QStringLiteral("xlsx");
    QTest::newRow("MEDIA_SUFFIXES")
        << MEDIA_SUFFIXES << QStringLiteral("mp3 wav mid avi rmvb mp4 wmv");
    QTest::newRow("OFFICE_SUFFIXES")
        << OFFICE_SUFFIXES << QStringLiteral("doc docx dot pdf ppt pptx");
    QTest::newRow("IMAGE_SUFFIXES") << IMAGE_SUFFIXES << QStringLiteral("bmp jpg jpeg png");
}

void TestDocumentConstants::everyListHasItsElements()
{
    QFETCH(QStringList, list);
    QFETCH(QString, elements);
    QCOMPARE(list.join(QLatin1Char(' ')), elements);
}

void TestDocumentConstants::theListsAreBuiltBeforeTheProgramRuns()
{
    QCOMPARE(drawingSuffixesBeforeMain, DRAWING_SUFFIXES);
    QCOMPARE(drawingSuffixesBeforeMain.size(), 5);
}

QTEST_GUILESS_MAIN(TestDocumentConstants)
#include "tst_document_constants.moc"
