#include "UploadTest.h"

#include <QTest>
#include <QTimer>

// pause(false) in the states in which a client should not call it, or calls it after an error: what is sent then,
// and how the job ends.
class TestUploadResume : public UploadTest
{
    Q_OBJECT

private Q_SLOTS:
    void resumeInEachState_data();
    void resumeInEachState();
    void resumeWhileTheFileIsHashed_data();
    void resumeWhileTheFileIsHashed();
    void resumeAfterASmallFileFailedMakesNoDocument_data();
    void resumeAfterASmallFileFailedMakesNoDocument();
    void resumeWhileASmallFileIsUnderWay();
    void resumeReportsProgressAgain_data();
    void resumeReportsProgressAgain();
    void resumeOfAVersionWhoseChunksAreStored_data();
    void resumeOfAVersionWhoseChunksAreStored();
    void resumeNamesTheFileOfTheRecordBeforeTheChunks();
};

namespace {

constexpr int Finished = -1;
constexpr int LongMs = 1000; // what is sent meanwhile is answered first, on a busy machine, too

//! The file that each document request names.
QStringList filesOfDocuments(const UploadWorld &world)
{
    QStringList files;
    for (const ScriptedRequest &request : world.server.requests()) {
        if (!request.target.startsWith("/document-service/"))
            continue;
        const QByteArray rest = request.body.mid(request.body.indexOf("\"file\":\"") + 8);
        files.append(QString::fromLatin1(rest.left(rest.indexOf('"'))));
    }
    return files;
}

} // namespace

void TestUploadResume::resumeInEachState_data()
{
    QTest::addColumn<bool>("isLarge");
    QTest::addColumn<bool>("isCreate");
    QTest::addColumn<int>("request"); // that is being answered, slowly, when the job is resumed
    QTest::addColumn<QString>("requests"); // in all
    QTest::addColumn<QString>("events");
    QTest::addColumn<QString>("files"); // that the document requests name

    const auto row = [](const char *name, bool isLarge, bool isCreate, int request,
                        const char *requests, const char *events, const char *files) {
        QTest::newRow(name) << isLarge << isCreate << request << QString::fromLatin1(requests)
                            << QString::fromLatin1(events) << QString::fromLatin1(files);
    };
    const char *once = "createDocumentFinish";
    const char *twice = "createDocumentFinish createDocumentFinish";
    const char *large = "finishUpload createDocumentFinish";
    const char *largeTwice = "finishUpload createDocumentFinish createDocumentFinish";
    const char *chunks = "record chunk0 chunk1 chunk2 document";
    const char *moreVersions = "record chunk0 chunk1 chunk2 document document document";

    // The whole file goes up again. After a new document its reply is taken for the document's; after a version
    // the phase stands where the file's is expected.
    row("finished small document", false, true, Finished, "file document file", twice, "c1");
    row("finished small version", false, false, Finished, "file document file document", twice,
        "c1,c1");
    row("small document, in its document request", false, true, 1, "file document file document",
        once, "c1,c1");
    row("small version, in its document request", false, false, 1, "file document file document",
        twice, "c1,c1");
    // The store had no record before the first chunk, so there is no file to name: a new document is not asked
    // for, a version is, and the reply to that is taken for a file's.
    row("finished large document", true, true, Finished, chunks, large, "c1");
    row("finished large version", true, false, Finished, moreVersions, largeTwice, "c1,,");
    row("large document, in its document request", true, true, 4, chunks, large, "c1");
    row("large version, in its document request", true, false, 4, moreVersions, largeTwice, "c1,,");
    row("large document, in its record request", true, true, 0, chunks, large, "c1");
    row("large version, in its record request", true, false, 0,
        "record document chunk0 chunk1 chunk2 document document",
        "createDocumentFinish finishUpload createDocumentFinish", ",c1,");
}

void TestUploadResume::resumeInEachState()
{
    QFETCH(bool, isLarge);
    QFETCH(bool, isCreate);
    QFETCH(int, request);
    QFETCH(QString, requests);
    QFETCH(QString, events);
    QFETCH(QString, files);
    if (request != Finished) {
        m_slow = {request};
        m_slowMs = LongMs;
        whenRequested(request, [this] { m_job->pause(false); });
    }
    start(isLarge ? largeFile() : smallFile(), isCreate);
    if (request == Finished) {
        QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
        m_job->pause(false);
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_world->requestWords(), requests, WaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), events, WaitMs);
    settles(m_world->server.requests().size());
    QCOMPARE(m_spies->log(), events);
    QCOMPARE(filesOfDocuments(*m_world).join(QLatin1Char(',')), files);
}

void TestUploadResume::resumeWhileTheFileIsHashed_data()
{
    QTest::addColumn<bool>("isCreate");
    QTest::addColumn<QString>("requests"); // sorted: two of them are sent at once
    QTest::addColumn<QString>("events");
    QTest::addColumn<QString>("files");
    QTest::newRow("document") << true << "chunk0 chunk1 chunk2 document record"
                              << "finishUpload createDocumentFinish"
                              << "c1";
    // As in the record request: no chunk is counted yet.
    QTest::newRow("version") << false << "chunk0 chunk1 chunk2 document document document record"
                             << "createDocumentFinish finishUpload createDocumentFinish"
                             << ",c1,";
}

