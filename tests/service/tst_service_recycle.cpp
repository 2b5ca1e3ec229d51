#include <service/ServiceWorld.h>

#include <QJsonObject>
#include <QJsonValue>
#include <QTest>

//! The recycle bin.
class TestServiceRecycle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDeletedFileIsInTheBin();
    void aDeletedFolderTakesEverythingBelow();
    void deletingTwiceIsNoError();
    void whatIsInTheBinCannotBeChanged();
    void restoringBringsTheContentBack();
    void whatWasDeletedBeforeItsFolderStaysInTheBin();
    void withoutItsFolderItComesBackAtTheTop();
    void restoringTellsOfTheSameName();
    void emptyingPurges_data();
    void emptyingPurges();
    void emptyingKeepsWhatItDoesNotConcern();
    void oneDocumentIsPurged();
    void onlyWhatWasDeletedItselfIsPurged();

private:
    static QStringList bin(ServiceWorld &world, const QJsonObject &where = {})
    {
        return world.names(where, {{"category", "recycle"}, {"order", "name"}});
    }
    static HttpAnswer remove(ServiceWorld &world, const QString &id)
    {
        return world.client.remove(ServiceWorld::documentPath(id));
    }
    static HttpAnswer restore(ServiceWorld &world, const QString &id)
    {
        return world.client.get(ServiceWorld::documentPath(id, "/restore"));
    }
    static HttpAnswer purge(ServiceWorld &world, const QString &id)
    {
        return world.client.remove(ServiceWorld::documentPath(id), {{"permanently", "true"}});
    }
    static HttpAnswer empty(ServiceWorld &world, const QString &category)
    {
        return world.client.remove("document-service/documents",
                                   {{"hostId", "p1"}, {"category", category}});
    }
};

void TestServiceRecycle::aDeletedFileIsInTheBin()
{
    ServiceWorld world;
    const QString id = world.makeFile("a.txt");
    QCOMPARE(remove(world, id).status, 200);
    QCOMPARE(world.names(ServiceWorld::below(QString())), QStringList());
    QCOMPARE(bin(world), QStringList{"a.txt"});
    QCOMPARE(bin(world, ServiceWorld::below(QString())), QStringList{"a.txt"});
    QCOMPARE(world.document(id).value("recycle").toInt(), 1);
}

void TestServiceRecycle::aDeletedFolderTakesEverythingBelow()
{
    ServiceWorld world;
    const QString outer = world.makeFolder("outer");
    const QString inner = world.makeFolder("inner", outer);
    const QString file = world.makeFile("file", inner);
    remove(world, outer);
    QCOMPARE(world.names({}), QStringList());
    QCOMPARE(bin(world), QStringList{"outer"});
    QCOMPARE(bin(world, ServiceWorld::below(outer)), QStringList{"inner"});
    QCOMPARE(world.document(file).value("recycle").toInt(), 2);
    QCOMPARE(restore(world, file).status, 409);
}

void TestServiceRecycle::deletingTwiceIsNoError()
{
    ServiceWorld world;
    const QString id = world.makeFile("a.txt");
    QCOMPARE(remove(world, id).status, 200);
    QCOMPARE(remove(world, id).status, 200);
    QCOMPARE(bin(world).size(), 1);
    QCOMPARE(remove(world, "none").status, 404);
}

void TestServiceRecycle::whatIsInTheBinCannotBeChanged()
{
    ServiceWorld world;
    const QString id = world.makeFile("a.txt");
    remove(world, id);
    QCOMPARE(world.client.put(ServiceWorld::documentPath(id), {{"name", "b.txt"}}).status, 409);
}

void TestServiceRecycle::restoringBringsTheContentBack()
{
    ServiceWorld world;
    const QString top = world.makeFolder("top");
    const QString folder = world.makeFolder("folder", top);
    world.makeFile("file", folder);
    remove(world, folder);
    const HttpAnswer answer = restore(world, folder);
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.object().value("hasSameDoc"), QJsonValue(false));
    QCOMPARE(answer.object().value("parentId").toString(), top);
    QCOMPARE(answer.object().value("recycle").toInt(-1), 0);
    QCOMPARE(world.names(ServiceWorld::below(folder)), QStringList{"file"});
    QCOMPARE(bin(world), QStringList());
}

