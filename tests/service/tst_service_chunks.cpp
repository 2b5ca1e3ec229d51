#include <service/ChunkSender.h>
#include <service/ServiceFixture.h>

#include <QDir>
#include <QtTest>

#include <thread>

//! Uploads by chunks.
class TestServiceChunks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileGoesUpChunkByChunk();
    void sizesAtTheBoundaries_data();
    void sizesAtTheBoundaries();
    void theRecordSaysWhatIsHeld();
    void anUploadGoesOnAfterARestart();
    void aChunkSentTwiceIsNotKeptTwice();
    void aChunkSentTooEarlyIsNotKept();
    void formsWithoutSenseAreRefused_data();
    void formsWithoutSenseAreRefused();
    void anotherSizeForTheSameMd5IsRefused();
    void aFileThatIsNotWhatItClaimsIsNeverStored();
    void aContentThatIsThereIsComplete();
    void aLostAnswerToTheLastChunkLosesNothing();
    void twoClientsAtOnceEndWithOneGoodFile();
    void aDroppedUploadStartsAgain();
    void othersUploadsCannotBeDropped();
    void aForgottenChunkIsSentAgain();
    void noRoomLeavesTheRecordIntact();
    void aPartFileThatIsGoneStartsAgain();
    void aContentNamedJustBeforeACrashIsTakenUp();
};

namespace {

constexpr int Chunk = ChunkSender::ChunkBytes;

QByteArray download(ServiceFixture &fixture, const HttpAnswer &finished)
{
    const QString fileId = finished.object().value(QStringLiteral("fsFileId")).toString();
    return fixture.client.get(QStringLiteral("base-service/files/") + fileId).body;
}

//! The files of uploads under way.
QFileInfoList parts(const ServiceFixture &fixture)
{
    return QDir(fixture.folder.path() + QStringLiteral("/data/parts")).entryInfoList(QDir::Files);
}

QString contentPath(const ServiceFixture &fixture, const ChunkSender &file)
{
    const QString md5 = file.md5();
    return QStringLiteral("%1/data/content/%2/%3/%4")
        .arg(fixture.folder.path(), md5.left(2), md5.mid(2, 2), md5);
}

} // namespace

void TestServiceChunks::aFileGoesUpChunkByChunk()
{
    ServiceFixture fixture;
    const ChunkSender file(2 * Chunk + 1000);
    QCOMPARE(file.record(fixture.client).status, 404);

    const HttpAnswer first = file.send(fixture.client, 0);
    QCOMPARE(first.status, 200);
    QCOMPARE(counters(first), QStringLiteral("1/3"));
    QCOMPARE(first.object().value(QStringLiteral("md5")).toString(), file.md5());
    QCOMPARE(first.object().value(QStringLiteral("fileName")).toString(),
             QStringLiteral("large.bin"));
    QCOMPARE(first.object().value(QStringLiteral("fsFileId")).toString(), QString());
    QVERIFY(!first.object().value(QStringLiteral("_id")).toString().isEmpty());
    QCOMPARE(counters(file.send(fixture.client, 1)), QStringLiteral("2/3"));
    const HttpAnswer last = file.send(fixture.client, 2);
    QCOMPARE(counters(last), QStringLiteral("3/3"));
    QCOMPARE(download(fixture, last), file.content());
    QVERIFY(parts(fixture).isEmpty());
}

void TestServiceChunks::sizesAtTheBoundaries_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("chunks");
    QTest::newRow("one byte") << 1 << 1;
    QTest::newRow("one less than a chunk") << Chunk - 1 << 1;
    QTest::newRow("one chunk") << Chunk << 1;
    QTest::newRow("one more than a chunk") << Chunk + 1 << 2;
    QTest::newRow("one more than the whole-file limit") << 10485761 << 3;
    QTest::newRow("three full chunks") << 3 * Chunk << 3;
}

void TestServiceChunks::sizesAtTheBoundaries()
{
    QFETCH(int, size);
    QFETCH(int, chunks);
    ServiceFixture fixture;
    const ChunkSender file(size);
    QCOMPARE(file.chunkCount(), chunks);
    const HttpAnswer last = file.sendAll(fixture.client);
    QCOMPARE(counters(last), QStringLiteral("%1/%1").arg(chunks));
    QVERIFY(download(fixture, last) == file.content());
}

