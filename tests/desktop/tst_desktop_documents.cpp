#include "DesktopWorld.h"

#include <desktop/information/PdfPage.h>
#include <desktop/information/Preview.h>

#include <QBuffer>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPdfWriter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeWidget>

using namespace desktop;

// What is shown and done about one document: information, preview, versions, shares.
class TestDesktopDocuments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void informationFollowsTheSelection();
    void pictureIsPreviewed();
    void firstPageIsPreviewed();
    void previewOfTheLatestSelectionStays();
    void remarkIsKept();
    void versionIsMadeCurrentAgain();
    void versionIsFetched_data();
    void versionIsFetched();
    void failedHistoryIsSaid();
    void shareIsMadeAndRevoked();
    void languageIsSwitched();
};

namespace {

QByteArray picture(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

//! Two pages, as high as they are wide: a blue one and a red one.
QByteArray pages()
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setPageSize(QPageSize(QSizeF(100, 100), QPageSize::Millimeter));
    writer.setPageMargins({});
    QPainter painter(&writer);
    painter.fillRect(painter.viewport(), Qt::blue);
    writer.newPage();
    painter.fillRect(painter.viewport(), Qt::red);
    painter.end();
    return bytes;
}

} // namespace

void TestDesktopDocuments::informationFollowsTheSelection()
{
    DesktopWorld world;
    const VellDocument folder =
        await(world.documents.createFolder(QString(), QStringLiteral("Drawings")));
    world.store(QStringLiteral("plan.dwg"), "lines", folder._id);
    world.start();
    world.window()->navigate(Location::folder(folder._id));
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("plan.dwg"), WaitMs);
    world.select({QStringLiteral("plan.dwg")});
    QCOMPARE(world.find<QLabel>(QStringLiteral("informationName"))->text(),
             QStringLiteral("plan.dwg"));
    QTRY_COMPARE_WITH_TIMEOUT(world.find<QLabel>(QStringLiteral("informationFolder"))->text(),
                              QStringLiteral("/Drawings"), WaitMs);
    QVERIFY(world.find<QLabel>(QStringLiteral("informationRights"))
                ->text()
                .contains(QLatin1String("delete")));
    world.find<QAbstractItemView>(QStringLiteral("table"))->clearSelection();
    QVERIFY(world.find<QLabel>(QStringLiteral("nothing"))->isVisible());
}

void TestDesktopDocuments::pictureIsPreviewed()
{
    DesktopWorld world;
    world.store(QStringLiteral("bridge.png"), picture({400, 200}));
    world.store(QStringLiteral("broken.png"), "no picture");
    world.start();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames().size(), 2, WaitMs);
    world.select({QStringLiteral("bridge.png")});
    auto *const preview = world.find<Preview>(QStringLiteral("preview"));
    QTRY_VERIFY_WITH_TIMEOUT(preview->isOwnPicture(), WaitMs);
    QCOMPARE(preview->pixmap(Qt::ReturnByValue).size(), QSize(240, 120));
    world.select({QStringLiteral("broken.png")});
    QVERIFY(!preview->isOwnPicture());
    QVERIFY(!preview->pixmap(Qt::ReturnByValue).isNull()); // the picture of the type
}

void TestDesktopDocuments::firstPageIsPreviewed()
{
    DesktopWorld world;
    world.store(QStringLiteral("plan.pdf"), pages());
    world.store(QStringLiteral("broken.pdf"), "%PDF-1.7");
    world.start();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames().size(), 2, WaitMs);
    world.select({QStringLiteral("plan.pdf")});
    auto *const preview = world.find<Preview>(QStringLiteral("preview"));
    QTRY_COMPARE_WITH_TIMEOUT(preview->isOwnPicture(), pdf_page::isAvailable(), WaitMs);
    if (pdf_page::isAvailable()) {
        const QImage page = preview->pixmap(Qt::ReturnByValue).toImage();
        QCOMPARE(page.size(), QSize(240, 240));
        QCOMPARE(page.pixelColor(120, 120), QColor(Qt::blue));
    }
    world.select({QStringLiteral("broken.pdf")});
    QVERIFY(!preview->isOwnPicture());
}

