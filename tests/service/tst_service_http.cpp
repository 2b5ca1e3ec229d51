#include <service/RawClient.h>
#include <service/ServiceWorld.h>

#include <QFile>
#include <QIODevice>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

//! HTTP by the letter: what is refused because two programs could read it in two ways, and what each response has.
class TestServiceHttp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void ambiguousRequestsAreRefused_data();
    void ambiguousRequestsAreRefused();
    void unusualRequestsAreServed_data();
    void unusualRequestsAreServed();
    void everyResponseHasADate();
    void anUnreadBodyIsNoRequest_data();
    void anUnreadBodyIsNoRequest();
    void requestsFollowOneAnotherOnAConnection();
    void bodiesAreAskedForAfterTheChecks();
    void headHasTheHeadersAndChangesNothing();
    void aMissingTokenNamesTheScheme();
    void conditionsAreUnderstood_data();
    void conditionsAreUnderstood();
    void addressesAreDecodedOnce_data();
    void addressesAreDecodedOnce();
    void whileThereAreNoUsersOnlyThisMachineIsServed_data();
    void whileThereAreNoUsersOnlyThisMachineIsServed();
    void shareCodesStayOutOfTheLog();

private:
    quint16 port() const { return m_world->service->port(); }

    std::unique_ptr<ServiceWorld> m_world;
    QString m_fileId;
};

void TestServiceHttp::initTestCase()
{
    m_world = std::make_unique<ServiceWorld>();
    m_fileId = m_world->upload("0123456789");
    QVERIFY(!m_fileId.isEmpty());
}

void TestServiceHttp::ambiguousRequestsAreRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("status");
    const QByteArray post = "POST /base-service/files HTTP/1.1\r\nHost: localhost\r\n";
    const QByteArray get = "GET /base-service/me HTTP/1.1\r\n";
    const QByteArray host = "Host: localhost\r\n";
    const auto row = [](const char *name, const QByteArray &bytes, int status = 400) {
        QTest::newRow(name) << bytes << status;
    };
    row("length with a sign", post + "Content-Length: +5\r\n\r\nhello");
    row("length that is encoded", post + "Content-Length: %35\r\n\r\nhello");
    row("length in hexadecimal", post + "Content-Length: 0x5\r\n\r\nhello");
    row("two lengths", post + "Content-Length: 5\r\nContent-Length: 6\r\n\r\nhello");
    row("the same length twice", post + "Content-Length: 5\r\nContent-Length: 5\r\n\r\nhello");
    row("a list of lengths", post + "Content-Length: 5, 6\r\n\r\nhello");
    row("an empty length", post + "Content-Length:\r\n\r\nhello");
    row("a length with a tail", post + "Content-Length: 5 5\r\n\r\nhello");
    row("a space before the colon", post + "Content-Length : 5\r\n\r\nhello");
    row("a coding with a space before the colon",
        post + "Transfer-Encoding : chunked\r\n\r\n0\r\n\r\n");
    row("a coding", post + "Transfer-Encoding: chunked\r\n\r\n0\r\n\r\n", 411);
    row("a coding and a length",
        post + "Content-Length: 5\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n");
    row("a folded line", get + host + "X-A: b\r\n c\r\n\r\n");
    row("a folded length", post + "Content-Length:\r\n 5\r\n\r\nhello");
    row("bare line feeds", "GET /base-service/me HTTP/1.1\nHost: localhost\n\n\r\n\r\n");
    row("one bare line feed", get + host + "X-A: b\nX-B: c\r\n\r\n");
    row("one bare carriage return", get + host + "X-A: b\rX-B: c\r\n\r\n");
    row("a zero", get + host + QByteArray("X-A: b\0c\r\n\r\n", 13));
    row("no host", get + "\r\n");
    row("a whole address without a Host", "GET http://localhost/base-service/me HTTP/1.1\r\n\r\n");
    row("a whole address with a wrong Host",
        "GET http://localhost/base-service/me HTTP/1.1\r\nHost: a/b\r\n\r\n");
    row("a whole address with a wrong host",
        "GET http://local@host/base-service/me HTTP/1.1\r\n" + host + "\r\n");
    row("an empty host", get + "Host:\r\n\r\n");
    row("two hosts", get + host + "Host: elsewhere\r\n\r\n");
    row("a host with a path", get + "Host: localhost/x\r\n\r\n");
    row("a header without a name", get + host + ": x\r\n\r\n");
    row("a header without a colon", get + host + "nothing\r\n\r\n");
    row("a space in the address", "GET /base-service/me x HTTP/1.1\r\nHost: localhost\r\n\r\n");
    row("letters that are not encoded", "GET /base-service/\xc3\xa9 HTTP/1.1\r\nHost: a\r\n\r\n");
    row("no address", "GET HTTP/1.1\r\nHost: localhost\r\n\r\n");
    row("an address without a slash", "GET me HTTP/1.1\r\nHost: localhost\r\n\r\n");
    row("another protocol", "GET /base-service/me HTTP/2.0\r\nHost: localhost\r\n\r\n");
    row("an unknown expectation", post + "Content-Length: 5\r\nExpect: cake\r\n\r\n", 417);
    row("a long address", "GET /" + QByteArray(9000, 'a') + " HTTP/1.1\r\n" + host + "\r\n", 414);
    row("an address without an end", "GET /" + QByteArray(40000, 'a'), 414);
    row("a head without an end", get + host + QByteArray("X-A: bcdefghij\r\n").repeated(3000), 431);
    row("many headers", get + host + QByteArray("X-A: b\r\n").repeated(150) + "\r\n", 431);
}

