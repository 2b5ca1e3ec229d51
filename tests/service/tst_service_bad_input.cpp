#include <service/ServiceWorld.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QStringLiteral>
#include <QTest>

//! Whatever is sent, the answer is a clear 4xx and nothing has changed.
class TestServiceBadInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void bodiesOfNoUse_data();
    void bodiesOfNoUse();
    void faultsOfJsonAreNamed_data();
    void faultsOfJsonAreNamed();
    void valuesWithoutSense_data();
    void valuesWithoutSense();
    void namesThatCannotBe_data();
    void namesThatCannotBe();
    void unknownPathsAndVerbs_data();
    void unknownPathsAndVerbs();
    void unknownIdsAreNotFound_data();
    void unknownIdsAreNotFound();
    void bodiesTooLarge();
    void formsThatAreNone_data();
    void formsThatAreNone();
    void bytesThatAreNoHttp_data();
    void bytesThatAreNoHttp();
    void longAddressesAreRefusedInJson();
    void aRefusedUploadLeavesTheConnectionUsable();

private:
    void isRefused();

    std::unique_ptr<ServiceWorld> m_world;
    QString m_folder;
    QJsonArray m_before;
};

void TestServiceBadInput::initTestCase()
{
    m_world = std::make_unique<ServiceWorld>();
    m_folder = m_world->makeFolder("folder");
    m_before = m_world->list({});
    QCOMPARE(m_before.size(), 1);
}

void TestServiceBadInput::cleanup()
{
    QCOMPARE(m_world->list({}), m_before);
}

void TestServiceBadInput::bodiesOfNoUse_data()
{
    QTest::addColumn<QByteArray>("verb");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("body");

    const QByteArray deep = QByteArray("[").repeated(5000);
    const QList<QPair<QByteArray, QByteArray>> common{
        {"nothing", ""},
        {"no JSON", "name=x"},
        {"half an object", "{\"name\":\"x\""},
        {"a number", "5"},
        {"null", "null"},
        {"binary", QByteArray("\0\xff\xfe\x80", 4)},
        {"not UTF-8", "{\"name\":\"\xff\xfe\"}"},
        {"an escape of two digits", "{\"name\":\"\\u56\r\nx\"}"},
        {"too deep", deep},
        {"unknown key", "{\"colour\":\"red\"}"},
    };
    const QString id = "FOLDER";
    const QList<QPair<QByteArray, QString>> paths{
        {"POST", ServiceWorld::projectPath("documents")},
        {"PUT", "document-service/documents"},
        {"PUT", ServiceWorld::documentPath(id)},
        {"PUT", ServiceWorld::documentPath(id, "/records")},
        {"POST", "document-service/documents/shares"},
        {"PUT", "document-service/documents/histories/x"},
    };
    for (const auto &path : paths) {
        for (const auto &body : common)
            QTest::newRow(qPrintable(QString("%1 %2: %3")
                                         .arg(QString::fromLatin1(path.first), path.second,
                                              QString::fromLatin1(body.first))))
                << path.first << path.second << body.second;
    }
}

void TestServiceBadInput::bodiesOfNoUse()
{
    isRefused();
}

void TestServiceBadInput::faultsOfJsonAreNamed_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("fault");
    const QString value = "a value is missing or wrong";
    QTest::newRow("nothing") << QByteArray() << value;
    QTest::newRow("an escape that ends in a number")
        << QByteArray(R"([{"name":"x","remark":"\u5}])") << value;
    QTest::newRow("a text that goes on as a number") << QByteArray(R"(["\x5])") << value;
    QTest::newRow("a key twice") << QByteArray(R"({"name":"x","name":"y"})")
                                 << "a key occurs twice in an object";
    QTest::newRow("a key twice, once escaped")
        << QByteArray(R"({"name":"x","n\u0061me":"y"})") << "a key occurs twice in an object";
    QTest::newRow("no key") << QByteArray("{5:5}") << "a key is missing or wrong";
    QTest::newRow("no colon") << QByteArray(R"({"name" "x"})") << "a colon is missing";
    QTest::newRow("no comma") << QByteArray("[5 5]")
                              << "a comma or the end of an array or object is missing";
    QTest::newRow("too deep") << QByteArray("[").repeated(101) << "it is nested too deep";
    QTest::newRow("more behind it") << QByteArray("[] x") << "there is something after it";
}

void TestServiceBadInput::faultsOfJsonAreNamed()
{
    QFETCH(const QByteArray, body);
    QFETCH(const QString, fault);
    const HttpAnswer answer = m_world->client.send("PUT", "document-service/documents", body);
    QCOMPARE(answer.status, 400);
    QCOMPARE(answer.errorText(), QString("The body is not JSON: %1.").arg(fault));
}

