#include <service/ChunkSender.h>
#include <service/ServiceWorld.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QFileInfoList>
#include <QIODevice>
#include <QRegularExpression>
#include <QTest>

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

QByteArray download(ServiceWorld &world, const HttpAnswer &finished)
{
    const QString fileId = finished.object().value("fsFileId").toString();
    return world.client.get(QString("base-service/files/") + fileId).body;
}

//! The files of uploads under way.
QFileInfoList parts(const ServiceWorld &world)
{
    return QDir(world.folder.path() + "/data/parts").entryInfoList(QDir::Files);
}

QString contentPath(const ServiceWorld &world, const ChunkSender &file)
{
    const QString md5 = file.md5();
    return QString("%1/data/content/%2/%3/%4")
        .arg(world.folder.path(), md5.left(2), md5.mid(2, 2), md5);
}

} // namespace

void TestServiceChunks::aFileGoesUpChunkByChunk()
{
    ServiceWorld world;
    const ChunkSender file(2 * Chunk + 1000);
    QCOMPARE(file.record(world.client).status, 404);

    const HttpAnswer first = file.send(world.client, 0);
    QCOMPARE(first.status, 200);
    QCOMPARE(counters(first), QString("1/3"));
    QCOMPARE(first.object().value("md5").toString(), file.md5());
    QCOMPARE(first.object().value("fileName").toString(), QString("large.bin"));
    QCOMPARE(first.object().value("fsFileId").toString(), QString());
    QVERIFY(!first.object().value("_id").toString().isEmpty());
    QCOMPARE(counters(file.send(world.client, 1)), QString("2/3"));
    const HttpAnswer last = file.send(world.client, 2);
    QCOMPARE(counters(last), QString("3/3"));
    QCOMPARE(download(world, last), file.content());
    QVERIFY(parts(world).isEmpty());
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
    ServiceWorld world;
    const ChunkSender file(size);
    QCOMPARE(file.chunkCount(), chunks);
    const HttpAnswer last = file.sendAll(world.client);
    QCOMPARE(counters(last), QString("%1/%1").arg(chunks));
    QVERIFY(download(world, last) == file.content());
}

void TestServiceChunks::theRecordSaysWhatIsHeld()
{
    ServiceWorld world;
    const ChunkSender file(2 * Chunk);
    const HttpAnswer sent = file.send(world.client, 0);
    const HttpAnswer record = file.record(world.client);
    QCOMPARE(record.object(), sent.object());
    QCOMPARE(counters(record), QString("1/2"));
}

void TestServiceChunks::anUploadGoesOnAfterARestart()
{
    ServiceWorld world;
    const ChunkSender file(3 * Chunk + 5);
    for (int i = 0; i < file.chunkCount(); ++i) {
        QCOMPARE(file.send(world.client, i).status, 200);
        QVERIFY(world.restart());
        QCOMPARE(counters(file.record(world.client)), QString("%1/4").arg(i + 1));
    }
    QVERIFY(download(world, file.record(world.client)) == file.content());
}

void TestServiceChunks::aChunkSentTwiceIsNotKeptTwice()
{
    ServiceWorld world;
    const ChunkSender file(3 * Chunk);
    file.send(world.client, 0);
    file.send(world.client, 1);
    const HttpAnswer again = file.send(world.client, 0);
    QCOMPARE(again.status, 200);
    QCOMPARE(counters(again), QString("2/3"));
    QVERIFY(download(world, file.sendAll(world.client)) == file.content());
}

void TestServiceChunks::aChunkSentTooEarlyIsNotKept()
{
    ServiceWorld world;
    const ChunkSender file(3 * Chunk);
    const HttpAnswer early = file.send(world.client, 2);
    QCOMPARE(early.status, 200);
    QCOMPARE(counters(early), QString("0/3"));
    QVERIFY(download(world, file.sendAll(world.client)) == file.content());
}

