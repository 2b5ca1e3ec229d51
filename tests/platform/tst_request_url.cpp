#include "support/ScriptedServer.h"

#include <VellNetwork/AsyncNetManager.h>
#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>

#include <QElapsedTimer>
#include <QScopedPointer>
#include <QSignalSpy>
#include <QTest>

//! What of an address's text arrives at a server, byte for byte.
class TestRequestUrl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void everyValueArrivesUnchanged_data();
    void everyValueArrivesUnchanged();
    void whatIsSuperfluousIsDropped_data();
    void whatIsSuperfluousIsDropped();
    void addressesThatWouldChangeAreNotSent_data();
    void addressesThatWouldChangeAreNotSent();
    void encodingTakesLinearTime();

private:
    QByteArray targetOfNetworkManager(const QString &url);
    QByteArray targetOfAsyncNetManager(const QString &url);

    QScopedPointer<ScriptedServer> m_server;
};

void TestRequestUrl::init()
{
    m_server.reset(new ScriptedServer);
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
}

QByteArray TestRequestUrl::targetOfNetworkManager(const QString &url)
{
    m_server->clearRequests();
    NetworkEventLoop loop(NetworkManager::instance()->get(url));
    loop.exec();
    return m_server->requests().value(0).target;
}

QByteArray TestRequestUrl::targetOfAsyncNetManager(const QString &url)
{
    m_server->clearRequests();
    AsyncNetManager manager;
    QSignalSpy completed(&manager, &AsyncNetManager::netComplete);
    manager.get(url);
    return completed.wait() ? m_server->requests().value(0).target : QByteArray();
}