void TestServiceBadInput::valuesWithoutSense_data()
{
    QTest::addColumn<QByteArray>("verb");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("body");
    const QString id = "FOLDER";
    const auto row = [](const char *name, const char *verb, const QString &path, const char *body) {
        QTest::newRow(name) << QByteArray(verb) << path << QByteArray(body);
    };
    const QString documents = ServiceWorld::projectPath("documents");
    row("no type", "POST", documents, R"({"name":"x"})");
    row("unknown type", "POST", documents, R"({"name":"x","type":"link"})");
    row("type as number", "POST", documents, R"({"name":"x","type":1})");
    row("no name", "POST", documents, R"({"type":"dir"})");
    row("name as number", "POST", documents, R"({"name":5,"type":"dir"})");
    row("parent as number", "POST", documents, R"({"name":"x","type":"dir","parentId":5})");
    row("file without content", "POST", documents, R"({"name":"x","type":"file"})");
    row("folder with content", "POST", documents, R"({"name":"x","type":"dir","file":"y"})");
    row("unknown content", "POST", documents, R"({"name":"x","type":"file","file":"y"})");
    row("links as text", "POST", documents, R"({"name":"x","type":"dir","links":"y"})");
    const QString several = "document-service/documents";
    row("order of a text", "PUT", several, R"(["x"])");
    row("order without a position", "PUT", several, R"([{"_id":"FOLDER"}])");
    row("order as text", "PUT", several, R"([{"_id":"FOLDER","order":"1"}])");
    row("order as fraction", "PUT", several, R"([{"_id":"FOLDER","order":1.5}])");
    row("order out of range", "PUT", several, R"([{"_id":"FOLDER","order":1e12}])");
    row("move without a target", "PUT", several, R"({"documentIds":["FOLDER"]})");
    row("move of numbers", "PUT", several, R"({"documentIds":[5],"parentId":null})");
    row("move to a number", "PUT", several, R"({"documentIds":["FOLDER"],"parentId":5})");
    row("another type", "PUT", ServiceWorld::documentPath(id), R"({"type":"file"})");
    row("name as null", "PUT", ServiceWorld::documentPath(id), R"({"name":null})");
    row("remark as array", "PUT", ServiceWorld::documentPath(id), R"({"remark":[]})");
    const QString records = ServiceWorld::documentPath(id, "/records");
    row("mark without a type", "PUT", records, R"({"value":true})");
    row("mark without a value", "PUT", records, R"({"type":1})");
    row("mark with the word true", "PUT", records, R"({"type":1,"value":"true"})");
}

void TestServiceBadInput::valuesWithoutSense()
{
    isRefused();
}

//! Sends a row's body and expects a sentence.
void TestServiceBadInput::isRefused()
{
    QFETCH(QByteArray, verb);
    QFETCH(QString, path);
    QFETCH(QByteArray, body);
    path.replace("FOLDER", m_folder);
    body.replace("FOLDER", m_folder.toUtf8());
    const HttpAnswer answer = m_world->client.send(verb, path, body);
    QVERIFY2(answer.status == 400 || answer.status == 404,
             qPrintable(QString::number(answer.status)));
    QVERIFY2(!answer.errorText().isEmpty(), answer.body.constData());
}

void TestServiceBadInput::namesThatCannotBe_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << QString();
    QTest::newRow("dot") << ".";
    QTest::newRow("dots") << "..";
    QTest::newRow("slash") << "a/b";
    QTest::newRow("path") << "../../etc/passwd";
    QTest::newRow("backslash") << "a\\b";
    QTest::newRow("NUL") << QString("a") + QChar(QChar::Null) + "b";
    QTest::newRow("line break") << "a\nb";
    QTest::newRow("delete") << QStringLiteral("a\x7f"
                                              "b");
    QTest::newRow("C1 control") << "a\u0085b";
    QTest::newRow("256 bytes") << QString(256, QLatin1Char('x'));
    QTest::newRow("86 characters of 3 bytes") << QString(86, QChar(0x56fe));
}

void TestServiceBadInput::namesThatCannotBe()
{
    QFETCH(QString, name);
    const QJsonObject body{{"name", name}, {"type", "dir"}};
    const HttpAnswer made = m_world->client.post(ServiceWorld::projectPath("documents"), body);
    QCOMPARE(made.status, 400);
    QVERIFY(!made.errorText().isEmpty());
    const HttpAnswer renamed =
        m_world->client.put(ServiceWorld::documentPath(m_folder), {{"name", name}});
    QCOMPARE(renamed.status, 400);
}

