#include <service/ServiceFixture.h>

#include <QtTest>

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
    void aFolderHasNoVersions();
    void linksAreKeptAndFound();
    void linksWithoutSenseAreRefused_data();
    void linksWithoutSenseAreRefused();
    void thePasswordIsToldOnlyOnRequest();
};

namespace {

QJsonArray history(ServiceFixture &fixture, const QString &id,
                   const QString &order = QStringLiteral("-createdAt"))
{
    return fixture.client
        .get(ServiceFixture::documentPath(id, QStringLiteral("/histories")),
             {{QStringLiteral("order"), order}})
        .array();
}

HttpAnswer addVersion(ServiceFixture &fixture, const QString &id, const QByteArray &content)
{
    return fixture.client.put(ServiceFixture::documentPath(id),
                              {{QStringLiteral("hostId"), QStringLiteral("p1")},
                               {QStringLiteral("type"), QStringLiteral("file")},
                               {QStringLiteral("category"), QStringLiteral("c")},
                               {QStringLiteral("parentId"), QJsonValue()},
                               {QStringLiteral("name"), QStringLiteral("a.txt")},
                               {QStringLiteral("file"), fixture.upload(content)}});
}

} // namespace

void TestServiceVersions::aNewFileIsANewVersion()
{
    ServiceFixture fixture;
    const QString id = fixture.makeFile(QStringLiteral("a.txt"), {}, "one");
    const HttpAnswer answer = addVersion(fixture, id, "three");
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.object().value(QStringLiteral("fileSize")).toInt(), 5);
    const QJsonArray versions = history(fixture, id);
    QCOMPARE(versions.size(), 2);
    const QJsonObject newest = versions.at(0).toObject();
    QCOMPARE(newest.value(QStringLiteral("documentId")).toString(), id);
    QCOMPARE(
        newest.value(QStringLiteral("file")).toObject().value(QStringLiteral("fileSize")).toInt(),
        5);
    QCOMPARE(
        newest.value(QStringLiteral("file")).toObject().value(QStringLiteral("suffix")).toString(),
        QStringLiteral("txt"));
    QCOMPARE(newest.value(QStringLiteral("createdBy")).toString(), QStringLiteral("local"));
    QVERIFY(newest.value(QStringLiteral("_id"))
            != versions.at(1).toObject().value(QStringLiteral("_id")));
}

void TestServiceVersions::everyContentStaysDownloadable()
{
    ServiceFixture fixture;
    const QString id = fixture.makeFile(QStringLiteral("a.txt"), {}, "one");
    addVersion(fixture, id, "two");
    QList<QByteArray> contents;
    const QJsonArray versions = history(fixture, id);
    for (const QJsonValue &version : versions) {
        const QString fileId = version.toObject().value(QStringLiteral("fileId")).toString();
        contents.append(fixture.client.get(QStringLiteral("base-service/files/") + fileId).body);
    }
    QCOMPARE(contents, QList<QByteArray>({"two", "one"}));
}

void TestServiceVersions::theHistoryIsOrdered()
{
    ServiceFixture fixture;
    const QString id = fixture.makeFile(QStringLiteral("a.txt"), {}, "0");
    for (int i = 1; i < 5; ++i)
        addVersion(fixture, id, QByteArray::number(i));
    const auto numbers = [&](const QString &order) {
        QString text;
        const QJsonArray versions = history(fixture, id, order);
        for (const QJsonValue &version : versions)
            text += QString::number(version.toObject().value(QStringLiteral("number")).toInt());
        return text;
    };
    QCOMPARE(numbers(QStringLiteral("-createdAt")), QStringLiteral("54321"));
    QCOMPARE(numbers(QStringLiteral("createdAt")), QStringLiteral("12345"));
    QCOMPARE(fixture.client
                 .get(ServiceFixture::documentPath(id, QStringLiteral("/histories")),
                      {{QStringLiteral("order"), QStringLiteral("colour")}})
                 .status,
             400);
}

void TestServiceVersions::remarksStandOnDocumentsAndOnVersions()
{
    ServiceFixture fixture;
    const QString id = fixture.makeFile(QStringLiteral("a.txt"));
    const QString version =
        history(fixture, id).at(0).toObject().value(QStringLiteral("_id")).toString();
    const auto remark = [](const QString &text) {
        return QJsonObject{{QStringLiteral("remark"), text}};
    };
    QCOMPARE(
        fixture.client.put(ServiceFixture::documentPath(id), remark(QStringLiteral("D"))).status,
        200);
    const QString path = QStringLiteral("document-service/documents/histories/");
    QCOMPARE(fixture.client.put(path + version, remark(QStringLiteral("V"))).status, 200);
    QCOMPARE(fixture.document(id).value(QStringLiteral("remark")).toString(), QStringLiteral("D"));
    QCOMPARE(history(fixture, id).at(0).toObject().value(QStringLiteral("remark")).toString(),
             QStringLiteral("V"));
    QCOMPARE(fixture.client.put(path + id, remark(QStringLiteral("x"))).status, 404);
}

