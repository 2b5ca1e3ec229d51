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
    const QString drawings = world.makeFolder(QStringLiteral("Drawings"));
    const QString level = world.makeFolder(QStringLiteral("Level 1"), drawings);
    world.makeFolder(QStringLiteral("Reports"));
    const VellDocument plan = world.upload(QStringLiteral("plan.dwg"), "a plan", level);

    QCOMPARE(world.names(QString()),
             QStringList({QStringLiteral("Drawings"), QStringLiteral("Reports")}));
    QCOMPARE(world.names(drawings), QStringList{QStringLiteral("Level 1")});
    QCOMPARE(world.names(level), QStringList{QStringLiteral("plan.dwg")});

    const VellDocument fetched = world.fetch(plan._id);
    QCOMPARE(fetched.name, QStringLiteral("plan.dwg"));
    QCOMPARE(fetched.parentId, level);
    QCOMPARE(fetched.projectId, QStringLiteral("p1"));
    QCOMPARE(fetched.type, QStringLiteral("file"));
    QCOMPARE(fetched.fileSize, Q_INT64_C(6));
    QCOMPARE(fetched.suffix, QStringLiteral("dwg"));
    QVERIFY(fetched.createdAt.isValid());
    QCOMPARE(world.download(fetched), QByteArray("a plan"));
    QCOMPARE(world.data.getFolderName(drawings), QStringLiteral("Drawings"));
}

void TestWorkflowFolders::aMoveShowsInBothFolders()
{
    World world;
    const QString from = world.makeFolder(QStringLiteral("from"));
    const QString to = world.makeFolder(QStringLiteral("to"));
    const QString a = world.upload(QStringLiteral("a.txt"), "a", from)._id;
    const QString b = world.upload(QStringLiteral("b.txt"), "b", from)._id;
    world.upload(QStringLiteral("c.txt"), "c", from);

    QVERIFY(world.data.moveToFolder({a, b}, to));
    QCOMPARE(world.names(from), QStringList{QStringLiteral("c.txt")});
    QCOMPARE(world.names(to), QStringList({QStringLiteral("a.txt"), QStringLiteral("b.txt")}));
    VellDocument cached;
    world.data.getDoc(a, cached, true);
    QCOMPARE(cached.parentId, to);

    QVERIFY(world.data.moveToFolder({a}, QString()));
    QVERIFY(world.names(QString()).contains(QStringLiteral("a.txt")));
}

void TestWorkflowFolders::aFolderCannotMoveIntoItself()
{
    World world;
    const QString outer = world.makeFolder(QStringLiteral("outer"));
    const QString inner = world.makeFolder(QStringLiteral("inner"), outer);
    QVERIFY(!world.data.moveToFolder({outer}, outer));
    QVERIFY(!world.data.moveToFolder({outer}, inner));
    QVERIFY(!world.lastFailure.message.isEmpty());
    QCOMPARE(world.names(QString()), QStringList{QStringLiteral("outer")});
    QCOMPARE(world.names(outer), QStringList{QStringLiteral("inner")});
}

void TestWorkflowFolders::anOrderIsKept()
{
    World world;
    QMap<QString, int> orders;
    int position = 3;
    for (const char *name : {"a", "b", "c"})
        orders.insert(world.makeFolder(QString::fromLatin1(name)), position--);
    QVERIFY(world.data.changeDocOrder(orders));
    QCOMPARE(world.names(VellDocumentConditon()),
             QStringList({QStringLiteral("c"), QStringLiteral("b"), QStringLiteral("a")}));
}

void TestWorkflowFolders::aTreeIsFetchedWithOneRequest()
{
    World world;
    const QString drawings = world.makeFolder(QStringLiteral("Drawings"));
    const QString level = world.makeFolder(QStringLiteral("Level 1"), drawings);
    world.upload(QStringLiteral("plan.dwg"), "a plan", level);

    VellDocumentConditon condition;
    condition.selectTree = true;
    QList<VellDocument> documents;
    world.data.getDocuments(condition, documents);
    VellPubDoc::makeDocListTree(documents);
    QCOMPARE(documents.size(), 1);
    QCOMPARE(documents[0].children.size(), 1);
    QCOMPARE(documents[0].children[0].children.size(), 1);
    const VellDocument &plan = documents[0].children[0].children[0];
    QCOMPARE(plan.name, QStringLiteral("plan.dwg"));
    QCOMPARE(plan.fileSize, Q_INT64_C(6));
}

void TestWorkflowFolders::linksAreFoundFromBothEnds()
{
    World world;
    VellDocument plan = world.upload(QStringLiteral("plan.dwg"), "a plan");
    plan.entity.insert(QStringLiteral("room"), {QStringLiteral("r1"), QStringLiteral("r2")});
    plan.codeList = {VellDocumentChange::EntityLinks};
    const QMap<QString, QStringList> links = plan.entity;
    QVERIFY(world.data.updateDoc(plan));
    QCOMPARE(plan.entity, links);
    QCOMPARE(world.fetch(plan._id).entity, links);

    QList<VellDocumentLite> linked;
    QVERIFY(world.data.getEntityDocByGuid(QStringLiteral("r2"), linked));
    QCOMPARE(linked.size(), 1);
    QCOMPARE(linked[0]._id, plan._id);
    QCOMPARE(linked[0].fileSize, Q_INT64_C(6));
    QCOMPARE(linked[0].suffix, QStringLiteral("dwg"));

    plan.entity.clear();
    plan.codeList = {VellDocumentChange::EntityLinks};
    QVERIFY(world.data.updateDoc(plan));
    linked.clear();
    QVERIFY(world.data.getEntityDocByGuid(QStringLiteral("r2"), linked));
    QVERIFY(linked.isEmpty());
}

QTEST_GUILESS_MAIN(TestWorkflowFolders)
#include "tst_workflow_folders.moc"
