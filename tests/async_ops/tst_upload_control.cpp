#include "UploadTest.h"

#include <VellPublicFun/VellPub.h>

#include <QDir>
#include <QFile>
#include <QSemaphore>
#include <QTest>
#include <QThreadPool>
#include <QTimer>
#include <QtConcurrent>

// Pause, resume, cancel and what happens while a large file is hashed: each state of a job × each
// event, what is sent and what is emitted.
class TestUploadControl : public UploadTest
{
    Q_OBJECT

private Q_SLOTS:
    void eachEventInEachState_data();
    void eachEventInEachState();
    void eventsRunWhileTheFileIsHashed();
    void pauseAndCancelWhileTheFileIsHashedStopNothing();
    void resumeSendsAWholeFileAgainFromItsFirstByte();
    void resumeOfAWholeFileThatIsGoneDoesNothing();
    void resumeWhileAWholeFileIsStillSent();
    void resumeAfterAChunkErrorNeverFinishes();
    void resumeWhenAllChunksAreStored_data();
    void resumeWhenAllChunksAreStored();
    void resumeReplacesTheHandleOfTheAttemptBefore();
    void cancelClosesTheLocalFile();
    void aSmallFileGivenWhileALargeOneIsHashed_data();
    void aSmallFileGivenWhileALargeOneIsHashed();
    void twoJobsHashAtTheSameTime();
    void theHashOfAVanishedFileIsEmpty();

private:
    static constexpr int Idle = -2;
    static constexpr int Finished = -1;

    int openHandles() const;
};

int TestUploadControl::openHandles() const
{
    int count = 0;
    const QDir handles("/proc/self/fd");
    for (const QString &handle : handles.entryList(QDir::System | QDir::Files)) {
        const QString target = QFile::symLinkTarget(handles.filePath(handle));
        count += target.startsWith(m_world->folder.path()) ? 1 : 0;
    }
    return count;
}

// A state is a small (10 bytes) or a large (3 chunks) file and the request, counted from 0, that is
// being answered, slowly, when the event comes. Idle is a job that was never started, Finished one
// that is done.
void TestUploadControl::eachEventInEachState_data()
{
    QTest::addColumn<bool>("isLarge");
    QTest::addColumn<int>("request");
    QTest::addColumn<QString>("event");
    QTest::addColumn<QString>("requests"); // in all
    QTest::addColumn<QString>("events");

    const auto row = [](const char *name, bool isLarge, int request, const char *event,
                        const char *requests, const char *events) {
        QTest::newRow(name) << isLarge << request << QString::fromLatin1(event)
                            << QString::fromLatin1(requests) << QString::fromLatin1(events);
    };
    const char *small = "createDocumentFinish";
    const char *large = "finishUpload createDocumentFinish";
    const char *allChunks = "record chunk0 chunk1 chunk2 document";

    row("idle, pause", false, Idle, "pause", "", "");
    row("idle, resume", false, Idle, "resume", "", "");
    row("idle, cancel", false, Idle, "cancel", "", "");

    row("whole file, pause", false, 0, "pause", "file", "");
    row("whole file, cancel", false, 0, "cancel", "file", "");
    row("whole file, delete", false, 0, "delete", "file", "");
    // The phase was inverted: the second reply is taken for the document's.
    row("whole file, pause and resume", false, 0, "pause resume", "file file", small);
    row("whole file, cancel and resume", false, 0, "cancel resume", "file file", small);
    row("whole file, pause and resume twice", false, 0, "pause resume pause resume",
        "file file file document", small);

    row("document of a small file, pause", false, 1, "pause", "file document", "");
    row("document of a small file, cancel", false, 1, "cancel", "file document", "");
    row("document of a small file, delete", false, 1, "delete", "file document", "");
    // Inverted, which here means that the file goes up again.
    row("document of a small file, pause and resume", false, 1, "pause resume",
        "file document file document", small);

    row("finished small file, pause", false, Finished, "pause", "file document", small);
    row("finished small file, cancel", false, Finished, "cancel", "file document", small);

    // There is no chunk to stop yet, and nothing asks later whether the job was cancelled.
    row("record, pause", true, 0, "pause", allChunks, large);
    row("record, cancel", true, 0, "cancel", allChunks, large);
    row("record, delete", true, 0, "delete", "record", "");

    row("first chunk, pause", true, 1, "pause", "record chunk0", "");
    row("first chunk, delete", true, 1, "delete", "record chunk0", "");
    // Left alone: its reply goes on with the next one.
    row("first chunk, cancel", true, 1, "cancel", allChunks, large);
    row("first chunk, pause and resume", true, 1, "pause resume",
        "record chunk0 chunk0 chunk1 chunk2 document", large);
    row("first chunk, cancel and resume", true, 1, "cancel resume",
        "record chunk0 chunk0 chunk1 chunk2 document", large);
    row("first chunk, resume without a pause", true, 1, "resume",
        "record chunk0 chunk0 chunk1 chunk2 document", large);
    row("middle chunk, pause and resume", true, 2, "pause resume",
        "record chunk0 chunk1 chunk1 chunk2 document", large);
    row("last chunk, pause and resume", true, 3, "pause resume",
        "record chunk0 chunk1 chunk2 chunk2 document", large);

    // pause() stops chunks, cancel() the document's request.
    row("document of a large file, pause", true, 4, "pause", allChunks, large);
    row("document of a large file, cancel", true, 4, "cancel", allChunks, "finishUpload");
    row("document of a large file, delete", true, 4, "delete", allChunks, "finishUpload");

    row("finished large file, pause", true, Finished, "pause", allChunks, large);
    row("finished large file, cancel", true, Finished, "cancel", allChunks, large);
}

