#include <service/ServiceFixture.h>

#include <QtTest>

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

private:
    static QStringList bin(ServiceFixture &fixture, const QJsonObject &where = {})
    {
        return fixture.names(where,
                             {{QStringLiteral("category"), QStringLiteral("recycle")},
                              {QStringLiteral("order"), QStringLiteral("name")}});
    }
    static HttpAnswer remove(ServiceFixture &fixture, const QString &id)
    {
        return fixture.client.remove(ServiceFixture::documentPath(id));
    }
    static HttpAnswer restore(ServiceFixture &fixture, const QString &id)
    {
        return fixture.client.get(ServiceFixture::documentPath(id, QStringLiteral("/restore")));
    }
    static HttpAnswer empty(ServiceFixture &fixture, const QString &category)
    {
        return fixture.client.remove(QStringLiteral("document-service/documents"),
                                     {{QStringLiteral("hostId"), QStringLiteral("p1")},
                                      {QStringLiteral("category"), category}});
    }
};

void TestServiceRecycle::aDeletedFileIsInTheBin()
{
    ServiceFixture fixture;
    const QString id = fixture.makeFile(QStringLiteral("a.txt"));
    QCOMPARE(remove(fixture, id).status, 200);
    QCOMPARE(fixture.names(ServiceFixture::below(QString())), QStringList());
    QCOMPARE(bin(fixture), QStringList{QStringLiteral("a.txt")});
    QCOMPARE(bin(fixture, ServiceFixture::below(QString())), QStringList{QStringLiteral("a.txt")});
    QCOMPARE(fixture.document(id).value(QStringLiteral("recycle")).toInt(), 1);
}

void TestServiceRecycle::aDeletedFolderTakesEverythingBelow()
{
    ServiceFixture fixture;
    const QString outer = fixture.makeFolder(QStringLiteral("outer"));
    const QString inner = fixture.makeFolder(QStringLiteral("inner"), outer);
    const QString file = fixture.makeFile(QStringLiteral("file"), inner);
    remove(fixture, outer);
    QCOMPARE(fixture.names({}), QStringList());
    QCOMPARE(bin(fixture), QStringList{QStringLiteral("outer")});
    QCOMPARE(bin(fixture, ServiceFixture::below(outer)), QStringList{QStringLiteral("inner")});
    QCOMPARE(fixture.document(file).value(QStringLiteral("recycle")).toInt(), 2);
    QCOMPARE(restore(fixture, file).status, 409);
}

void TestServiceRecycle::deletingTwiceIsNoError()
{
    ServiceFixture fixture;
    const QString id = fixture.makeFile(QStringLiteral("a.txt"));
    QCOMPARE(remove(fixture, id).status, 200);
    QCOMPARE(remove(fixture, id).status, 200);
    QCOMPARE(bin(fixture).size(), 1);
    QCOMPARE(remove(fixture, QStringLiteral("none")).status, 404);
}

void TestServiceRecycle::whatIsInTheBinCannotBeChanged()
{
    ServiceFixture fixture;
    const QString id = fixture.makeFile(QStringLiteral("a.txt"));
    remove(fixture, id);
    QCOMPARE(fixture.client
                 .put(ServiceFixture::documentPath(id),
                      {{QStringLiteral("name"), QStringLiteral("b.txt")}})
                 .status,
             409);
}

void TestServiceRecycle::restoringBringsTheContentBack()
{
    ServiceFixture fixture;
    const QString top = fixture.makeFolder(QStringLiteral("top"));
    const QString folder = fixture.makeFolder(QStringLiteral("folder"), top);
    fixture.makeFile(QStringLiteral("file"), folder);
    remove(fixture, folder);
    const HttpAnswer answer = restore(fixture, folder);
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.object().value(QStringLiteral("hasSameDoc")), QJsonValue(false));
    QCOMPARE(answer.object().value(QStringLiteral("parentId")).toString(), top);
    QCOMPARE(answer.object().value(QStringLiteral("recycle")).toInt(-1), 0);
    QCOMPARE(fixture.names(ServiceFixture::below(folder)), QStringList{QStringLiteral("file")});
    QCOMPARE(bin(fixture), QStringList());
}