void TestServiceBadInput::unknownPathsAndVerbs_data()
{
    QTest::addColumn<QByteArray>("verb");
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("allow");
    const auto row = [](const char *name, const char *verb, const char *path, int status,
                        const char *allow) {
        QTest::newRow(name) << QByteArray(verb) << QString::fromLatin1(path) << status
                            << QByteArray(allow);
    };
    row("root", "GET", "", 404, "");
    row("unknown root", "GET", "other-service/documents/x", 404, "");
    row("unknown path", "GET", "document-service/colours", 404, "");
    row("trailing slash", "GET", "base-service/me/", 404, "");
    row("empty project", "GET", "document-service/projects//documents", 404, "");
    row("path with dots", "GET", "base-service/files/..%2F..%2Fetc%2Fpasswd", 404, "");
    row("PUT where GET is", "PUT", "base-service/me", 405, "GET, HEAD");
    row("DELETE where GET and POST are", "DELETE", "document-service/projects/p1/documents", 405,
        "GET, HEAD, POST");
    row("PATCH", "PATCH", "document-service/documents", 405, "PUT, DELETE");
    row("OPTIONS", "OPTIONS", "base-service/files", 405, "POST");
    row("bad UTF-8", "GET", "document-service/documents/%ff%fe", 400, "");
    row("project id with a control character", "GET", "document-service/projects/a%01/documents",
        400, "");
}

void TestServiceBadInput::unknownPathsAndVerbs()
{
    QFETCH(QByteArray, verb);
    QFETCH(QString, path);
    QFETCH(int, status);
    QFETCH(QByteArray, allow);
    const HttpAnswer answer = m_world->client.send(verb, path);
    QCOMPARE(answer.status, status);
    QCOMPARE(answer.headers.value("allow"), allow);
    QVERIFY2(!answer.errorText().isEmpty(), answer.body.constData());
}

void TestServiceBadInput::unknownIdsAreNotFound_data()
{
    QTest::addColumn<QByteArray>("verb");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("body");
    const auto row = [](const char *verb, const char *path, const char *body) {
        QTest::newRow(qPrintable(QString("%1 %2").arg(QLatin1String(verb), QLatin1String(path))))
            << QByteArray(verb) << QString::fromLatin1(path) << QByteArray(body);
    };
    row("GET", "documents/none", "");
    row("GET", "document-service/documents/none", "");
    row("PUT", "document-service/documents/none", R"({"name":"x"})");
    row("DELETE", "document-service/documents/none", "");
    row("GET", "document-service/documents/none/restore", "");
    row("GET", "document-service/documents/none/histories", "");
    row("PUT", "document-service/documents/none/records", R"({"type":1,"value":true})");
    row("PUT", "document-service/documents", R"([{"_id":"none","order":1}])");
    row("PUT", "document-service/documents", R"({"documentIds":["none"],"parentId":null})");
    row("POST", "document-service/projects/p1/documents",
        R"({"name":"x","type":"dir","parentId":"none"})");
    row("GET", "document-service/documents/records?where=%7B%22documentId%22:%22none%22%7D", "");
    row("GET", "base-service/files/none", "");
    row("DELETE", "base-service/largefiles/none", "");
    row("GET", "base-service/largefiles/md5/none", "");
}

void TestServiceBadInput::unknownIdsAreNotFound()
{
    QFETCH(QByteArray, verb);
    QFETCH(QString, path);
    QFETCH(QByteArray, body);
    const HttpAnswer answer = m_world->client.send(verb, path, body);
    QCOMPARE(answer.status, 404);
    QVERIFY(!answer.errorText().isEmpty());
}

void TestServiceBadInput::bodiesTooLarge()
{
    const QByteArray large = "{\"name\":\"" + QByteArray(2 * 1024 * 1024, 'x') + "\"}";
    const HttpAnswer answer =
        m_world->client.send("PUT", ServiceWorld::documentPath(m_folder), large);
    QCOMPARE(answer.status, 413);
    QVERIFY(!answer.errorText().isEmpty());

    ServiceOptions options;
    options.maxBodyBytes = 10000;
    ServiceWorld small(options);
    QVERIFY(!small.upload(QByteArray(5000, 'x')).isEmpty());
    const HttpAnswer refused =
        small.client.postForm("base-service/files", {{"file/x", QByteArray(20000, 'x')}});
    QCOMPARE(refused.status, 413);
    QVERIFY(!refused.errorText().isEmpty());
}

