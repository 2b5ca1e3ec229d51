#include <service/ServiceWorld.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QIODevice>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

//! Whole contents: up, stored once, down again.
class TestServiceFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSameContentIsStoredOnce();
    void contentsAreNamedByTheirMd5();
    void rangesAreServed_data();
    void rangesAreServed();
    void anUnchangedFileIsNotSentAgain();
    void aFileAbove4GiBHasItsLength();
    void onlyThoseWhoMayDownload();
    void anUploadNeedsARightSomewhere();
    void aFullStoreSaysSo();
    void leftoversOfACrashAreCleared();
};

namespace {

QString filePath(const QString &id)
{
    return QString("base-service/files/") + id;
}

int countFiles(const QString &folder)
{
    QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories);
    int count = 0;
    while (files.hasNext()) {
        files.next();
        ++count;
    }
    return count;
}

} // namespace

void TestServiceFiles::theSameContentIsStoredOnce()
{
    ServiceWorld world;
    const QString first = world.upload("same content", "a.txt");
    const QString second = world.upload("same content", "b.txt");
    const QString other = world.upload("other content");
    QCOMPARE(first, second);
    QVERIFY(first != other);
    QCOMPARE(countFiles(world.folder.path() + "/data/content"), 2);
    QCOMPARE(countFiles(world.folder.path() + "/data/tmp"), 0);
}

void TestServiceFiles::contentsAreNamedByTheirMd5()
{
    ServiceWorld world;
    const QByteArray content = "hello\n";
    const QString id = world.upload(content);
    const QString md5 = "b1946ac92492d2347c6235b4d2611184";
    QVERIFY(QFile::exists(world.folder.path() + QString("/data/content/b1/94/") + md5));
    const QString path = "base-service/md5/%1/info";
    QCOMPARE(world.client.get(path.arg(md5)).object().value("_id").toString(), id);
    QCOMPARE(world.client.get(path.arg(QString(md5).replace(0, 1, QLatin1Char('c')))).status, 404);
    QCOMPARE(world.client.get(path.arg("nonsense")).status, 404);
}

void TestServiceFiles::rangesAreServed_data()
{
    QTest::addColumn<QByteArray>("range");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("contentRange");
    QTest::newRow("first bytes") << QByteArray("bytes=0-3") << 206 << QByteArray("0123")
                                 << QByteArray("bytes 0-3/10");
    QTest::newRow("to the end") << QByteArray("bytes=7-") << 206 << QByteArray("789")
                                << QByteArray("bytes 7-9/10");
    QTest::newRow("last bytes") << QByteArray("bytes=-2") << 206 << QByteArray("89")
                                << QByteArray("bytes 8-9/10");
    QTest::newRow("past the end") << QByteArray("bytes=8-99") << 206 << QByteArray("89")
                                  << QByteArray("bytes 8-9/10");
    QTest::newRow("more than all from the end")
        << QByteArray("bytes=-99") << 206 << QByteArray("0123456789") << QByteArray("bytes 0-9/10");
    QTest::newRow("behind the end")
        << QByteArray("bytes=10-") << 416 << QByteArray() << QByteArray("bytes */10");
    QTest::newRow("another unit") << QByteArray("lines=1-2") << 200 << QByteArray("0123456789")
                                  << QByteArray();
    QTest::newRow("several") << QByteArray("bytes=0-1,4-5") << 200 << QByteArray("0123456789")
                             << QByteArray();
}

void TestServiceFiles::rangesAreServed()
{
    QFETCH(QByteArray, range);
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, contentRange);
    ServiceWorld world;
    const QString id = world.upload("0123456789");
    const HttpAnswer answer = world.client.send("GET", filePath(id), {}, {{"Range", range}});
    QCOMPARE(answer.status, status);
    QCOMPARE(answer.headers.value("content-range"), contentRange);
    if (status < 400)
        QCOMPARE(answer.body, body);
}

void TestServiceFiles::anUnchangedFileIsNotSentAgain()
{
    ServiceWorld world;
    const QString id = world.upload("0123456789");
    const HttpAnswer first = world.client.get(filePath(id));
    const QByteArray etag = first.headers.value("etag");
    QVERIFY(!etag.isEmpty());
    const HttpAnswer again = world.client.send("GET", filePath(id), {}, {{"If-None-Match", etag}});
    QCOMPARE(again.status, 304);
    QCOMPARE(again.body, QByteArray());
    const HttpAnswer resumed = world.client.send(
        "GET", filePath(id), {}, {{"If-Range", "\"another\""}, {"Range", "bytes=5-"}});
    QCOMPARE(resumed.status, 200);
    QCOMPARE(resumed.body, QByteArray("0123456789"));
}