void TestDesktopDocuments::previewOfTheLatestSelectionStays()
{
    DesktopWorld world;
    for (int i = 0; i < 6; ++i)
        world.store(QStringLiteral("%1.png").arg(i), picture({100 + i, 100}));
    world.start();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames().size(), 6, WaitMs);
    for (int i = 0; i < 6; ++i)
        world.select({QStringLiteral("%1.png").arg(i)});
    auto *const preview = world.find<Preview>(QStringLiteral("preview"));
    QTRY_COMPARE_WITH_TIMEOUT(preview->pixmap(Qt::ReturnByValue).size(), QSize(105, 100), WaitMs);
    world.select({QStringLiteral("0.png")}); // while another one may be read
    QTRY_COMPARE_WITH_TIMEOUT(preview->pixmap(Qt::ReturnByValue).size(), QSize(100, 100), WaitMs);
}

void TestDesktopDocuments::remarkIsKept()
{
    DesktopWorld world;
    const VellDocument document = world.store(QStringLiteral("a.txt"));
    world.start();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames().size(), 1, WaitMs);
    world.select({QStringLiteral("a.txt")});
    auto *const remark = world.find<QPlainTextEdit>(QStringLiteral("informationRemark"));
    auto *const keep = world.find<QPushButton>(QStringLiteral("keepRemark"));
    QVERIFY(!keep->isEnabled());
    QTest::keyClicks(remark, QStringLiteral("checked"));
    QTest::mouseClick(keep, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(await(world.documents.document(document._id)).remark,
                              QStringLiteral("checked"), WaitMs);
    QTRY_VERIFY_WITH_TIMEOUT(!keep->isEnabled(), WaitMs);
}

void TestDesktopDocuments::versionIsMadeCurrentAgain()
{
    DesktopWorld world;
    const VellDocument document = world.store(QStringLiteral("a.txt"), "first");
    const VellDocument other = world.store(QStringLiteral("b.txt"), "second");
    await(world.documents.makeCurrent(document._id, other.fileId));
    world.start();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames().size(), 2, WaitMs);
    world.select({QStringLiteral("a.txt")});
    QTest::keyClick(world.window(), Qt::Key_H, Qt::ControlModifier);
    auto *const versions = world.find<QTreeWidget>(QStringLiteral("versions"));
    QTRY_COMPARE_WITH_TIMEOUT(versions->topLevelItemCount(), 2, WaitMs);
    auto *const current = world.find<QPushButton>(QStringLiteral("makeCurrent"));
    QVERIFY(!current->isEnabled()); // it is
    versions->setCurrentItem(versions->topLevelItem(1));
    QTest::mouseClick(current, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(versions->topLevelItemCount(), 3, WaitMs);
    QCOMPARE(await(world.documents.document(document._id)).fileId, document.fileId);
}

void TestDesktopDocuments::versionIsFetched_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QByteArray>("fetched");
    QTest::newRow("it is there") << true << "It has been saved as " << QByteArray("first");
    QTest::newRow("it fails") << false << "could not be downloaded" << QByteArray("(no file)");
}

void TestDesktopDocuments::versionIsFetched()
{
    QFETCH(bool, isThere);
    QFETCH(QString, message);
    DesktopWorld world;
    const VellDocument document = world.store(QStringLiteral("a.txt"), "first");
    const VellDocument other = world.store(QStringLiteral("b.txt"), "second");
    await(world.documents.makeCurrent(document._id, other.fileId));
    world.start();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames().size(), 2, WaitMs);
    world.select({QStringLiteral("a.txt")});
    world.action(ActionId::Versions)->trigger();
    auto *const versions = world.find<QTreeWidget>(QStringLiteral("versions"));
    QTRY_COMPARE_WITH_TIMEOUT(versions->topLevelItemCount(), 2, WaitMs);
    versions->setCurrentItem(versions->topLevelItem(1));
    FaultRule refusal;
    refusal.kind = FaultRule::Kind::Status;
    refusal.value = 403;
    refusal.pathPrefix = QStringLiteral("/base-service/files");
    refusal.times = 0;
    if (!isThere)
        world.service.addFault(refusal);
    QTest::mouseClick(world.find<QPushButton>(QStringLiteral("fetch")), Qt::LeftButton);
    auto *const line = world.find<QLineEdit>(QStringLiteral("fileNameEdit"));
    const QString path = world.path(QStringLiteral("first version.txt"));
    line->setText(path);
    QMetaObject::invokeMethod(line->window(), "accept");
    auto *const label = versions->window()->findChild<QLabel *>(QStringLiteral("message"));
    QTRY_VERIFY_WITH_TIMEOUT(label->text().contains(message), WaitMs);
    QFile file(path);
    const QByteArray fetched =
        file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    QTEST(fetched, "fetched");
}

