#include <service/ServiceFixture.h>

#include <QJsonDocument>
#include <QtTest>

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
    ServiceFixture fixture;
    const QJsonObject folder = fixture.document(fixture.makeFolder(QStringLiteral("Folder")));
    QCOMPARE(folder.value(QStringLiteral("_id")).toString().size(), 24);
    QCOMPARE(folder.value(QStringLiteral("name")).toString(), QStringLiteral("Folder"));
    QVERIFY(folder.value(QStringLiteral("parentId")).isNull());
    QCOMPARE(folder.value(QStringLiteral("projectId")).toString(), QStringLiteral("p1"));
    QCOMPARE(folder.value(QStringLiteral("category")).toString(), QStringLiteral("c"));
    QCOMPARE(folder.value(QStringLiteral("type")).toString(), QStringLiteral("dir"));
    QCOMPARE(folder.value(QStringLiteral("order")).toInt(-1), 0);
    QCOMPARE(folder.value(QStringLiteral("recycle")).toInt(-1), 0);
    QCOMPARE(folder.value(QStringLiteral("createdBy")).toString(), QStringLiteral("local"));
    QVERIFY(!folder.contains(QStringLiteral("pwd")));
    const QRegularExpression date(
        QStringLiteral("^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z$"));
    QVERIFY(date.match(folder.value(QStringLiteral("createdAt")).toString()).hasMatch());
    const QJsonArray rights = folder.value(QStringLiteral("auths")).toArray();
    QCOMPARE(rights.size(), 6);
    for (const QJsonValue &right : rights)
        QCOMPARE(right.toObject().value(QStringLiteral("value")),
                 QJsonValue(QStringLiteral("true")));
}

void TestServiceDocuments::aNewFileCarriesItsContent()
{
    ServiceFixture fixture;
    const QJsonObject file =
        fixture.document(fixture.makeFile(QStringLiteral("plan.v2.DWG"), {}, "1234567"));
    const QJsonObject content = file.value(QStringLiteral("file")).toObject();
    QCOMPARE(content.value(QStringLiteral("fileSize")).toInt(), 7);
    QCOMPARE(content.value(QStringLiteral("suffix")).toString(), QStringLiteral("DWG"));
    QCOMPARE(content.value(QStringLiteral("fileId")), file.value(QStringLiteral("fileId")));
    QCOMPARE(file.value(QStringLiteral("fileSize")).toInt(), 7);
    const HttpAnswer download = fixture.client.get(
        QStringLiteral("base-service/files/") + file.value(QStringLiteral("fileId")).toString());
    QCOMPARE(download.body, QByteArray("1234567"));
}

void TestServiceDocuments::everyNameComesBackAsItWas_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("per cent") << QStringLiteral("50%.txt");
    QTest::newRow("encoded per cent") << QStringLiteral("50%25.txt");
    QTest::newRow("plus") << QStringLiteral("a+b.txt");
    QTest::newRow("blanks") << QStringLiteral(" a b .txt ");
    QTest::newRow("fragment") << QStringLiteral("#1.txt");
    QTest::newRow("ampersand") << QStringLiteral("R&D=x;y.txt");
    QTest::newRow("quotes") << QStringLiteral("\"quoted\" 'x'.txt");
    QTest::newRow("composed") << QStringLiteral("caf\u00e9.txt");
    QTest::newRow("decomposed") << QStringLiteral("cafe\u0301.txt");
    QTest::newRow("Chinese") << QStringLiteral("图纸.dwg");
    QTest::newRow("beyond 16 bits") << QStringLiteral("\U0001F4C4.txt");
    QTest::newRow("leading dash") << QStringLiteral("-rf");
    QTest::newRow("leading dot") << QStringLiteral(".bashrc");
    QTest::newRow("forbidden on Windows") << QStringLiteral("a<b>c:d|e?f*.txt");
    QTest::newRow("255 bytes") << QString(QStringLiteral("x")).repeated(255);
}

void TestServiceDocuments::everyNameComesBackAsItWas()
{
    QFETCH(QString, name);
    ServiceFixture fixture;
    const QString id = fixture.makeFolder(name);
    QCOMPARE(fixture.document(id).value(QStringLiteral("name")).toString(), name);
    QCOMPARE(fixture.names({{QStringLiteral("name"), name}}), QStringList{name});
}

