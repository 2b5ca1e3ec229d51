#include "UploadSite.h"

#include <QtTest>

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
    static QString postWhole(UploadSite &site, const LocalFile &file);
};

QString TestUploadTwice::postWhole(UploadSite &site, const LocalFile &file)
{
    return site.http
        .postForm(QStringLiteral("base-service/files"),
                  {{QStringLiteral("file/whole.bin"), file.content()}})
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
    UploadSite site;
    QVERIFY(site.isStarted());
    const LocalFile file = site.makeFile(bytes, 1);
    const auto one = site.upload(file, {QStringLiteral("--name"), QStringLiteral("one.bin")});
    const auto other = site.upload(file, {QStringLiteral("--name"), QStringLiteral("other.bin")});
    QVERIFY(one->wait());
    QVERIFY(other->wait());
    QVERIFY2(one->isDone(), qPrintable(one->log()));
    QVERIFY2(other->isDone(), qPrintable(other->log()));
    QCOMPARE(one->fileId(), other->fileId());
    QVERIFY(one->documentId() != other->documentId());
    QVERIFY(site.download(one->fileId()) == file.content());
    QCOMPARE(site.wrongContents(), QStringList());
    QVERIFY(QDir(site.service.dataDir() + QStringLiteral("/parts")).isEmpty());
}

void TestUploadTwice::aWholeUploadOvertakesTheChunks()
{
    UploadSite site;
    QVERIFY(site.isStarted());
    const LocalFile file = site.makeFile(11 * MiB, 2);
    QString wholeId;
    connect(site.proxy.get(), &FaultyProxy::requestStarted, this,
            [&](const ProxiedRequest &request) {
                if (request.chunk == 1)
                    wholeId = postWhole(site, file);
            });
    const auto client = site.upload(file);
    QVERIFY(client->wait());
    QVERIFY2(client->isDone(), qPrintable(client->log()));
    QVERIFY(!wholeId.isEmpty());
    QCOMPARE(client->fileId(), wholeId);
    // The answer to the chunk that was under way says that nothing is missing.
    QCOMPARE(site.proxy->sentChunks(), (QList<int>{0, 1}));
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
    UploadSite site;
    QVERIFY(site.isStarted());
    const LocalFile file = site.makeFile(11 * MiB, 3);
    QString fileId;
    if (isWhole) {
        fileId = postWhole(site, file);
    } else {
        const auto first = site.upload(file, {QStringLiteral("--name"), QStringLiteral("b.bin")});
        QVERIFY(first->wait());
        fileId = first->fileId();
    }
    QVERIFY(!fileId.isEmpty());

    site.renewProxy();
    const auto client = site.upload(file);
    QVERIFY(client->wait());
    QVERIFY2(client->isDone(), qPrintable(client->log()));
    QCOMPARE(client->fileId(), fileId);
    QCOMPARE(site.proxy->sentChunks(), QList<int>());
    // Nor is it said that it was sent.
    QVERIFY2(!client->log().contains(QStringLiteral("finishUpload")), qPrintable(client->log()));
}

QTEST_GUILESS_MAIN(TestUploadTwice)
#include "tst_upload_twice.moc"
