#include "World.h"

#include <QTest>

class TestWorkflowRecycleBin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDeletedFolderTakesAllWithIt();
    void aRestoredFolderBringsAllBack();
    void restoringTellsOfTheSameName();
    void theTopLevelTakesWhatHasNoFolderAnyMore();
    void emptyingIsForGood();
    void emptyingOneCategoryLeavesTheOthers();
};

void TestWorkflowRecycleBin::aDeletedFolderTakesAllWithIt()
{
    World world;
    const QString folder = world.makeFolder(QStringLiteral("folder"));
    world.upload(QStringLiteral("a.txt"), "a", folder);
    world.makeFolder(QStringLiteral("other"));

    QVERIFY(world.data.deleteDoc(folder));
    QCOMPARE(world.names(QString()), QStringList{QStringLiteral("other")});
    QCOMPARE(world.names(folder), QStringList());
    QCOMPARE(world.names(recycleBin()), QStringList{QStringLiteral("folder")});
    QCOMPARE(world.data.getDocumentsRecycledRangeCount(recycleBin()), 1);
    QCOMPARE(world.data.getFolderName(folder), QString());
}

void TestWorkflowRecycleBin::aRestoredFolderBringsAllBack()
{
    World world;
    const QString folder = world.makeFolder(QStringLiteral("folder"));
    world.upload(QStringLiteral("a.txt"), "a", folder);
    QVERIFY(world.data.deleteDoc(folder));
    QVERIFY(!world.data.uploadRecycleDoc(folder)); // no other of that name
    QCOMPARE(world.names(QString()), QStringList{QStringLiteral("folder")});
    QCOMPARE(world.names(folder), QStringList{QStringLiteral("a.txt")});
    QCOMPARE(world.data.getDocumentsRecycledRangeCount(recycleBin()), 0);
}

void TestWorkflowRecycleBin::restoringTellsOfTheSameName()
{
    World world;
    const QString old = world.upload(QStringLiteral("a.txt"), "old")._id;
    QVERIFY(world.data.deleteDoc(old));
    world.upload(QStringLiteral("a.txt"), "new");
    QVERIFY(world.data.uploadRecycleDoc(old));
}

void TestWorkflowRecycleBin::theTopLevelTakesWhatHasNoFolderAnyMore()
{
    World world;
    const QString folder = world.makeFolder(QStringLiteral("folder"));
    const QString file = world.upload(QStringLiteral("a.txt"), "a", folder)._id;
    QVERIFY(world.data.deleteDoc(QStringList({file, folder})));
    QVERIFY(!world.data.uploadRecycleDoc(file));
    QCOMPARE(world.names(QString()), QStringList{QStringLiteral("a.txt")});
}

void TestWorkflowRecycleBin::emptyingIsForGood()
{
    World world;
    const VellDocument file = world.upload(QStringLiteral("a.txt"), "a");
    const QString kept = world.upload(QStringLiteral("kept.txt"), "k")._id;
    QVERIFY(world.data.deleteDoc(file._id));
    QVERIFY(world.data.emptyRecycled(QStringLiteral("recycle")));
    QCOMPARE(world.data.getDocumentsRecycledRangeCount(recycleBin()), 0);
    QCOMPARE(world.fetch(file._id)._id, QString());
    QCOMPARE(world.lastFailure.httpStatus, 404);
    QCOMPARE(world.fetch(kept)._id, kept);
}

void TestWorkflowRecycleBin::emptyingOneCategoryLeavesTheOthers()
{
    World world;
    for (const QString &category : {QStringLiteral("model"), QStringLiteral("photo")}) {
        const VellDocument file = world.upload(category, "x", QString(), category);
        QVERIFY(world.data.deleteDoc(file._id));
    }
    QVERIFY(world.data.emptyRecycled(QStringLiteral("model")));
    QCOMPARE(world.names(recycleBin()), QStringList{QStringLiteral("photo")});
}

QTEST_GUILESS_MAIN(TestWorkflowRecycleBin)
#include "tst_workflow_recycle_bin.moc"