void TestServiceBadInput::formsThatAreNone_data()
{
    QTest::addColumn<QByteArray>("contentType");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");
    const QByteArray form = "multipart/form-data; boundary=B";
    const QByteArray part =
        "--B\r\nContent-Disposition: form-data; name=\"file\"; filename=\"f\"\r\n\r\n";
    const auto row = [](const char *name, const QByteArray &type, const QByteArray &body,
                        int status) { QTest::newRow(name) << type << body << status; };
    row("plain JSON", "application/json", "{}", 415);
    row("no boundary", "multipart/form-data", part + "x\r\n--B--\r\n", 415);
    row("empty boundary", "multipart/form-data; boundary=", part + "x\r\n--B--\r\n", 415);
    row("another multipart", "multipart/mixed; boundary=B", part + "x\r\n--B--\r\n", 415);
    row("nothing", form, "", 400);
    row("only the end", form, "--B--\r\n", 400);
    row("half a part", form, part + "half", 400);
    row("half a header", form, "--B\r\nContent-Disp", 400);
    row("end missing", form, part + "x\r\n--B", 400);
    row("no file", form,
        "--B\r\nContent-Disposition: form-data; name=\"other\"\r\n\r\nx\r\n--B--\r\n", 400);
    row("no name", form, "--B\r\nContent-Type: text/plain\r\n\r\nx\r\n--B--\r\n", 400);
    row("two files", form, part + "x\r\n" + part + "y\r\n--B--\r\n", 400);
    row("endless header", form, "--B\r\nX: " + QByteArray(100000, 'x') + "\r\n\r\n--B--\r\n", 400);
}

void TestServiceBadInput::formsThatAreNone()
{
    QFETCH(QByteArray, contentType);
    QFETCH(QByteArray, body);
    QFETCH(int, status);
    for (const char *path : {"base-service/files", "base-service/largefiles"}) {
        const HttpAnswer answer = m_world->client.send("POST", QString::fromLatin1(path), body,
                                                       {{"Content-Type", contentType}});
        QCOMPARE(answer.status, status);
        QVERIFY(!answer.errorText().isEmpty());
    }
}

void TestServiceBadInput::bytesThatAreNoHttp_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("statusLine");
    const auto row = [](const char *name, const QByteArray &bytes, const char *status) {
        QTest::newRow(name) << bytes << QByteArray(status);
    };
    row("nonsense", "nonsense\r\n\r\n", "HTTP/1.1 400");
    row("unknown verb", "FETCH / HTTP/1.1\r\nHost: localhost\r\n\r\n", "HTTP/1.1 404");
    row("old HTTP", "GET /base-service/me HTTP/1.0\r\n\r\n", "HTTP/1.1 200");
    row("length that is none",
        "PUT /base-service/me HTTP/1.1\r\nHost: localhost\r\nContent-Length: x\r\n\r\n",
        "HTTP/1.1 400");
    row("negative length",
        "PUT /base-service/me HTTP/1.1\r\nHost: localhost\r\nContent-Length: -5\r\n\r\n",
        "HTTP/1.1 400");
    row("in pieces",
        "POST /base-service/files HTTP/1.1\r\nHost: localhost\r\nTransfer-Encoding: "
        "chunked\r\n\r\n0\r\n\r\n",
        "HTTP/1.1 411");
    row("immense length",
        "POST /base-service/files HTTP/1.1\r\nHost: localhost\r\nContent-Length: "
        "99999999999999\r\n\r\n",
        "HTTP/1.1 413");
    row("many ranges",
        "GET /base-service/me HTTP/1.1\r\nHost: localhost\r\nRange: bytes=0-0"
            + QByteArray(",0-0").repeated(1900) + "\r\n\r\n",
        "HTTP/1.1 200");
    row("long path", "GET /" + QByteArray(8000, 'a') + " HTTP/1.1\r\nHost: localhost\r\n\r\n",
        "HTTP/1.1 404");
    row("many segments",
        "GET " + QByteArray("/a").repeated(4000) + " HTTP/1.1\r\nHost: localhost\r\n\r\n",
        "HTTP/1.1 404");
}

void TestServiceBadInput::bytesThatAreNoHttp()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, statusLine);
    const QByteArray answer = m_world->exchange(bytes);
    QVERIFY2(answer.startsWith(statusLine), answer.left(200).constData());
    if (!statusLine.endsWith("200"))
        QVERIFY2(answer.contains("{\"error\":\""), answer.constData());
}

void TestServiceBadInput::longAddressesAreRefusedInJson()
{
    const HttpAnswer answer =
        m_world->client.get("base-service/me", {{"x", QString(9000, QLatin1Char('a'))}});
    QCOMPARE(answer.status, 414);
    QVERIFY2(answer.errorText().contains("too long"), answer.body.constData());
}

void TestServiceBadInput::aRefusedUploadLeavesTheConnectionUsable()
{
    const QByteArray body(300000, 'x');
    const QByteArray request =
        "POST /base-service/me HTTP/1.1\r\nHost: localhost\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    const QByteArray answers =
        m_world->exchange(request + "GET /base-service/me HTTP/1.1\r\nHost: localhost\r\n\r\n");
    QVERIFY2(answers.startsWith("HTTP/1.1 405"), answers.constData());
    QVERIFY2(answers.contains("HTTP/1.1 200"), answers.constData());
}

QTEST_GUILESS_MAIN(TestServiceBadInput)
#include "tst_service_bad_input.moc"
