#include <file_types/FileTypes.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

namespace {

// Black on the left and white on the right, which every format can hold.
QImage halves(const QSize &size = QSize(32, 16))
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter(&image).fillRect(0, 0, size.width() / 2, size.height(), Qt::black);
    return image;
}

bool isHalves(const QPixmap &pixmap, const QSize &size = QSize(32, 16))
{
    if (pixmap.size() != size)
        return false;
    const QImage image = pixmap.toImage();
    const int middle = size.height() / 2;
    return qGray(image.pixel(2, middle)) < 32 && qGray(image.pixel(size.width() - 3, middle)) > 224;
}

QByteArray encoded(const QImage &image, const QByteArray &format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, format.constData()) ? bytes : QByteArray();
}

QImage resource(const QString &name)
{
    const QImage image(QString(":/DocumentManagement/Resources/") + name);
    return image.convertToFormat(QImage::Format_RGB32);
}

} // namespace

class TestFileIcons : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void pictureIsShownByItsSuffix_data();
    void pictureIsShownByItsSuffix();
    void contentDecidesTheDecoder_data();
    void contentDecidesTheDecoder();
    void unreadablePictureGivesANullPixmap_data();
    void unreadablePictureGivesANullPixmap();
    void cutOffJpegGivesItsReadablePart();
    void otherFilesShowThePictureOfTheirCategory_data();
    void otherFilesShowThePictureOfTheirCategory();
    void contentOfOtherFilesIsNotLookedAt();
    void pictureOfAHundredMegapixelsIsReadInFull();

private:
    QString write(const QString &name, const QByteArray &content);

    QTemporaryDir m_folder;
};

void TestFileIcons::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

QString TestFileIcons::write(const QString &name, const QByteArray &content)
{
    const QString path = m_folder.filePath(name);
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? path
                                                                                    : QString();
}

void TestFileIcons::pictureIsShownByItsSuffix_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("format");

    QTest::newRow("png") << "a.png" << QByteArray("png");
    QTest::newRow("bmp") << "a.bmp" << QByteArray("bmp");
    QTest::newRow("jpg") << "a.jpg" << QByteArray("jpg");
    QTest::newRow("jpeg") << "a.jpeg" << QByteArray("jpeg");
    QTest::newRow("capitals") << "A.PNG" << QByteArray("png");
    QTest::newRow("two dots") << "a.dwg.png" << QByteArray("png");
    QTest::newRow("hash, percent and Chinese") << "图 50% #1.png" << QByteArray("png");
}

void TestFileIcons::pictureIsShownByItsSuffix()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, format);
    const QString path = write(name, encoded(halves(), format));
    QVERIFY(isHalves(VellPubDoc::getFileIcon(path)));
}

// Every format that the Qt of this machine both writes and reads, and GIF, which it only reads.
void TestFileIcons::contentDecidesTheDecoder_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<QByteArray>("content");

    const QList<QByteArray> readable = QImageReader::supportedImageFormats();
    const QList<QByteArray> writable = QImageWriter::supportedImageFormats();
    for (const char *suffix : {"png", "jpg", "jpeg", "bmp"}) {
        for (const QByteArray &format : readable) {
            if (writable.contains(format)) {
                QTest::addRow("%s named .%s", format.constData(), suffix)
                    << QString::fromLatin1(suffix) << encoded(halves(), format);
            }
        }
    }
    if (readable.contains("gif")) {
        // 32 x 16, two colours: LZW codes for sixteen rows of 16 zeros and 16 ones.
        QTest::newRow("gif named .png")
            << "png"
            << QByteArray::fromBase64("R0lGODlhIAAQAIAAAAAAAP///ywAAAAAIAAQAAACK4SPCcHtH5Q8sLY5rcVS"
                                      "V654EJiID4mYDkqpDGu4LyxHtAwv+O3mtb9j1QoAOw==");
    }
}