void TestServiceRecycle::whatWasDeletedBeforeItsFolderStaysInTheBin()
{
    ServiceFixture fixture;
    const QString folder = fixture.makeFolder(QStringLiteral("folder"));
    const QString inner = fixture.makeFolder(QStringLiteral("inner"), folder);
    fixture.makeFile(QStringLiteral("below inner"), inner);
    fixture.makeFile(QStringLiteral("stays"), folder);
    remove(fixture, inner);
    remove(fixture, folder);
    restore(fixture, folder);
    QCOMPARE(fixture.names(ServiceFixture::below(folder),
                           {{QStringLiteral("deep"), QStringLiteral("true")}}),
             QStringList{QStringLiteral("stays")});
    QCOMPARE(bin(fixture), QStringList{QStringLiteral("inner")});
}

void TestServiceRecycle::withoutItsFolderItComesBackAtTheTop()
{
    ServiceFixture fixture;
    const QString folder = fixture.makeFolder(QStringLiteral("folder"));
    const QString file = fixture.makeFile(QStringLiteral("file"), folder);
    remove(fixture, file);
    remove(fixture, folder);
    QCOMPARE(restore(fixture, file).status, 200);
    QVERIFY(fixture.document(file).value(QStringLiteral("parentId")).isNull());
}

void TestServiceRecycle::restoringTellsOfTheSameName()
{
    ServiceFixture fixture;
    const QString first = fixture.makeFile(QStringLiteral("a.txt"));
    remove(fixture, first);
    fixture.makeFile(QStringLiteral("a.txt"));
    const HttpAnswer answer = restore(fixture, first);
    QCOMPARE(answer.object().value(QStringLiteral("hasSameDoc")), QJsonValue(true));
    QCOMPARE(fixture.names(ServiceFixture::below(QString())).size(), 2);
}

void TestServiceRecycle::emptyingPurges_data()
{
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("left");
    QTest::newRow("everything") << QString() << QString();
    QTest::newRow("everything by the bin's word") << QStringLiteral("recycle") << QString();
    QTest::newRow("one category") << QStringLiteral("c") << QStringLiteral("of d");
}

void TestServiceRecycle::emptyingPurges()
{
    QFETCH(QString, category);
    QFETCH(QString, left);
    ServiceFixture fixture;
    const QString folder = fixture.makeFolder(QStringLiteral("of c"));
    const QString below =
        fixture.makeFile(QStringLiteral("below"), folder, "x", QStringLiteral("d"));
    const QString other = fixture.makeFile(QStringLiteral("of d"), {}, "y", QStringLiteral("d"));
    fixture.makeFile(QStringLiteral("not deleted"));
    remove(fixture, folder);
    remove(fixture, other);
    QCOMPARE(empty(fixture, category).status, 200);
    QCOMPARE(bin(fixture).join(QLatin1Char(',')), left);
    QCOMPARE(fixture.client.get(ServiceFixture::documentPath(below)).status, 404);
    QCOMPARE(fixture.names({}), QStringList{QStringLiteral("not deleted")});
}

void TestServiceRecycle::emptyingKeepsWhatItDoesNotConcern()
{
    ServiceFixture fixture;
    const QString folder = fixture.makeFolder(QStringLiteral("of c"));
    const QString file = fixture.makeFile(QStringLiteral("of d"), folder, "x", QStringLiteral("d"));
    remove(fixture, file); // on its own, before its folder
    remove(fixture, folder);
    QCOMPARE(empty(fixture, QStringLiteral("c")).status, 200);
    QCOMPARE(bin(fixture), QStringList{QStringLiteral("of d")});
    QCOMPARE(restore(fixture, file).status, 200);
    QVERIFY(fixture.document(file).value(QStringLiteral("parentId")).isNull());
    QCOMPARE(fixture.client.remove(QStringLiteral("document-service/documents")).status, 400);
}

QTEST_GUILESS_MAIN(TestServiceRecycle)
#include "tst_service_recycle.moc"
