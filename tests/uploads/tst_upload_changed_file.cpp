#include "ProxyWorld.h"

#include <QTest>

namespace {

constexpr qint64 MiB = qint64(1024) * 1024;
constexpr qint64 FileBytes = 11 * MiB;
constexpr quint32 OldSalt = 1;
constexpr quint32 NewSalt = 2;

void rewriteIt(LocalFile &file)
{
    file.rewrite(NewSalt);
}

void touchTheLastChunk(LocalFile &file)
{
    file.touchByte(FileBytes - 1);
}

void cutIt(LocalFile &file)
{
    file.resize(FileBytes - MiB / 2);
}

void lengthenIt(LocalFile &file)
{
    file.resize(FileBytes + MiB / 2);
}

} // namespace

using Change = void (*)(LocalFile &);
Q_DECLARE_METATYPE(Change)

//! The local file changes while it is uploaded: what is no file of the client is never stored.
class TestUploadChangedFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileThatChangesIsRefusedAndTheNewOneStored_data();
    void aFileThatChangesIsRefusedAndTheNewOneStored();
    void aFileThatChangesWhenAllWasReadIsStoredAsItWas();
    void aRecordWithAWrongChunkIsDropped();
};

void TestUploadChangedFile::aFileThatChangesIsRefusedAndTheNewOneStored_data()
{
    QTest::addColumn<QByteArray>("moment"); // when a request with that target has come
    QTest::addColumn<int>("chunk"); // and with that chunk
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("outcome");
    const QByteArray query = "/base-service/largefiles/md5/";
    const QByteArray sending = "/base-service/largefiles";
    const QString otherMd5 = "failed 422 The file that arrived does not have the MD5 "
                             "claimed for it; it may have changed meanwhile. "
                             "Start again.; error 299";
    const QString cut = "failed 400 Chunk 2 of this file has 3145728 bytes, but "
                        "2621440 came.; error 302";
    const QString longer = "failed 400 Chunk 2 of this file has 3145728 bytes, but "
                           "3670016 came.; error 302";
    QTest::newRow("rewritten after hashing") << query << -1 << Change(rewriteIt) << otherMd5;
    QTest::newRow("one byte after hashing") << query << -1 << Change(touchTheLastChunk) << otherMd5;
    QTest::newRow("cut after hashing") << query << -1 << Change(cutIt) << cut;
    QTest::newRow("longer after hashing") << query << -1 << Change(lengthenIt) << longer;
    QTest::newRow("rewritten between two chunks") << sending << 1 << Change(rewriteIt) << otherMd5;
    QTest::newRow("one byte between two chunks")
        << sending << 1 << Change(touchTheLastChunk) << otherMd5;
    QTest::newRow("cut between two chunks") << sending << 1 << Change(cutIt) << cut;
    QTest::newRow("longer between two chunks") << sending << 1 << Change(lengthenIt) << longer;
}

void TestUploadChangedFile::aFileThatChangesIsRefusedAndTheNewOneStored()
{
    QFETCH(QByteArray, moment);
    QFETCH(int, chunk);
    QFETCH(Change, change);
    QFETCH(QString, outcome);
    ProxyWorld world;
    QVERIFY(world.isStarted());
    LocalFile file = world.makeFile(FileBytes, OldSalt);
    const QByteArray oldMd5 = file.md5();
    bool isChanged = false;
    connect(world.proxy.get(), &FaultyProxy::requestStarted, this,
            [&](const ProxiedRequest &request) {
                if (request.target.startsWith(moment) && request.chunk == chunk
                    && !std::exchange(isChanged, true))
                    change(file);
            });
    const auto first = world.upload(file);
    QVERIFY(first->wait());
    QVERIFY(isChanged);
    QVERIFY2(first->log().endsWith(outcome), qPrintable(first->log()));
    QCOMPARE(world.storedFile(oldMd5), QString());
    QCOMPARE(world.storedFile(file.md5()), QString());
    QCOMPARE(world.documentCount(), 0);

    const auto second = world.upload(file);
    QVERIFY(second->wait());
    QVERIFY2(second->isDone(), qPrintable(second->log()));
    QVERIFY(world.download(second->fileId()) == file.content());
    QCOMPARE(world.storedFile(oldMd5), QString());
    QCOMPARE(world.wrongContents(), QStringList());
}

void TestUploadChangedFile::aFileThatChangesWhenAllWasReadIsStoredAsItWas()
{
    ProxyWorld world;
    QVERIFY(world.isStarted());
    LocalFile file = world.makeFile(FileBytes, OldSalt);
    const QByteArray content = file.content();
    connect(world.proxy.get(), &FaultyProxy::requestStarted, this,
            [&](const ProxiedRequest &request) {
                if (request.chunk == 2)
                    file.rewrite(NewSalt);
            });
    const auto client = world.upload(file);
    QVERIFY(client->wait());
    QVERIFY2(client->isDone(), qPrintable(client->log()));
    QVERIFY(world.download(client->fileId()) == content);
    QCOMPARE(world.wrongContents(), QStringList());
}

void TestUploadChangedFile::aRecordWithAWrongChunkIsDropped()
{
    ProxyWorld world;
    QVERIFY(world.isStarted());
    LocalFile file = world.makeFile(FileBytes, OldSalt);
    const QByteArray oldMd5 = file.md5();
    connect(world.proxy.get(), &FaultyProxy::requestStarted, this,
            [&](const ProxiedRequest &request) {
                if (request.chunk == 0)
                    file.rewrite(NewSalt);
            });
    world.proxy->strikeChunk(2, {ProxyFault::Kind::Drop, ProxyFault::Point::BeforeRequest});
    QVERIFY(world.upload(file)->wait());
    QCOMPARE(world.savedChunks(oldMd5), 2);

    // The old file is back, but not the chunk that the service has of it.
    world.renewProxy();
    file.rewrite(OldSalt);
    const auto second = world.upload(file);
    QVERIFY(second->wait());
    QVERIFY2(second->log().contains("failed 422"), qPrintable(second->log()));
    QCOMPARE(world.record(oldMd5), QJsonObject());

    const auto third = world.upload(file);
    QVERIFY(third->wait());
    QVERIFY2(third->isDone(), qPrintable(third->log()));
    QCOMPARE(world.proxy->sentChunks(), (QList<int>{2, 0, 1, 2}));
    QVERIFY(world.download(third->fileId()) == file.content());
}

QTEST_GUILESS_MAIN(TestUploadChangedFile)
#include "tst_upload_changed_file.moc"