void TestServiceHttp::ambiguousRequestsAreRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, status);
    RawClient client(port());
    client.send(bytes);
    const RawResponse response = client.next();
    QCOMPARE(response.status, status);
    QVERIFY2(response.body.startsWith("{\"error\":\""), response.body.constData());
    QCOMPARE(response.headers.value("connection"), QByteArray("close"));
    QByteArray rest;
    QVERIFY(client.readToEnd(&rest));
    QCOMPARE(rest, QByteArray());
}

void TestServiceHttp::unusualRequestsAreServed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("an empty line first")
        << QByteArray("\r\nGET /base-service/me HTTP/1.1\r\nHost: localhost\r\n\r\n");
    QTest::newRow("a whole address")
        << QByteArray("GET http://localhost/base-service/me HTTP/1.1\r\nHost: other\r\n\r\n");
    QTest::newRow("old HTTP") << QByteArray("GET /base-service/me HTTP/1.0\r\n\r\n");
    QTest::newRow("spaces around a value")
        << QByteArray("GET /base-service/me HTTP/1.1\r\nHost: \t localhost \t\r\n\r\n");
    QTest::newRow("a header twice")
        << QByteArray("GET /base-service/me HTTP/1.1\r\nHost: a.localhost\r\n").replace("a.", "")
            + "Accept: a\r\nAccept: b\r\n\r\n";
}

void TestServiceHttp::unusualRequestsAreServed()
{
    QFETCH(QByteArray, bytes);
    RawClient client(port());
    client.send(bytes);
    QCOMPARE(client.next().status, 200);
}

void TestServiceHttp::everyResponseHasADate()
{
    const QRegularExpression form("^(Mon|Tue|Wed|Thu|Fri|Sat|Sun), \\d\\d \\w{3} \\d{4} "
                                  "\\d\\d:\\d\\d:\\d\\d GMT$");
    for (const QByteArray &target :
         {QByteArray("/base-service/me"), QByteArray("/none"),
          "/base-service/files/" + m_fileId.toLatin1(), QByteArray("nonsense")}) {
        RawClient client(port());
        client.send(RawClient::request("GET", target));
        const QByteArray date = client.next().headers.value("date");
        QVERIFY2(form.match(QString::fromLatin1(date)).hasMatch(), date.constData());
    }
}

