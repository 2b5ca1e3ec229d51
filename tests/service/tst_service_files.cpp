#include <service/ServiceFixture.h>

#include <QDirIterator>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

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
    return QStringLiteral("base-service/files/") + id;
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
    ServiceFixture fixture;
    const QString first = fixture.upload("same content", QStringLiteral("a.txt"));
    const QString second = fixture.upload("same content", QStringLiteral("b.txt"));
    const QString other = fixture.upload("other content");
    QCOMPARE(first, second);
    QVERIFY(first != other);
    QCOMPARE(countFiles(fixture.folder.path() + QStringLiteral("/data/content")), 2);
    QCOMPARE(countFiles(fixture.folder.path() + QStringLiteral("/data/tmp")), 0);
}

void TestServiceFiles::contentsAreNamedByTheirMd5()
{
    ServiceFixture fixture;
    const QByteArray content = "hello\n";
    const QString id = fixture.upload(content);
    const QString md5 = QStringLiteral("b1946ac92492d2347c6235b4d2611184");
    QVERIFY(QFile::exists(fixture.folder.path() + QStringLiteral("/data/content/b1/94/") + md5));
    const QString path = QStringLiteral("base-service/md5/%1/info");
    QCOMPARE(fixture.client.get(path.arg(md5)).object().value(QStringLiteral("_id")).toString(),
             id);
    QCOMPARE(fixture.client.get(path.arg(QString(md5).replace(0, 1, QLatin1Char('c')))).status,
             404);
    QCOMPARE(fixture.client.get(path.arg(QStringLiteral("nonsense"))).status, 404);
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
    ServiceFixture fixture;
    const QString id = fixture.upload("0123456789");
    const HttpAnswer answer = fixture.client.send("GET", filePath(id), {}, {{"Range", range}});
    QCOMPARE(answer.status, status);
    QCOMPARE(answer.headers.value("content-range"), contentRange);
    if (status < 400)
        QCOMPARE(answer.body, body);
}

void TestServiceFiles::anUnchangedFileIsNotSentAgain()
{
    ServiceFixture fixture;
    const QString id = fixture.upload("0123456789");
    const HttpAnswer first = fixture.client.get(filePath(id));
    const QByteArray etag = first.headers.value("etag");
    QVERIFY(!etag.isEmpty());
    const HttpAnswer again =
        fixture.client.send("GET", filePath(id), {}, {{"If-None-Match", etag}});
    QCOMPARE(again.status, 304);
    QCOMPARE(again.body, QByteArray());
    const HttpAnswer resumed = fixture.client.send(
        "GET", filePath(id), {}, {{"If-Range", "\"another\""}, {"Range", "bytes=5-"}});
    QCOMPARE(resumed.status, 200);
    QCOMPARE(resumed.body, QByteArray("0123456789"));
}

void TestServiceFiles::aFileAbove4GiBHasItsLength()
{
    const qint64 size = Q_INT64_C(5) * 1024 * 1024 * 1024;
    ServiceFixture fixture;
    const QString id = fixture.upload("hello\n");
    fixture.service->stop();
    // Made large behind the service's back, so that no such file has to travel.
    const QString data = fixture.folder.path() + QStringLiteral("/data");
    QFile content(data + QStringLiteral("/content/b1/94/b1946ac92492d2347c6235b4d2611184"));
    QVERIFY(content.resize(size));
    {
        QSqlDatabase database =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("enlarge"));
        database.setDatabaseName(data + QStringLiteral("/records.sqlite"));
        QVERIFY(database.open());
        QSqlQuery query(database);
        QVERIFY(query.exec(QStringLiteral("UPDATE file SET size = %1").arg(size)));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("enlarge"));
    QVERIFY(content.open(QIODevice::ReadWrite));
    QVERIFY(content.seek(size - 4));
    QCOMPARE(content.write("tail"), Q_INT64_C(4));
    content.close();

    QVERIFY(fixture.restart());
    const HttpAnswer head = fixture.client.send("HEAD", filePath(id));
    QCOMPARE(head.headers.value("content-length"), QByteArray::number(size));
    const HttpAnswer tail = fixture.client.send(
        "GET", filePath(id), {}, {{"Range", "bytes=" + QByteArray::number(size - 4) + '-'}});
    QCOMPARE(tail.status, 206);
    QCOMPARE(tail.body, QByteArray("tail"));
    const QJsonObject made = fixture.client
                                 .post(ServiceFixture::projectPath(QStringLiteral("documents")),
                                       {{QStringLiteral("name"), QStringLiteral("large")},
                                        {QStringLiteral("type"), QStringLiteral("file")},
                                        {QStringLiteral("file"), id}})
                                 .object();
    QCOMPARE(made.value(QStringLiteral("fileSize")).toVariant().toLongLong(), size);
}