void TestRequestUrl::everyValueArrivesUnchanged_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("target");
    const auto row = [](const char *name, const QString &text, const QByteArray &target) {
        QTest::newRow(name) << text << target;
    };
    const auto u = [](const char *text) { return QString::fromUtf8(text); };

    row("no path", {}, "/");
    row("plain path", u("document-service/documents/abc"), "/document-service/documents/abc");
    row("path with blank", u("a b"), "/a%20b");
    row("path with percent", u("100%"), "/100%25");
    row("path with what looks encoded", u("50%25.txt"), "/50%2525.txt");
    row("path with an encoded letter's look", u("%41%7e"), "/%2541%257e");
    row("path with an encoded slash's look", u("a%2Fb"), "/a%252Fb");
    row("path with hash", u("a#1"), "/a%231");
    row("path with plus", u("a+b"), "/a%2Bb");
    row("path with ampersand and equals", u("a&b=c"), "/a%26b%3Dc");
    row("path with semicolon and comma", u("a;b,c"), "/a%3Bb%2Cc");
    row("path with colon and at", u("a:b@c"), "/a%3Ab%40c");
    row("path with quotes", u("a\"b'c"), "/a%22b%27c");
    row("path with backslash", u("a\\b"), "/a%5Cb");
    row("path with brackets and braces", u("[a]{b}<c>|^`"), "/%5Ba%5D%7Bb%7D%3Cc%3E%7C%5E%60");
    row("path with exclamation, dollar, star, parentheses", u("!$*()"), "/%21%24%2A%28%29");
    row("path with unreserved", u("a-b_c.d~e"), "/a-b_c.d~e");
    row("path with Chinese", u("图纸"), "/%E5%9B%BE%E7%BA%B8");
    row("path with emoji", u("📄"), "/%F0%9F%93%84");
    row("path with composed letter", u("\u00e9"), "/%C3%A9");
    row("path with decomposed letter", u("e\u0301"), "/e%CC%81");
    row("path with control characters", u("a\tb\nc\rd"), "/a%09b%0Ac%0Dd");
    row("path with a leading dot", u("documents/.hidden"), "/documents/.hidden");
    row("path with three dots", u("documents/..."), "/documents/...");
    row("path with a leading dash", u("documents/-rf"), "/documents/-rf");
    row("path with an empty identifier at its end", u("documents/"), "/documents/");
    row("path with an empty identifier inside", u("documents//records"), "/documents//records");
    row("path of 255 bytes", u("documents/") + QString(255, QLatin1Char('n')),
        "/documents/" + QByteArray(255, 'n'));

    row("several parameters", u("d?a=1&b=2&c="), "/d?a=1&b=2&c=");
    row("parameter without value", u("d?a&b"), "/d?a&b");
    row("empty parameters", u("d?&&a=1&"), "/d?&&a=1&");
    row("value with question mark", u("d?a=b?c"), "/d?a=b%3Fc");
    row("value with slash", u("d?a=b/c"), "/d?a=b%2Fc");
    row("value with equals", u("d?a=b=c"), "/d?a=b=c");
    row("value with blank", u("d?order=type order -updatedAt"),
        "/d?order=type%20order%20-updatedAt");
    row("value with plus", u("d?a=b+c"), "/d?a=b%2Bc");
    row("value with percent", u("d?a=50%"), "/d?a=50%25");
    row("value with what looks encoded", u("d?a=50%25&b=%26"), "/d?a=50%2525&b=%2526");
    row("value with hash", u("d?a=#1"), "/d?a=%231");
    row("value with semicolon, colon, comma", u("d?a=b;c:d,e"), "/d?a=b%3Bc%3Ad%2Ce");
    row("value with quotes and backslash", u("d?a=\"b'\\"), "/d?a=%22b%27%5C");
    row("value with Chinese", u("d?a=图纸.dwg"), "/d?a=%E5%9B%BE%E7%BA%B8.dwg");
    row("value with emoji of several code points", u("d?a=👷‍♀️"),
        "/d?a=%F0%9F%91%B7%E2%80%8D%E2%99%80%EF%B8%8F");
    row("value with composed and decomposed letter", u("d?a=\u00e9e\u0301"), "/d?a=%C3%A9e%CC%81");
    row("value with dots", u("d?a=../../b"), "/d?a=..%2F..%2Fb");

    row("where with everything in a name",
        u("d?where={\"name\":\"R&D 100% #1 + 图纸.dwg\"}&select=-entities"),
        "/d?where=%7B%22name%22%3A%22R%26D%20100%25%20%231%20%2B%20%E5%9B%BE%E7%BA%B8.dwg%22%7D"
        "&select=-entities");
    row("where with question mark and equals", u("d?where={\"name\":\"a=b?\"}"),
        "/d?where=%7B%22name%22%3A%22a%3Db%3F%22%7D");
    row("where with nested braces", u("d?where={\"a\":{\"b\":{\"c\":\"&\"}}}&x=1"),
        "/d?where=%7B%22a%22%3A%7B%22b%22%3A%7B%22c%22%3A%22%26%22%7D%7D%7D&x=1");
    row("where with braces in a string", u("d?where={\"a\":\"}&{\"}&x=1"),
        "/d?where=%7B%22a%22%3A%22%7D%26%7B%22%7D&x=1");
    row("where with an escaped quote", u("d?where={\"a\":\"\\\"}&\"}&x=1"),
        "/d?where=%7B%22a%22%3A%22%5C%22%7D%26%22%7D&x=1");
    row("where with an escaped backslash", u("d?where={\"a\":\"\\\\\"}&x=1"),
        "/d?where=%7B%22a%22%3A%22%5C%5C%22%7D&x=1");
    row("where that is empty", u("d?where={}&x=1"), "/d?where=%7B%7D&x=1");
    row("where without a value", u("d?where=&x=1"), "/d?where=&x=1");
    row("where that is no object", u("d?where=[1&2]"), "/d?where=%5B1&2%5D");
    row("where without its end", u("d?where={\"a\":\"&x=1"), "/d?where=%7B%22a%22%3A%22&x=1");
    row("where without its end, then one with", u("d?where={\"a&where={\"b\":\"&c=1"),
        "/d?where=%7B%22a&where=%7B%22b%22%3A%22&c=1");
    row("where behind another parameter", u("d?a=1&where={\"b\":\"&\"}&c=2"),
        "/d?a=1&where=%7B%22b%22%3A%22%26%22%7D&c=2");
    row("two wheres", u("d?where={\"a\":\"&\"}&where={\"b\":\"=\"}"),
        "/d?where=%7B%22a%22%3A%22%26%22%7D&where=%7B%22b%22%3A%22%3D%22%7D");
    row("where with text behind its object", u("d?where={\"a\":1}b+c&d=2"),
        "/d?where=%7B%22a%22%3A1%7Db%2Bc&d=2");
    row("a parameter whose name only ends in where", u("d?nowhere={\"a\":\"&b=1\"}"),
        "/d?nowhere=%7B%22a%22%3A%22&b=1%22%7D");
    row("a value that only looks like where", u("d?a=where={\"b\":\"&c=1\"}"),
        "/d?a=where=%7B%22b%22%3A%22&c=1%22%7D");
    row("an object behind another parameter", u("d?filter={\"a\":1}&b=2"),
        "/d?filter=%7B%22a%22%3A1%7D&b=2");
}