void TestUploadControl::eachEventInEachState()
{
    QFETCH(bool, isLarge);
    QFETCH(int, request);
    QFETCH(QString, event);
    QFETCH(QString, requests);
    QFETCH(QString, events);
    const VellDocument doc = isLarge ? largeFile() : smallFile();
    const auto apply = [&] {
        for (const QString &word : event.split(QLatin1Char(' '))) {
            if (word == QLatin1String("pause"))
                m_job->pause(true);
            else if (word == QLatin1String("resume"))
                m_job->pause(false);
            else if (word == QLatin1String("cancel"))
                m_job->cancel();
            else
                m_job.reset();
            // What it sends reaches the server before the next event comes.
            QTest::qWait(40);
        }
    };

    if (request >= 0) {
        m_slow = {request, request + 1};
        whenRequested(request, apply);
    }
    if (request != Idle)
        m_job->createDocument(QString(), doc);
    if (request == Finished)
        QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    if (request < 0)
        apply();
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), events, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(m_world->requestWords(), requests, WaitMs);
    QTest::qWait(SlowMs + 100);
    QCOMPARE(m_spies->log(), events);
    QCOMPARE(m_world->requestWords(), requests);
}

void TestUploadControl::eventsRunWhileTheFileIsHashed()
{
    constexpr qint64 Bytes = 256 * 1024 * 1024; // takes long enough on every machine
    VellDocument doc = m_world->makeFile("a.bin", 1);
    QVERIFY(QFile::resize(doc.filePath, Bytes));
    doc.fileSize = Bytes;
    int ticks = 0;
    int ticksAtTheFirstRequest = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&ticks] { ++ticks; });
    timer.start(0);
    whenRequested(0, [&] { ticksAtTheFirstRequest = ticks; });
    m_instead.insert(0, ScriptedReply::json("{}", 500)); // it need not be sent
    m_job->createDocument(QString(), doc);
    QVERIFY2(ticksAtTheFirstRequest > 10, qPrintable(QString::number(ticksAtTheFirstRequest)));
    QCOMPARE(m_world->requestWords(), QString("record"));
}

void TestUploadControl::pauseAndCancelWhileTheFileIsHashedStopNothing()
{
    QTimer::singleShot(0, this, [this] {
        m_job->pause(true);
        m_job->cancel();
    });
    m_job->createDocument(QString(), largeFile());
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("finishUpload createDocumentFinish"), WaitMs);
}

void TestUploadControl::resumeSendsAWholeFileAgainFromItsFirstByte()
{
    m_slow = {0};
    whenRequested(0, [this] {
        m_job->pause(true);
        m_job->pause(false);
    });
    m_job->createDocument(QString(), m_world->makeFile("a.bin", 300000));
    QTRY_COMPARE_WITH_TIMEOUT(m_world->server.requests().size(), 2, WaitMs);
    const auto &requests = m_world->server.requests();
    QCOMPARE(formParts(requests[0])[0].body.size(), 300000);
    QVERIFY(formParts(requests[0])[0].body == formParts(requests[1])[0].body);
}

void TestUploadControl::resumeOfAWholeFileThatIsGoneDoesNothing()
{
    m_slow = {0};
    const VellDocument doc = smallFile();
    whenRequested(0, [this, doc] {
        m_job->pause(true);
        QCOMPARE(QFile::remove(doc.filePath), CanRemoveOpenFiles);
        m_job->pause(false);
    });
    m_job->createDocument(QString(), doc);
    if (!CanRemoveOpenFiles) {
        QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("createDocumentFinish"), WaitMs);
        QCOMPARE(m_world->requestWords(), QString("file file")); // see eachEventInEachState
        return;
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_world->server.requests().size(), 1, WaitMs);
    QTest::qWait(SlowMs + 100);
    QCOMPARE(m_world->requestWords(), QString("file"));
    QCOMPARE(m_spies->log(), QString());
}

// The attempt before stays connected: both replies count.
void TestUploadControl::resumeWhileAWholeFileIsStillSent()
{
    m_slow = {0};
    whenRequested(0, [this] { m_job->pause(false); });
    m_job->createDocument(QString(), smallFile());
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("createDocumentFinish createDocumentFinish"),
                              WaitMs);
    QCOMPARE(m_world->requestWords(), QString("file file document"));
}