void TestServiceHttp::anUnreadBodyIsNoRequest_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<int>("length");
    const QByteArray host = " HTTP/1.1\r\nHost: localhost\r\n";
    for (const int length : {1000, 500000, 3000000}) {
        const auto row = [length](const char *name, const QByteArray &head) {
            QTest::newRow(qPrintable(QString("%1, %2").arg(QLatin1String(name)).arg(length)))
                << head << length;
        };
        row("unknown path", "POST /none" + host);
        row("wrong method", "POST /base-service/me" + host);
        row("no form", "POST /base-service/files" + host);
        row("too large", "PUT /document-service/documents" + host);
        row("foreign host", "POST /base-service/files HTTP/1.1\r\nHost: example.org\r\n");
        row("not HTTP", "POST me" + host);
    }
}

//! A body full of requests, of which none may be answered.
void TestServiceHttp::anUnreadBodyIsNoRequest()
{
    QFETCH(QByteArray, head);
    QFETCH(int, length);
    const QByteArray inner = RawClient::request("GET", "/base-service/me");
    QByteArray body = inner.repeated(length / inner.size() + 1);
    body.truncate(length);
    RawClient client(port());
    const QByteArray answers =
        client.exchange(head + "Content-Length: " + QByteArray::number(length) + "\r\n\r\n" + body);
    QVERIFY2(answers.startsWith("HTTP/1.1 4"), answers.constData());
    QCOMPARE(answers.count("HTTP/1.1 "), 1);
}

void TestServiceHttp::requestsFollowOneAnotherOnAConnection()
{
    RawClient client(port());
    const QByteArray body = R"({"name":"one","type":"dir"})";
    client.send(RawClient::request("POST", "/document-service/projects/p9/documents",
                                   "Content-Type: application/json\r\n", body)
                + RawClient::request("GET", "/base-service/me")
                + RawClient::request("GET", "/base-service/files/" + m_fileId.toLatin1())
                + RawClient::request("GET", "/none")
                + RawClient::request("GET", "/base-service/me", "Connection: close\r\n"));
    QVERIFY(client.next().body.contains("\"one\""));
    QVERIFY(client.next().body.contains("\"local\""));
    QCOMPARE(client.next().body, QByteArray("0123456789"));
    QCOMPARE(client.next().status, 404);
    QCOMPARE(client.next().status, 200);
    QByteArray rest;
    QVERIFY(client.readToEnd(&rest));
}

void TestServiceHttp::bodiesAreAskedForAfterTheChecks()
{
    const QByteArray body = R"({"name":"asked","type":"dir"})";
    const QByteArray headers =
        "Expect: 100-continue\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n";
    RawClient client(port());
    client.send(RawClient::request("POST", "/document-service/projects/p9/documents", headers));
    QCOMPARE(client.next(false).status, 100);
    client.send(body);
    QVERIFY(client.next().body.contains("\"asked\""));

    RawClient refused(port());
    refused.send(RawClient::request("POST", "/base-service/files", headers));
    const RawResponse response = refused.next();
    QCOMPARE(response.status, 415);
    QCOMPARE(response.headers.value("connection"), QByteArray("close"));
}

void TestServiceHttp::headHasTheHeadersAndChangesNothing()
{
    RawClient client(port());
    const QByteArray file = "/base-service/files/" + m_fileId.toLatin1();
    client.send(RawClient::request("HEAD", file, "Range: bytes=0-1\r\n")
                + RawClient::request("HEAD", "/none")
                + RawClient::request("GET", "/base-service/me"));
    const RawResponse head = client.next(false);
    QCOMPARE(head.status, 200);
    QCOMPARE(head.headers.value("content-length"), QByteArray("10"));
    QCOMPARE(client.next(false).status, 404);
    QVERIFY(client.next().body.contains("\"local\""));

    const QString id = m_world->makeFolder("deleted");
    QVERIFY(m_world->client.remove(ServiceWorld::documentPath(id)).isSuccess());
    client.send(
        RawClient::request("HEAD", "/document-service/documents/" + id.toLatin1() + "/restore"));
    const RawResponse restore = client.next(false);
    QCOMPARE(restore.status, 405);
    QCOMPARE(restore.headers.value("allow"), QByteArray("GET"));
    QCOMPARE(m_world->document(id).value("recycle").toInt(), 1);
}

