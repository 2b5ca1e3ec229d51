#include <service/ServiceFixture.h>

#include <QtTest>

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

HttpAnswer move(ServiceFixture &fixture, const QStringList &ids, const QJsonValue &target)
{
    return fixture.client.put(QStringLiteral("document-service/documents"),
                              {{QStringLiteral("documentIds"), QJsonArray::fromStringList(ids)},
                               {QStringLiteral("parentId"), target}});
}

} // namespace

void TestServiceMoves::severalMoveAtOnce()
{
    ServiceFixture fixture;
    const QString target = fixture.makeFolder(QStringLiteral("target"));
    const QString a = fixture.makeFile(QStringLiteral("a"));
    const QString b = fixture.makeFolder(QStringLiteral("b"));
    QCOMPARE(move(fixture, {a, b}, target).status, 200);
    QCOMPARE(fixture.names(ServiceFixture::below(target),
                           {{QStringLiteral("order"), QStringLiteral("name")}}),
             QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    QCOMPARE(fixture.names(ServiceFixture::below(QString())),
             QStringList{QStringLiteral("target")});
}

void TestServiceMoves::nullMovesToTheTopLevel()
{
    ServiceFixture fixture;
    const QString folder = fixture.makeFolder(QStringLiteral("folder"));
    const QString file = fixture.makeFile(QStringLiteral("file"), folder);
    QCOMPARE(move(fixture, {file}, QJsonValue()).status, 200);
    QVERIFY(fixture.document(file).value(QStringLiteral("parentId")).isNull());
}

void TestServiceMoves::aFolderTakesItsContentAlong()
{
    ServiceFixture fixture;
    const QString target = fixture.makeFolder(QStringLiteral("target"));
    const QString folder = fixture.makeFolder(QStringLiteral("folder"));
    fixture.makeFile(QStringLiteral("inside"), folder);
    QCOMPARE(move(fixture, {folder}, target).status, 200);
    QVERIFY(fixture
                .names(ServiceFixture::below(target),
                       {{QStringLiteral("deep"), QStringLiteral("true")}})
                .contains(QStringLiteral("inside")));
}

void TestServiceMoves::targetsThatCannotBeAreRefused_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("status");
    QTest::newRow("itself") << QStringLiteral("outer") << 409;
    QTest::newRow("its child") << QStringLiteral("middle") << 409;
    QTest::newRow("far below it") << QStringLiteral("inner") << 409;
    QTest::newRow("a file") << QStringLiteral("file") << 400;
    QTest::newRow("an unknown id") << QStringLiteral("unknown") << 404;
    QTest::newRow("a folder in the recycle bin") << QStringLiteral("deleted") << 409;
    QTest::newRow("a folder of another project") << QStringLiteral("foreign") << 404;
}

void TestServiceMoves::targetsThatCannotBeAreRefused()
{
    QFETCH(QString, target);
    QFETCH(int, status);
    ServiceFixture fixture;
    QMap<QString, QString> ids;
    ids[QStringLiteral("outer")] = fixture.makeFolder(QStringLiteral("outer"));
    ids[QStringLiteral("middle")] =
        fixture.makeFolder(QStringLiteral("middle"), ids.value(QStringLiteral("outer")));
    ids[QStringLiteral("inner")] =
        fixture.makeFolder(QStringLiteral("inner"), ids.value(QStringLiteral("middle")));
    ids[QStringLiteral("file")] = fixture.makeFile(QStringLiteral("file"));
    ids[QStringLiteral("unknown")] = QStringLiteral("0123456789abcdef01234567");
    ids[QStringLiteral("deleted")] = fixture.makeFolder(QStringLiteral("deleted"));
    fixture.client.remove(ServiceFixture::documentPath(ids.value(QStringLiteral("deleted"))));
    ids[QStringLiteral("foreign")] =
        fixture.client
            .post(QStringLiteral("document-service/projects/p2/documents"),
                  {{QStringLiteral("name"), QStringLiteral("foreign")},
                   {QStringLiteral("type"), QStringLiteral("dir")}})
            .object()
            .value(QStringLiteral("_id"))
            .toString();

    const QString moved = ids.value(QStringLiteral("outer"));
    const HttpAnswer answer = move(fixture, {moved}, ids.value(target));
    QCOMPARE(answer.status, status);
    QVERIFY(!answer.errorText().isEmpty());
    QVERIFY(fixture.document(moved).value(QStringLiteral("parentId")).isNull());
    // The same rule by the other way.
    QCOMPARE(fixture.client
                 .put(ServiceFixture::documentPath(moved),
                      {{QStringLiteral("parentId"), ids.value(target)}})
                 .status,
             status);
}

void TestServiceMoves::oneBadIdMovesNothing()
{
    ServiceFixture fixture;
    const QString target = fixture.makeFolder(QStringLiteral("target"));
    const QString good = fixture.makeFile(QStringLiteral("good"));
    QCOMPARE(move(fixture, {good, QStringLiteral("no such id")}, target).status, 404);
    QVERIFY(fixture.document(good).value(QStringLiteral("parentId")).isNull());
}

void TestServiceMoves::noIdsIsASuccess()
{
    ServiceFixture fixture;
    QCOMPARE(move(fixture, {}, QJsonValue()).status, 200);
    QCOMPARE(fixture.client.putArray(QStringLiteral("document-service/documents"), {}).status, 200);
}

void TestServiceMoves::aRenameMayMoveToo()
{
    ServiceFixture fixture;
    const QString target = fixture.makeFolder(QStringLiteral("target"));
    const QString file = fixture.makeFile(QStringLiteral("a.txt"));
    const HttpAnswer answer =
        fixture.client.put(ServiceFixture::documentPath(file),
                           {{QStringLiteral("parentId"), target},
                            {QStringLiteral("name"), QStringLiteral("b.txt")},
                            {QStringLiteral("category"), QJsonValue()},
                            {QStringLiteral("hostId"), QStringLiteral("host")}});
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.object().value(QStringLiteral("parentId")).toString(), target);
    QCOMPARE(answer.object().value(QStringLiteral("name")).toString(), QStringLiteral("b.txt"));
    QCOMPARE(answer.object().value(QStringLiteral("category")).toString(), QString());
    QCOMPARE(answer.object().value(QStringLiteral("hostId")).toString(), QStringLiteral("host"));
}

QTEST_GUILESS_MAIN(TestServiceMoves)
#include "tst_service_moves.moc"
