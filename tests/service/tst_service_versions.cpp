#include <service/ServiceWorld.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QTest>

//! New contents of a document, its history, remarks, links, password.
class TestServiceVersions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewFileIsANewVersion();
    void everyContentStaysDownloadable();
    void theHistoryIsOrdered();
    void remarksStandOnDocumentsAndOnVersions();
    void anUnknownFileChangesNothing_data();
    void anUnknownFileChangesNothing();
    void anEarlierVersionIsDeleted();
    void theCurrentVersionIsNotDeleted();
    void aFolderHasNoVersions();
    void linksAreKeptAndFound();
    void linksWithoutSenseAreRefused_data();
    void linksWithoutSenseAreRefused();
    void thePasswordIsToldOnlyOnRequest();
};

namespace {

QJsonArray history(ServiceWorld &world, const QString &id, const QString &order = "-createdAt")
{
    return world.client.get(ServiceWorld::documentPath(id, "/histories"), {{"order", order}})
        .array();
}

HttpAnswer addVersion(ServiceWorld &world, const QString &id, const QByteArray &content)
{
    return world.client.put(ServiceWorld::documentPath(id),
                            {{"hostId", "p1"},
                             {"type", "file"},
                             {"category", "c"},
                             {"parentId", QJsonValue()},
                             {"name", "a.txt"},
                             {"file", world.upload(content)}});
}

} // namespace

void TestServiceVersions::aNewFileIsANewVersion()
{
    ServiceWorld world;
    const QString id = world.makeFile("a.txt", {}, "one");
    const HttpAnswer answer = addVersion(world, id, "three");
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.object().value("fileSize").toInt(), 5);
    const QJsonArray versions = history(world, id);
    QCOMPARE(versions.size(), 2);
    const QJsonObject newest = versions.at(0).toObject();
    QCOMPARE(newest.value("documentId").toString(), id);
    QCOMPARE(newest.value("file").toObject().value("fileSize").toInt(), 5);
    QCOMPARE(newest.value("file").toObject().value("suffix").toString(), QString("txt"));
    QCOMPARE(newest.value("createdBy").toString(), QString("local"));
    QVERIFY(newest.value("_id") != versions.at(1).toObject().value("_id"));
}

void TestServiceVersions::everyContentStaysDownloadable()
{
    ServiceWorld world;
    const QString id = world.makeFile("a.txt", {}, "one");
    addVersion(world, id, "two");
    QList<QByteArray> contents;
    const QJsonArray versions = history(world, id);
    for (const QJsonValue &version : versions) {
        const QString fileId = version.toObject().value("fileId").toString();
        contents.append(world.client.get(QString("base-service/files/") + fileId).body);
    }
    QCOMPARE(contents, QList<QByteArray>({"two", "one"}));
}

void TestServiceVersions::theHistoryIsOrdered()
{
    ServiceWorld world;
    const QString id = world.makeFile("a.txt", {}, "0");
    for (int i = 1; i < 5; ++i)
        addVersion(world, id, QByteArray::number(i));
    const auto numbers = [&](const QString &order) {
        QString text;
        const QJsonArray versions = history(world, id, order);
        for (const QJsonValue &version : versions)
            text += QString::number(version.toObject().value("number").toInt());
        return text;
    };
    QCOMPARE(numbers("-createdAt"), QString("54321"));
    QCOMPARE(numbers("createdAt"), QString("12345"));
    QCOMPARE(world.client.get(ServiceWorld::documentPath(id, "/histories"), {{"order", "colour"}})
                 .status,
             400);
}

void TestServiceVersions::remarksStandOnDocumentsAndOnVersions()
{
    ServiceWorld world;
    const QString id = world.makeFile("a.txt");
    const QString version = history(world, id).at(0).toObject().value("_id").toString();
    const auto remark = [](const QString &text) { return QJsonObject{{"remark", text}}; };
    QCOMPARE(world.client.put(ServiceWorld::documentPath(id), remark("D")).status, 200);
    const QString path = "document-service/documents/histories/";
    QCOMPARE(world.client.put(path + version, remark("V")).status, 200);
    QCOMPARE(world.document(id).value("remark").toString(), QString("D"));
    QCOMPARE(history(world, id).at(0).toObject().value("remark").toString(), QString("V"));
    QCOMPARE(world.client.put(path + id, remark("x")).status, 404);
}

void TestServiceVersions::anUnknownFileChangesNothing_data()
{
    QTest::addColumn<QJsonValue>("file");
    QTest::newRow("unknown") << QJsonValue("0123456789abcdef01234567");
    QTest::newRow("empty") << QJsonValue(QString());
    QTest::newRow("null") << QJsonValue();
    QTest::newRow("number") << QJsonValue(5);
}

