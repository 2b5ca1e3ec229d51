#include <service/ServiceWorld.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QRegularExpression>
#include <QTest>

//! Making, reading and changing documents.
class TestServiceDocuments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFieldIsStoredSentAndAsked_data();
    void aFieldIsStoredSentAndAsked();
    void aNewFolderHasEveryField();
    void aNewFileCarriesItsContent();
    void everyNameComesBackAsItWas_data();
    void everyNameComesBackAsItWas();
    void anEmptyFileIsAFile();
    void aRenameTakesTheSuffixAlong();
    void oneDocumentIsFoundBelowBothRoots();
};

void TestServiceDocuments::aNewFolderHasEveryField()
{
    ServiceWorld world;
    const QJsonObject folder = world.document(world.makeFolder("Folder"));
    QCOMPARE(folder.value("_id").toString().size(), 24);
    QCOMPARE(folder.value("name").toString(), QString("Folder"));
    QVERIFY(folder.value("parentId").isNull());
    QCOMPARE(folder.value("projectId").toString(), QString("p1"));
    QCOMPARE(folder.value("category").toString(), QString("c"));
    QCOMPARE(folder.value("type").toString(), QString("dir"));
    QCOMPARE(folder.value("order").toInt(-1), 0);
    QCOMPARE(folder.value("recycle").toInt(-1), 0);
    QCOMPARE(folder.value("createdBy").toString(), QString("local"));
    QVERIFY(!folder.contains("pwd"));
    const QRegularExpression date("^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z$");
    QVERIFY(date.match(folder.value("createdAt").toString()).hasMatch());
    const QJsonArray rights = folder.value("auths").toArray();
    QCOMPARE(rights.size(), 6);
    for (const QJsonValue &right : rights)
        QCOMPARE(right.toObject().value("value"), QJsonValue("true"));
}

void TestServiceDocuments::aNewFileCarriesItsContent()
{
    ServiceWorld world;
    const QJsonObject file = world.document(world.makeFile("plan.v2.DWG", {}, "1234567"));
    const QJsonObject content = file.value("file").toObject();
    QCOMPARE(content.value("fileSize").toInt(), 7);
    QCOMPARE(content.value("suffix").toString(), QString("DWG"));
    QCOMPARE(content.value("fileId"), file.value("fileId"));
    QCOMPARE(file.value("fileSize").toInt(), 7);
    const HttpAnswer download =
        world.client.get(QString("base-service/files/") + file.value("fileId").toString());
    QCOMPARE(download.body, QByteArray("1234567"));
}

void TestServiceDocuments::everyNameComesBackAsItWas_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("per cent") << "50%.txt";
    QTest::newRow("encoded per cent") << "50%25.txt";
    QTest::newRow("plus") << "a+b.txt";
    QTest::newRow("blanks") << " a b .txt ";
    QTest::newRow("fragment") << "#1.txt";
    QTest::newRow("ampersand") << "R&D=x;y.txt";
    QTest::newRow("quotes") << "\"quoted\" 'x'.txt";
    QTest::newRow("composed") << "caf\u00e9.txt";
    QTest::newRow("decomposed") << "cafe\u0301.txt";
    QTest::newRow("Chinese") << "图纸.dwg";
    QTest::newRow("beyond 16 bits") << "\U0001F4C4.txt";
    QTest::newRow("leading dash") << "-rf";
    QTest::newRow("leading dot") << ".bashrc";
    QTest::newRow("forbidden on Windows") << "a<b>c:d|e?f*.txt";
    QTest::newRow("255 bytes") << QString("x").repeated(255);
}

void TestServiceDocuments::everyNameComesBackAsItWas()
{
    QFETCH(QString, name);
    ServiceWorld world;
    const QString id = world.makeFolder(name);
    QCOMPARE(world.document(id).value("name").toString(), name);
    QCOMPARE(world.names({{"name", name}}), QStringList{name});
}

