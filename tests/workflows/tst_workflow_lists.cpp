#include "World.h"

#include <async_ops/AsyncGetRecent.h>

#include <VellSoftBase/VellSoftCache.h>

#include <support/TestDatabase.h>

#include <QSet>
#include <QSignalSpy>
#include <QTest>

class TestWorkflowLists : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySortHasItsOrder_data();
    void everySortHasItsOrder();
    void pagesNeitherLoseNorRepeat_data();
    void pagesNeitherLoseNorRepeat();
    void aPatternFindsNames_data();
    void aPatternFindsNames();
    void aSpanOfTimeFindsChanges();
    void usersAndTypesAndCategoriesFilter();
    void depthFindsWhatLiesBelow();
    void aPatternThatRunsForEverIsRefused();
    void theUsersNewestFilesAreListed();
};

void TestWorkflowLists::everySortHasItsOrder_data()
{
    QTest::addColumn<VellDocumentSort>("sort");
    QTest::addColumn<QString>("order");
    const auto ascending = Qt::AscendingOrder;
    const auto descending = Qt::DescendingOrder;
    QTest::newRow("default: folders, then latest change") << VellDocumentSort() << "zoo b a c";
    QTest::newRow("name") << sortedBy("name", ascending) << "a b c zoo";
    QTest::newRow("name, descending") << sortedBy("name", descending) << "zoo c b a";
    QTest::newRow("size") << sortedBy("file.fileSize", ascending) << "zoo a b c";
    QTest::newRow("size, descending") << sortedBy("file.fileSize", descending) << "c b a zoo";
    QTest::newRow("creation") << sortedBy("createdAt", ascending) << "zoo c a b";
    QTest::newRow("change, descending") << sortedBy("updatedAt", descending) << "b a c zoo";
    QTest::newRow("type") << sortedBy("type", descending) << "files zoo";
}

void TestWorkflowLists::everySortHasItsOrder()
{
    QFETCH(VellDocumentSort, sort);
    QFETCH(QString, order);
    World world;
    const auto nextInstant = [] { QTest::qWait(3); }; // times are kept to the millisecond
    world.makeFolder("zoo");
    nextInstant();
    world.upload("c", "333");
    nextInstant();
    world.upload("a", "1");
    nextInstant();
    world.upload("b", "22");
    const QStringList names = world.names(VellDocumentConditon(), sort);
    if (order == QLatin1String("files zoo"))
        QCOMPARE(names.last(), QString("zoo"));
    else
        QCOMPARE(names.join(QLatin1Char(' ')), order);
}

void TestWorkflowLists::pagesNeitherLoseNorRepeat_data()
{
    QTest::addColumn<VellDocumentSort>("sort");
    QTest::newRow("default") << VellDocumentSort();
    QTest::newRow("name") << sortedBy("name");
    // Equal for all: nothing but the tie break orders them.
    QTest::newRow("size") << sortedBy("file.fileSize", Qt::DescendingOrder);
}

void TestWorkflowLists::pagesNeitherLoseNorRepeat()
{
    QFETCH(VellDocumentSort, sort);
    constexpr int Entries = 1000;
    World world;
    for (int i = 0; i < Entries; ++i)
        world.makeFolder(QString("folder %1").arg(i));
    QCOMPARE(world.data.getDocumentsRangeCount(VellDocumentConditon()), Entries);

    QSet<QString> seen;
    QList<VellDocument> list;
    for (int skip = 0; skip < Entries; skip += 37) {
        world.data.getDocumentsRange(list, skip, 37, VellDocumentConditon(), sort);
        QCOMPARE(list.size(), qMin(skip + 37, Entries));
    }
    for (const VellDocument &document : qAsConst(list))
        seen.insert(document._id);
    QCOMPARE(seen.size(), Entries);
}

void TestWorkflowLists::aPatternFindsNames_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("found");
    QTest::newRow("part") << "plan"
                          << "Plan A.dwg plan b.pdf";
    QTest::newRow("start") << "^plan"
                           << "Plan A.dwg plan b.pdf";
    QTest::newRow("end") << "\\.dwg$"
                         << "Plan A.dwg 图纸 100%#1.dwg";
    QTest::newRow("alternatives") << "A|report"
                                  << "Plan A.dwg plan b.pdf report.txt";
    QTest::newRow("Chinese") << "图"
                             << "图纸 100%#1.dwg";
    QTest::newRow("percent and hash") << "100%#"
                                      << "图纸 100%#1.dwg";
    QTest::newRow("nothing") << "nothing"
                             << "";
}

