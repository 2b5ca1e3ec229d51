#include "World.h"

#include <document_model/DocumentConversions.h>

#include <QTest>

class TestWorkflowFolders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTreeIsListedAsItWasMade();
    void aMoveShowsInBothFolders();
    void aFolderCannotMoveIntoItself();
    void anOrderIsKept();
    void aTreeIsFetchedWithOneRequest();
    void linksAreFoundFromBothEnds();
};

void TestWorkflowFolders::aTreeIsListedAsItWasMade()
{
    World world;
    const QString drawings = world.makeFolder("Drawings");
    const QString level = world.makeFolder("Level 1", drawings);
    world.makeFolder("Reports");
    const VellDocument plan = world.upload("plan.dwg", "a plan", level);

    QCOMPARE(world.names(QString()), QStringList({"Drawings", "Reports"}));
    QCOMPARE(world.names(drawings), QStringList{"Level 1"});
    QCOMPARE(world.names(level), QStringList{"plan.dwg"});

    const VellDocument fetched = world.fetch(plan._id);
    QCOMPARE(fetched.name, QString("plan.dwg"));
    QCOMPARE(fetched.parentId, level);
    QCOMPARE(fetched.projectId, QString("p1"));
    QCOMPARE(fetched.type, QString("file"));
    QCOMPARE(fetched.fileSize, Q_INT64_C(6));
    QCOMPARE(fetched.suffix, QString("dwg"));
    QVERIFY(fetched.createdAt.isValid());
    QCOMPARE(world.download(fetched), QByteArray("a plan"));
    QCOMPARE(world.data.getFolderName(drawings), QString("Drawings"));
}

void TestWorkflowFolders::aMoveShowsInBothFolders()
{
    World world;
    const QString from = world.makeFolder("from");
    const QString to = world.makeFolder("to");
    const QString a = world.upload("a.txt", "a", from)._id;
    const QString b = world.upload("b.txt", "b", from)._id;
    world.upload("c.txt", "c", from);

    QVERIFY(world.data.moveToFolder({a, b}, to));
    QCOMPARE(world.names(from), QStringList{"c.txt"});
    QCOMPARE(world.names(to), QStringList({"a.txt", "b.txt"}));
    VellDocument cached;
    world.data.getDoc(a, cached, true);
    QCOMPARE(cached.parentId, to);

    QVERIFY(world.data.moveToFolder({a}, QString()));
    QVERIFY(world.names(QString()).contains("a.txt"));
}

void TestWorkflowFolders::aFolderCannotMoveIntoItself()
{
    World world;
    const QString outer = world.makeFolder("outer");
    const QString inner = world.makeFolder("inner", outer);
    QVERIFY(!world.data.moveToFolder({outer}, outer));
    QVERIFY(!world.data.moveToFolder({outer}, inner));
    QVERIFY(!world.lastFailure.message.isEmpty());
    QCOMPARE(world.names(QString()), QStringList{"outer"});
    QCOMPARE(world.names(outer), QStringList{"inner"});
}

void TestWorkflowFolders::anOrderIsKept()
{
    World world;
    QMap<QString, int> orders;
    int position = 3;
    for (const char *name : {"a", "b", "c"})
        orders.insert(world.makeFolder(QString::fromLatin1(name)), position--);
    QVERIFY(world.data.changeDocOrder(orders));
    QCOMPARE(world.names(VellDocumentConditon()), QStringList({"c", "b", "a"}));
}

void TestWorkflowFolders::aTreeIsFetchedWithOneRequest()
{
    World world;
    const QString drawings = world.makeFolder("Drawings");
    const QString level = world.makeFolder("Level 1", drawings);
    world.upload("plan.dwg", "a plan", level);

    VellDocumentConditon condition;
    condition.selectTree = true;
    QList<VellDocument> documents;
    world.data.getDocuments(condition, documents);
    VellPubDoc::makeDocListTree(documents);
    QCOMPARE(documents.size(), 1);
    QCOMPARE(documents[0].children.size(), 1);
    QCOMPARE(documents[0].children[0].children.size(), 1);
    const VellDocument &plan = documents[0].children[0].children[0];
    QCOMPARE(plan.name, QString("plan.dwg"));
    QCOMPARE(plan.fileSize, Q_INT64_C(6));
}

void TestWorkflowFolders::linksAreFoundFromBothEnds()
{
    World world;
    VellDocument plan = world.upload("plan.dwg", "a plan");
    plan.entity.insert("room", {"r1", "r2"});
    plan.codeList = {VellDocumentChange::EntityLinks};
    const QMap<QString, QStringList> links = plan.entity;
    QVERIFY(world.data.updateDoc(plan));
    QCOMPARE(plan.entity, links);
    QCOMPARE(world.fetch(plan._id).entity, links);

    QList<VellDocumentLite> linked;
    QVERIFY(world.data.getEntityDocByGuid("r2", linked));
    QCOMPARE(linked.size(), 1);
    QCOMPARE(linked[0]._id, plan._id);
    QCOMPARE(linked[0].fileSize, Q_INT64_C(6));
    QCOMPARE(linked[0].suffix, QString("dwg"));

    plan.entity.clear();
    plan.codeList = {VellDocumentChange::EntityLinks};
    QVERIFY(world.data.updateDoc(plan));
    linked.clear();
    QVERIFY(world.data.getEntityDocByGuid("r2", linked));
    QVERIFY(linked.isEmpty());
}

QTEST_GUILESS_MAIN(TestWorkflowFolders)
#include "tst_workflow_folders.moc"
