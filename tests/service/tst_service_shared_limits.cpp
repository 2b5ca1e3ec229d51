#include <service/ChunkSender.h>
#include <service/SharedWorld.h>
#include <service/records/Files.h>
#include <service/records/LargeFiles.h>
#include <service/storage/DataFolder.h>
#include <service/storage/Database.h>
#include <support/ServiceProcess.h>
#include <support/TestDatabase.h>

#include <QDateTime>
#include <QDir>
#include <QTest>

#include <atomic>
#include <thread>

//! What several services on one database count, measure and wait for together.
class TestServiceSharedLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void servicesStartTogetherOnANewDatabase();
    void quotaIsThatOfAllServices();
    void quotaCountsPartsAndWhatIsRemoved();
    void aChunkIsCountedOnce();
    void aSweptContentIsNotPromised();
    void timesAreThoseOfTheDatabase();
    void foldersOfDeadProcessesAreRemoved();
    void fewConnectionsServeManyClients();
    void noFreeConnectionIsSaid();
    void aBusyDatabaseIsSaid();
    void aSlowSearchIsNotBlamedOnAPattern();
    void nulIsRefused_data();
    void nulIsRefused();
    void anOlderServiceWorksWithTheNextSchema();

private:
    //! Lets every statement that reads \a table take so long.
    static bool slowDown(const ServiceWorld &world, const QString &table, int seconds);
};

bool TestServiceSharedLimits::slowDown(const ServiceWorld &world, const QString &table, int seconds)
{
    return world.runSql(QString("ALTER TABLE %1 RENAME TO %1_fast; CREATE VIEW %1 AS "
                                "SELECT f.* FROM pg_sleep(%2) AS pause, %1_fast f")
                            .arg(table)
                            .arg(seconds));
}

