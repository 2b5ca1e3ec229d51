#include "ProxyWorld.h"

#include <QTest>

namespace {

constexpr qint64 MiB = qint64(1024) * 1024;

QStringList quota(qint64 bytes)
{
    return {"--quota", QString::number(bytes)};
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
    void expectRefusal(ProxyWorld &world, const LocalFile &file, int savedChunks);
};

void TestUploadRoom::expectRefusal(ProxyWorld &world, const LocalFile &file, int savedChunks)
{
    const auto client = world.upload(file);
    QVERIFY(client->wait());
    QVERIFY2(client->log().contains("failed 507 The service has no room left.; error 499"),
             qPrintable(client->log()));
    QCOMPARE(world.savedChunks(file.md5()), savedChunks);
    QCOMPARE(world.storedFile(file.md5()), QString());
}

void TestUploadRoom::anUploadContinuesOnceAnotherIsDropped()
{
    ProxyWorld world(quota(40 * MiB));
    QVERIFY(world.isStarted());
    const LocalFile abandoned = world.makeFile(24 * MiB, 1, "abandoned.bin");
    world.proxy->strikeChunk(5, {ProxyFault::Kind::Drop, ProxyFault::Point::BeforeRequest});
    QVERIFY(world.upload(abandoned)->wait());
    QCOMPARE(world.savedChunks(abandoned.md5()), 5);

    const LocalFile file = world.makeFile(28 * MiB, 2);
    // Often, because room that a refused chunk has taken must come back.
    for (int attempt = 0; attempt < 5; ++attempt) {
        expectRefusal(world, file, 5);
        QVERIFY(!QTest::currentTestFailed());
    }
    const QString id = world.record(abandoned.md5()).value(QLatin1String("_id")).toString();
    QCOMPARE(world.http.remove(QString("base-service/largefiles/") + id).status, 200);

    world.renewProxy();
    const auto client = world.upload(file);
    QVERIFY(client->wait());
    QVERIFY2(client->isDone(), qPrintable(client->log()));
    QCOMPARE(world.proxy->sentChunks(), (QList<int>{5, 6}));
    QVERIFY(world.download(client->fileId()) == file.content());
}

void TestUploadRoom::anUploadContinuesAfterARestartWithMoreRoom()
{
    ProxyWorld world(quota(10 * MiB));
    QVERIFY(world.isStarted());
    const LocalFile file = world.makeFile(15 * MiB, 3);
    expectRefusal(world, file, 2);
    QVERIFY(!QTest::currentTestFailed());
    world.service.kill();
    QVERIFY(world.service.start(quota(20 * MiB)));

    world.renewProxy();
    const auto client = world.upload(file);
    QVERIFY(client->wait());
    QVERIFY2(client->isDone(), qPrintable(client->log()));
    QCOMPARE(world.proxy->sentChunks(), (QList<int>{2, 3}));
    QVERIFY(world.download(client->fileId()) == file.content());
}

void TestUploadRoom::anUploadContinuesAfterAMomentWithoutRoom()
{
    ProxyWorld world({"--fault", "no-room,verb=POST,path=/base-service/largefiles,nth=3"});
    QVERIFY(world.isStarted());
    const LocalFile file = world.makeFile(15 * MiB, 4);
    expectRefusal(world, file, 2);
    QVERIFY(!QTest::currentTestFailed());

    const auto client = world.upload(file);
    QVERIFY(client->wait());
    QVERIFY2(client->isDone(), qPrintable(client->log()));
    QCOMPARE(world.proxy->sentChunks(), (QList<int>{0, 1, 2, 2, 3}));
    QVERIFY(world.download(client->fileId()) == file.content());
}

QTEST_GUILESS_MAIN(TestUploadRoom)
#include "tst_upload_room.moc"
