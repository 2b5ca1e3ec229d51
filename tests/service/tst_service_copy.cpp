#include <service/ChunkSender.h>
#include <service/ServiceWorld.h>
#include <support/ServiceProcess.h>
#include <support/TestDatabase.h>

#include <QFile>
#include <QTest>

//! vell-service copy: from SQLite into PostgreSQL.
class TestServiceCopy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everythingIsThereAfterwards();
    void aFailureLeavesNothing();
    void aRunningServiceIsNotCopied();

private:
    int copy(const QString &data, QString *output) const
    {
        return ServiceProcess::run({"copy", "--from", data, "--to", m_database}, output);
    }

    QTemporaryDir m_place; // stands for the database
    QString m_database;
};

//! Each test has a database of its own; the services of the source have SQLite.
void TestServiceCopy::initTestCase()
{
    QVERIFY(TestDatabase::isPostgres());
}

void TestServiceCopy::everythingIsThereAfterwards()
{
    m_database = TestDatabase::addressFor(m_place.filePath("first"));
    const QTemporaryDir folder;
    ServiceOptions options;
    options.dataDir = folder.filePath("data");
    const ChunkSender half(2 * ChunkSender::ChunkBytes);
    QString id;
    QString token;
    QString code;
    QByteArray list;
    const QString documents = ServiceWorld::projectPath("documents");
    {
        ReferenceService service(options);
        QString error;
        QVERIFY2(service.start(&error), qUtf8Printable(error));
        QVERIFY(service.addProject("p1", "The \"first\" 项目"));
        token = service.addUser("anna");
        QVERIFY(service.setRole("p1", "anna", "owner"));
        HttpClient client(service.baseApi());
        client.setToken(token);
        const QString file = client.postForm("base-service/files", {{"file/a", "a's content"}})
                                 .object()
                                 .value("files")
                                 .toArray()
                                 .at(0)
                                 .toString();
        const QJsonArray links{QJsonObject{{"kind", "pipe"}, {"ids", QJsonArray{"g1", "g2"}}}};
        id = client
                 .post(documents,
                       {{"parentId", QJsonValue()},
                        {"name", "a ' \" 图"},
                        {"type", "file"},
                        {"file", file},
                        {"links", links}})
                 .object()
                 .value("_id")
                 .toString();
        QVERIFY(!id.isEmpty());
        QVERIFY(
            client.put(ServiceWorld::documentPath(id, "/records"), {{"type", 3}, {"value", true}})
                .isSuccess());
        code = client
                   .post("document-service/documents/shares",
                         {{"hostId", "p1"}, {"documentIds", QJsonArray{id}}})
                   .object()
                   .value("code")
                   .toString();
        QCOMPARE(half.send(client, 0).status, 200);
        list = client.get(documents, {{"linkedEntity", "true"}}).body;
    }
    QString output;
    QCOMPARE(copy(options.dataDir, &output), 0);
    QVERIFY2(output.contains("document: 1 rows")
                 && output.contains("1 contents compared with their MD5, 0 damaged"),
             qPrintable(output));
    QVERIFY(!QFile::exists(options.dataDir + "/records.sqlite"));

    options.database = m_database;
    ReferenceService service(options);
    QString error;
    QVERIFY2(service.start(&error), qUtf8Printable(error));
    HttpClient client(service.baseApi());
    client.setToken(token);
    QCOMPARE(client.get(documents, {{"linkedEntity", "true"}}).body, list);
    QCOMPARE(client.get("share/" + code).status, 200);
    QCOMPARE(counters(half.send(client, 1)), QString("2/2"));
    QCOMPARE(client.get(ServiceWorld::documentPath(id, "/histories")).array().size(), 1);
    service.stop();
    // Without the database's address the old records are not continued.
    options.database.clear();
    ReferenceService old(options);
    QVERIFY(!old.start(&error));
    QVERIFY2(error.contains("older than the contents"), qUtf8Printable(error));
    // Once is enough.
    QVERIFY(QFile::remove(options.dataDir + "/records.sqlite"));
    QVERIFY(QFile::rename(options.dataDir + "/records.moved.sqlite",
                          options.dataDir + "/records.sqlite"));
    QCOMPARE(copy(options.dataDir, &output), 1);
    QVERIFY2(output.contains("has records already"), qPrintable(output));
    QVERIFY(QFile::exists(options.dataDir + "/records.sqlite"));
}

void TestServiceCopy::aFailureLeavesNothing()
{
    const QString target = m_place.filePath("second");
    m_database = TestDatabase::addressFor(target);
    const QTemporaryDir folder;
    ServiceOptions options;
    options.dataDir = folder.filePath("data");
    {
        ReferenceService service(options);
        QString error;
        QVERIFY2(service.start(&error), qUtf8Printable(error));
        HttpClient client(service.baseApi());
        QVERIFY(client
                    .post(ServiceWorld::projectPath("documents"),
                          {{"parentId", QJsonValue()}, {"name", "a"}, {"type", "dir"}})
                    .isSuccess());
        ServiceOptions empty;
        empty.dataDir = target;
        empty.database = m_database;
        QVERIFY2(ReferenceService(empty).start(&error), qUtf8Printable(error));
    }
    bool isDone = false;
    TestDatabase::run(target,
                      "CREATE FUNCTION change() RETURNS trigger LANGUAGE plpgsql AS "
                      "'BEGIN NEW.name = ''another''; RETURN NEW; END'; CREATE TRIGGER change "
                      "BEFORE INSERT ON document FOR EACH ROW EXECUTE FUNCTION change()",
                      &isDone);
    QVERIFY(isDone);
    QString output;
    QCOMPARE(copy(options.dataDir, &output), 1);
    QVERIFY2(output.contains("was not copied as it is"), qPrintable(output));
    QCOMPARE(TestDatabase::run(
                 target, "SELECT (SELECT count(*) FROM document) + (SELECT count(*) FROM project)",
                 &isDone),
             QString("0"));
    ReferenceService again(options);
    QString error;
    QVERIFY2(again.start(&error), qUtf8Printable(error));
}

void TestServiceCopy::aRunningServiceIsNotCopied()
{
    m_database = TestDatabase::addressFor(m_place.filePath("third"));
    const QTemporaryDir folder;
    ServiceOptions options;
    options.dataDir = folder.filePath("data");
    ReferenceService service(options);
    QString error;
    QVERIFY2(service.start(&error), qUtf8Printable(error));
    QString output;
    QCOMPARE(copy(options.dataDir, &output), 1);
    QVERIFY2(output.contains("stop it first"), qPrintable(output));
}

QTEST_GUILESS_MAIN(TestServiceCopy)
#include "tst_service_copy.moc"
