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
    const QString folder = world.makeFolder("folder");
    world.upload("a.txt", "a", folder);
    world.makeFolder("other");

    QVERIFY(world.data.deleteDoc(folder));
    QCOMPARE(world.names(QString()), QStringList{"other"});
    QCOMPARE(world.names(folder), QStringList());
    QCOMPARE(world.names(recycleBin()), QStringList{"folder"});
    QCOMPARE(world.data.getDocumentsRecycledRangeCount(recycleBin()), 1);
    QCOMPARE(world.data.getFolderName(folder), QString());
}

void TestWorkflowRecycleBin::aRestoredFolderBringsAllBack()
{
    World world;
    const QString folder = world.makeFolder("folder");
    world.upload("a.txt", "a", folder);
    QVERIFY(world.data.deleteDoc(folder));
    QVERIFY(!world.data.uploadRecycleDoc(folder)); // no other of that name
    QCOMPARE(world.names(QString()), QStringList{"folder"});
    QCOMPARE(world.names(folder), QStringList{"a.txt"});
    QCOMPARE(world.data.getDocumentsRecycledRangeCount(recycleBin()), 0);
}

void TestWorkflowRecycleBin::restoringTellsOfTheSameName()
{
    World world;
    const QString old = world.upload("a.txt", "old")._id;
    QVERIFY(world.data.deleteDoc(old));
    world.upload("a.txt", "new");
    QVERIFY(world.data.uploadRecycleDoc(old));
}

void TestWorkflowRecycleBin::theTopLevelTakesWhatHasNoFolderAnyMore()
{
    World world;
    const QString folder = world.makeFolder("folder");
    const QString file = world.upload("a.txt", "a", folder)._id;
    QVERIFY(world.data.deleteDoc(QStringList({file, folder})));
    QVERIFY(!world.data.uploadRecycleDoc(file));
    QCOMPARE(world.names(QString()), QStringList{"a.txt"});
}

void TestWorkflowRecycleBin::emptyingIsForGood()
{
    World world;
    const VellDocument file = world.upload("a.txt", "a");
    const QString kept = world.upload("kept.txt", "k")._id;
    QVERIFY(world.data.deleteDoc(file._id));
    QVERIFY(world.data.emptyRecycled("recycle"));
    QCOMPARE(world.data.getDocumentsRecycledRangeCount(recycleBin()), 0);
    QCOMPARE(world.fetch(file._id)._id, QString());
    QCOMPARE(world.lastFailure.httpStatus, 404);
    QCOMPARE(world.fetch(kept)._id, kept);
}

void TestWorkflowRecycleBin::emptyingOneCategoryLeavesTheOthers()
{
    World world;
    for (const QString &category : {QString("model"), QString("photo")}) {
        const VellDocument file = world.upload(category, "x", QString(), category);
        QVERIFY(world.data.deleteDoc(file._id));
    }
    QVERIFY(world.data.emptyRecycled("model"));
    QCOMPARE(world.names(recycleBin()), QStringList{"photo"});
}

QTEST_GUILESS_MAIN(TestWorkflowRecycleBin)
#include "tst_workflow_recycle_bin.moc"
