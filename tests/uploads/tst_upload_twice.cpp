#include "ProxyWorld.h"

#include <QDir>
#include <QTest>

namespace {

constexpr qint64 MiB = qint64(1024) * 1024;

} // namespace

//! The same file comes more than once.
class TestUploadTwice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void twoClientsAtOnceMakeOneGoodFile_data();
    void twoClientsAtOnceMakeOneGoodFile();
    void aWholeUploadOvertakesTheChunks();
    void aFileThatTheServiceHasIsNotSentAgain_data();
    void aFileThatTheServiceHasIsNotSentAgain();

private:
    static QString postWhole(ProxyWorld &world, const LocalFile &file);
};

QString TestUploadTwice::postWhole(ProxyWorld &world, const LocalFile &file)
{
    return world.http.postForm("base-service/files", {{"file/whole.bin", file.content()}})
        .object()
        .value(QLatin1String("files"))
        .toArray()
        .at(0)
        .toString();
}

void TestUploadTwice::twoClientsAtOnceMakeOneGoodFile_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::newRow("three chunks") << 11 * MiB;
    QTest::newRow("twelve chunks") << 48 * MiB;
}

void TestUploadTwice::twoClientsAtOnceMakeOneGoodFile()
{
    QFETCH(qint64, bytes);
    ProxyWorld world;
    QVERIFY(world.isStarted());
    const LocalFile file = world.makeFile(bytes, 1);
    const auto one = world.upload(file, {"--name", "one.bin"});
    const auto other = world.upload(file, {"--name", "other.bin"});
    QVERIFY(one->wait());
    QVERIFY(other->wait());
    QVERIFY2(one->isDone(), qPrintable(one->log()));
    QVERIFY2(other->isDone(), qPrintable(other->log()));
    QCOMPARE(one->fileId(), other->fileId());
    QVERIFY(one->documentId() != other->documentId());
    QVERIFY(world.download(one->fileId()) == file.content());
    QCOMPARE(world.wrongContents(), QStringList());
    QVERIFY(QDir(world.service.dataDir() + "/parts").isEmpty());
}

void TestUploadTwice::aWholeUploadOvertakesTheChunks()
{
    ProxyWorld world;
    QVERIFY(world.isStarted());
    const LocalFile file = world.makeFile(11 * MiB, 2);
    QString wholeId;
    connect(world.proxy.get(), &FaultyProxy::requestStarted, this,
            [&](const ProxiedRequest &request) {
                if (request.chunk == 1)
                    wholeId = postWhole(world, file);
            });
    const auto client = world.upload(file);
    QVERIFY(client->wait());
    QVERIFY2(client->isDone(), qPrintable(client->log()));
    QVERIFY(!wholeId.isEmpty());
    QCOMPARE(client->fileId(), wholeId);
    // The answer to the chunk that was under way says that nothing is missing.
    QCOMPARE(world.proxy->sentChunks(), (QList<int>{0, 1}));
}

void TestUploadTwice::aFileThatTheServiceHasIsNotSentAgain_data()
{
    QTest::addColumn<bool>("isWhole");
    QTest::newRow("that came whole") << true;
    QTest::newRow("that came in chunks") << false;
}

void TestUploadTwice::aFileThatTheServiceHasIsNotSentAgain()
{
    QFETCH(bool, isWhole);
    ProxyWorld world;
    QVERIFY(world.isStarted());
    const LocalFile file = world.makeFile(11 * MiB, 3);
    QString fileId;
    if (isWhole) {
        fileId = postWhole(world, file);
    } else {
        const auto first = world.upload(file, {"--name", "b.bin"});
        QVERIFY(first->wait());
        fileId = first->fileId();
    }
    QVERIFY(!fileId.isEmpty());

    world.renewProxy();
    const auto client = world.upload(file);
    QVERIFY(client->wait());
    QVERIFY2(client->isDone(), qPrintable(client->log()));
    QCOMPARE(client->fileId(), fileId);
    QCOMPARE(world.proxy->sentChunks(), QList<int>());
    // Nor is it said that it was sent.
    QVERIFY2(!client->log().contains("finishUpload"), qPrintable(client->log()));
}

QTEST_GUILESS_MAIN(TestUploadTwice)
#include "tst_upload_twice.moc"