void TestUploadControl::resumeAfterAChunkErrorNeverFinishes()
{
    m_instead.insert(2, ScriptedReply::json("{}", 500));
    connect(m_job.get(), &AsyncCreateDocument::error, this, [this] { m_job->pause(false); });
    m_job->createDocument(QString(), largeFile());
    QTRY_COMPARE_WITH_TIMEOUT(m_world->requestWords(),
                              QString("record chunk0 chunk1 chunk1 chunk2"), WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(openHandles(), 0, WaitMs);
    QTest::qWait(100);
    QCOMPARE(m_world->server.requests().size(), 5);
    QCOMPARE(m_spies->log(), QString("error"));
}

void TestUploadControl::resumeWhenAllChunksAreStored_data()
{
    QTest::addColumn<QByteArray>("fsFileId");
    QTest::addColumn<QString>("requests");
    QTest::addColumn<QString>("events");
    // The file's identifier is that of the record as it stood before the first chunk. Each document's
    // request inverts the phase, so the reply to the second one is taken for a file's.
    QTest::newRow("the record named a file")
        << QByteArray("c7") << "record chunk2 document document"
        << "finishUpload error";
    QTest::newRow("the record named none") << QByteArray() << "record chunk2 document"
                                           << "finishUpload error";
}

void TestUploadControl::resumeWhenAllChunksAreStored()
{
    QFETCH(QByteArray, fsFileId);
    QFETCH(QString, requests);
    QFETCH(QString, events);
    m_store.id = "r1";
    m_store.savedChunk = 2;
    m_store.totalChunk = 3;
    m_store.fsFileId = fsFileId;
    m_instead.insert(2, ScriptedReply::json("{}", 500));
    connect(m_job.get(), &AsyncCreateDocument::error, this, [this] { m_job->pause(false); });
    m_job->createDocument(QString(), largeFile());
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), events, WaitMs);
    QTest::qWait(100);
    QCOMPARE(m_world->requestWords(), requests);
    if (!fsFileId.isEmpty())
        QVERIFY(m_world->server.requests().last().body.contains("\"file\":\"c7\""));
}

void TestUploadControl::resumeReplacesTheHandleOfTheAttemptBefore()
{
#ifdef Q_OS_LINUX
    m_slow = {0, 1, 2};
    m_job->createDocument(QString(), smallFile());
    for (int attempt = 0; attempt < 3; ++attempt) {
        QTRY_COMPARE_WITH_TIMEOUT(m_world->server.requests().size(), attempt + 1, WaitMs);
        QCOMPARE(openHandles(), 1);
        m_job->pause(true);
        m_job->pause(false);
    }
    m_job.reset();
    QCOMPARE(openHandles(), 0);
#endif
}

void TestUploadControl::cancelClosesTheLocalFile()
{
#ifdef Q_OS_LINUX
    m_slow = {0};
    m_job->createDocument(QString(), smallFile());
    QCOMPARE(openHandles(), 1);
    m_job->cancel();
    QCOMPARE(openHandles(), 0);
#endif
}

// The store is asked for a file of the large one's MD5, and without one the small file's body is sent.
void TestUploadControl::aSmallFileGivenWhileALargeOneIsHashed_data()
{
    QTest::addColumn<QByteArray>("fileId");
    QTest::newRow("the store has the large one") << QByteArray("i1");
    QTest::newRow("the store has not") << QByteArray();
}

void TestUploadControl::aSmallFileGivenWhileALargeOneIsHashed()
{
    QFETCH(QByteArray, fileId);
    m_store.infoId = fileId;
    QTimer::singleShot(0, this, [this] { m_job->createDocument(QString(), smallFile()); });
    m_job->createDocument(QString(), largeFile());
    QTRY_VERIFY_WITH_TIMEOUT(m_world->requestLines().filter("/info").size() == 1, WaitMs);
    QTest::qWait(100);
    QVERIFY(!m_world->requestWords().contains(QLatin1String("chunk")));
}

void TestUploadControl::twoJobsHashAtTheSameTime()
{
    AsyncCreateDocument second;
    JobSpies spies(&second);
    VellDocument other = largeFile();
    QTimer::singleShot(0, this, [&] { second.createDocument(QString(), other); });
    m_job->createDocument(QString(), m_world->makeFile("b.bin", UploadWorld::WholeFileLimit + 2));
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(spies.finished.size(), 1, WaitMs);
}

void TestUploadControl::theHashOfAVanishedFileIsEmpty()
{
    QThreadPool *pool = QThreadPool::globalInstance();
    const int threads = pool->maxThreadCount();
    pool->setMaxThreadCount(1);
    QSemaphore gate;
    QtConcurrent::run(pool, [&gate] { gate.acquire(); });
    const VellDocument doc = largeFile();
    const QString md5 = CanRemoveOpenFiles ? QString() : VellPub::getFileMd5(doc.filePath);
    QTimer::singleShot(0, this, [&] {
        QCOMPARE(QFile::remove(doc.filePath), CanRemoveOpenFiles);
        gate.release();
    });
    m_job->createDocument(QString(), doc);
    pool->setMaxThreadCount(threads);
    QCOMPARE(m_world->requestLines()[0], QString("GET /base-service/largefiles/md5/") + md5);
}

QTEST_GUILESS_MAIN(TestUploadControl)
#include "tst_upload_control.moc"