void TestServiceFiles::aFileAbove4GiBHasItsLength()
{
    const qint64 size = Q_INT64_C(5) * 1024 * 1024 * 1024;
    ServiceWorld world;
    const QString id = world.upload("hello\n");
    world.service->stop();
    // Made large behind the service's back, so that no such file has to travel.
    const QString data = world.folder.path() + "/data";
    QFile content(data + "/content/b1/94/b1946ac92492d2347c6235b4d2611184");
    QVERIFY(content.resize(size));
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "enlarge");
        database.setDatabaseName(data + "/records.sqlite");
        QVERIFY(database.open());
        QSqlQuery query(database);
        QVERIFY(query.exec(QString("UPDATE file SET size = %1").arg(size)));
    }
    QSqlDatabase::removeDatabase("enlarge");
    QVERIFY(content.open(QIODevice::ReadWrite));
    QVERIFY(content.seek(size - 4));
    QCOMPARE(content.write("tail"), Q_INT64_C(4));
    content.close();

    QVERIFY(world.restart());
    const HttpAnswer head = world.client.send("HEAD", filePath(id));
    QCOMPARE(head.headers.value("content-length"), QByteArray::number(size));
    const HttpAnswer tail = world.client.send(
        "GET", filePath(id), {}, {{"Range", "bytes=" + QByteArray::number(size - 4) + '-'}});
    QCOMPARE(tail.status, 206);
    QCOMPARE(tail.body, QByteArray("tail"));
    const QJsonObject made = world.client
                                 .post(ServiceWorld::projectPath("documents"),
                                       {{"name", "large"}, {"type", "file"}, {"file", id}})
                                 .object();
    QCOMPARE(made.value("fileSize").toVariant().toLongLong(), size);
}

void TestServiceFiles::onlyThoseWhoMayDownload()
{
    ServiceWorld world;
    const QString anna = world.service->addUser("anna");
    const QString ben = world.service->addUser("ben");
    const QString p1 = "p1";
    QVERIFY(world.service->addProject(p1, QString()));
    QVERIFY(world.service->setRole(p1, "anna", "editor"));
    world.client.setToken(anna);
    const QString id = world.upload("secret");
    QCOMPARE(world.client.get(filePath(id)).status, 200); // her own, without a document
    QVERIFY(!world.makeFile("a.txt", {}, "secret").isEmpty());
    world.client.setToken(ben);
    QCOMPARE(world.client.get(filePath(id)).status, 404);
    QVERIFY(world.service->setRole(p1, "ben", "viewer"));
    QCOMPARE(world.client.get(filePath(id)).status, 200);
}

void TestServiceFiles::anUploadNeedsARightSomewhere()
{
    ServiceWorld world;
    world.client.setToken(world.service->addUser("anna"));
    const QString p1 = "p1";
    QVERIFY(world.service->addProject(p1, QString()));
    QVERIFY(world.upload("x").isEmpty());
    QVERIFY(world.service->setRole(p1, "anna", "viewer"));
    QVERIFY(world.upload("x").isEmpty());
    QVERIFY(world.service->setRole(p1, "anna", "contributor"));
    QVERIFY(!world.upload("x").isEmpty());
}

void TestServiceFiles::aFullStoreSaysSo()
{
    ServiceOptions options;
    options.storeQuotaBytes = 1000;
    ServiceWorld world(options);
    QVERIFY(!world.upload(QByteArray(600, 'a')).isEmpty());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("quota"));
    const HttpAnswer answer =
        world.client.postForm("base-service/files", {{"file/b", QByteArray(600, 'b')}});
    QCOMPARE(answer.status, 507);
    QVERIFY(!answer.errorText().isEmpty());
    QCOMPARE(countFiles(world.folder.path() + "/data/tmp"), 0);
    QVERIFY(!world.upload(QByteArray(300, 'c')).isEmpty());
}

void TestServiceFiles::leftoversOfACrashAreCleared()
{
    ServiceWorld world;
    world.service->stop();
    const QString tmp = world.folder.path() + "/data/tmp";
    QFile leftover(tmp + "/half");
    QVERIFY(leftover.open(QIODevice::WriteOnly));
    leftover.close();
    QVERIFY(world.restart());
    QCOMPARE(countFiles(tmp), 0);
}

QTEST_GUILESS_MAIN(TestServiceFiles)
#include "tst_service_files.moc"
