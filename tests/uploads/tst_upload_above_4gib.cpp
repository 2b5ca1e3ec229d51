#include <async_ops/UploadWorld.h>

#include <QFile>
#include <QIODevice>
#include <QTest>

namespace {

constexpr qint64 GiB = Q_INT64_C(1) << 30;
constexpr qint64 ChunkBytes = UploadWorld::ChunkBytes;
constexpr qint64 FileBytes = 4 * GiB + ChunkBytes + 7;
constexpr int Chunks = 1026;

// Of the file that makeFile() leaves, as another program has computed it.
const char expectedMd5[] = "5c0903b286e8ccf2dce313f183c2b7c4";

void writeAt(QFile &file, qint64 offset, const QByteArray &bytes)
{
    QVERIFY(file.seek(offset));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

} // namespace

//! A file whose size and offsets need more than 32 bits, of which the service has all but the last chunks.
class TestUploadAbove4Gib : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLastChunksGoUpFromTheirOffsets();
};

void TestUploadAbove4Gib::theLastChunksGoUpFromTheirOffsets()
{
    UploadWorld world;
    VellDocument doc = world.makeFile("huge.bin", 0);
    doc.fileSize = FileBytes;
    QFile file(doc.filePath);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.resize(FileBytes));
    // What a 32-bit offset would find instead stands at the beginning.
    writeAt(file, 0, "the first chunk");
    writeAt(file, ChunkBytes, "second!");
    writeAt(file, 4 * GiB, "the last but one");
    writeAt(file, 4 * GiB + ChunkBytes, "theLast");
    file.close();

    ChunkStore store;
    store.id = "r1";
    store.savedChunk = Chunks - 2;
    store.totalChunk = Chunks;
    world.server.setHandler([&](const ScriptedRequest &request) { return store.answer(request); });
    AsyncCreateDocument job;
    JobSpies spies(&job);
    job.createDocument(QString(), doc);
    QTRY_COMPARE_WITH_TIMEOUT(spies.log(), QString("finishUpload createDocumentFinish"), 60000);

    const QList<ScriptedRequest> requests = world.server.requests();
    QCOMPARE(requests.size(), 4);
    QCOMPARE(requests.at(0).target, QByteArray("/base-service/largefiles/md5/") + expectedMd5);
    QCOMPARE(store.sentChunks, (QList<int>{Chunks - 2, Chunks - 1}));
    const QList<FormPart> lastButOne = formParts(requests.at(1));
    QCOMPARE(lastButOne.at(0).body,
             QByteArray("the last but one").leftJustified(int(ChunkBytes), '\0'));
    QCOMPARE(formField(lastButOne, "fileSize"), QByteArray("4299161607"));
    QCOMPARE(formField(lastButOne, "totalChunk"), QByteArray("1026"));
    const QList<FormPart> last = formParts(requests.at(2));
    QCOMPARE(last.at(0).body, QByteArray("theLast"));
    QCOMPARE(formField(last, "chunkSize"), QByteArray("7"));

    QVERIFY(!spies.progress.isEmpty());
    QCOMPARE(spies.progress.constFirst().second, FileBytes);
    for (const auto &progress : qAsConst(spies.progress)) {
        const bool isOfTheFile = progress.second == FileBytes; // not of the document's request
        QVERIFY(!isOfTheFile || progress.first >= 4 * GiB);
    }
}

QTEST_GUILESS_MAIN(TestUploadAbove4Gib)
#include "tst_upload_above_4gib.moc"
