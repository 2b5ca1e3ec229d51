#include <service/ChunkSender.h>
#include <service/ServiceWorld.h>
#include <service/storage/ContentHash.h>

#include <QDir>
#include <QFile>
#include <QIODevice>
#include <QJsonObject>
#include <QJsonValue>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringLiteral>
#include <QTemporaryDir>
#include <QTest>

//! The schema and how a database file gets it.
class TestServiceMigrations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewFolderGetsTheWholeSchema();
    void aFileOfANewerVersionIsRefused();
    void aFileThatIsNoDatabaseIsRefused();
    void aBrokenMigrationLeavesNothing();
    void aFolderOfTheFirstVersionKeepsEverything();

private:
    //! A data folder as the first version left it: a document, and an upload of \a upload with one chunk.
    static void makeFirstVersion(const QString &folder, const ChunkSender &upload);

    //! Runs statements on the records of a stopped service; the first value of the last one's result.
    static QVariant run(const QString &file, const QStringList &statements)
    {
        QVariant result;
        {
            QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "test");
            database.setDatabaseName(file);
            if (!database.open())
                return result;
            QSqlQuery query(database);
            for (const QString &statement : statements) {
                if (!query.exec(statement))
                    qWarning("%s", qUtf8Printable(query.lastError().text()));
            }
            if (query.next())
                result = query.value(0);
        }
        QSqlDatabase::removeDatabase("test");
        return result;
    }
    static bool startOn(const QString &folder, QString *error)
    {
        ServiceOptions options;
        options.dataDir = folder;
        ReferenceService service(options);
        return service.start(error);
    }
};

void TestServiceMigrations::aNewFolderGetsTheWholeSchema()
{
    QTemporaryDir folder;
    QString error;
    QVERIFY2(startOn(folder.path(), &error), qUtf8Printable(error));
    const QString file = folder.filePath("records.sqlite");
    QCOMPARE(run(file, {"PRAGMA user_version"}).toInt(), 3);
    QCOMPARE(run(file, {"PRAGMA journal_mode"}).toString(), QString("wal"));
    QCOMPARE(run(file, {"SELECT name FROM user"}).toString(), QString("local"));
    QVERIFY2(startOn(folder.path(), &error), qUtf8Printable(error));
}

void TestServiceMigrations::aFileOfANewerVersionIsRefused()
{
    QTemporaryDir folder;
    const QString file = folder.filePath("records.sqlite");
    run(file, {"PRAGMA user_version = 99"});
    QString error;
    QVERIFY(!startOn(folder.path(), &error));
    QVERIFY2(error.contains("newer version"), qUtf8Printable(error));
    QCOMPARE(run(file, {"PRAGMA user_version"}).toInt(), 99);
}