void TestServiceVersions::anUnknownFileChangesNothing()
{
    QFETCH(QJsonValue, file);
    ServiceWorld world;
    const QString id = world.makeFile("a.txt");
    const QJsonObject before = world.document(id);
    const HttpAnswer answer =
        world.client.put(ServiceWorld::documentPath(id), {{"name", "new name"}, {"file", file}});
    QCOMPARE(answer.status, 400);
    QCOMPARE(world.document(id), before);
    QCOMPARE(history(world, id).size(), 1);
}

void TestServiceVersions::anEarlierVersionIsDeleted()
{
    ServiceWorld world;
    const QString id = world.makeFile("a.txt", {}, "one");
    addVersion(world, id, "two");
    addVersion(world, id, "three");
    const QString second = history(world, id).at(1).toObject().value("_id").toString();
    const QString path = "document-service/documents/histories/" + second;
    QCOMPARE(world.client.remove(path).object(), QJsonObject({{"_id", second}}));
    QStringList left;
    const QJsonArray versions = history(world, id);
    for (const QJsonValue &version : versions)
        left.append(QString::number(version.toObject().value("number").toInt()));
    QCOMPARE(left, QStringList({"3", "1"}));
    QCOMPARE(world.client.remove(path).status, 404);
}

void TestServiceVersions::theCurrentVersionIsNotDeleted()
{
    ServiceWorld world;
    const QString id = world.makeFile("a.txt", {}, "one");
    addVersion(world, id, "two");
    const QString current = history(world, id).at(0).toObject().value("_id").toString();
    QCOMPARE(world.client.remove("document-service/documents/histories/" + current).status, 409);
    QCOMPARE(history(world, id).size(), 2);
}

void TestServiceVersions::aFolderHasNoVersions()
{
    ServiceWorld world;
    const QString id = world.makeFolder("folder");
    QCOMPARE(history(world, id).size(), 0);
    QCOMPARE(world.client.put(ServiceWorld::documentPath(id), {{"file", world.upload("x")}}).status,
             400);
    QCOMPARE(world.client.get(ServiceWorld::documentPath("none", "/histories")).status, 404);
}

void TestServiceVersions::linksAreKeptAndFound()
{
    ServiceWorld world;
    const QString id = world.makeFile("a.txt");
    world.makeFile("unlinked.txt");
    const auto entry = [](const char *kind, std::initializer_list<QJsonValue> ids) {
        return QJsonObject{{"kind", QLatin1String(kind)}, {"ids", QJsonArray(ids)}};
    };
    const QJsonArray links{entry("pipe", {"p2", "p1"}), entry("wall", {"w"})};
    const HttpAnswer answer = world.client.put(ServiceWorld::documentPath(id), {{"links", links}});
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.object().value("entity").toArray(), links);
    const QJsonArray found =
        world.client.get(ServiceWorld::projectPath("entities/p1/documents")).array();
    QCOMPARE(found.size(), 1);
    const QJsonObject lite = found.at(0).toObject();
    QCOMPARE(lite.value("_id").toString(), id);
    QCOMPARE(lite.value("fileSize").toInt(), 7);
    QCOMPARE(lite.value("suffix").toString(), QString("txt"));

    world.client.put(ServiceWorld::documentPath(id), {{"links", QJsonArray()}});
    QCOMPARE(world.client.get(ServiceWorld::projectPath("entities/p1/documents")).array().size(),
             0);
}

void TestServiceVersions::linksWithoutSenseAreRefused_data()
{
    QTest::addColumn<QJsonValue>("links");
    QTest::newRow("no array") << QJsonValue(5);
    QTest::newRow("no objects") << QJsonValue(QJsonArray{"x"});
    QTest::newRow("no ids") << QJsonValue(QJsonArray{QJsonObject{{"kind", "k"}}});
    QTest::newRow("a number for an id")
        << QJsonValue(QJsonArray{QJsonObject{{"kind", "k"}, {"ids", QJsonArray{5}}}});
}

void TestServiceVersions::linksWithoutSenseAreRefused()
{
    QFETCH(QJsonValue, links);
    ServiceWorld world;
    const QString id = world.makeFile("a.txt");
    QCOMPARE(world.client.put(ServiceWorld::documentPath(id), {{"links", links}}).status, 400);
}

void TestServiceVersions::thePasswordIsToldOnlyOnRequest()
{
    ServiceWorld world;
    const QString id = world.makeFile("a.txt");
    world.client.put(ServiceWorld::documentPath(id), {{"pwd", "secret"}});
    QVERIFY(!world.document(id).contains("pwd"));
    const HttpAnswer answer = world.client.get(ServiceWorld::documentPath(id), {{"pwd", "true"}});
    QCOMPARE(answer.object().value("pwd").toString(), QString("secret"));
}

QTEST_GUILESS_MAIN(TestServiceVersions)
#include "tst_service_versions.moc"