void TestServiceSharedLimits::servicesStartTogetherOnANewDatabase()
{
    const QTemporaryDir folder;
    ServiceOptions options;
    options.dataDir = folder.filePath("data");
    options.database = TestDatabase::addressFor(options.dataDir);
    std::vector<std::unique_ptr<ReferenceService>> services;
    std::vector<QString> errors(6);
    std::vector<std::thread> threads;
    for (QString &error : errors) {
        services.push_back(std::make_unique<ReferenceService>(options));
        threads.emplace_back([&error, service = services.back().get()] { service->start(&error); });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (const QString &error : errors)
        QVERIFY2(error.isEmpty(), qUtf8Printable(error));
}

void TestServiceSharedLimits::quotaIsThatOfAllServices()
{
    constexpr int Size = 100'000;
    ServiceOptions options;
    options.storeQuotaBytes = 10 * Size + 1;
    SharedWorld world(options);
    QVERIFY(world.isStarted);
    std::atomic<int> stored{0};
    std::atomic<int> refused{0};
    world.onEachService([&](HttpClient &client, int service) {
        for (char i = 0; i < 6; ++i) {
            const QByteArray content(Size, char('a' + service * 6 + i));
            const int status = client.postForm("base-service/files", {{"file/a", content}}).status;
            stored += status == 200;
            refused += status == 507;
        }
    });
    QCOMPARE(stored.load(), 10);
    QCOMPARE(refused.load(), 8);
    QCOMPARE(world.first.sqlValue("SELECT used_bytes FROM store").toInt(), 10 * Size);
    QCOMPARE(world.first.sqlValue("SELECT sum(size) FROM file").toInt(), 10 * Size);
    // What was refused is not on the disk either.
    QString output;
    const int code = ServiceProcess::run({"sweep", "--older-than", "0", "--dry-run", "--data",
                                          world.first.dataDir(), "--database", world.database()},
                                         &output);
    QCOMPARE(code, 0);
    QVERIFY2(output.contains(" 0 unknown files"), qPrintable(output));
}

void TestServiceSharedLimits::quotaCountsPartsAndWhatIsRemoved()
{
    ServiceOptions options;
    options.storeQuotaBytes = 2 * ChunkSender::ChunkBytes + 10;
    SharedWorld world(options);
    const QString used = "SELECT used_bytes FROM store";
    const ChunkSender file(2 * ChunkSender::ChunkBytes + 5);
    QCOMPARE(file.send(world.client(0), 0).status, 200);
    QCOMPARE(world.first.sqlValue(used).toInt(), ChunkSender::ChunkBytes);
    const ChunkSender other(ChunkSender::ChunkBytes + 100, 1);
    QCOMPARE(other.send(world.client(1), 0).status, 200);
    QTRY_COMPARE(file.send(world.client(2), 1).status, 507);
    QCOMPARE(counters(file.record(world.client(2))), QString("1/3"));
    const QString id = other.record(world.client(0)).object().value("_id").toString();
    QVERIFY(world.client(0).remove("base-service/largefiles/" + id).isSuccess());
    QTRY_VERIFY(file.sendAll(world.client(2)).isSuccess());
    QCOMPARE(world.first.sqlValue(used).toInt(), file.content().size());
}

void TestServiceSharedLimits::aChunkIsCountedOnce()
{
    SharedWorld world;
    service::Database database(service::DataFolder(world.first.dataDir()), world.database());
    service::LargeFiles uploads(database);
    service::LargeFile upload;
    upload.md5 = QString(32, 'a');
    upload.fileName = "a";
    upload.fileSize = 3 * service::LargeFile::ChunkBytes;
    uploads.insert(upload, "local");
    service::LargeFile same = upload; // as another service has read it
    upload.savedChunk = 1;
    upload.hashState = "first";
    same.savedChunk = 1;
    same.hashState = "second";
    QVERIFY(uploads.setSaved(upload, 0));
    QVERIFY(!uploads.setSaved(same, 0));
    QCOMPARE(uploads.find(upload.id)->hashState, QByteArray("first"));
}

void TestServiceSharedLimits::aSweptContentIsNotPromised()
{
    SharedWorld world;
    const QString id = world.first.upload("swept");
    service::Database database(service::DataFolder(world.first.dataDir()), world.database());
    service::Files files(database);
    const auto file = files.find(id);
    QVERIFY(file && files.notePromise(*file));
    QVERIFY(world.first.runSql("DELETE FROM file"));
    QVERIFY(!files.notePromise(*file));
}

void TestServiceSharedLimits::timesAreThoseOfTheDatabase()
{
    ServiceWorld world;
    QVERIFY(world.runSql(
        "CREATE SCHEMA shifted; CREATE FUNCTION shifted.clock_timestamp() RETURNS timestamptz "
        "LANGUAGE sql AS 'SELECT pg_catalog.clock_timestamp() + interval ''10 days''';"
        "DO 'BEGIN EXECUTE format(''ALTER DATABASE %I SET search_path = shifted, public, "
        "pg_catalog'', "
        "current_database()); END'"));
    QVERIFY(world.restart());
    const QString id = world.makeFolder("a");
    const auto created =
        QDateTime::fromString(world.document(id).value("createdAt").toString(), Qt::ISODateWithMs);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    QVERIFY2(created > now.addDays(9) && created < now.addDays(11), qPrintable(created.toString()));
    // Over by the clock of the database, though not by that of the service.
    const QJsonObject share{{"hostId", "p1"},
                            {"documentIds", QJsonArray{id}},
                            {"expiredAt", now.addDays(5).toString(Qt::ISODateWithMs)}};
    QCOMPARE(world.client.post("document-service/documents/shares", share).status, 400);
}

void TestServiceSharedLimits::foldersOfDeadProcessesAreRemoved()
{
    const QTemporaryDir folder;
    const auto folders = [&folder] {
        return QDir(folder.filePath("data/tmp")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    };
    ServiceProcess first(folder.filePath("data"));
    QVERIFY(first.start());
    const QStringList ofFirst = folders();
    QCOMPARE(ofFirst.size(), 1);
    QFile half(folder.filePath("data/tmp/" + ofFirst.constFirst() + "/half"));
    QVERIFY(half.open(QIODevice::WriteOnly));
    ServiceProcess second(folder.filePath("data"));
    QVERIFY(second.start());
    QCOMPARE(folders().size(), 2);
    QVERIFY(half.exists());
    first.kill();
    ServiceProcess third(folder.filePath("data"));
    QVERIFY(third.start());
    QVERIFY(!half.exists());
    QCOMPARE(folders().size(), 2);
    QCOMPARE(third.terminate(), 0);
    QCOMPARE(folders().size(), 1);
}

void TestServiceSharedLimits::fewConnectionsServeManyClients()
{
    ServiceOptions options;
    options.databaseConnections = 2;
    ServiceWorld world(options);
    std::atomic<int> failed{0};
    std::vector<std::thread> clients;
    for (int i = 0; i < 12; ++i) {
        clients.emplace_back([&, i] {
            HttpClient client(world.service->baseApi());
            for (int n = 0; n < 20; ++n) {
                const QJsonObject body{{"parentId", QJsonValue()},
                                       {"name", QString("%1 %2").arg(i).arg(n)},
                                       {"type", "dir"}};
                failed += !client.post(ServiceWorld::projectPath("documents"), body).isSuccess();
            }
        });
    }
    for (std::thread &client : clients)
        client.join();
    QCOMPARE(failed.load(), 0);
    const QString connections = "SELECT count(*) FROM pg_stat_activity WHERE application_name = "
                                "'vell-service' AND datname = current_database()";
    QCOMPARE(world.sqlValue(connections).toInt(), 2);
}

void TestServiceSharedLimits::noFreeConnectionIsSaid()
{
    ServiceOptions options;
    options.databaseConnections = 1;
    options.busyTimeoutMs = 300;
    ServiceWorld world(options);
    QVERIFY(!world.makeFolder("a").isEmpty());
    QVERIFY(slowDown(world, "document", 2));
    std::thread slow([&world] {
        HttpClient client(world.service->baseApi());
        client.get(ServiceWorld::projectPath("documents"));
    });
    HttpAnswer answer;
    const bool isRefused = QTest::qWaitFor(
        [&] { return (answer = world.client.get("base-service/me")).status == 503; }, 10000);
    slow.join();
    QVERIFY(isRefused);
    QVERIFY2(answer.errorText().contains("connections"), answer.body.constData());
    QVERIFY(answer.headers.contains("retry-after"));
    QCOMPARE(world.client.get("base-service/me").status, 200);
}

void TestServiceSharedLimits::aBusyDatabaseIsSaid()
{
    ServiceOptions options;
    options.busyTimeoutMs = 300;
    ServiceWorld world(options);
    const QString folder = world.makeFolder("a");
    std::thread other(
        [&world] { world.runSql("SELECT pg_advisory_lock(1986358380); SELECT pg_sleep(4)"); });
    // Not by its lock: the service itself takes it now and then.
    const QString held = "SELECT count(*) FROM pg_stat_activity WHERE wait_event = 'PgSleep'";
    const bool isHeld = QTest::qWaitFor([&] { return world.sqlValue(held).toInt() == 1; }, 3000);
    const HttpAnswer answer = world.client.put(ServiceWorld::documentPath(folder), {{"name", "b"}});
    const QString name = world.document(folder).value("name").toString();
    other.join();
    QVERIFY(isHeld);
    QCOMPARE(answer.status, 503);
    QVERIFY(answer.headers.contains("retry-after"));
    QCOMPARE(name, QString("a"));
    QVERIFY(world.client.put(ServiceWorld::documentPath(folder), {{"name", "b"}}).isSuccess());
}

void TestServiceSharedLimits::aSlowSearchIsNotBlamedOnAPattern()
{
    SharedWorld world;
    QVERIFY(!world.first.makeFolder("a").isEmpty());
    QVERIFY(slowDown(world.first, "document", 12));
    HttpAnswer plain;
    HttpAnswer pattern;
    world.onEachService([&](HttpClient &client, int service) {
        const QString list = ServiceWorld::projectPath("documents");
        if (service == 0)
            plain = client.get(list, {{"where", "{\"name\":\"a\"}"}});
        else if (service == 1)
            pattern = client.get(list, {{"where", "{\"name\":{\"$regex\":\"a\"}}"}});
    });
    QCOMPARE(plain.status, 503);
    QVERIFY2(plain.errorText().contains("too long"), plain.body.constData());
    QVERIFY(!plain.errorText().contains("expression"));
    QCOMPARE(pattern.status, 400);
    QVERIFY2(pattern.errorText().contains("expression"), pattern.body.constData());
}

void TestServiceSharedLimits::nulIsRefused_data()
{
    QTest::addColumn<QByteArray>("where");
    QTest::newRow("equal") << QByteArray(R"({"name":"a\u0000b"})");
    QTest::newRow("one of") << QByteArray(R"({"name":{"$in":["a\u0000b"]}})");
    QTest::newRow("pattern") << QByteArray(R"({"name":{"$regex":"a\u0000b"}})");
}

void TestServiceSharedLimits::nulIsRefused()
{
    QFETCH(QByteArray, where);
    ServiceWorld world;
    const HttpAnswer answer =
        world.client.get(ServiceWorld::projectPath("documents"), {{"where", where}});
    QCOMPARE(answer.status, 400);
    QVERIFY2(answer.errorText().contains("NUL"), answer.body.constData());
    QCOMPARE(world.client.get("base-service/me").status, 200);
}

void TestServiceSharedLimits::anOlderServiceWorksWithTheNextSchema()
{
    SharedWorld world;
    const QString folder = world.first.makeFolder("a");
    const ChunkSender file(ChunkSender::ChunkBytes + 5);
    QCOMPARE(file.send(world.client(0), 0).status, 200);
    // What a next migration may do: add columns with a default, tables, indexes and triggers.
    QVERIFY(world.first.runSql(
        "BEGIN; ALTER TABLE document ADD COLUMN colour text NOT NULL DEFAULT 'none';"
        "ALTER TABLE file ADD COLUMN checked_at bigint NOT NULL DEFAULT 0;"
        "ALTER TABLE large_file ADD COLUMN note text;"
        "CREATE TABLE label (id text PRIMARY KEY, document_id text REFERENCES document (id) ON "
        "DELETE CASCADE);"
        "CREATE INDEX document_colour ON document (project_id, colour);"
        "INSERT INTO schema_version (version) SELECT max(version) + 1 FROM schema_version; "
        "COMMIT"));
    for (int i = 0; i < SharedWorld::Services; ++i) {
        HttpClient &client = world.client(i);
        const QJsonObject change{{"name", QString("b%1").arg(i)}};
        QVERIFY(client.put(ServiceWorld::documentPath(folder), change).isSuccess());
        const QJsonObject body{
            {"parentId", folder}, {"name", QString("c%1").arg(i)}, {"type", "dir"}};
        const HttpAnswer made = client.post(ServiceWorld::projectPath("documents"), body);
        QVERIFY2(made.isSuccess(), made.body.constData());
        QCOMPARE(client.get(ServiceWorld::projectPath("documents")).array().size(), i + 2);
    }
    QVERIFY(file.sendAll(world.client(1)).isSuccess());
    // What is started now must know the schema.
    ServiceOptions options;
    options.dataDir = world.first.dataDir();
    options.database = world.database();
    ReferenceService late(options);
    QString error;
    QVERIFY(!late.start(&error));
    QVERIFY2(error.contains("newer version"), qUtf8Printable(error));
}

QTEST_GUILESS_MAIN(TestServiceSharedLimits)
#include "tst_service_shared_limits.moc"
