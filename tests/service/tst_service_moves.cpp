#include <service/ServiceWorld.h>

#include <QJsonArray>
#include <QJsonValue>
#include <QMap>
#include <QTest>

//! Moving documents between folders.
class TestServiceMoves : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void severalMoveAtOnce();
    void nullMovesToTheTopLevel();
    void aFolderTakesItsContentAlong();
    void targetsThatCannotBeAreRefused_data();
    void targetsThatCannotBeAreRefused();
    void oneBadIdMovesNothing();
    void noIdsIsASuccess();
    void aRenameMayMoveToo();
};

namespace {

HttpAnswer move(ServiceWorld &world, const QStringList &ids, const QJsonValue &target)
{
    return world.client.put(
        "document-service/documents",
        {{"documentIds", QJsonArray::fromStringList(ids)}, {"parentId", target}});
}

} // namespace

void TestServiceMoves::severalMoveAtOnce()
{
    ServiceWorld world;
    const QString target = world.makeFolder("target");
    const QString a = world.makeFile("a");
    const QString b = world.makeFolder("b");
    QCOMPARE(move(world, {a, b}, target).status, 200);
    QCOMPARE(world.names(ServiceWorld::below(target), {{"order", "name"}}),
             QStringList({"a", "b"}));
    QCOMPARE(world.names(ServiceWorld::below(QString())), QStringList{"target"});
}

void TestServiceMoves::nullMovesToTheTopLevel()
{
    ServiceWorld world;
    const QString folder = world.makeFolder("folder");
    const QString file = world.makeFile("file", folder);
    QCOMPARE(move(world, {file}, QJsonValue()).status, 200);
    QVERIFY(world.document(file).value("parentId").isNull());
}

void TestServiceMoves::aFolderTakesItsContentAlong()
{
    ServiceWorld world;
    const QString target = world.makeFolder("target");
    const QString folder = world.makeFolder("folder");
    world.makeFile("inside", folder);
    QCOMPARE(move(world, {folder}, target).status, 200);
    QVERIFY(world.names(ServiceWorld::below(target), {{"deep", "true"}}).contains("inside"));
}

void TestServiceMoves::targetsThatCannotBeAreRefused_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("status");
    QTest::newRow("itself") << "outer" << 409;
    QTest::newRow("its child") << "middle" << 409;
    QTest::newRow("far below it") << "inner" << 409;
    QTest::newRow("a file") << "file" << 400;
    QTest::newRow("an unknown id") << "unknown" << 404;
    QTest::newRow("a folder in the recycle bin") << "deleted" << 409;
    QTest::newRow("a folder of another project") << "foreign" << 404;
}

void TestServiceMoves::targetsThatCannotBeAreRefused()
{
    QFETCH(QString, target);
    QFETCH(int, status);
    ServiceWorld world;
    QMap<QString, QString> ids;
    ids[QString("outer")] = world.makeFolder("outer");
    ids[QString("middle")] = world.makeFolder("middle", ids.value("outer"));
    ids[QString("inner")] = world.makeFolder("inner", ids.value("middle"));
    ids[QString("file")] = world.makeFile("file");
    ids[QString("unknown")] = "0123456789abcdef01234567";
    ids[QString("deleted")] = world.makeFolder("deleted");
    world.client.remove(ServiceWorld::documentPath(ids.value("deleted")));
    ids[QString("foreign")] =
        world.client
            .post("document-service/projects/p2/documents", {{"name", "foreign"}, {"type", "dir"}})
            .object()
            .value("_id")
            .toString();

    const QString moved = ids.value("outer");
    const HttpAnswer answer = move(world, {moved}, ids.value(target));
    QCOMPARE(answer.status, status);
    QVERIFY(!answer.errorText().isEmpty());
    QVERIFY(world.document(moved).value("parentId").isNull());
    // The same rule by the other way.
    QCOMPARE(world.client.put(ServiceWorld::documentPath(moved), {{"parentId", ids.value(target)}})
                 .status,
             status);
}

void TestServiceMoves::oneBadIdMovesNothing()
{
    ServiceWorld world;
    const QString target = world.makeFolder("target");
    const QString good = world.makeFile("good");
    QCOMPARE(move(world, {good, "no such id"}, target).status, 404);
    QVERIFY(world.document(good).value("parentId").isNull());
}

void TestServiceMoves::noIdsIsASuccess()
{
    ServiceWorld world;
    QCOMPARE(move(world, {}, QJsonValue()).status, 200);
    QCOMPARE(world.client.putArray("document-service/documents", {}).status, 200);
}

void TestServiceMoves::aRenameMayMoveToo()
{
    ServiceWorld world;
    const QString target = world.makeFolder("target");
    const QString file = world.makeFile("a.txt");
    const HttpAnswer answer = world.client.put(
        ServiceWorld::documentPath(file),
        {{"parentId", target}, {"name", "b.txt"}, {"category", QJsonValue()}, {"hostId", "host"}});
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.object().value("parentId").toString(), target);
    QCOMPARE(answer.object().value("name").toString(), QString("b.txt"));
    QCOMPARE(answer.object().value("category").toString(), QString());
    QCOMPARE(answer.object().value("hostId").toString(), QString("host"));
}

QTEST_GUILESS_MAIN(TestServiceMoves)
#include "tst_service_moves.moc"