void TestServiceChunks::theRecordSaysWhatIsHeld()
{
    ServiceFixture fixture;
    const ChunkSender file(2 * Chunk);
    const HttpAnswer sent = file.send(fixture.client, 0);
    const HttpAnswer record = file.record(fixture.client);
    QCOMPARE(record.object(), sent.object());
    QCOMPARE(counters(record), QStringLiteral("1/2"));
}

void TestServiceChunks::anUploadGoesOnAfterARestart()
{
    ServiceFixture fixture;
    const ChunkSender file(3 * Chunk + 5);
    for (int i = 0; i < file.chunkCount(); ++i) {
        QCOMPARE(file.send(fixture.client, i).status, 200);
        QVERIFY(fixture.restart());
        QCOMPARE(counters(file.record(fixture.client)), QStringLiteral("%1/4").arg(i + 1));
    }
    QVERIFY(download(fixture, file.record(fixture.client)) == file.content());
}

void TestServiceChunks::aChunkSentTwiceIsNotKeptTwice()
{
    ServiceFixture fixture;
    const ChunkSender file(3 * Chunk);
    file.send(fixture.client, 0);
    file.send(fixture.client, 1);
    const HttpAnswer again = file.send(fixture.client, 0);
    QCOMPARE(again.status, 200);
    QCOMPARE(counters(again), QStringLiteral("2/3"));
    QVERIFY(download(fixture, file.sendAll(fixture.client)) == file.content());
}

void TestServiceChunks::aChunkSentTooEarlyIsNotKept()
{
    ServiceFixture fixture;
    const ChunkSender file(3 * Chunk);
    const HttpAnswer early = file.send(fixture.client, 2);
    QCOMPARE(early.status, 200);
    QCOMPARE(counters(early), QStringLiteral("0/3"));
    QVERIFY(download(fixture, file.sendAll(fixture.client)) == file.content());
}

void TestServiceChunks::formsWithoutSenseAreRefused_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("no number of chunks") << QStringLiteral("totalChunk") << QByteArray("x");
    QTest::newRow("too few chunks") << QStringLiteral("totalChunk") << QByteArray("1");
    QTest::newRow("too many chunks") << QStringLiteral("totalChunk") << QByteArray("3");
    QTest::newRow("negative number") << QStringLiteral("savedChunk") << QByteArray("-1");
    QTest::newRow("number past the end") << QStringLiteral("savedChunk") << QByteArray("2");
    QTest::newRow("huge number") << QStringLiteral("savedChunk")
                                 << QByteArray("99999999999999999999");
    QTest::newRow("another chunk size") << QStringLiteral("chunkSize") << QByteArray("17");
    QTest::newRow("no MD5") << QStringLiteral("md5") << QByteArray("../../etc/passwd");
    QTest::newRow("empty MD5") << QStringLiteral("md5") << QByteArray();
    QTest::newRow("no size") << QStringLiteral("fileSize") << QByteArray("0");
    QTest::newRow("a size that does not fit")
        << QStringLiteral("fileSize") << QByteArray("4194304");
    QTest::newRow("an immense size")
        << QStringLiteral("fileSize") << QByteArray("9223372036854775807");
}

void TestServiceChunks::formsWithoutSenseAreRefused()
{
    QFETCH(QString, field);
    QFETCH(QByteArray, value);
    ServiceFixture fixture;
    const ChunkSender file(Chunk + 10);
    auto form = file.form(0);
    for (auto &entry : form) {
        if (entry.first == field)
            entry.second = value;
    }
    const HttpAnswer answer =
        fixture.client.postForm(QStringLiteral("base-service/largefiles"), form);
    QCOMPARE(answer.status, 400);
    QVERIFY(!answer.errorText().isEmpty());
    QCOMPARE(file.record(fixture.client).status, 404);
    QVERIFY(QDir(fixture.folder.path() + QStringLiteral("/data/tmp")).isEmpty());
}

