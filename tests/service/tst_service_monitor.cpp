#include <service/RawClient.h>
#include <service/ServiceWorld.h>
#include <support/ServiceProcess.h>
#include <support/TestDatabase.h>

#include <QFile>
#include <QTest>

#include <csignal>

//! What balancers and monitoring ask.
class TestServiceMonitor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void healthNeedsNoToken();
    void readinessTellsWhetherTheDatabaseAnswers();
    void metricsCountWhatWasDone();
    void metricsAreNotForEveryone_data();
    void metricsAreNotForEveryone();
    void aSweepIsCounted();
    void aStoppingServiceSaysSoFirst();
    void aSecondSignalEndsAtOnce();
    void aRequestThatIsArrivingIsFinished();

private:
    //! The value of a series of the metrics; -1 if there is none.
    static double metric(HttpClient &client, const QByteArray &series);
};

double TestServiceMonitor::metric(HttpClient &client, const QByteArray &series)
{
    const QList<QByteArray> lines = client.get("metrics").body.split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(series + ' '))
            return line.mid(series.size() + 1).toDouble();
    }
    return -1;
}

void TestServiceMonitor::healthNeedsNoToken()
{
    ServiceWorld world;
    world.addMember("anna", "owner");
    QCOMPARE(world.client.get("base-service/me").status, 401);
    for (const char *path : {"health", "health/ready"}) {
        const HttpAnswer answer = world.client.get(path);
        QCOMPARE(answer.status, 200);
        QCOMPARE(answer.object().value("status").toString(), QString("ok"));
        QCOMPARE(world.client.send("HEAD", path).status, 200);
    }
}

void TestServiceMonitor::readinessTellsWhetherTheDatabaseAnswers()
{
    ServiceWorld world;
    QVERIFY(world.runSql("ALTER TABLE store RENAME TO elsewhere"));
    QCOMPARE(world.client.get("health").status, 200);
    const HttpAnswer answer = world.client.get("health/ready");
    QCOMPARE(answer.status, 503);
    QVERIFY2(answer.errorText().contains("database"), answer.body.constData());
    QVERIFY(answer.headers.contains("retry-after"));
    QVERIFY(world.runSql("ALTER TABLE elsewhere RENAME TO store"));
    QCOMPARE(world.client.get("health/ready").status, 200);
}

void TestServiceMonitor::metricsCountWhatWasDone()
{
    ServiceWorld world;
    QVERIFY(!world.upload(QByteArray(1000, 'x')).isEmpty());
    QCOMPARE(world.client.get("base-service/files/none").status, 404);
    const HttpAnswer answer = world.client.get("metrics");
    QCOMPARE(answer.status, 200);
    QVERIFY(answer.headers.value("content-type").startsWith("text/plain; version=0.0.4"));
    QCOMPARE(metric(world.client, "vell_requests_total{method=\"POST\",status=\"2xx\"}"), 1.0);
    QCOMPARE(metric(world.client, "vell_requests_total{method=\"GET\",status=\"4xx\"}"), 1.0);
    QCOMPARE(metric(world.client, "vell_uploads_total"), 1.0);
    QVERIFY(metric(world.client, "vell_request_body_bytes_total") > 1000);
    QVERIFY(metric(world.client, "vell_response_body_bytes_total") > 1000);
    QCOMPARE(metric(world.client, "vell_open_connections"), 1.0);
    QVERIFY(metric(world.client, "vell_database_connections") >= 1);
    const double all = metric(world.client, "vell_request_duration_seconds_count");
    QCOMPARE(metric(world.client, "vell_request_duration_seconds_bucket{le=\"+Inf\"}"), all + 1);
    QVERIFY(all > 8);
}

void TestServiceMonitor::metricsAreNotForEveryone_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("status");
    QTest::newRow("this machine") << QByteArray() << QByteArray() << 200;
    QTest::newRow("through a proxy")
        << QByteArray("X-Forwarded-For") << QByteArray("10.1.1.1") << 401;
    QTest::newRow("wrong token") << QByteArray("Authorization") << QByteArray("Bearer no") << 200;
    QTest::newRow("page of another site")
        << QByteArray("Origin") << QByteArray("http://example.com") << 403;
}

