#include "UploadSite.h"

#include <QtTest>

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
    const QString otherMd5 =
        QStringLiteral("failed 422 The file that arrived does not have the MD5 "
                       "claimed for it; it may have changed meanwhile. "
                       "Start again.; error 299");
    const QString cut = QStringLiteral("failed 400 Chunk 2 of this file has 3145728 bytes, but "
                                       "2621440 came.; error 302");
    const QString longer = QStringLiteral("failed 400 Chunk 2 of this file has 3145728 bytes, but "
                                          "3670016 came.; error 302");
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
    UploadSite site;
    QVERIFY(site.isStarted());
    LocalFile file = site.makeFile(FileBytes, OldSalt);
    const QByteArray oldMd5 = file.md5();
    bool isChanged = false;
    connect(site.proxy.get(), &FaultyProxy::requestStarted, this,
            [&](const ProxiedRequest &request) {
                if (request.target.startsWith(moment) && request.chunk == chunk
                    && !std::exchange(isChanged, true))
                    change(file);
            });
    const auto first = site.upload(file);
    QVERIFY(first->wait());
    QVERIFY(isChanged);
    QVERIFY2(first->log().endsWith(outcome), qPrintable(first->log()));
    QCOMPARE(site.storedFile(oldMd5), QString());
    QCOMPARE(site.storedFile(file.md5()), QString());
    QCOMPARE(site.documentCount(), 0);

    const auto second = site.upload(file);
    QVERIFY(second->wait());
    QVERIFY2(second->isDone(), qPrintable(second->log()));
    QVERIFY(site.download(second->fileId()) == file.content());
    QCOMPARE(site.storedFile(oldMd5), QString());
    QCOMPARE(site.wrongContents(), QStringList());
}

void TestUploadChangedFile::aFileThatChangesWhenAllWasReadIsStoredAsItWas()
{
    UploadSite site;
    QVERIFY(site.isStarted());
    LocalFile file = site.makeFile(FileBytes, OldSalt);
    const QByteArray content = file.content();
    connect(site.proxy.get(), &FaultyProxy::requestStarted, this,
            [&](const ProxiedRequest &request) {
                if (request.chunk == 2)
                    file.rewrite(NewSalt);
            });
    const auto client = site.upload(file);
    QVERIFY(client->wait());
    QVERIFY2(client->isDone(), qPrintable(client->log()));
    QVERIFY(site.download(client->fileId()) == content);
    QCOMPARE(site.wrongContents(), QStringList());
}

void TestUploadChangedFile::aRecordWithAWrongChunkIsDropped()
{
    UploadSite site;
    QVERIFY(site.isStarted());
    LocalFile file = site.makeFile(FileBytes, OldSalt);
    const QByteArray oldMd5 = file.md5();
    connect(site.proxy.get(), &FaultyProxy::requestStarted, this,
            [&](const ProxiedRequest &request) {
                if (request.chunk == 0)
                    file.rewrite(NewSalt);
            });
    site.proxy->strikeChunk(2, {ProxyFault::Kind::Drop, ProxyFault::Point::BeforeRequest});
    QVERIFY(site.upload(file)->wait());
    QCOMPARE(site.savedChunks(oldMd5), 2);

    // The old file is back, but not the chunk that the service has of it.
    site.renewProxy();
    file.rewrite(OldSalt);
    const auto second = site.upload(file);
    QVERIFY(second->wait());
    QVERIFY2(second->log().contains(QStringLiteral("failed 422")), qPrintable(second->log()));
    QCOMPARE(site.record(oldMd5), QJsonObject());

    const auto third = site.upload(file);
    QVERIFY(third->wait());
    QVERIFY2(third->isDone(), qPrintable(third->log()));
    QCOMPARE(site.proxy->sentChunks(), (QList<int>{2, 0, 1, 2}));
    QVERIFY(site.download(third->fileId()) == file.content());
}

QTEST_GUILESS_MAIN(TestUploadChangedFile)
#include "tst_upload_changed_file.moc"