void TestServiceChunks::anotherSizeForTheSameMd5IsRefused()
{
    ServiceFixture fixture;
    const ChunkSender file(2 * Chunk);
    QCOMPARE(file.send(fixture.client, 0).status, 200);
    const ChunkSender liar(file.content() + "more", file.md5().toLatin1());
    QCOMPARE(liar.send(fixture.client, 1).status, 409);
    QCOMPARE(counters(file.record(fixture.client)), QStringLiteral("1/2"));
    QCOMPARE(counters(file.sendAll(fixture.client)), QStringLiteral("2/2"));
    QCOMPARE(liar.send(fixture.client, 0).status, 409);
}

void TestServiceChunks::aFileThatIsNotWhatItClaimsIsNeverStored()
{
    ServiceFixture fixture;
    const ChunkSender truth(2 * Chunk);
    QByteArray changed = truth.content();
    changed[Chunk + 3] = static_cast<char>(changed.at(Chunk + 3) + 1);
    const ChunkSender liar(changed, truth.md5().toLatin1());
    const HttpAnswer refused = liar.sendAll(fixture.client);
    QCOMPARE(refused.status, 422);
    QVERIFY(!refused.errorText().isEmpty());
    QCOMPARE(truth.record(fixture.client).status, 404);
    QVERIFY(parts(fixture).isEmpty());
    QVERIFY(!QFile::exists(contentPath(fixture, truth)));
    QVERIFY(download(fixture, truth.sendAll(fixture.client)) == truth.content());
}

void TestServiceChunks::aContentThatIsThereIsComplete()
{
    ServiceFixture fixture;
    const ChunkSender file(Chunk + 7);
    const QString fileId = fixture.upload(file.content());
    const HttpAnswer record = file.record(fixture.client);
    QCOMPARE(record.status, 200);
    QCOMPARE(counters(record), QStringLiteral("2/2"));
    QCOMPARE(record.object().value(QStringLiteral("fsFileId")).toString(), fileId);
    QVERIFY(!record.object().value(QStringLiteral("_id")).toString().isEmpty());
    QCOMPARE(file.send(fixture.client, 0).object(), record.object());
    const HttpAnswer info =
        fixture.client.get(QStringLiteral("base-service/md5/%1/info").arg(file.md5()));
    QCOMPARE(info.object().value(QStringLiteral("_id")).toString(), fileId);
}

void TestServiceChunks::aLostAnswerToTheLastChunkLosesNothing()
{
    ServiceFixture fixture;
    const ChunkSender file(2 * Chunk);
    file.send(fixture.client, 0);
    FaultRule lose;
    // Not LoseReply: Qt's client would send the chunk again by itself.
    lose.kind = FaultRule::Kind::CutReply;
    lose.verb = "POST";
    fixture.service->addFault(lose);
    QVERIFY(file.send(fixture.client, 1).body.isEmpty());
    const HttpAnswer record = file.record(fixture.client);
    QCOMPARE(counters(record), QStringLiteral("2/2"));
    QVERIFY(download(fixture, record) == file.content());
}

void TestServiceChunks::twoClientsAtOnceEndWithOneGoodFile()
{
    ServiceFixture fixture;
    const ChunkSender file(5 * Chunk + 11);
    const QString base = fixture.service->baseApi();
    QList<HttpAnswer> answers{HttpAnswer(), HttpAnswer(), HttpAnswer()};
    std::vector<std::thread> clients;
    for (HttpAnswer &answer : answers) {
        clients.emplace_back([&file, &answer, base] {
            HttpClient client(base);
            answer = file.sendAll(client);
        });
    }
    for (std::thread &client : clients)
        client.join();
    for (const HttpAnswer &answer : qAsConst(answers))
        QCOMPARE(counters(answer), QStringLiteral("6/6"));
    QVERIFY(download(fixture, answers.first()) == file.content());
}

void TestServiceChunks::aDroppedUploadStartsAgain()
{
    ServiceFixture fixture;
    const ChunkSender file(2 * Chunk);
    const QString id =
        file.send(fixture.client, 0).object().value(QStringLiteral("_id")).toString();
    const QString path = QStringLiteral("base-service/largefiles/") + id;
    QCOMPARE(fixture.client.remove(path).status, 200);
    QCOMPARE(file.record(fixture.client).status, 404);
    QVERIFY(parts(fixture).isEmpty());
    QCOMPARE(fixture.client.remove(path).status, 404);
    const HttpAnswer last = file.sendAll(fixture.client);
    QCOMPARE(counters(last), QStringLiteral("2/2"));
    const QString fileId = last.object().value(QStringLiteral("_id")).toString();
    QCOMPARE(fixture.client.remove(QStringLiteral("base-service/largefiles/") + fileId).status,
             409);
    QVERIFY(download(fixture, last) == file.content());
}