void TestServiceHttp::aMissingTokenNamesTheScheme()
{
    ServiceWorld world;
    QVERIFY(!world.service->addUser("anna").isEmpty());
    const HttpAnswer answer = world.client.get("base-service/me");
    QCOMPARE(answer.status, 401);
    QVERIFY(answer.headers.value("www-authenticate").startsWith("Bearer "));
}

void TestServiceHttp::conditionsAreUnderstood_data()
{
    QTest::addColumn<QByteArray>("headers");
    QTest::addColumn<int>("status");
    const auto row = [](const char *name, const char *headers, int status) {
        QTest::newRow(name) << QByteArray(headers) << status;
    };
    row("the tag", "If-None-Match: TAG\r\n", 304);
    row("the weak tag", "If-None-Match: W/TAG\r\n", 304);
    row("a list with the tag", "If-None-Match: \"a\", TAG,\"b\"\r\n", 304);
    row("two lines", "If-None-Match: \"a\"\r\nIf-None-Match: TAG\r\n", 304);
    row("any", "If-None-Match: *\r\n", 304);
    row("another tag", "If-None-Match: \"a\"\r\n", 200);
    row("a range if it is the tag", "If-Range: TAG\r\nRange: bytes=1-2\r\n", 206);
    row("a range if it is the weak tag", "If-Range: W/TAG\r\nRange: bytes=1-2\r\n", 200);
    row("a range if a date", "If-Range: Sat, 29 Oct 1994 19:43:31 GMT\r\nRange: bytes=1-2\r\n",
        200);
    row("only if it is the tag", "If-Match: TAG\r\n", 200);
    row("only if it is the weak tag", "If-Match: W/TAG\r\n", 412);
    row("only if it is any", "If-Match: *\r\n", 200);
    row("only if it is another", "If-Match: \"a\"\r\n", 412);
    row("an unknown unit", "Range: lines=1-2\r\n", 200);
    row("a unit in capitals", "Range: Bytes=1-2\r\n", 206);
    row("several ranges", "Range: bytes=1-2,4-5\r\n", 200);
    row("a range with a sign", "Range: bytes=+1-2\r\n", 200);
    row("a huge range", "Range: bytes=1-99999999999999999999999\r\n", 206);
    row("a range beyond the end", "Range: bytes=10-\r\n", 416);
    row("the last none", "Range: bytes=-0\r\n", 416);
}

void TestServiceHttp::conditionsAreUnderstood()
{
    QFETCH(QByteArray, headers);
    QFETCH(int, status);
    RawClient client(port());
    headers.replace("TAG", "\"781e5e245d69b566979b86e28d23f2c7\"");
    client.send(RawClient::request("GET", "/base-service/files/" + m_fileId.toLatin1(), headers));
    const RawResponse response = client.next();
    QCOMPARE(response.status, status);
    QCOMPARE(response.headers.contains("content-length"), status != 304);
    QCOMPARE(response.headers.contains("etag"), status < 400);
    client.send(RawClient::request("GET", "/base-service/me"));
    QVERIFY(client.next().body.contains("\"local\""));
}

void TestServiceHttp::addressesAreDecodedOnce_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("found");
    QTest::newRow("plus") << QByteArray("a%2Bb") << "a+b";
    QTest::newRow("space as plus") << QByteArray("a+b") << "a b";
    QTest::newRow("space") << QByteArray("a%20b") << "a b";
    QTest::newRow("percent") << QByteArray("a%2520b") << "a%20b";
    QTest::newRow("a digit is missing") << QByteArray("a%2") << QString();
    QTest::newRow("no digits") << QByteArray("a%zz") << QString();
    QTest::newRow("percent at the end") << QByteArray("a%") << QString();
    QTest::newRow("no UTF-8") << QByteArray("a%ff") << QString();
}