void TestServiceMigrations::aFileThatIsNoDatabaseIsRefused()
{
    QTemporaryDir folder;
    QFile file(folder.filePath("records.sqlite"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(10000, 'x'));
    file.close();
    QString error;
    QVERIFY(!startOn(folder.path(), &error));
    QVERIFY2(error.contains("cannot be used"), qUtf8Printable(error));
}

void TestServiceMigrations::aBrokenMigrationLeavesNothing()
{
    QTemporaryDir folder;
    const QString file = folder.filePath("records.sqlite");
    // A table that the first migration makes late is in its way.
    run(file, {"CREATE TABLE share_document (x)"});
    QString error;
    QVERIFY(!startOn(folder.path(), &error));
    QCOMPARE(run(file, {"PRAGMA user_version"}).toInt(), 0);
    QCOMPARE(run(file, {"SELECT count(*) FROM sqlite_master"}).toInt(), 1);
    run(file, {"DROP TABLE share_document"});
    QVERIFY2(startOn(folder.path(), &error), qUtf8Printable(error));
}

void TestServiceMigrations::makeFirstVersion(const QString &folder, const ChunkSender &upload)
{
    QFile script(QStringLiteral(VELL_SERVICE_MIGRATIONS "/sqlite/001.sql"));
    QVERIFY(script.open(QIODevice::ReadOnly));
    QStringList statements = QString::fromUtf8(script.readAll()).split(";\n", Qt::SkipEmptyParts);
    // Of the SHA-256, which follows, the first version knew nothing.
    constexpr int Md5StateBytes = 92;
    service::ContentHash hash;
    hash.add(upload.content().constData(), ChunkSender::ChunkBytes);
    const QString state = QString::fromLatin1(hash.state().left(Md5StateBytes).toHex());
    const QString md5 = "b1946ac92492d2347c6235b4d2611184"; // of "hello\n"
    statements += QStringList{
        "INSERT INTO project VALUES ('p1', 'p1', 1)",
        QString("INSERT INTO file VALUES ('f1', '%1', 6, 'a.txt', 1)").arg(md5),
        "INSERT INTO file_uploader VALUES ('f1', 'local')",
        "INSERT INTO document (id, project_id, type, name, file_id, size, "
        "created_at, created_by, updated_at, updated_by) "
        "VALUES ('d1', 'p1', 'file', 'a.txt', 'f1', 6, 1, 'local', 1, 'local')",
        "INSERT INTO version VALUES ('v1', 'd1', 1, 'f1', 'a.txt', 'the first', 1, "
        "'local', 1)",
        "INSERT INTO mark VALUES ('local', 'd1', 3, 1)",
        QString("INSERT INTO large_file VALUES ('u1', '%1', 'b.bin', %2, 2, 1, x'%3', 1, "
                "'local', 1)")
            .arg(upload.md5())
            .arg(upload.content().size())
            .arg(state),
        "PRAGMA user_version = 1"};
    run(folder + "/records.sqlite", statements);
    const QString content = folder + "/content/b1/94";
    QVERIFY(QDir().mkpath(content) && QDir().mkpath(folder + "/parts"));
    QFile hello(content + QLatin1Char('/') + md5);
    QVERIFY(hello.open(QIODevice::WriteOnly));
    hello.write("hello\n");
    QFile part(folder + QString("/parts/") + upload.md5());
    QVERIFY(part.open(QIODevice::WriteOnly));
    part.write(upload.chunk(0));
}

void TestServiceMigrations::aFolderOfTheFirstVersionKeepsEverything()
{
    QTemporaryDir folder;
    const ChunkSender upload(2 * ChunkSender::ChunkBytes);
    makeFirstVersion(folder.path(), upload);
    if (QTest::currentTestFailed())
        return;
    ServiceOptions options;
    options.dataDir = folder.path();
    {
        ReferenceService service(options);
        QString error;
        QVERIFY2(service.start(&error), qUtf8Printable(error));
        HttpClient client(service.baseApi());
        const QJsonObject document = client.get(ServiceWorld::documentPath("d1")).object();
        QCOMPARE(document.value("name").toString(), QString("a.txt"));
        QCOMPARE(document.value("favorite"), QJsonValue(true));
        QCOMPARE(client.get("base-service/files/f1").body, QByteArray("hello\n"));
        QCOMPARE(counters(upload.record(client)), QString("1/2"));
        const HttpAnswer last = upload.send(client, 1);
        QCOMPARE(counters(last), QString("2/2"));
        const QString fileId = last.object().value("fsFileId").toString();
        QVERIFY(client.get(QString("base-service/files/") + fileId).body == upload.content());
    }
    const QString records = folder.filePath("records.sqlite");
    QVERIFY(!run(records, {"PRAGMA foreign_key_check"}).isValid());
    QCOMPARE(run(records, {"SELECT remark FROM version"}).toString(), QString("the first"));
    const QString before = folder.filePath("records.before-2.sqlite");
    QCOMPARE(run(before, {"PRAGMA user_version"}).toInt(), 1);
    QCOMPARE(run(before, {"SELECT saved_chunk FROM large_file"}).toInt(), 1);
}

QTEST_GUILESS_MAIN(TestServiceMigrations)
#include "tst_service_migrations.moc"