void TestServiceVersions::anUnknownFileChangesNothing_data()
{
    QTest::addColumn<QJsonValue>("file");
    QTest::newRow("unknown") << QJsonValue(QStringLiteral("0123456789abcdef01234567"));
    QTest::newRow("empty") << QJsonValue(QString());
    QTest::newRow("null") << QJsonValue();
    QTest::newRow("number") << QJsonValue(5);
}

void TestServiceVersions::anUnknownFileChangesNothing()
{
    QFETCH(QJsonValue, file);
    ServiceFixture fixture;
    const QString id = fixture.makeFile(QStringLiteral("a.txt"));
    const QJsonObject before = fixture.document(id);
    const HttpAnswer answer = fixture.client.put(
        ServiceFixture::documentPath(id),
        {{QStringLiteral("name"), QStringLiteral("new name")}, {QStringLiteral("file"), file}});
    QCOMPARE(answer.status, 400);
    QCOMPARE(fixture.document(id), before);
    QCOMPARE(history(fixture, id).size(), 1);
}

void TestServiceVersions::aFolderHasNoVersions()
{
    ServiceFixture fixture;
    const QString id = fixture.makeFolder(QStringLiteral("folder"));
    QCOMPARE(history(fixture, id).size(), 0);
    QCOMPARE(
        fixture.client
            .put(ServiceFixture::documentPath(id), {{QStringLiteral("file"), fixture.upload("x")}})
            .status,
        400);
    QCOMPARE(
        fixture.client
            .get(ServiceFixture::documentPath(QStringLiteral("none"), QStringLiteral("/histories")))
            .status,
        404);
}

void TestServiceVersions::linksAreKeptAndFound()
{
    ServiceFixture fixture;
    const QString id = fixture.makeFile(QStringLiteral("a.txt"));
    fixture.makeFile(QStringLiteral("unlinked.txt"));
    const auto entry = [](const char *kind, std::initializer_list<QJsonValue> ids) {
        return QJsonObject{{QStringLiteral("kind"), QLatin1String(kind)},
                           {QStringLiteral("ids"), QJsonArray(ids)}};
    };
    const QJsonArray links{entry("pipe", {QStringLiteral("p2"), QStringLiteral("p1")}),
                           entry("wall", {QStringLiteral("w")})};
    const HttpAnswer answer =
        fixture.client.put(ServiceFixture::documentPath(id), {{QStringLiteral("links"), links}});
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.object().value(QStringLiteral("entity")).toArray(), links);
    const QJsonArray found =
        fixture.client.get(ServiceFixture::projectPath(QStringLiteral("entities/p1/documents")))
            .array();
    QCOMPARE(found.size(), 1);
    const QJsonObject lite = found.at(0).toObject();
    QCOMPARE(lite.value(QStringLiteral("_id")).toString(), id);
    QCOMPARE(lite.value(QStringLiteral("fileSize")).toInt(), 7);
    QCOMPARE(lite.value(QStringLiteral("suffix")).toString(), QStringLiteral("txt"));

    fixture.client.put(ServiceFixture::documentPath(id), {{QStringLiteral("links"), QJsonArray()}});
    QCOMPARE(
        fixture.client.get(ServiceFixture::projectPath(QStringLiteral("entities/p1/documents")))
            .array()
            .size(),
        0);
}

void TestServiceVersions::linksWithoutSenseAreRefused_data()
{
    QTest::addColumn<QJsonValue>("links");
    QTest::newRow("no array") << QJsonValue(5);
    QTest::newRow("no objects") << QJsonValue(QJsonArray{QStringLiteral("x")});
    QTest::newRow("no ids") << QJsonValue(
        QJsonArray{QJsonObject{{QStringLiteral("kind"), QStringLiteral("k")}}});
    QTest::newRow("a number for an id") << QJsonValue(QJsonArray{QJsonObject{
        {QStringLiteral("kind"), QStringLiteral("k")}, {QStringLiteral("ids"), QJsonArray{5}}}});
}

void TestServiceVersions::linksWithoutSenseAreRefused()
{
    QFETCH(QJsonValue, links);
    ServiceFixture fixture;
    const QString id = fixture.makeFile(QStringLiteral("a.txt"));
    QCOMPARE(
        fixture.client.put(ServiceFixture::documentPath(id), {{QStringLiteral("links"), links}})
            .status,
        400);
}

void TestServiceVersions::thePasswordIsToldOnlyOnRequest()
{
    ServiceFixture fixture;
    const QString id = fixture.makeFile(QStringLiteral("a.txt"));
    fixture.client.put(ServiceFixture::documentPath(id),
                       {{QStringLiteral("pwd"), QStringLiteral("secret")}});
    QVERIFY(!fixture.document(id).contains(QStringLiteral("pwd")));
    const HttpAnswer answer = fixture.client.get(ServiceFixture::documentPath(id),
                                                 {{QStringLiteral("pwd"), QStringLiteral("true")}});
    QCOMPARE(answer.object().value(QStringLiteral("pwd")).toString(), QStringLiteral("secret"));
}

QTEST_GUILESS_MAIN(TestServiceVersions)
#include "tst_service_versions.moc"
