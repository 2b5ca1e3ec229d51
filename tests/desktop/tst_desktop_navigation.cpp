#include "DesktopWorld.h"

#include <desktop/window/MessageBar.h>

#include <models/VellChangePoll.h>

#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QTreeView>

using namespace desktop;

// Moving around, by keyboard and mouse, and what is shown when a request fails.
class TestDesktopNavigation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void foldersOpenByKeyboard();
    void treeShowsTheFolderThatIsOpen();
    void pathIsTyped_data();
    void pathIsTyped();
    void placesAreOpened_data();
    void placesAreOpened();
    void searchFindsAndReturns();
    void sortingIsTheServices();
    void failedListIsNotEmpty();
    void lostServiceIsABar();
    void otherUsersChangesAreShown();
    void windowStateIsKept();
};

namespace {

//! A folder "Drawings" with "Level 1" and "plan.dwg" in it; "notes.txt" beside it.
struct SmallWorld : DesktopWorld
{
    SmallWorld()
    {
        drawings = await(documents.createFolder(QString(), QStringLiteral("Drawings")));
        level = await(documents.createFolder(drawings._id, QStringLiteral("Level 1")));
        plan = store(QStringLiteral("plan.dwg"), "lines", drawings._id);
        store(QStringLiteral("notes.txt"), "words");
        start();
    }

    VellDocument drawings;
    VellDocument level;
    VellDocument plan;
};

} // namespace

void TestDesktopNavigation::foldersOpenByKeyboard()
{
    SmallWorld world;
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Drawings", "notes.txt"), WaitMs);
    auto *const table = world.find<QTreeView>(QStringLiteral("table"));
    world.select({QStringLiteral("Drawings")});
    QTest::keyClick(table, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Level 1", "plan.dwg"), WaitMs);
    QTest::keyClick(table, Qt::Key_Left, Qt::AltModifier);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Drawings", "notes.txt"), WaitMs);
    QTest::keyClick(table, Qt::Key_Right, Qt::AltModifier);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Level 1", "plan.dwg"), WaitMs);
    QTest::keyClick(table, Qt::Key_Up, Qt::AltModifier);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Drawings", "notes.txt"), WaitMs);
    // The folder that one comes from is selected.
    QTRY_COMPARE_WITH_TIMEOUT(world.window()->pane()->selection().size(), 1, WaitMs);
    QCOMPARE(world.window()->pane()->selection().constFirst()._id, world.drawings._id);
    QVERIFY(!world.action(ActionId::Up)->isEnabled());
}

void TestDesktopNavigation::treeShowsTheFolderThatIsOpen()
{
    SmallWorld world;
    auto *const tree = world.find<QTreeView>(QStringLiteral("folders"));
    world.window()->navigate(Location::folder(world.level._id));
    QTRY_COMPARE_WITH_TIMEOUT(tree->currentIndex().data().toString(), QStringLiteral("Level 1"),
                              WaitMs);
    QCOMPARE(world.window()->location().folderId, world.level._id);
    tree->setFocus();
    QTest::keyClick(tree, Qt::Key_Up);
    QTRY_COMPARE_WITH_TIMEOUT(world.window()->location().folderId, world.drawings._id, WaitMs);
}

void TestDesktopNavigation::pathIsTyped_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("folder") << "/Drawings/Level 1" << QStringList();
    QTest::newRow("slashes") << "Drawings//" << list("Level 1", "plan.dwg");
    QTest::newRow("file") << "/Drawings/plan.dwg" << list("Level 1", "plan.dwg");
    QTest::newRow("missing") << "/Drawings/none" << list("Drawings", "notes.txt");
    QTest::newRow("below a file") << "/notes.txt/x" << list("Drawings", "notes.txt");
}

void TestDesktopNavigation::pathIsTyped()
{
    QFETCH(QString, typed);
    QFETCH(QStringList, shown);
    SmallWorld world;
    QTest::keyClick(world.window(), Qt::Key_L, Qt::ControlModifier);
    auto *const line = world.find<QLineEdit>(QStringLiteral("path"));
    QCOMPARE(line->text(), QStringLiteral("/"));
    QTest::keyClicks(line, typed);
    line->setText(typed);
    QTest::keyClick(line, Qt::Key_Return);
    const bool isRefused = shown.contains(QLatin1String("Drawings"));
    if (isRefused) {
        QTRY_VERIFY_WITH_TIMEOUT(!line->toolTip().isEmpty(), WaitMs);
        QVERIFY(line->isVisible());
    } else {
        QTRY_VERIFY_WITH_TIMEOUT(!line->isVisible(), WaitMs);
    }
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), shown, WaitMs);
    if (typed.endsWith(QLatin1String("plan.dwg"))) {
        QTRY_COMPARE_WITH_TIMEOUT(world.window()->pane()->selection().size(), 1, WaitMs);
        QCOMPARE(world.window()->pane()->selection().constFirst()._id, world.plan._id);
    }
}

void TestDesktopNavigation::placesAreOpened_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("all documents") << 0 << list("Drawings", "notes.txt");
    QTest::newRow("favourites") << 1 << list("plan.dwg");
    QTest::newRow("frequent") << 2 << list("Level 1");
    QTest::newRow("recent") << 3 << list("notes.txt", "plan.dwg");
    QTest::newRow("recycle bin") << 4 << list("gone.txt");
}