void TestServiceDocuments::anEmptyFileIsAFile()
{
    ServiceWorld world;
    const QJsonObject file = world.document(world.makeFile("empty", {}, ""));
    QCOMPARE(file.value("type").toString(), QString("file"));
    QCOMPARE(file.value("fileSize").toInt(-1), 0);
    const HttpAnswer download =
        world.client.get(QString("base-service/files/") + file.value("fileId").toString());
    QCOMPARE(download.status, 200);
    QCOMPARE(download.body, QByteArray());
}

void TestServiceDocuments::aRenameTakesTheSuffixAlong()
{
    ServiceWorld world;
    const QString id = world.makeFile("a.txt");
    const QJsonObject before = world.document(id);
    const QString created = before.value("createdAt").toString();
    // So that the later time can be told from the earlier one.
    QTRY_VERIFY(QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs) > created);
    const HttpAnswer answer = world.client.put(ServiceWorld::documentPath(id), {{"name", "b.pdf"}});
    QCOMPARE(answer.status, 200);
    const QJsonObject after = world.document(id);
    QCOMPARE(answer.object(), after);
    QCOMPARE(after.value("name").toString(), QString("b.pdf"));
    QCOMPARE(after.value("suffix").toString(), QString("pdf"));
    QVERIFY(after.value("updatedAt").toString() > before.value("updatedAt").toString());
    QCOMPARE(after.value("createdAt"), before.value("createdAt"));
}

void TestServiceDocuments::oneDocumentIsFoundBelowBothRoots()
{
    ServiceWorld world;
    const QString outer = world.makeFolder("outer");
    const QString inner = world.makeFolder("inner", outer);
    const QString id = world.makeFile("a.txt", inner);
    const HttpAnswer answer =
        world.client.get(QString("documents/") + id, {{"info", "true"}, {"pwd", "true"}});
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.object().value("pwd"), QJsonValue(QString()));
    const QJsonObject info = answer.object().value("info").toObject();
    QCOMPARE(info.value("versionCount").toInt(), 1);
    const QJsonArray path = info.value("path").toArray();
    QCOMPARE(path.size(), 2);
    QCOMPARE(path.at(0).toObject().value("_id").toString(), outer);
    QCOMPARE(path.at(1).toObject().value("name").toString(), QString("inner"));
}

void TestServiceDocuments::aFieldIsStoredSentAndAsked_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QJsonValue>("value");
    QTest::addColumn<bool>("isForNew");
    QTest::addColumn<bool>("isAsked");
    const auto row = [](const char *key, const QJsonValue &value, bool isForNew, bool isAsked) {
        QTest::newRow(key) << QString::fromLatin1(key) << value << isForNew << isAsked;
    };
    const QJsonValue text = "some text 图";
    row("category", text, true, true);
    row("hostId", text, true, true);
    row("hostType", 7, true, true);
    row("order", 7, false, true);
    row("remark", text, true, true);
    row("status", text, true, true);
    row("previewId", text, false, false);
}

void TestServiceDocuments::aFieldIsStoredSentAndAsked()
{
    QFETCH(QString, key);
    QFETCH(QJsonValue, value);
    QFETCH(bool, isForNew);
    QFETCH(bool, isAsked);
    ServiceWorld world;
    const HttpAnswer made = world.client.post(ServiceWorld::projectPath("documents"),
                                              {{"name", "new"}, {"type", "dir"}, {key, value}});
    QCOMPARE(made.status, isForNew ? 200 : 400);
    if (isForNew)
        QCOMPARE(made.object().value(key), value);

    const QString id = world.makeFolder("changed");
    const HttpAnswer changed = world.client.put(ServiceWorld::documentPath(id), {{key, value}});
    QCOMPARE(changed.status, 200);
    QCOMPARE(changed.object().value(key), value);
    QCOMPARE(world.document(id).value(key), value);
    const HttpAnswer asked = world.client.get(
        ServiceWorld::projectPath("documents"),
        {{"where", QString::fromUtf8(QJsonDocument(QJsonObject{{key, value}}).toJson())},
         {"order", QString("-") + key}});
    QCOMPARE(asked.status, isAsked ? 200 : 400);
    if (isAsked)
        QCOMPARE(asked.array().size(), isForNew ? 2 : 1);
}

QTEST_GUILESS_MAIN(TestServiceDocuments)
#include "tst_service_documents.moc"