void TestRequestUrl::everyValueArrivesUnchanged()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, target);

    QCOMPARE(targetOfNetworkManager(m_server->baseApi() + text), target);
    QCOMPARE(targetOfAsyncNetManager(m_server->baseApi() + text), target);
    QCOMPARE(m_server->requests().size(), 1);
    QCOMPARE(m_server->requests().first().decodedTarget(), QLatin1Char('/') + text);
}

void TestRequestUrl::whatIsSuperfluousIsDropped_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("target");

    QTest::newRow("slash behind the slash of the base") << "/d" << QByteArray("/d");
    QTest::newRow("query of nothing") << "d?" << QByteArray("/d");
}

void TestRequestUrl::whatIsSuperfluousIsDropped()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, target);

    QCOMPARE(targetOfNetworkManager(m_server->baseApi() + text), target);
    QCOMPARE(targetOfAsyncNetManager(m_server->baseApi() + text), target);
}

void TestRequestUrl::addressesThatWouldChangeAreNotSent_data()
{
    QTest::addColumn<QString>("url");

    QTest::newRow("empty") << QString();
    QTest::newRow("no base address") << "document-service/documents/abc";
    QTest::newRow("a file") << "file:///etc/hostname";
    QTest::newRow("data") << "data:application/json,{}";
    QTest::newRow("no host") << "http:///documents";
    QTest::newRow("no port number") << "http://127.0.0.1:port/documents";
    QTest::newRow("hash in the host") << "http://127.0.0.1#/documents";
    QTest::newRow("a dot segment") << "%1documents/./records";
    QTest::newRow("two dots") << "%1documents/../records";
    QTest::newRow("two dots at the end") << "%1documents/..?expand=true";
}

void TestRequestUrl::addressesThatWouldChangeAreNotSent()
{
    QFETCH(QString, url);

    NetworkEventLoop loop(NetworkManager::instance()->deleteResource(
        url.replace(QLatin1String("%1"), m_server->baseApi())));
    loop.exec();
    QVERIFY(!loop.isSuccessful());
    QCOMPARE(loop.error(), QNetworkReply::ProtocolUnknownError);
    QCOMPARE(m_server->requests().size(), 0);
}

void TestRequestUrl::encodingTakesLinearTime()
{
    // Each object lacks its end: a search for each one to the end of the text would take minutes.
    const QString text = QString("where={\"&").repeated(200000);
    QElapsedTimer timer;
    timer.start();
    delete NetworkManager::instance()->get(QString("http://127.0.0.1:1/d?") + text);
    QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
}

QTEST_GUILESS_MAIN(TestRequestUrl)

#include "tst_request_url.moc"