void TestDesktopNavigation::placesAreOpened()
{
    QFETCH(int, row);
    QFETCH(QStringList, shown);
    SmallWorld world;
    await(world.documents.setFavorite(world.plan._id, true));
    await(world.documents.setFrequent(world.level._id, true));
    await(world.documents.remove({world.store(QStringLiteral("gone.txt"))._id}));
    auto *const places = world.find<QListWidget>(QStringLiteral("places"));
    QTest::mouseClick(places->viewport(), Qt::LeftButton, {},
                      places->visualItemRect(places->item(row)).center());
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), shown, WaitMs);
}

void TestDesktopNavigation::searchFindsAndReturns()
{
    SmallWorld world;
    world.window()->navigate(Location::folder(world.drawings._id));
    QTest::keyClick(world.window(), Qt::Key_F, Qt::ControlModifier);
    auto *const line = world.find<QLineEdit>(QStringLiteral("search"));
    QTest::keyClicks(line, QStringLiteral("n?t"));
    QTRY_COMPARE_WITH_TIMEOUT(world.window()->location().kind, Location::Kind::Search, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("notes.txt"), WaitMs);
    QTest::keyClick(line, Qt::Key_Escape);
    QCOMPARE(world.window()->location().folderId, world.drawings._id);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Level 1", "plan.dwg"), WaitMs);
}

void TestDesktopNavigation::sortingIsTheServices()
{
    SmallWorld world;
    world.store(QStringLiteral("big.txt"), QByteArray(5000, 'x'));
    world.window()->pane()->reload();
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Drawings", "big.txt", "notes.txt"), WaitMs);
    auto *const table = world.find<QTreeView>(QStringLiteral("table"));
    table->sortByColumn(VellDocumentModel::SizeColumn, Qt::AscendingOrder);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Drawings", "notes.txt", "big.txt"), WaitMs);
}

void TestDesktopNavigation::failedListIsNotEmpty()
{
    SmallWorld world;
    FaultRule rule;
    rule.kind = FaultRule::Kind::Status;
    rule.value = 500;
    rule.verb = "GET";
    rule.times = 0;
    world.service.addFault(rule);
    world.window()->navigate(Location::folder(world.drawings._id));
    auto *const pane = world.window()->pane();
    QTRY_VERIFY_WITH_TIMEOUT(pane->model()->error(), WaitMs);
    auto *const notice = world.find<QWidget>(QStringLiteral("notice"));
    QVERIFY(notice->accessibleName().contains(QLatin1String("could not be loaded")));
    world.service.clearFaults();
    QTest::keyClick(world.window(), Qt::Key_F5);
    QTRY_COMPARE_WITH_TIMEOUT(world.shownNames(), list("Level 1", "plan.dwg"), WaitMs);
    // A list that is there stays while the service fails.
    world.service.addFault(rule);
    QTest::keyClick(world.window(), Qt::Key_F5);
    auto *const stale = world.window()->findChild<MessageBar *>(QStringLiteral("staleBar"));
    QTRY_VERIFY_WITH_TIMEOUT(stale->isVisible(), WaitMs);
    QCOMPARE(world.shownNames(), list("Level 1", "plan.dwg"));
}

void TestDesktopNavigation::lostServiceIsABar()
{
    SmallWorld world;
    world.service.stop();
    QTest::keyClick(world.window(), Qt::Key_F5);
    auto *const offline = world.window()->findChild<MessageBar *>(QStringLiteral("offlineBar"));
    QTRY_VERIFY_WITH_TIMEOUT(offline->isVisible(), WaitMs);
    QCOMPARE(world.shownNames(), list("Drawings", "notes.txt"));
    QVERIFY(!world.action(ActionId::NewFolder)->isEnabled());
    QVERIFY(
        world.action(ActionId::NewFolder)->toolTip().contains(QLatin1String("cannot be reached")));
    QVERIFY(!QApplication::activeModalWidget());
    // It is said once.
    QVERIFY(!world.window()->findChild<MessageBar *>(QStringLiteral("staleBar"))->isVisible());
}

void TestDesktopNavigation::otherUsersChangesAreShown()
{
    SmallWorld world;
    await(world.documents.createFolder(QString(), QStringLiteral("Added elsewhere")));
    world.window()->findChild<VellChangePoll *>()->poll();
    QTRY_VERIFY_WITH_TIMEOUT(world.shownNames().contains(QStringLiteral("Added elsewhere")),
                             WaitMs);
    auto *const tree = world.find<QTreeView>(QStringLiteral("folders"));
    QTRY_COMPARE_WITH_TIMEOUT(tree->model()->rowCount(), 2, WaitMs);
}

void TestDesktopNavigation::windowStateIsKept()
{
    SmallWorld world;
    world.window()->resize(900, 650);
    auto *table = world.find<QTreeView>(QStringLiteral("table"));
    table->setColumnWidth(VellDocumentModel::NameColumn, 333);
    table->sortByColumn(VellDocumentModel::SizeColumn, Qt::DescendingOrder);
    world.restart();
    QCOMPARE(world.window()->size(), QSize(900, 650));
    table = world.find<QTreeView>(QStringLiteral("table"));
    QCOMPARE(table->columnWidth(VellDocumentModel::NameColumn), 333);
    QCOMPARE(table->header()->sortIndicatorSection(), int(VellDocumentModel::SizeColumn));
}

QTEST_MAIN(TestDesktopNavigation)
#include "tst_desktop_navigation.moc"