void TestServiceChunks::formsWithoutSenseAreRefused_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("no number of chunks") << "totalChunk" << QByteArray("x");
    QTest::newRow("too few chunks") << "totalChunk" << QByteArray("1");
    QTest::newRow("too many chunks") << "totalChunk" << QByteArray("3");
    QTest::newRow("negative number") << "savedChunk" << QByteArray("-1");
    QTest::newRow("number past the end") << "savedChunk" << QByteArray("2");
    QTest::newRow("huge number") << "savedChunk" << QByteArray("99999999999999999999");
    QTest::newRow("another chunk size") << "chunkSize" << QByteArray("17");
    QTest::newRow("no MD5") << "md5" << QByteArray("../../etc/passwd");
    QTest::newRow("empty MD5") << "md5" << QByteArray();
    QTest::newRow("no size") << "fileSize" << QByteArray("0");
    QTest::newRow("a size that does not fit") << "fileSize" << QByteArray("4194304");
    QTest::newRow("an immense size") << "fileSize" << QByteArray("9223372036854775807");
}

void TestServiceChunks::formsWithoutSenseAreRefused()
{
    QFETCH(QString, field);
    QFETCH(QByteArray, value);
    ServiceWorld world;
    const ChunkSender file(Chunk + 10);
    auto form = file.form(0);
    for (auto &entry : form) {
        if (entry.first == field)
            entry.second = value;
    }
    const HttpAnswer answer = world.client.postForm("base-service/largefiles", form);
    QCOMPARE(answer.status, 400);
    QVERIFY(!answer.errorText().isEmpty());
    QCOMPARE(file.record(world.client).status, 404);
    QVERIFY(
        !QDirIterator(world.folder.path() + "/data/tmp", QDir::Files, QDirIterator::Subdirectories)
             .hasNext());
}

void TestServiceChunks::anotherSizeForTheSameMd5IsRefused()
{
    ServiceWorld world;
    const ChunkSender file(2 * Chunk);
    QCOMPARE(file.send(world.client, 0).status, 200);
    const ChunkSender liar(file.content() + "more", file.md5().toLatin1());
    QCOMPARE(liar.send(world.client, 1).status, 409);
    QCOMPARE(counters(file.record(world.client)), QString("1/2"));
    QCOMPARE(counters(file.sendAll(world.client)), QString("2/2"));
    QCOMPARE(liar.send(world.client, 0).status, 409);
}

void TestServiceChunks::aFileThatIsNotWhatItClaimsIsNeverStored()
{
    ServiceWorld world;
    const ChunkSender truth(2 * Chunk);
    QByteArray changed = truth.content();
    changed[Chunk + 3] = static_cast<char>(changed.at(Chunk + 3) + 1);
    const ChunkSender liar(changed, truth.md5().toLatin1());
    const HttpAnswer refused = liar.sendAll(world.client);
    QCOMPARE(refused.status, 422);
    QVERIFY(!refused.errorText().isEmpty());
    QCOMPARE(truth.record(world.client).status, 404);
    QVERIFY(parts(world).isEmpty());
    QVERIFY(!QFile::exists(contentPath(world, truth)));
    QVERIFY(download(world, truth.sendAll(world.client)) == truth.content());
}

void TestServiceChunks::aContentThatIsThereIsComplete()
{
    ServiceWorld world;
    const ChunkSender file(Chunk + 7);
    const QString fileId = world.upload(file.content());
    const HttpAnswer record = file.record(world.client);
    QCOMPARE(record.status, 200);
    QCOMPARE(counters(record), QString("2/2"));
    QCOMPARE(record.object().value("fsFileId").toString(), fileId);
    QVERIFY(!record.object().value("_id").toString().isEmpty());
    QCOMPARE(file.send(world.client, 0).object(), record.object());
    const HttpAnswer info = world.client.get(QString("base-service/md5/%1/info").arg(file.md5()));
    QCOMPARE(info.object().value("_id").toString(), fileId);
}

void TestServiceChunks::aLostAnswerToTheLastChunkLosesNothing()
{
    ServiceWorld world;
    const ChunkSender file(2 * Chunk);
    file.send(world.client, 0);
    FaultRule lose;
    // Not LoseReply: Qt's client would send the chunk again by itself.
    lose.kind = FaultRule::Kind::CutReply;
    lose.verb = "POST";
    world.service->addFault(lose);
    QVERIFY(file.send(world.client, 1).body.isEmpty());
    const HttpAnswer record = file.record(world.client);
    QCOMPARE(counters(record), QString("2/2"));
    QVERIFY(download(world, record) == file.content());
}

void TestServiceChunks::twoClientsAtOnceEndWithOneGoodFile()
{
    ServiceWorld world;
    const ChunkSender file(5 * Chunk + 11);
    const QString base = world.service->baseApi();
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
        QCOMPARE(counters(answer), QString("6/6"));
    QVERIFY(download(world, answers.first()) == file.content());
}