void TestFileIcons::contentDecidesTheDecoder()
{
    QFETCH(QString, suffix);
    QFETCH(QByteArray, content);
    QVERIFY(!content.isEmpty());
    const QString path = write(QString("content.") + suffix, content);
    QVERIFY(isHalves(VellPubDoc::getFileIcon(path)));
}

void TestFileIcons::unreadablePictureGivesANullPixmap_data()
{
    QTest::addColumn<QByteArray>("content");

    const QByteArray png = encoded(halves(QSize(200, 200)), "png");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("text") << QByteArray("this is no picture");
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("PNG cut in its header") << png.left(20);
    QTest::newRow("PNG cut in its pixels") << png.left(png.size() / 2);
    QTest::newRow("JPEG cut in its header") << encoded(halves(), "jpg").left(100);
}

void TestFileIcons::unreadablePictureGivesANullPixmap()
{
    QFETCH(QByteArray, content);
    QVERIFY(VellPubDoc::getFileIcon(write("bad.png", content)).isNull());
    QVERIFY(VellPubDoc::getFileIcon(write("bad.jpg", content)).isNull());
    QVERIFY(VellPubDoc::getFileIcon(m_folder.filePath("missing.png")).isNull());

    QVERIFY(QDir(m_folder.path()).mkpath("folder.png"));
    QVERIFY(VellPubDoc::getFileIcon(m_folder.filePath("folder.png")).isNull());
}

void TestFileIcons::cutOffJpegGivesItsReadablePart()
{
    const QSize size(400, 400);
    const QByteArray jpeg = encoded(halves(size), "jpg");
    const QPixmap pixmap =
        VellPubDoc::getFileIcon(write("cut.jpg", jpeg.left(jpeg.size() * 3 / 4)));
    QCOMPARE(pixmap.size(), size);
    QVERIFY(qGray(pixmap.toImage().pixel(2, 2)) < 32);
}

void TestFileIcons::otherFilesShowThePictureOfTheirCategory_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("picture");

    const auto add = [](const QString &picture, const QStringList &names) {
        for (const QString &name : names)
            QTest::newRow(qPrintable(name)) << name << picture;
    };
    add("file_show.png",
        {"a.txt", "a.xlsx", "a.xls", "a.doc", "a.docx", "a.dot", "a.pdf", "a.ppt", "a.pptx",
         "a.png.PDF"});
    add("drawing _show.png", {"a.dwg", "a.dwf", "a.dxf", "a.dws", "a.DWT"});
    add("movie_show.png", {"a.mp3", "a.wav", "a.mid", "a.avi", "a.rmvb", "a.mp4", "a.Wmv"});
    add("other_show.png", {"a.zip", "a.gif", "a", QString(), "a.png/b", "a.png~"});
}

void TestFileIcons::otherFilesShowThePictureOfTheirCategory()
{
    QFETCH(QString, name);
    QFETCH(QString, picture);
    const QImage expected = resource(picture);
    QVERIFY(!expected.isNull());
    QCOMPARE(VellPubDoc::getFileIcon(name).toImage().convertToFormat(QImage::Format_RGB32),
             expected);
}

void TestFileIcons::contentOfOtherFilesIsNotLookedAt()
{
    const QString path = write("picture.pdf", encoded(halves(), "png"));
    QCOMPARE(VellPubDoc::getFileIcon(path).toImage().convertToFormat(QImage::Format_RGB32),
             resource("file_show.png"));
}

void TestFileIcons::pictureOfAHundredMegapixelsIsReadInFull()
{
    const QSize size(12000, 12000);
    QImage image(size, QImage::Format_Mono);
    image.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
    image.fill(1);
    for (int y = 0; y < size.height(); ++y)
        std::fill_n(image.scanLine(y), size.width() / 16, uchar(0));
    const QString path = m_folder.filePath("large.png");
    QVERIFY(image.save(path));
    image = QImage();
    QVERIFY(isHalves(VellPubDoc::getFileIcon(path), size));
}

QTEST_MAIN(TestFileIcons)

#include "tst_file_icons.moc"