void TestServiceHttp::addressesAreDecodedOnce()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, found);
    ServiceWorld world;
    for (const char *each : {"a+b", "a b", "a%20b"})
        QVERIFY(!world.makeFolder(each).isEmpty());
    RawClient client(world.service->port());
    client.send(RawClient::request("GET",
                                   "/document-service/projects/p1/documents?select=name&where="
                                   "%7B%22name%22:%22"
                                       + name + "%22%7D"));
    const RawResponse response = client.next();
    QCOMPARE(response.status, found.isEmpty() ? 400 : 200);
    if (!found.isEmpty())
        QVERIFY2(response.body.contains("\"name\":\"" + found.toUtf8() + '"'),
                 response.body.constData());
}

void TestServiceHttp::whileThereAreNoUsersOnlyThisMachineIsServed_data()
{
    QTest::addColumn<QByteArray>("headers");
    QTest::addColumn<bool>("isServed");
    const auto row = [](const char *name, const QByteArray &headers, bool isServed) {
        QTest::newRow(name) << headers << isServed;
    };
    row("localhost", "Host: localhost:8080\r\n", true);
    row("in capitals", "Host: LocalHost\r\n", true);
    row("IPv4", "Host: 127.0.0.1:8080\r\n", true);
    row("another loopback address", "Host: 127.8.8.8\r\n", true);
    row("IPv6", "Host: [::1]:8080\r\n", true);
    row("a name", "Host: example.org\r\n", false);
    row("a name that begins well", "Host: localhost.example.org\r\n", false);
    row("a name of digits", "Host: 127.0.0.1.example.org\r\n", false);
    row("another address", "Host: 192.168.0.1\r\n", false);
    row("own origin", "Host: localhost:8080\r\nOrigin: http://localhost:8080\r\n", true);
    row("another port", "Host: localhost:8080\r\nOrigin: http://localhost:3000\r\n", false);
    row("another site", "Host: localhost:8080\r\nOrigin: https://example.org\r\n", false);
    row("no origin at all", "Host: localhost\r\nOrigin: null\r\n", false);
    row("from another site", "Host: localhost\r\nSec-Fetch-Site: cross-site\r\n", false);
    row("from the address bar", "Host: localhost\r\nSec-Fetch-Site: none\r\n", true);
}

void TestServiceHttp::whileThereAreNoUsersOnlyThisMachineIsServed()
{
    QFETCH(QByteArray, headers);
    QFETCH(bool, isServed);
    ServiceWorld world;
    const QByteArray request = "GET /base-service/me HTTP/1.1\r\n" + headers + "\r\n";
    RawClient client(world.service->port());
    client.send(request);
    QCOMPARE(client.next().status, isServed ? 200 : 403);
    QVERIFY(!world.service->addUser("anna").isEmpty());
    client.send(request);
    QCOMPARE(client.next().status, 401);
}

//! Neither of pages that are shown nor of what is refused before the address is read.
void TestServiceHttp::shareCodesStayOutOfTheLog()
{
    QTemporaryDir folder;
    ServiceOptions options;
    options.accessLog = folder.filePath("access.log");
    options.maxBodyBytes = 1000;
    ServiceWorld world(options);
    for (const QByteArray &headers :
         {QByteArray("Content-Length: 5000\r\n"), QByteArray("Transfer-Encoding: chunked\r\n"),
          QByteArray("Content-Length: x\r\n"), QByteArray("Expect: cake\r\n")}) {
        RawClient client(world.service->port());
        client.send(RawClient::request("POST", "/share/secret-code", headers));
        QVERIFY(client.next().status >= 400);
    }
    QCOMPARE(world.client.get("share/secret-code/files/secret").status, 404);
    world.service->stop();
    QFile log(options.accessLog);
    QVERIFY(log.open(QIODevice::ReadOnly));
    const QByteArray text = log.readAll();
    QCOMPARE(text.count('\n'), 5);
    QVERIFY2(!text.contains("secret"), text.constData());
}

QTEST_GUILESS_MAIN(TestServiceHttp)
#include "tst_service_http.moc"
