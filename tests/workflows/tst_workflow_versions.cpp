#include "World.h"

#include <async_ops/AsyncGetDocInfo.h>
#include <async_ops/AsyncRenameDoc.h>

#include <QSignalSpy>
#include <QTest>

class TestWorkflowVersions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewFileAddsAVersion();
    void remarksStandOnDocumentsAndVersions();
    void infoAndRenameWork();
    void anEmptyFileIsAFile();
};

void TestWorkflowVersions::aNewFileAddsAVersion()
{
    World world;
    const VellDocument first = world.upload("plan.dwg", "first");
    const VellDocument second = world.uploadVersion(first, "the second");
    QCOMPARE(second._id, first._id);
    QCOMPARE(world.download(world.fetch(first._id)), QByteArray("the second"));

    QList<VellDocument> versions;
    QVERIFY(world.data.getDocHistory(first._id, versions));
    QCOMPARE(versions.size(), 2);
    QCOMPARE(world.download(versions[0]), QByteArray("the second"));
    QCOMPARE(world.download(versions[1]), QByteArray("first"));
    QCOMPARE(versions[1].documentId, first._id);
    QCOMPARE(versions[1].fileSize, Q_INT64_C(5));
    QVERIFY(versions[1].historyUpdatedAt.isValid());
    QVERIFY(versions[0]._id != versions[1]._id);
}

void TestWorkflowVersions::remarksStandOnDocumentsAndVersions()
{
    World world;
    const VellDocument plan = world.upload("plan.dwg", "first");
    world.uploadVersion(plan, "second");
    QList<VellDocument> versions;
    QVERIFY(world.data.getDocHistory(plan._id, versions));
    QVERIFY(world.data.updateDocRemake(true, versions[1]._id, "superseded"));
    QVERIFY(world.data.updateDocRemake(false, plan._id, "for review"));

    QCOMPARE(world.fetch(plan._id).remark, QString("for review"));
    versions.clear();
    QVERIFY(world.data.getDocHistory(plan._id, versions));
    QCOMPARE(versions[1].remark, QString("superseded"));
    QVERIFY(versions[0].remark != QLatin1String("superseded"));
}

void TestWorkflowVersions::infoAndRenameWork()
{
    World world;
    const QString id = world.upload("plan.dwg", "x")._id;
    AsyncRenameDoc rename;
    QSignalSpy renamed(&rename, &AsyncRenameDoc::renameDocFinish);
    rename.renameDoc(id, "R&D 100% #1 + 图纸.dwg");
    QVERIFY(renamed.wait());
    QCOMPARE(renamed[0][0].value<VellDocument>().name, QString("R&D 100% #1 + 图纸.dwg"));

    AsyncGetDocInfo info;
    QSignalSpy fetched(&info, &AsyncGetDocInfo::getDocInfoFinish);
    info.getDocInfo(id);
    QVERIFY(fetched.wait());
    QCOMPARE(fetched[0][0].value<VellDocument>()._id, id);
    QCOMPARE(fetched[0][0].value<VellDocument>().name, QString("R&D 100% #1 + 图纸.dwg"));
}

void TestWorkflowVersions::anEmptyFileIsAFile()
{
    World world;
    const VellDocument file = world.upload("empty.txt", "");
    QVERIFY(!file._id.isEmpty());
    const VellDocument fetched = world.fetch(file._id);
    QCOMPARE(fetched.type, QString("file"));
    QCOMPARE(fetched.fileSize, Q_INT64_C(0));
    QVERIFY(!fetched.fileId.isEmpty());
}

QTEST_GUILESS_MAIN(TestWorkflowVersions)
#include "tst_workflow_versions.moc"