void TestUploadResume::resumeWhileTheFileIsHashed()
{
    QFETCH(bool, isCreate);
    QFETCH(QString, requests);
    QFETCH(QString, events);
    QFETCH(QString, files);
    QTimer::singleShot(0, this, [this] { m_job->pause(false); });
    start(largeFile(), isCreate);
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), events, WaitMs);
    settles(requests.count(QLatin1Char(' ')) + 1);
    QStringList words = m_world->requestWords().split(QLatin1Char(' '));
    words.sort();
    QCOMPARE(words.join(QLatin1Char(' ')), requests);
    QCOMPARE(m_spies->log(), events);
    QCOMPARE(filesOfDocuments(*m_world).join(QLatin1Char(',')), files);
}

void TestUploadResume::resumeAfterASmallFileFailedMakesNoDocument_data()
{
    QTest::addColumn<bool>("isCreate");
    QTest::newRow("document") << true;
    QTest::newRow("version") << false;
}

// The phase was inverted: the reply to the second attempt is taken for a document's.
void TestUploadResume::resumeAfterASmallFileFailedMakesNoDocument()
{
    QFETCH(bool, isCreate);
    m_instead.insert(0, ScriptedReply::json("{}", 500));
    connect(m_job.get(), &AsyncCreateDocument::error, this, [this] { m_job->pause(false); });
    start(smallFile(), isCreate);
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("error createDocumentFinish"), WaitMs);
    settles(2);
    QCOMPARE(m_world->requestWords(), QString("file file"));
    QCOMPARE(m_spies->finished[0]._id, QString());
    QCOMPARE(m_spies->log(), QString("error createDocumentFinish"));
}

// The attempt before loses its file in the middle and fails.
void TestUploadResume::resumeWhileASmallFileIsUnderWay()
{
    m_world->server.readSlowly(1 << 20, 20);
    QMetaObject::Connection once;
    once = connect(m_job.get(), &AsyncCreateDocument::uploadProgress, this, [&] {
        disconnect(once);
        QTimer::singleShot(0, this, [this] { m_job->pause(false); });
    });
    start(m_world->makeFile("a.bin", 10'000'000));
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->events.size(), 2, WaitMs);
    settles(1);
    QCOMPARE(formParts(m_world->server.requests()[0])[0].body.size(), 10'000'000);
    QCOMPARE(m_spies->log(), QString("error createDocumentFinish"));
    QCOMPARE(m_spies->finished[0]._id, QString());
}

void TestUploadResume::resumeReportsProgressAgain_data()
{
    QTest::addColumn<int>("request"); // during which the job is paused and resumed
    QTest::newRow("in the file's request") << 0;
    // A new document has taken the progress of the manager before off by then.
    QTest::newRow("in the document's request") << 1;
}

void TestUploadResume::resumeReportsProgressAgain()
{
    QFETCH(int, request);
    m_slow = {request};
    whenRequested(request, [this] {
        m_job->pause(true);
        m_spies->progress.clear();
        m_job->pause(false);
    });
    start(m_world->makeFile("a.bin", 300'000));
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    QVERIFY(!m_spies->progress.isEmpty());
    const qint64 bodyBytes = body(request + 1).size();
    QCOMPARE(m_spies->progress.last(), qMakePair(bodyBytes, bodyBytes));
}

void TestUploadResume::resumeOfAVersionWhoseChunksAreStored_data()
{
    QTest::addColumn<QByteArray>("fsFileId");
    QTest::addColumn<QString>("files");
    // Each document request inverts the phase, so the reply to the second one is taken for a file's.
    QTest::newRow("the record named a file") << QByteArray("c7") << "c1,c7,";
    QTest::newRow("the record named none") << QByteArray() << "c1,,";
}

void TestUploadResume::resumeOfAVersionWhoseChunksAreStored()
{
    QFETCH(QByteArray, fsFileId);
    QFETCH(QString, files);
    m_store.id = "r1";
    m_store.savedChunk = 2;
    m_store.totalChunk = 3;
    m_store.fsFileId = fsFileId;
    m_instead.insert(2, ScriptedReply::json("{}", 500));
    connect(m_job.get(), &AsyncCreateDocument::error, this, [this] { m_job->pause(false); });
    start(largeFile(), false);
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("finishUpload error createDocumentFinish"),
                              WaitMs);
    settles(5);
    QCOMPARE(m_world->requestWords(), QString("record chunk2 document document document"));
    QCOMPARE(filesOfDocuments(*m_world).join(QLatin1Char(',')), files);
}

void TestUploadResume::resumeNamesTheFileOfTheRecordBeforeTheChunks()
{
    m_store.id = "r1";
    m_store.savedChunk = m_store.totalChunk = 3;
    m_store.fsFileId = "c7";
    start(largeFile());
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    m_job->pause(false);
    QTRY_COMPARE_WITH_TIMEOUT(m_world->requestWords(), QString("record document document"), WaitMs);
    QCOMPARE(body(1), body(2));
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 2, WaitMs);
}

QTEST_GUILESS_MAIN(TestUploadResume)
#include "tst_upload_resume.moc"