void TestServiceDocuments::anEmptyFileIsAFile()
{
    ServiceFixture fixture;
    const QJsonObject file = fixture.document(fixture.makeFile(QStringLiteral("empty"), {}, ""));
    QCOMPARE(file.value(QStringLiteral("type")).toString(), QStringLiteral("file"));
    QCOMPARE(file.value(QStringLiteral("fileSize")).toInt(-1), 0);
    const HttpAnswer download = fixture.client.get(
        QStringLiteral("base-service/files/") + file.value(QStringLiteral("fileId")).toString());
    QCOMPARE(download.status, 200);
    QCOMPARE(download.body, QByteArray());
}

void TestServiceDocuments::aRenameTakesTheSuffixAlong()
{
    ServiceFixture fixture;
    const QString id = fixture.makeFile(QStringLiteral("a.txt"));
    const QJsonObject before = fixture.document(id);
    const QString created = before.value(QStringLiteral("createdAt")).toString();
    // So that the later time can be told from the earlier one.
    QTRY_VERIFY(QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs) > created);
    const HttpAnswer answer = fixture.client.put(
        ServiceFixture::documentPath(id), {{QStringLiteral("name"), QStringLiteral("b.pdf")}});
    QCOMPARE(answer.status, 200);
    const QJsonObject after = fixture.document(id);
    QCOMPARE(answer.object(), after);
    QCOMPARE(after.value(QStringLiteral("name")).toString(), QStringLiteral("b.pdf"));
    QCOMPARE(after.value(QStringLiteral("suffix")).toString(), QStringLiteral("pdf"));
    QVERIFY(after.value(QStringLiteral("updatedAt")).toString()
            > before.value(QStringLiteral("updatedAt")).toString());
    QCOMPARE(after.value(QStringLiteral("createdAt")), before.value(QStringLiteral("createdAt")));
}

void TestServiceDocuments::oneDocumentIsFoundBelowBothRoots()
{
    ServiceFixture fixture;
    const QString outer = fixture.makeFolder(QStringLiteral("outer"));
    const QString inner = fixture.makeFolder(QStringLiteral("inner"), outer);
    const QString id = fixture.makeFile(QStringLiteral("a.txt"), inner);
    const HttpAnswer answer = fixture.client.get(QStringLiteral("documents/") + id,
                                                 {{QStringLiteral("info"), QStringLiteral("true")},
                                                  {QStringLiteral("pwd"), QStringLiteral("true")}});
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.object().value(QStringLiteral("pwd")), QJsonValue(QString()));
    const QJsonObject info = answer.object().value(QStringLiteral("info")).toObject();
    QCOMPARE(info.value(QStringLiteral("versionCount")).toInt(), 1);
    const QJsonArray path = info.value(QStringLiteral("path")).toArray();
    QCOMPARE(path.size(), 2);
    QCOMPARE(path.at(0).toObject().value(QStringLiteral("_id")).toString(), outer);
    QCOMPARE(path.at(1).toObject().value(QStringLiteral("name")).toString(),
             QStringLiteral("inner"));
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
    const QJsonValue text = QStringLiteral("some text 图");
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
    ServiceFixture fixture;
    const HttpAnswer made =
        fixture.client.post(ServiceFixture::projectPath(QStringLiteral("documents")),
                            {{QStringLiteral("name"), QStringLiteral("new")},
                             {QStringLiteral("type"), QStringLiteral("dir")},
                             {key, value}});
    QCOMPARE(made.status, isForNew ? 200 : 400);
    if (isForNew)
        QCOMPARE(made.object().value(key), value);

    const QString id = fixture.makeFolder(QStringLiteral("changed"));
    const HttpAnswer changed = fixture.client.put(ServiceFixture::documentPath(id), {{key, value}});
    QCOMPARE(changed.status, 200);
    QCOMPARE(changed.object().value(key), value);
    QCOMPARE(fixture.document(id).value(key), value);
    const HttpAnswer asked =
        fixture.client.get(ServiceFixture::projectPath(QStringLiteral("documents")),
                           {{QStringLiteral("where"),
                             QString::fromUtf8(QJsonDocument(QJsonObject{{key, value}}).toJson())},
                            {QStringLiteral("order"), QStringLiteral("-") + key}});
    QCOMPARE(asked.status, isAsked ? 200 : 400);
    if (isAsked)
        QCOMPARE(asked.array().size(), isForNew ? 2 : 1);
}

QTEST_GUILESS_MAIN(TestServiceDocuments)
#include "tst_service_documents.moc"