void TestServiceChunks::othersUploadsCannotBeDropped()
{
    ServiceFixture fixture;
    const QString anna = fixture.service->addUser(QStringLiteral("anna"));
    const QString ben = fixture.service->addUser(QStringLiteral("ben"));
    QVERIFY(fixture.service->addProject(QStringLiteral("p1"), QString()));
    QVERIFY(fixture.service->setRole(QStringLiteral("p1"), QStringLiteral("anna"),
                                     QStringLiteral("editor")));
    const ChunkSender file(2 * Chunk);
    fixture.client.setToken(anna);
    const QString id =
        file.send(fixture.client, 0).object().value(QStringLiteral("_id")).toString();
    fixture.client.setToken(ben);
    QCOMPARE(fixture.client.remove(QStringLiteral("base-service/largefiles/") + id).status, 403);
    QCOMPARE(file.send(fixture.client, 1).status, 403); // a member of no project
}

void TestServiceChunks::aForgottenChunkIsSentAgain()
{
    ServiceFixture fixture;
    FaultRule forget;
    forget.kind = FaultRule::Kind::ForgetChunk;
    forget.pathPrefix = QStringLiteral("/base-service/largefiles");
    forget.nth = 3;
    fixture.service->addFault(forget);
    const ChunkSender file(3 * Chunk);
    QVERIFY(download(fixture, file.sendAll(fixture.client)) == file.content());
}

void TestServiceChunks::noRoomLeavesTheRecordIntact()
{
    ServiceOptions options;
    options.storeQuotaBytes = qint64(3) * Chunk + 1000;
    ServiceFixture fixture(options);
    const ChunkSender file(4 * Chunk);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("quota")));
    const HttpAnswer refused = file.sendAll(fixture.client);
    QCOMPARE(refused.status, 507);
    QVERIFY(!refused.errorText().isEmpty());
    QCOMPARE(counters(file.record(fixture.client)), QStringLiteral("3/4"));
    // The refused chunk takes no room for ever.
    QVERIFY(!fixture.upload("small").isEmpty());
    QVERIFY(fixture.restart());
    QCOMPARE(counters(file.record(fixture.client)), QStringLiteral("3/4"));
}

void TestServiceChunks::aPartFileThatIsGoneStartsAgain()
{
    ServiceFixture fixture;
    const ChunkSender file(3 * Chunk);
    file.send(fixture.client, 0);
    file.send(fixture.client, 1);
    QCOMPARE(parts(fixture).size(), 1);
    QVERIFY(QFile::remove(parts(fixture).first().filePath()));
    QCOMPARE(counters(file.send(fixture.client, 2)), QStringLiteral("0/3"));
    QVERIFY(download(fixture, file.sendAll(fixture.client)) == file.content());
}

//! The last chunk came, its file was compared and named, and then the service was killed.
void TestServiceChunks::aContentNamedJustBeforeACrashIsTakenUp()
{
    ServiceFixture fixture;
    const ChunkSender file(2 * Chunk);
    file.send(fixture.client, 0);
    fixture.service->stop();
    QVERIFY(fixture.runSql(QStringLiteral("UPDATE large_file SET saved_chunk = total_chunk")));
    const QString content = contentPath(fixture, file);
    QVERIFY(QDir().mkpath(QFileInfo(content).path()));
    QVERIFY(QFile::remove(parts(fixture).first().filePath()));
    QFile named(content);
    QVERIFY(named.open(QIODevice::WriteOnly));
    QCOMPARE(named.write(file.content()), qint64(file.content().size()));
    named.close();
    QVERIFY(fixture.restart());
    const HttpAnswer answer = file.record(fixture.client);
    QCOMPARE(counters(answer), QStringLiteral("2/2"));
    QVERIFY(download(fixture, answer) == file.content());
}

QTEST_GUILESS_MAIN(TestServiceChunks)
#include "tst_service_chunks.moc"
