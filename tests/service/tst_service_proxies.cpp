#include <service/ServiceWorld.h>

#include <QFile>
#include <QTest>

Q_DECLARE_METATYPE(HttpClient::Headers)

//! What the service believes of the headers of proxies, and the path that it is served below.
class TestServiceProxies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void trustedProxiesTellWhoAsks_data();
    void trustedProxiesTellWhoAsks();
    void everythingIsBelowThePrefix();
    void sharesHaveThePrefix();
    void withoutUsersOthersAreRefused();
    void optionsAreChecked_data();
    void optionsAreChecked();

private:
    //! The address of a new share of a document.
    static QString shareUrl(ServiceWorld &world, const HttpClient::Headers &headers);
};

QString TestServiceProxies::shareUrl(ServiceWorld &world, const HttpClient::Headers &headers)
{
    const QString id = world.makeFolder("shared");
    const QByteArray body =
        "{\"hostId\":\"p1\",\"documentIds\":[\"" + id.toUtf8() + "\"],\"allowDownload\":true}";
    return world.client.send("POST", "document-service/documents/shares", body, headers)
        .object()
        .value("url")
        .toString();
}

void TestServiceProxies::trustedProxiesTellWhoAsks_data()
{
    using Headers = HttpClient::Headers;
    QTest::addColumn<QString>("trusted");
    QTest::addColumn<Headers>("headers");
    QTest::addColumn<QString>("client"); // empty for the peer
    QTest::addColumn<QString>("base"); // empty for its own
    const QString self = "127.0.0.1";
    const auto row = [](const char *name, const QString &trusted, const Headers &headers,
                        const QString &client, const QString &base) {
        QTest::newRow(name) << trusted << headers << client << base;
    };
    const Headers older{{"X-Forwarded-For", "127.3.0.1"},
                        {"X-Forwarded-Proto", "https"},
                        {"X-Forwarded-Host", "localhost"},
                        {"X-Forwarded-Prefix", "/docs/"}};
    row("nobody", "10.0.0.0/8", older, {}, {});
    row("older headers", self, older, "127.3.0.1", "https://localhost/docs");
    row("a network", "127.0.0.0/31", older, "127.3.0.1", "https://localhost/docs");
    row("another network", "127.0.0.0/32", older, {}, {});
    row("all of IPv6 is another network", "2001:db8::/32", older, {}, {});
    row("what the client says comes first", self,
        {{"X-Forwarded-For", "10.9.9.9, 127.3.0.1"}, {"X-Forwarded-Host", "evil, localhost"}},
        "127.3.0.1", "http://localhost");
    row("several proxies", "127.0.0.0/24",
        {{"X-Forwarded-For", "10.9.9.9, 127.3.0.1, 127.0.0.7"},
         {"X-Forwarded-Proto", "http, https, http"}},
        "127.3.0.1", {});
    row("Forwarded", self,
        {{"Forwarded",
          "for=10.9.9.9;host=evil, For=\"[::1]:4711\";Proto=https;host=\"localhost:8443\""},
         {"X-Forwarded-For", "10.9.9.9"}},
        "[::1]:4711", "https://localhost:8443");
    row("a made-up scheme", self, {{"Forwarded", "for=127.3.0.1;proto=javascript;host=\"a/b\""}},
        "127.3.0.1", {});
    row("a made-up prefix", self,
        {{"X-Forwarded-For", "127.3.0.1"}, {"X-Forwarded-Prefix", "//evil"}}, "127.3.0.1", {});
}