void TestWorkflowLists::aPatternFindsNames()
{
    QFETCH(QString, pattern);
    QFETCH(QString, found);
    World world;
    for (const QString &name : {QString("Plan A.dwg"), QString("plan b.pdf"), QString("report.txt"),
                                QString("图纸 100%#1.dwg")})
        world.makeFolder(name);
    VellDocumentConditon condition;
    condition.searchName = pattern;
    QCOMPARE(world.names(condition, sortedBy("name")).join(QLatin1Char(' ')), found);
}

void TestWorkflowLists::aSpanOfTimeFindsChanges()
{
    World world;
    world.makeFolder("today");
    const QDateTime midnight(QDateTime::currentDateTimeUtc().date(), QTime(0, 0), Qt::UTC);
    VellDocumentConditon condition;
    condition.isAllTime = false;
    condition.startTime = midnight;
    condition.endTime = midnight; // the whole day counts
    QCOMPARE(world.names(condition), QStringList{"today"});
    condition.startTime = midnight.addDays(-2);
    condition.endTime = midnight.addDays(-1);
    QCOMPARE(world.names(condition), QStringList());
    QCOMPARE(world.data.getDocumentsRangeCount(condition), 0);
}

void TestWorkflowLists::usersAndTypesAndCategoriesFilter()
{
    World world;
    world.makeFolder("folder");
    world.upload("model.dwg", "m", QString(), "model");
    world.upload("photo.png", "p", QString(), "photo");

    VellDocumentConditon condition;
    condition.type = "dir";
    QCOMPARE(world.names(condition), QStringList{"folder"});
    condition.type.clear();
    condition.category = "photo";
    QCOMPARE(world.names(condition), QStringList{"photo.png"});
    condition.category.clear();
    condition.isAllUser = false;
    condition.userIds = QStringList{"local"};
    QCOMPARE(world.names(condition).size(), 3);
    condition.userIds = QStringList{"somebody else"};
    QCOMPARE(world.names(condition).size(), 0);
    condition.userIds.clear();
    QCOMPARE(world.names(condition).size(), 0);
}

void TestWorkflowLists::depthFindsWhatLiesBelow()
{
    World world;
    const QString outer = world.makeFolder("outer");
    const QString inner = world.makeFolder("inner", outer);
    world.upload("deep.txt", "d", inner);
    world.upload("elsewhere.txt", "e");

    VellDocumentConditon condition;
    condition.parentId = outer;
    condition.isDeep = true;
    QCOMPARE(world.names(condition, sortedBy("name")), QStringList({"deep.txt", "inner"}));
    condition = VellDocumentConditon();
    condition.hasParentId = false;
    QCOMPARE(world.names(condition).size(), 4);
}

void TestWorkflowLists::aPatternThatRunsForEverIsRefused()
{
    World world;
    world.makeFolder(QString(40, QLatin1Char('a')) + QLatin1Char('!'));
    VellDocumentConditon condition;
    condition.searchName = "^(a+)+$";
    QCOMPARE(world.names(condition), QStringList());
    // PostgreSQL evaluates this pattern without backtracking.
    QCOMPARE(world.lastFailure.httpStatus, TestDatabase::isPostgres() ? 0 : 400);
    condition.searchName = "(";
    world.lastFailure = NetworkFailure();
    QCOMPARE(world.names(condition), QStringList());
    QCOMPARE(world.lastFailure.httpStatus, 400);
}

void TestWorkflowLists::theUsersNewestFilesAreListed()
{
    World world;
    world.makeFolder("folder");
    world.upload("first.txt", "1", QString(), "doc");
    QTest::qWait(3); // times are kept to the millisecond
    const VellDocument second = world.upload("second.txt", "2", QString(), "doc");
    GetSoftCache()->setCurrentUserId("local");

    AsyncGetRecent recent;
    QSignalSpy listed(&recent, &AsyncGetRecent::getRecentDocsFinish);
    recent.getRecentDocs(QString(), "doc");
    QVERIFY(listed.wait());
    const auto documents = listed[0][0].value<VellDocumentList>();
    QCOMPARE(documents.size(), 2);
    QCOMPARE(documents[0].name, QString("second.txt"));
    QCOMPARE(documents[0].documentId, second._id);
}

QTEST_GUILESS_MAIN(TestWorkflowLists)
#include "tst_workflow_lists.moc"