void TestServiceChunks::aDroppedUploadStartsAgain()
{
    ServiceWorld world;
    const ChunkSender file(2 * Chunk);
    const QString id = file.send(world.client, 0).object().value("_id").toString();
    const QString path = QString("base-service/largefiles/") + id;
    QCOMPARE(world.client.remove(path).status, 200);
    QCOMPARE(file.record(world.client).status, 404);
    QVERIFY(parts(world).isEmpty());
    QCOMPARE(world.client.remove(path).status, 404);
    const HttpAnswer last = file.sendAll(world.client);
    QCOMPARE(counters(last), QString("2/2"));
    const QString fileId = last.object().value("_id").toString();
    QCOMPARE(world.client.remove(QString("base-service/largefiles/") + fileId).status, 409);
    QVERIFY(download(world, last) == file.content());
}

void TestServiceChunks::othersUploadsCannotBeDropped()
{
    ServiceWorld world;
    const QString anna = world.service->addUser("anna");
    const QString ben = world.service->addUser("ben");
    QVERIFY(world.service->addProject("p1", QString()));
    QVERIFY(world.service->setRole("p1", "anna", "editor"));
    const ChunkSender file(2 * Chunk);
    world.client.setToken(anna);
    const QString id = file.send(world.client, 0).object().value("_id").toString();
    world.client.setToken(ben);
    QCOMPARE(world.client.remove(QString("base-service/largefiles/") + id).status, 403);
    QCOMPARE(file.send(world.client, 1).status, 403); // a member of no project
}

void TestServiceChunks::aForgottenChunkIsSentAgain()
{
    ServiceWorld world;
    FaultRule forget;
    forget.kind = FaultRule::Kind::ForgetChunk;
    forget.pathPrefix = "/base-service/largefiles";
    forget.nth = 3;
    world.service->addFault(forget);
    const ChunkSender file(3 * Chunk);
    QVERIFY(download(world, file.sendAll(world.client)) == file.content());
}

void TestServiceChunks::noRoomLeavesTheRecordIntact()
{
    ServiceOptions options;
    options.storeQuotaBytes = qint64(3) * Chunk + 1000;
    ServiceWorld world(options);
    const ChunkSender file(4 * Chunk);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("quota"));
    const HttpAnswer refused = file.sendAll(world.client);
    QCOMPARE(refused.status, 507);
    QVERIFY(!refused.errorText().isEmpty());
    QCOMPARE(counters(file.record(world.client)), QString("3/4"));
    // The refused chunk takes no room for ever.
    QVERIFY(!world.upload("small").isEmpty());
    QVERIFY(world.restart());
    QCOMPARE(counters(file.record(world.client)), QString("3/4"));
}

void TestServiceChunks::aPartFileThatIsGoneStartsAgain()
{
    ServiceWorld world;
    const ChunkSender file(3 * Chunk);
    file.send(world.client, 0);
    file.send(world.client, 1);
    QCOMPARE(parts(world).size(), 1);
    QVERIFY(QFile::remove(parts(world).first().filePath()));
    QCOMPARE(counters(file.send(world.client, 2)), QString("0/3"));
    QVERIFY(download(world, file.sendAll(world.client)) == file.content());
}

//! The last chunk came, its file was compared and named, and then the service was killed.
void TestServiceChunks::aContentNamedJustBeforeACrashIsTakenUp()
{
    ServiceWorld world;
    const ChunkSender file(2 * Chunk);
    file.send(world.client, 0);
    world.service->stop();
    QVERIFY(world.runSql("UPDATE large_file SET saved_chunk = total_chunk"));
    const QString content = contentPath(world, file);
    QVERIFY(QDir().mkpath(QFileInfo(content).path()));
    QVERIFY(QFile::remove(parts(world).first().filePath()));
    QFile named(content);
    QVERIFY(named.open(QIODevice::WriteOnly));
    QCOMPARE(named.write(file.content()), qint64(file.content().size()));
    named.close();
    QVERIFY(world.restart());
    const HttpAnswer answer = file.record(world.client);
    QCOMPARE(counters(answer), QString("2/2"));
    QVERIFY(download(world, answer) == file.content());
}

QTEST_GUILESS_MAIN(TestServiceChunks)
#include "tst_service_chunks.moc"
