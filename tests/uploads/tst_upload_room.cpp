#include "UploadSite.h"

#include <QtTest>

namespace {

constexpr qint64 MiB = qint64(1024) * 1024;

QStringList quota(qint64 bytes)
{
    return {QStringLiteral("--quota"), QString::number(bytes)};
}

} // namespace

//! A service without room says so, keeps what it has, and takes the rest once there is room.
class TestUploadRoom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anUploadContinuesOnceAnotherIsDropped();
    void anUploadContinuesAfterARestartWithMoreRoom();
    void anUploadContinuesAfterAMomentWithoutRoom();

private:
    void expectRefusal(UploadSite &site, const LocalFile &file, int savedChunks);
};

void TestUploadRoom::expectRefusal(UploadSite &site, const LocalFile &file, int savedChunks)
{
    const auto client = site.upload(file);
    QVERIFY(client->wait());
    QVERIFY2(client->log().contains(
                 QStringLiteral("failed 507 The service has no room left.; error 499")),
             qPrintable(client->log()));
    QCOMPARE(site.savedChunks(file.md5()), savedChunks);
    QCOMPARE(site.storedFile(file.md5()), QString());
}

void TestUploadRoom::anUploadContinuesOnceAnotherIsDropped()
{
    UploadSite site(quota(40 * MiB));
    QVERIFY(site.isStarted());
    const LocalFile abandoned = site.makeFile(24 * MiB, 1, QStringLiteral("abandoned.bin"));
    site.proxy->strikeChunk(5, {ProxyFault::Kind::Drop, ProxyFault::Point::BeforeRequest});
    QVERIFY(site.upload(abandoned)->wait());
    QCOMPARE(site.savedChunks(abandoned.md5()), 5);

    const LocalFile file = site.makeFile(28 * MiB, 2);
    // Often, because room that a refused chunk has taken must come back.
    for (int attempt = 0; attempt < 5; ++attempt) {
        expectRefusal(site, file, 5);
        QVERIFY(!QTest::currentTestFailed());
    }
    const QString id = site.record(abandoned.md5()).value(QLatin1String("_id")).toString();
    QCOMPARE(site.http.remove(QStringLiteral("base-service/largefiles/") + id).status, 200);

    site.renewProxy();
    const auto client = site.upload(file);
    QVERIFY(client->wait());
    QVERIFY2(client->isDone(), qPrintable(client->log()));
    QCOMPARE(site.proxy->sentChunks(), (QList<int>{5, 6}));
    QVERIFY(site.download(client->fileId()) == file.content());
}

void TestUploadRoom::anUploadContinuesAfterARestartWithMoreRoom()
{
    UploadSite site(quota(10 * MiB));
    QVERIFY(site.isStarted());
    const LocalFile file = site.makeFile(15 * MiB, 3);
    expectRefusal(site, file, 2);
    QVERIFY(!QTest::currentTestFailed());
    site.service.kill();
    QVERIFY(site.service.start(quota(20 * MiB)));

    site.renewProxy();
    const auto client = site.upload(file);
    QVERIFY(client->wait());
    QVERIFY2(client->isDone(), qPrintable(client->log()));
    QCOMPARE(site.proxy->sentChunks(), (QList<int>{2, 3}));
    QVERIFY(site.download(client->fileId()) == file.content());
}

void TestUploadRoom::anUploadContinuesAfterAMomentWithoutRoom()
{
    UploadSite site({QStringLiteral("--fault"),
                     QStringLiteral("no-room,verb=POST,path=/base-service/largefiles,nth=3")});
    QVERIFY(site.isStarted());
    const LocalFile file = site.makeFile(15 * MiB, 4);
    expectRefusal(site, file, 2);
    QVERIFY(!QTest::currentTestFailed());

    const auto client = site.upload(file);
    QVERIFY(client->wait());
    QVERIFY2(client->isDone(), qPrintable(client->log()));
    QCOMPARE(site.proxy->sentChunks(), (QList<int>{0, 1, 2, 2, 3}));
    QVERIFY(site.download(client->fileId()) == file.content());
}

QTEST_GUILESS_MAIN(TestUploadRoom)
#include "tst_upload_room.moc"