void TestServiceFiles::onlyThoseWhoMayDownload()
{
    ServiceFixture fixture;
    const QString anna = fixture.service->addUser(QStringLiteral("anna"));
    const QString ben = fixture.service->addUser(QStringLiteral("ben"));
    const QString p1 = QStringLiteral("p1");
    QVERIFY(fixture.service->addProject(p1, QString()));
    QVERIFY(fixture.service->setRole(p1, QStringLiteral("anna"), QStringLiteral("editor")));
    fixture.client.setToken(anna);
    const QString id = fixture.upload("secret");
    QCOMPARE(fixture.client.get(filePath(id)).status, 200); // her own, without a document
    QVERIFY(!fixture.makeFile(QStringLiteral("a.txt"), {}, "secret").isEmpty());
    fixture.client.setToken(ben);
    QCOMPARE(fixture.client.get(filePath(id)).status, 404);
    QVERIFY(fixture.service->setRole(p1, QStringLiteral("ben"), QStringLiteral("viewer")));
    QCOMPARE(fixture.client.get(filePath(id)).status, 200);
}

void TestServiceFiles::anUploadNeedsARightSomewhere()
{
    ServiceFixture fixture;
    fixture.client.setToken(fixture.service->addUser(QStringLiteral("anna")));
    const QString p1 = QStringLiteral("p1");
    QVERIFY(fixture.service->addProject(p1, QString()));
    QVERIFY(fixture.upload("x").isEmpty());
    QVERIFY(fixture.service->setRole(p1, QStringLiteral("anna"), QStringLiteral("viewer")));
    QVERIFY(fixture.upload("x").isEmpty());
    QVERIFY(fixture.service->setRole(p1, QStringLiteral("anna"), QStringLiteral("contributor")));
    QVERIFY(!fixture.upload("x").isEmpty());
}

void TestServiceFiles::aFullStoreSaysSo()
{
    ServiceOptions options;
    options.storeQuotaBytes = 1000;
    ServiceFixture fixture(options);
    QVERIFY(!fixture.upload(QByteArray(600, 'a')).isEmpty());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("quota")));
    const HttpAnswer answer = fixture.client.postForm(
        QStringLiteral("base-service/files"), {{QStringLiteral("file/b"), QByteArray(600, 'b')}});
    QCOMPARE(answer.status, 507);
    QVERIFY(!answer.errorText().isEmpty());
    QCOMPARE(countFiles(fixture.folder.path() + QStringLiteral("/data/tmp")), 0);
    QVERIFY(!fixture.upload(QByteArray(300, 'c')).isEmpty());
}

void TestServiceFiles::leftoversOfACrashAreCleared()
{
    ServiceFixture fixture;
    fixture.service->stop();
    const QString tmp = fixture.folder.path() + QStringLiteral("/data/tmp");
    QFile leftover(tmp + QStringLiteral("/half"));
    QVERIFY(leftover.open(QIODevice::WriteOnly));
    leftover.close();
    QVERIFY(fixture.restart());
    QCOMPARE(countFiles(tmp), 0);
}

QTEST_GUILESS_MAIN(TestServiceFiles)
#include "tst_service_files.moc"
