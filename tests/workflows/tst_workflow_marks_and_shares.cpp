#include "World.h"

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>

#include <QTest>

class TestWorkflowMarksAndShares : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void frequentDocumentsAreListed();
    void recordsOfATypeAreListed();
    void aFavouriteIsLookedUp();
    void aShareOpensToWhoeverHasTheCode();
    void aShareEnds();
};

namespace {

QByteArray page(const QString &url, int *status)
{
    NetworkEventLoop loop(NetworkManager::instance()->get(url));
    loop.exec();
    *status = loop.httpStatus();
    return loop.content();
}

} // namespace

void TestWorkflowMarksAndShares::frequentDocumentsAreListed()
{
    World world;
    const QString a = world.upload("a.txt", "a")._id;
    world.upload("b.txt", "b");
    VellDocumentConditon frequent;
    frequent.isFrequent = true;
    QCOMPARE(world.names(frequent), QStringList());
    QVERIFY(world.data.setFrequentDocument(a, true));
    QCOMPARE(world.names(frequent), QStringList{"a.txt"});
    QVERIFY(world.fetch(a).favorite);
    QVERIFY(world.data.setFrequentDocument(a, false));
    QCOMPARE(world.names(frequent), QStringList());
    QVERIFY(!world.fetch(a).favorite);
}

void TestWorkflowMarksAndShares::recordsOfATypeAreListed()
{
    World world;
    const QString a = world.upload("a.txt", "a")._id;
    const QString b = world.upload("b.txt", "b")._id;
    QString unused;
    QVERIFY(world.data.setRectentDocument(a, true));
    QVERIFY(world.data.restoreFile(b, {}, 3, true, unused));
    VellDocumentConditon condition;
    condition.recordType = 2;
    QCOMPARE(world.names(condition), QStringList{"a.txt"});
    condition.recordType = 3;
    QList<VellDocument> favourites;
    QVERIFY(world.data.getFavorDocs(favourites, condition, sortedBy("name")));
    QCOMPARE(favourites.size(), 1);
    QCOMPARE(favourites[0]._id, b);
}

void TestWorkflowMarksAndShares::aFavouriteIsLookedUp()
{
    World world;
    const QString a = world.upload("a.txt", "a")._id;
    QString unused;
    int type = 77;
    QVERIFY(world.data.getFavorDoc(type, a));
    QCOMPARE(type, 77);
    QVERIFY(world.data.restoreFile(a, {}, 3, true, unused));
    QVERIFY(world.data.getFavorDoc(type, a));
    QCOMPARE(type, 3);
}

void TestWorkflowMarksAndShares::aShareOpensToWhoeverHasTheCode()
{
    World world;
    const QString folder = world.makeFolder("Shared <drawings>");
    world.upload("plan.dwg", "a plan", folder);
    QString code;
    QVERIFY(world.data.shareDocument({folder}, QDateTime(), code, true));
    QVERIFY(code.size() >= 8);

    int status = 0;
    const QByteArray shown = page(world.service.baseApi() + QString("share/") + code, &status);
    QCOMPARE(status, 200);
    QVERIFY(shown.contains("Shared &lt;drawings&gt;"));
    page(world.service.baseApi() + "share/wrong", &status);
    QCOMPARE(status, 404);
}

void TestWorkflowMarksAndShares::aShareEnds()
{
    World world;
    const QString file = world.upload("a.txt", "a")._id;
    QString code;
    const QDateTime soon = QDateTime::currentDateTimeUtc().addMSecs(300);
    QVERIFY(world.data.shareDocument({file}, soon, code, false));
    int status = 0;
    const QString url = world.service.baseApi() + QString("share/") + code;
    page(url, &status);
    QCOMPARE(status, 200);
    QTRY_VERIFY((page(url, &status), status == 410));
}

QTEST_GUILESS_MAIN(TestWorkflowMarksAndShares)
#include "tst_workflow_marks_and_shares.moc"