void TestServiceMonitor::metricsAreNotForEveryone()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, value);
    QFETCH(int, status);
    ServiceOptions options;
    options.metricsToken = "secret";
    ServiceWorld world(options);
    HttpClient::Headers headers;
    if (!name.isEmpty())
        headers.insert(name, value);
    QCOMPARE(world.client.send("GET", "metrics", {}, headers).status, status);
    headers.insert("Authorization", "Bearer secret");
    QCOMPARE(world.client.send("GET", "metrics", {}, headers).status, 200);
}

void TestServiceMonitor::aSweepIsCounted()
{
    ServiceWorld world;
    QVERIFY(!world.upload("nobody needs this").isEmpty());
    QCOMPARE(metric(world.client, "vell_sweeps_total"), 0.0);
    QStringList sweep{"sweep", "--older-than", "0", "--data", world.dataDir()};
    const QString database = TestDatabase::addressFor(world.dataDir());
    if (!database.isEmpty())
        sweep += {"--database", database};
    QString output;
    QTest::qWait(5); // what is not older than nothing is kept
    QCOMPARE(ServiceProcess::run(sweep, &output), 0);
    QVERIFY2(output.contains("1 unused contents"), qPrintable(output));
    QCOMPARE(metric(world.client, "vell_sweeps_total"), 1.0);
    QCOMPARE(metric(world.client, "vell_sweep_contents_total"), 1.0);
    QVERIFY(metric(world.client, "vell_sweep_last_timestamp_seconds") > 1.6e9);
}

void TestServiceMonitor::aStoppingServiceSaysSoFirst()
{
    const QTemporaryDir folder;
    ServiceProcess service(folder.filePath("data"));
    QVERIFY(service.start({"--drain", "3"}));
    HttpClient client(service.baseApi());
    QCOMPARE(client.get("health/ready").status, 200);
    QCOMPARE(::kill(static_cast<pid_t>(service.processId()), SIGTERM), 0);
    QTRY_COMPARE(client.get("health/ready").status, 503);
    const HttpAnswer still = client.get("base-service/me");
    QCOMPARE(still.status, 200);
    QCOMPARE(still.headers.value("connection"), QByteArray("close"));
    QCOMPARE(client.get("health").status, 200);
    QTRY_COMPARE_WITH_TIMEOUT(client.get("health").status, 0, 10000);
    QCOMPARE(service.waitForEnd(), 0);
}

void TestServiceMonitor::aSecondSignalEndsAtOnce()
{
    const QTemporaryDir folder;
    ServiceProcess service(folder.filePath("data"));
    QVERIFY(service.start({"--drain", "3600"}));
    HttpClient client(service.baseApi());
    QCOMPARE(::kill(static_cast<pid_t>(service.processId()), SIGTERM), 0);
    QTRY_COMPARE(client.get("health/ready").status, 503);
    QCOMPARE(service.terminate(), 0);
}

void TestServiceMonitor::aRequestThatIsArrivingIsFinished()
{
    const QTemporaryDir folder;
    ServiceProcess service(folder.filePath("data"));
    QVERIFY(service.start({"--drain", "1"}));
    RawClient slow(service.port());
    const QByteArray body =
        "{\"parentId\":null,\"name\":\"a\",\"type\":\"dir\",\"category\":\"c\"}";
    const QByteArray request = RawClient::request("POST", "/document-service/projects/p1/documents",
                                                  "Content-Type: application/json\r\n", body);
    slow.send(request.left(request.size() - 10));
    HttpClient client(service.baseApi());
    QCOMPARE(::kill(static_cast<pid_t>(service.processId()), SIGTERM), 0);
    QTRY_COMPARE(client.get("health/ready").status, 503);
    // It does not listen any more, and waits for the rest.
    QTRY_COMPARE_WITH_TIMEOUT(client.get("health").status, 0, 10000);
    slow.send(request.right(10));
    QCOMPARE(slow.next().status, 200);
    QCOMPARE(service.waitForEnd(), 0);
}

QTEST_GUILESS_MAIN(TestServiceMonitor)
#include "tst_service_monitor.moc"