void TestServiceRecycle::whatWasDeletedBeforeItsFolderStaysInTheBin()
{
    ServiceWorld world;
    const QString folder = world.makeFolder("folder");
    const QString inner = world.makeFolder("inner", folder);
    world.makeFile("below inner", inner);
    world.makeFile("stays", folder);
    remove(world, inner);
    remove(world, folder);
    restore(world, folder);
    QCOMPARE(world.names(ServiceWorld::below(folder), {{"deep", "true"}}), QStringList{"stays"});
    QCOMPARE(bin(world), QStringList{"inner"});
}

void TestServiceRecycle::withoutItsFolderItComesBackAtTheTop()
{
    ServiceWorld world;
    const QString folder = world.makeFolder("folder");
    const QString file = world.makeFile("file", folder);
    remove(world, file);
    remove(world, folder);
    QCOMPARE(restore(world, file).status, 200);
    QVERIFY(world.document(file).value("parentId").isNull());
}

void TestServiceRecycle::restoringTellsOfTheSameName()
{
    ServiceWorld world;
    const QString first = world.makeFile("a.txt");
    remove(world, first);
    world.makeFile("a.txt");
    const HttpAnswer answer = restore(world, first);
    QCOMPARE(answer.object().value("hasSameDoc"), QJsonValue(true));
    QCOMPARE(world.names(ServiceWorld::below(QString())).size(), 2);
}

void TestServiceRecycle::emptyingPurges_data()
{
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("left");
    QTest::newRow("everything") << QString() << QString();
    QTest::newRow("everything by the bin's word") << "recycle" << QString();
    QTest::newRow("one category") << "c"
                                  << "of d";
}

void TestServiceRecycle::emptyingPurges()
{
    QFETCH(QString, category);
    QFETCH(QString, left);
    ServiceWorld world;
    const QString folder = world.makeFolder("of c");
    const QString below = world.makeFile("below", folder, "x", "d");
    const QString other = world.makeFile("of d", {}, "y", "d");
    world.makeFile("not deleted");
    remove(world, folder);
    remove(world, other);
    QCOMPARE(empty(world, category).status, 200);
    QCOMPARE(bin(world).join(QLatin1Char(',')), left);
    QCOMPARE(world.client.get(ServiceWorld::documentPath(below)).status, 404);
    QCOMPARE(world.names({}), QStringList{"not deleted"});
}

void TestServiceRecycle::emptyingKeepsWhatItDoesNotConcern()
{
    ServiceWorld world;
    const QString folder = world.makeFolder("of c");
    const QString file = world.makeFile("of d", folder, "x", "d");
    remove(world, file); // on its own, before its folder
    remove(world, folder);
    QCOMPARE(empty(world, "c").status, 200);
    QCOMPARE(bin(world), QStringList{"of d"});
    QCOMPARE(restore(world, file).status, 200);
    QVERIFY(world.document(file).value("parentId").isNull());
    QCOMPARE(world.client.remove("document-service/documents").status, 400);
}

void TestServiceRecycle::oneDocumentIsPurged()
{
    ServiceWorld world;
    const QString folder = world.makeFolder("folder");
    const QString below = world.makeFile("below", folder);
    const QString deletedBefore = world.makeFile("deleted before", folder);
    const QString other = world.makeFile("other");
    remove(world, deletedBefore);
    remove(world, folder);
    remove(world, other);
    const HttpAnswer answer = purge(world, folder);
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.object(), QJsonObject({{"_id", folder}, {"count", 2}}));
    QCOMPARE(world.client.get(ServiceWorld::documentPath(folder)).status, 404);
    QCOMPARE(world.client.get(ServiceWorld::documentPath(below)).status, 404);
    QCOMPARE(bin(world), QStringList({"deleted before", "other"}));
    QCOMPARE(purge(world, folder).status, 404);
}

void TestServiceRecycle::onlyWhatWasDeletedItselfIsPurged()
{
    ServiceWorld world;
    const QString folder = world.makeFolder("folder");
    const QString below = world.makeFile("below", folder);
    QCOMPARE(purge(world, below).status, 409);
    QCOMPARE(world.document(below).value("recycle").toInt(), 0);
    remove(world, folder);
    QCOMPARE(purge(world, below).status, 409);
    QCOMPARE(world.document(below).value("recycle").toInt(), 2);
}

QTEST_GUILESS_MAIN(TestServiceRecycle)
#include "tst_service_recycle.moc"