void TestServiceProxies::trustedProxiesTellWhoAsks()
{
    QFETCH(QString, trusted);
    QFETCH(HttpClient::Headers, headers);
    QFETCH(QString, client);
    QFETCH(QString, base);
    const QTemporaryDir folder;
    ServiceOptions options;
    options.accessLog = folder.filePath("log");
    QVERIFY(options.addTrustedProxy(trusted));
    ServiceWorld world(options);
    const QString url = shareUrl(world, headers);
    const QString own = world.service->baseApi().chopped(1);
    if (base.isEmpty() && headers.value("X-Forwarded-Proto").contains("https") && !client.isEmpty())
        base = QString(own).replace("http:", "https:");
    QVERIFY2(url.startsWith((base.isEmpty() ? own : base) + "/share/"), qPrintable(url));
    world.service->stop();
    QFile log(options.accessLog);
    QVERIFY(log.open(QIODevice::ReadOnly));
    const QString line = QString::fromUtf8(log.readAll()).section('\n', -2, -2);
    const QString logged = line.section(' ', 1, 1);
    if (client.isEmpty())
        QVERIFY2(logged.startsWith("127.0.0.1:"), qPrintable(line));
    else
        QCOMPARE(logged, client);
}

void TestServiceProxies::everythingIsBelowThePrefix()
{
    ServiceOptions options;
    QVERIFY(options.setPathPrefix("/a/b/"));
    ServiceWorld world(options);
    QVERIFY(world.service->baseApi().endsWith("/a/b/"));
    QCOMPARE(world.client.get("base-service/me").status, 200);
    QCOMPARE(world.client.get("health/ready").status, 200);
    HttpClient outside(QString("http://127.0.0.1:%1/").arg(world.service->port()));
    for (const char *path : {"base-service/me", "health", "a/base-service/me", "a/b",
                             "x/y/base-service/me", "a/y/base-service/me", "x/y/health"})
        QCOMPARE(outside.get(path).status, 404);
}

void TestServiceProxies::sharesHaveThePrefix()
{
    ServiceOptions options;
    QVERIFY(options.setPathPrefix("/a"));
    QVERIFY(options.addTrustedProxy("127.0.0.1"));
    ServiceWorld world(options);
    const HttpClient::Headers headers{{"X-Forwarded-Prefix", "/outer"}};
    const QString url = shareUrl(world, headers);
    const QString path = url.section("/share/", 0, 0);
    QCOMPARE(path, QString("http://127.0.0.1:%1/outer/a").arg(world.service->port()));
    const QString code = url.section('/', -1);
    const HttpAnswer page = world.client.send("GET", "share/" + code, {}, headers);
    QVERIFY2(page.body.contains("href=\"/outer/a/share/" + code.toUtf8()), page.body.constData());
}

void TestServiceProxies::withoutUsersOthersAreRefused()
{
    ServiceOptions options;
    QVERIFY(options.addTrustedProxy("127.0.0.1"));
    ServiceWorld world(options);
    QCOMPARE(
        world.client.send("GET", "base-service/me", {}, {{"X-Forwarded-For", "10.1.1.1"}}).status,
        403);
    QCOMPARE(
        world.client
            .send("GET", "base-service/me", {}, {{"X-Forwarded-Host", "documents.example.com"}})
            .status,
        403);
    QCOMPARE(world.client.send("GET", "metrics", {}, {{"X-Forwarded-For", "10.1.1.1"}}).status,
             401);
    QCOMPARE(world.client.send("GET", "metrics", {}, {{"X-Forwarded-For", "127.2.0.1"}}).status,
             200);
}

void TestServiceProxies::optionsAreChecked_data()
{
    QTest::addColumn<QString>("proxy");
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<bool>("isValid");
    QTest::newRow("addresses") << "10.0.0.0/8"
                               << "/a/b_c" << true;
    QTest::newRow("IPv6") << "2001:db8::/32"
                          << "" << true;
    QTest::newRow("a name") << "localhost"
                            << "a" << false;
    QTest::newRow("too many bits") << "10.0.0.0/33"
                                   << "//a" << false;
    QTest::newRow("no bits") << "10.0.0.0/"
                             << "/a//b" << false;
    QTest::newRow("nothing") << ""
                             << "/a b" << false;
}

void TestServiceProxies::optionsAreChecked()
{
    QFETCH(QString, proxy);
    QFETCH(QString, prefix);
    QFETCH(bool, isValid);
    ServiceOptions options;
    QCOMPARE(options.addTrustedProxy(proxy), isValid);
    QCOMPARE(options.setPathPrefix(prefix), isValid);
}

QTEST_GUILESS_MAIN(TestServiceProxies)
#include "tst_service_proxies.moc"
