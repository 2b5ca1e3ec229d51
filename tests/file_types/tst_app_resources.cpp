#include <document_model/VellDocument.h>
#include <file_types/FileTypes.h>

#include <QImage>
#include <QTest>

namespace {

QString iconPath(const QString &suffix, const QString &type = "file")
{
    VellDocument doc;
    doc.type = type;
    doc.suffix = suffix;
    return VellPubDoc::getFileTypeIconPath(doc);
}

} // namespace

// The pictures of our own programs stand under the paths that the library asks for.
class TestAppResources : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyIconIsThereAndUnlikeTheOthers();
    void everyCategoryHasAPictureOfItsOwn();
};

void TestAppResources::everyIconIsThereAndUnlikeTheOthers()
{
    QStringList paths{iconPath(QString(), "dir"), iconPath(QString())};
    for (const char *suffix :
         {"png", "docx", "xlsx", "pptx", "pdf", "txt", "mp3", "mp4", "dwg", "zip"})
        paths.append(iconPath(QString::fromLatin1(suffix)));
    QCOMPARE(paths.size(), 12);

    QList<QImage> icons;
    for (const QString &path : qAsConst(paths)) {
        const QImage icon(path);
        QVERIFY2(icon.size() == QSize(64, 64), qPrintable(path));
        QVERIFY2(icon.hasAlphaChannel(), qPrintable(path));
        QVERIFY2(!icons.contains(icon), qPrintable(path));
        icons.append(icon);
    }
}

void TestAppResources::everyCategoryHasAPictureOfItsOwn()
{
    QList<QImage> pictures;
    for (const char *name : {"a.pdf", "a.dwg", "a.mp4", "a.zip"}) {
        const QImage picture = VellPubDoc::getFileIcon(QString::fromLatin1(name)).toImage();
        QVERIFY2(picture.size() == QSize(256, 256), name);
        QVERIFY2(!pictures.contains(picture), name);
        pictures.append(picture);
    }
}

QTEST_MAIN(TestAppResources)

#include "tst_app_resources.moc"
