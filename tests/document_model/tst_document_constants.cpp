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

    QTest::newRow("FILE_TYPE_IMAGE") << FILE_TYPE_IMAGE << "image";
    QTest::newRow("FILE_TYPE_OFFICE") << FILE_TYPE_OFFICE << "office";
    QTest::newRow("FILE_TYPE_DWG") << FILE_TYPE_DWG << "dwg";
    QTest::newRow("FILE_TYPE_VIDEO") << FILE_TYPE_VIDEO << "video";
    QTest::newRow("FILE_TYPE_OTHER") << FILE_TYPE_OTHER << "other";
    QTest::newRow("SUFFIX_7Z") << SUFFIX_7Z << "7z";
    QTest::newRow("SUFFIX_AVI") << SUFFIX_AVI << "avi";
    QTest::newRow("SUFFIX_BMP") << SUFFIX_BMP << "bmp";
    QTest::newRow("SUFFIX_DOC") << SUFFIX_DOC << "doc";
    QTest::newRow("SUFFIX_DOCX") << SUFFIX_DOCX << "docx";
    QTest::newRow("SUFFIX_DOT") << SUFFIX_DOT << "dot";
    QTest::newRow("SUFFIX_DWF") << SUFFIX_DWF << "dwf";
    QTest::newRow("SUFFIX_DWG") << SUFFIX_DWG << "dwg";
    QTest::newRow("SUFFIX_DWS") << SUFFIX_DWS << "dws";
    QTest::newRow("SUFFIX_DWT") << SUFFIX_DWT << "dwt";
    QTest::newRow("SUFFIX_DXF") << SUFFIX_DXF << "dxf";
    QTest::newRow("SUFFIX_JPEG") << SUFFIX_JPEG << "jpeg";
    QTest::newRow("SUFFIX_JPG") << SUFFIX_JPG << "jpg";
    QTest::newRow("SUFFIX_MID") << SUFFIX_MID << "mid";
    QTest::newRow("SUFFIX_MP3") << SUFFIX_MP3 << "mp3";
    QTest::newRow("SUFFIX_MP4") << SUFFIX_MP4 << "mp4";
    QTest::newRow("SUFFIX_PDF") << SUFFIX_PDF << "pdf";
    QTest::newRow("SUFFIX_PNG") << SUFFIX_PNG << "png";
    QTest::newRow("SUFFIX_PPT") << SUFFIX_PPT << "ppt";
    QTest::newRow("SUFFIX_PPTX") << SUFFIX_PPTX << "pptx";
    QTest::newRow("SUFFIX_RAR") << SUFFIX_RAR << "rar";
    QTest::newRow("SUFFIX_RMVB") << SUFFIX_RMVB << "rmvb";
    QTest::newRow("SUFFIX_TXT") << SUFFIX_TXT << "txt";
    QTest::newRow("SUFFIX_WAV") << SUFFIX_WAV << "wav";
    QTest::newRow("SUFFIX_WMV") << SUFFIX_WMV << "wmv";
    QTest::newRow("SUFFIX_XLS") << SUFFIX_XLS << "xls";
    QTest::newRow("SUFFIX_XLSX") << SUFFIX_XLSX << "xlsx";
    QTest::newRow("SUFFIX_ZIP") << SUFFIX_ZIP << "zip";
    QTest::newRow("KEY_CATEGORY") << KEY_CATEGORY << "category";
    QTest::newRow("KEY_CREATED_AT") << KEY_CREATED_AT << "createdAt";
    QTest::newRow("KEY_DOCUMENTS") << KEY_DOCUMENTS << "documents";
    QTest::newRow("KEY_DOMAIN") << KEY_DOMAIN << "domain";
    QTest::newRow("KEY_EXTEND_PROPERTIES") << KEY_EXTEND_PROPERTIES << "extendProperties";
    QTest::newRow("KEY_FILE") << KEY_FILE << "file";
    QTest::newRow("KEY_FILE_SIZE") << KEY_FILE_SIZE << "file.fileSize";
    QTest::newRow("KEY_FORMS") << KEY_FORMS << "forms";
    QTest::newRow("KEY_LABEL_ID") << KEY_LABEL_ID << "labelId";
    QTest::newRow("KEY_TAG") << KEY_TAG << "tag";
    QTest::newRow("KEY_MARK") << KEY_MARK << "mark";
    QTest::newRow("KEY_NAME") << KEY_NAME << "name";
    QTest::newRow("KEY_PROPERTIES") << KEY_PROPERTIES << "properties";
    QTest::newRow("KEY_QRCODE") << KEY_QRCODE << "qrcode";
    QTest::newRow("KEY_SPREADSHEETS") << KEY_SPREADSHEETS << "spreadsheets";
    QTest::newRow("KEY_UPDATED_AT") << KEY_UPDATED_AT << "updatedAt";
    QTest::newRow("SIZE_LIMIT_TEXT") << SIZE_LIMIT_TEXT << "10G";
    QTest::newRow("MONTH_FORMAT_TEXT") << MONTH_FORMAT_TEXT << "MMM";
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

    QTest::newRow("DRAWING_SUFFIXES") << DRAWING_SUFFIXES << "dwg dwf dxf dws dwt";
    QTest::newRow("SHEET_SUFFIXES") << SHEET_SUFFIXES << "xlsx";
    QTest::newRow("MEDIA_SUFFIXES") << MEDIA_SUFFIXES << "mp3 wav mid avi rmvb mp4 wmv";
    QTest::newRow("OFFICE_SUFFIXES") << OFFICE_SUFFIXES << "doc docx dot pdf ppt pptx";
    QTest::newRow("IMAGE_SUFFIXES") << IMAGE_SUFFIXES << "bmp jpg jpeg png";
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