void TestDesktopDocuments::failedHistoryIsSaid()
{
    DesktopWorld world;
    const VellDocument document = world.store(QStringLiteral("a.txt"), "first");
    world.start();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames().size(), 1, WaitMs);
    world.select({QStringLiteral("a.txt")});
    await(world.documents.remove({document._id}));
    await(world.documents.emptyRecycleBin(QString()));
    world.action(ActionId::Versions)->trigger();
    auto *const message = world.find<QTreeWidget>(QStringLiteral("versions"))
                              ->window()
                              ->findChild<QLabel *>(QStringLiteral("message"));
    QTRY_VERIFY_WITH_TIMEOUT(message->text().contains(QLatin1String("could not be loaded")),
                             WaitMs);
}

void TestDesktopDocuments::shareIsMadeAndRevoked()
{
    DesktopWorld world;
    world.store(QStringLiteral("a.txt"));
    world.start();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames().size(), 1, WaitMs);
    world.select({QStringLiteral("a.txt")});
    world.action(ActionId::Share)->trigger();
    world.find<QCheckBox>(QStringLiteral("mayDownload"))->setChecked(false);
    QTest::mouseClick(world.find<QPushButton>(QStringLiteral("make")), Qt::LeftButton);
    auto *const address = world.find<QLineEdit>(QStringLiteral("shareAddress"));
    QTRY_VERIFY_WITH_TIMEOUT(address->text().startsWith(world.service.baseApi()), WaitMs);
    QTest::mouseClick(world.find<QPushButton>(QStringLiteral("copy")), Qt::LeftButton);
    QCOMPARE(QApplication::clipboard()->text(), address->text());
    QTest::keyClick(address->window(), Qt::Key_Escape);
    const QList<VellShare> shares = await(world.documents.shares());
    QCOMPARE(shares.size(), 1);
    QVERIFY(!shares.constFirst().isDownloadAllowed);
    QVERIFY(shares.constFirst().expiresAt.isValid());
    world.action(ActionId::Shares)->trigger();
    auto *const table = world.find<QTreeWidget>(QStringLiteral("shares"));
    QTRY_COMPARE_WITH_TIMEOUT(table->topLevelItemCount(), 1, WaitMs);
    table->setCurrentItem(table->topLevelItem(0));
    QTest::mouseClick(world.find<QPushButton>(QStringLiteral("revoke")), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(await(world.documents.shares()).size(), 0, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(table->topLevelItemCount(), 0, WaitMs);
}

void TestDesktopDocuments::languageIsSwitched()
{
    DesktopWorld world;
    world.store(QStringLiteral("a.txt"));
    world.start();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames().size(), 1, WaitMs);
    const QString english = world.action(ActionId::NewFolder)->text();
    world.action(ActionId::Settings)->trigger();
    auto *const language = world.find<QComboBox>(QStringLiteral("language"));
    language->setCurrentIndex(language->findData(QStringLiteral("zh_CN")));
    QTest::keyClick(language->window(), Qt::Key_Return);
    QTRY_VERIFY_WITH_TIMEOUT(world.action(ActionId::NewFolder)->text() != english, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("a.txt"), WaitMs); // the same place
    QCOMPARE(world.workspace()->settings.language(), QStringLiteral("zh_CN"));
}

QTEST_MAIN(TestDesktopDocuments)
#include "tst_desktop_documents.moc"
