#include "UploadWorld.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <memory>

Q_DECLARE_METATYPE(ScriptedReply)

// Files of more than 10,485,760 bytes: hashed, then sent in chunks from where the store stopped.
class TestChunkedUpload : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void everyByteGoesUpOnce_data();
    void everyByteGoesUpOnce();
    void aChunkHasItsSevenParts();
    void resumeContinuesAtTheStoresChunk();
    void theStoresCountWinsOnResume();
    void aCompleteRecordSendsNoChunk_data();
    void aCompleteRecordSendsNoChunk();
    void aFailedQueryStartsAtTheFirstChunk_data();
    void aFailedQueryStartsAtTheFirstChunk();
    void aChunkThatWasNotKeptIsSentAgain();
    void theStoresNextChunkIsSentWhicheverItIs();
    void theDocumentTakesTheFileOfTheLastReply();
    void aVersionIsMadeOfALargeFileToo();
    void replyThatIsNoObjectStopsSilently_data();
    void replyThatIsNoObjectStopsSilently();
    void moreSavedThanThereAreStopsSilently();
    void aFailedChunkIsReportedOnce_data();
    void aFailedChunkIsReportedOnce();
    void progressIsThatOfTheFile();
    void aFileThatVanishesIsSentAsItCanBeRead();
    void theJobMayBeDeletedInEachOfItsSignals_data();
    void theJobMayBeDeletedInEachOfItsSignals();
    void theJobMayBeDeletedWhileTheCallIsRunning_data();
    void theJobMayBeDeletedWhileTheCallIsRunning();
    void aHundredJobsLeakNoHandles();

private:
    void start() { m_job->createDocument("h1", m_doc); }
    QList<FormPart> chunk(int request) const
    {
        return formParts(m_world->server.requests()[request]);
    }
    QString line(int request) const { return m_world->requestLines()[request]; }
    //! The store answers by itself but for these requests, counted from 0, in order.
    void except(int request, const ScriptedReply &reply) { m_exceptions.insert(request, reply); }
    void settles(int requests)
    {
        QTRY_COMPARE_WITH_TIMEOUT(m_world->server.requests().size(), requests, WaitMs);
        QTest::qWait(50);
        QCOMPARE(m_world->server.requests().size(), requests);
    }

    std::unique_ptr<UploadWorld> m_world;
    std::unique_ptr<AsyncCreateDocument> m_job;
    std::unique_ptr<JobSpies> m_spies;
    ChunkStore m_store;
    QMap<int, ScriptedReply> m_exceptions;
    VellDocument m_doc;
};

namespace {

const QString chunkLine = "POST /base-service/largefiles";
const QString documentLine = "POST /document-service/projects/p1/documents";

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray md5Of(const QString &path)
{
    return QCryptographicHash::hash(contentOf(path), QCryptographicHash::Md5).toHex();
}

} // namespace

void TestChunkedUpload::init()
{
    m_job.reset();
    m_world = std::make_unique<UploadWorld>();
    m_job = std::make_unique<AsyncCreateDocument>();
    m_spies = std::make_unique<JobSpies>(m_job.get());
    m_store = ChunkStore();
    m_exceptions.clear();
    m_world->server.setHandler([this](const ScriptedRequest &request) {
        const int index = m_world->server.requests().size() - 1;
        return m_exceptions.contains(index) ? m_exceptions.value(index) : m_store.answer(request);
    });
    m_doc = m_world->makeFile("图纸.zip", UploadWorld::WholeFileLimit + 1);
}

void TestChunkedUpload::everyByteGoesUpOnce_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<int>("chunks");
    const qint64 mib4 = UploadWorld::ChunkBytes;
    QTest::newRow("one byte more than goes whole") << UploadWorld::WholeFileLimit + 1 << 3;
    QTest::newRow("exactly three chunks") << 3 * mib4 << 3;
    QTest::newRow("one byte in the last chunk") << 3 * mib4 + 1 << 4;
    QTest::newRow("one byte missing in the last chunk") << 4 * mib4 - 1 << 4;
}

void TestChunkedUpload::everyByteGoesUpOnce()
{
    QFETCH(qint64, bytes);
    QFETCH(int, chunks);
    m_doc = m_world->makeFile("a.bin", bytes);
    start();
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("finishUpload createDocumentFinish"), WaitMs);

    QStringList lines{QString("GET /base-service/largefiles/md5/")
                      + QString::fromLatin1(md5Of(m_doc.filePath))};
    for (int i = 0; i < chunks; ++i)
        lines.append(chunkLine);
    lines.append(documentLine);
    QCOMPARE(m_world->requestLines(), lines);

    QByteArray sent;
    for (int i = 1; i <= chunks; ++i)
        sent += chunk(i)[0].body;
    QVERIFY(sent == contentOf(m_doc.filePath));
    QVERIFY(m_world->server.hasReusedItsConnection());
    QCOMPARE(m_spies->finished[0]._id, QString("d1"));
}

void TestChunkedUpload::aChunkHasItsSevenParts()
{
    start();
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    const QByteArray md5 = md5Of(m_doc.filePath);
    const qint64 sizes[] = {UploadWorld::ChunkBytes, UploadWorld::ChunkBytes, 2097153};
    for (int i = 0; i < 3; ++i) {
        const QByteArray index = QByteArray::number(i);
        const QList<FormPart> parts = chunk(i + 1);
        QCOMPARE(parts.size(), 7);
        QCOMPARE(parts[0].disposition,
                 "form-data; name=\"file\"; filename=\"" + md5 + '-' + index + '"');
        QCOMPARE(parts[0].contentType, QByteArray("application/zip"));
        QCOMPARE(qint64(parts[0].body.size()), sizes[i]);
        const std::pair<const char *, QByteArray> fields[] = {
            {"md5", md5},
            {"fileName", QString("图纸.zip").toUtf8()},
            {"totalChunk", "3"},
            {"savedChunk", index},
            {"fileSize", "10485761"},
            {"chunkSize", QByteArray::number(sizes[i])},
        };
        for (int field = 0; field < 6; ++field) {
            const FormPart &part = parts[field + 1];
            QCOMPARE(part.disposition,
                     QByteArray("form-data; name=\"") + fields[field].first + '"');
            QCOMPARE(part.contentType, QByteArray());
            QCOMPARE(part.body, fields[field].second);
        }
    }
}

void TestChunkedUpload::resumeContinuesAtTheStoresChunk()
{
    m_doc = m_world->makeFile("a.bin", 5 * UploadWorld::ChunkBytes - 10);
    m_store.id = "r1";
    m_store.savedChunk = 2;
    m_store.totalChunk = 5;
    start();
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("finishUpload createDocumentFinish"), WaitMs);
    QCOMPARE(m_store.sentChunks, QList<int>({2, 3, 4}));
    const QList<FormPart> first = chunk(1);
    QVERIFY(first[0].disposition.endsWith("-2\""));
    QCOMPARE(formField(first, "totalChunk"), QByteArray("5"));
    QVERIFY(first[0].body == contentOf(m_doc.filePath).mid(8388608, int(UploadWorld::ChunkBytes)));
}

void TestChunkedUpload::theStoresCountWinsOnResume()
{
    m_store.id = "r1";
    m_store.savedChunk = 1;
    m_store.totalChunk = 2; // of a file that has three
    start();
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    QCOMPARE(m_store.sentChunks, QList<int>({1}));
    QCOMPARE(formField(chunk(1), "totalChunk"), QByteArray("2"));
}

void TestChunkedUpload::aCompleteRecordSendsNoChunk_data()
{
    QTest::addColumn<bool>("isCreate");
    QTest::addColumn<QByteArray>("fsFileId");
    QTest::addColumn<int>("savedChunk");
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("new document") << true << QByteArray("c9") << 3 << QByteArray("c9");
    QTest::newRow("new version") << false << QByteArray("c9") << 3 << QByteArray("c9");
    QTest::newRow("the file is asked for by its MD5")
        << true << QByteArray() << 3 << QByteArray("i1");
    QTest::newRow("the file is asked for, new version")
        << false << QByteArray() << 3 << QByteArray("i1");
    QTest::newRow("more saved than there are") << true << QByteArray("c9") << 4 << QByteArray("c9");
}

void TestChunkedUpload::aCompleteRecordSendsNoChunk()
{
    QFETCH(bool, isCreate);
    QFETCH(QByteArray, fsFileId);
    QFETCH(int, savedChunk);
    QFETCH(QByteArray, file);
    m_store.id = "r1";
    m_store.savedChunk = savedChunk;
    m_store.totalChunk = 3;
    m_store.fsFileId = fsFileId;
    m_doc._id = "d7";
    if (isCreate)
        m_job->createDocument(QString(), m_doc);
    else
        m_job->updateDocument(QString(), m_doc);
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("createDocumentFinish"), WaitMs);
    QVERIFY(m_store.sentChunks.isEmpty());
    QStringList lines{QString("GET /base-service/largefiles/md5/")
                      + QString::fromLatin1(md5Of(m_doc.filePath))};
    if (fsFileId.isEmpty())
        lines.append(QString("GET /base-service/md5/") + QString::fromLatin1(md5Of(m_doc.filePath))
                     + "/info");
    lines.append(isCreate ? documentLine : QString("PUT /document-service/documents/d7"));
    QCOMPARE(m_world->requestLines(), lines);
    QVERIFY(m_world->server.requests().last().body.contains("\"file\":\"" + file + "\""));
}

void TestChunkedUpload::aFailedQueryStartsAtTheFirstChunk_data()
{
    QTest::addColumn<ScriptedReply>("reply");
    QTest::newRow("not found") << ScriptedReply::json("", 404);
    QTest::newRow("empty") << ScriptedReply::json("");
    QTest::newRow("a list") << ScriptedReply::json("[]");
    // Without an identifier it is no record; but its counter is taken.
    QTest::newRow("counters without a record") << ScriptedReply::json(R"({"totalChunk":9})");
    QTest::newRow("connection lost") << ScriptedReply::endingAs(ScriptedReply::Ending::Truncated);
}

void TestChunkedUpload::aFailedQueryStartsAtTheFirstChunk()
{
    QFETCH(ScriptedReply, reply);
    except(0, reply);
    start();
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("finishUpload createDocumentFinish"), WaitMs);
    QCOMPARE(m_store.sentChunks, QList<int>({0, 1, 2}));
    QCOMPARE(formField(chunk(1), "totalChunk"), QByteArray("3"));
}

void TestChunkedUpload::aChunkThatWasNotKeptIsSentAgain()
{
    except(2, ScriptedReply::json(R"({"savedChunk":1,"totalChunk":3})"));
    start();
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("finishUpload createDocumentFinish"), WaitMs);
    QCOMPARE(m_store.sentChunks, QList<int>({0, 1, 2}));
    QCOMPARE(formField(chunk(2), "savedChunk"), QByteArray("1"));
    QCOMPARE(formField(chunk(3), "savedChunk"), QByteArray("1"));
}

void TestChunkedUpload::theStoresNextChunkIsSentWhicheverItIs()
{
    except(1, ScriptedReply::json(R"({"savedChunk":2,"totalChunk":3})"));
    except(2, ScriptedReply::json(R"({"savedChunk":0,"totalChunk":3})"));
    start();
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    QStringList indexes;
    for (int i = 1; i < m_world->server.requests().size() - 1; ++i)
        indexes.append(QString::fromLatin1(formField(chunk(i), "savedChunk")));
    QCOMPARE(indexes.join(QLatin1Char(' ')), QString("0 2 0 1 2"));
}

void TestChunkedUpload::theDocumentTakesTheFileOfTheLastReply()
{
    m_store.finishedFileId = "c42";
    start();
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    QCOMPARE(m_world->server.requests().last().body,
             QByteArray("{\"category\":null,\"file\":\"c42\",\"name\":\"图纸.zip\","
                        "\"parentId\":null,\"type\":\"file\"}"));
}

void TestChunkedUpload::aVersionIsMadeOfALargeFileToo()
{
    m_doc._id = "d7";
    m_job->updateDocument("h1", m_doc);
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("finishUpload createDocumentFinish"), WaitMs);
    QCOMPARE(line(4), QString("PUT /document-service/documents/d7"));
    QVERIFY(m_world->server.requests()[4].body.contains("\"hostId\":\"h1\""));
}

void TestChunkedUpload::replyThatIsNoObjectStopsSilently_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("a list") << QByteArray("[]");
    QTest::newRow("no JSON") << QByteArray("<html>");
}

void TestChunkedUpload::replyThatIsNoObjectStopsSilently()
{
    QFETCH(QByteArray, reply);
    except(2, ScriptedReply::json(reply));
    start();
    settles(3);
    QCOMPARE(m_spies->log(), QString());
}

void TestChunkedUpload::moreSavedThanThereAreStopsSilently()
{
    except(1, ScriptedReply::json(R"({"savedChunk":4,"totalChunk":3,"fsFileId":"c1"})"));
    start();
    settles(2);
    QCOMPARE(m_spies->log(), QString());
}

void TestChunkedUpload::aFailedChunkIsReportedOnce_data()
{
    QTest::addColumn<ScriptedReply>("reply");
    QTest::addColumn<int>("code");
    QTest::newRow("no room") << ScriptedReply::json(R"({"error":"no room"})", 507)
                             << int(QNetworkReply::UnknownServerError);
    QTest::newRow("refused") << ScriptedReply::json(R"({"savedChunk":2,"totalChunk":3})", 403)
                             << int(QNetworkReply::ContentAccessDenied);
    QTest::newRow("connection lost") << ScriptedReply::endingAs(ScriptedReply::Ending::Truncated)
                                     << int(QNetworkReply::RemoteHostClosedError);
}

void TestChunkedUpload::aFailedChunkIsReportedOnce()
{
    QFETCH(ScriptedReply, reply);
    QFETCH(int, code);
    except(2, reply);
    start();
    settles(3);
    QCOMPARE(m_spies->log(), QString("error"));
    QCOMPARE(m_spies->errors, QList<int>({code}));
}

void TestChunkedUpload::progressIsThatOfTheFile()
{
    QList<QPair<qint64, qint64>> steps; // before the document's request, which has its own
    connect(m_job.get(), &AsyncCreateDocument::finishUpload, this,
            [&] { steps = m_spies->progress; });
    start();
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    QVERIFY(!steps.isEmpty());
    const qint64 framing = m_world->server.requests()[1].body.size() - UploadWorld::ChunkBytes;
    qint64 last = 0;
    for (const auto &step : qAsConst(steps)) {
        QCOMPARE(step.second, m_doc.fileSize);
        // Between two chunks it steps back by the framing of the one before.
        QVERIFY(step.first >= last - framing);
        last = step.first;
    }
    QVERIFY(last > m_doc.fileSize && last <= m_doc.fileSize + framing);
}

void TestChunkedUpload::aFileThatVanishesIsSentAsItCanBeRead()
{
    connect(&m_world->server, &ScriptedServer::requestReceived, this, [this] {
        if (m_world->server.requests().size() == 2)
            QCOMPARE(QFile::remove(m_doc.filePath), CanRemoveOpenFiles);
    });
    start();
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    const QByteArray rest = CanRemoveOpenFiles
        ? QByteArray()
        : contentOf(m_doc.filePath).mid(int(UploadWorld::ChunkBytes), int(UploadWorld::ChunkBytes));
    QCOMPARE(formField(chunk(2), "chunkSize"), QByteArray::number(rest.size()));
    QVERIFY(chunk(2)[0].body == rest);
    QCOMPARE(formField(chunk(2), "fileSize"), QByteArray("10485761"));
}

void TestChunkedUpload::theJobMayBeDeletedInEachOfItsSignals_data()
{
    QTest::addColumn<QString>("signal");
    QTest::addColumn<int>("requests");
    QTest::newRow("uploadProgress") << "uploadProgress" << -1;
    QTest::newRow("finishUpload") << "finishUpload" << 4;
    QTest::newRow("createDocumentFinish") << "createDocumentFinish" << 5;
    QTest::newRow("error") << "error" << 3;
}

void TestChunkedUpload::theJobMayBeDeletedInEachOfItsSignals()
{
    QFETCH(QString, signal);
    QFETCH(int, requests);
    auto *job = m_job.release();
    const QPointer<AsyncCreateDocument> watched(job);
    const auto drop = [job] { delete job; };
    if (signal == QLatin1String("uploadProgress"))
        connect(job, &AsyncCreateDocument::uploadProgress, this, drop);
    else if (signal == QLatin1String("finishUpload"))
        connect(job, &AsyncCreateDocument::finishUpload, this, drop);
    else if (signal == QLatin1String("error"))
        connect(job, &AsyncCreateDocument::error, this, drop);
    else
        connect(job, &AsyncCreateDocument::createDocumentFinish, this, drop);
    if (signal == QLatin1String("error"))
        except(2, ScriptedReply::json("", 500));
    job->createDocument(QString(), m_doc);
    QTRY_VERIFY_WITH_TIMEOUT(!watched, WaitMs);
    if (requests > 0)
        settles(requests);
    else
        QTest::qWait(50);
}

void TestChunkedUpload::theJobMayBeDeletedWhileTheCallIsRunning_data()
{
    QTest::addColumn<QString>("when");
    QTest::addColumn<int>("requests");
    QTest::newRow("while it hashes") << "hashing" << 0;
    QTest::newRow("while it asks for the record") << "record" << 1;
    QTest::newRow("while it asks for the file") << "file" << 2;
}

void TestChunkedUpload::theJobMayBeDeletedWhileTheCallIsRunning()
{
    QFETCH(QString, when);
    QFETCH(int, requests);
    auto *job = m_job.release();
    m_store.id = "r1";
    m_store.savedChunk = m_store.totalChunk = 3; // complete, but the file is asked for
    if (when == QLatin1String("hashing")) {
        QTimer::singleShot(0, this, [job] { delete job; });
    } else {
        connect(&m_world->server, &ScriptedServer::requestReceived, this, [=] {
            if (m_world->server.requests().size() == requests)
                delete job;
        });
    }
    job->createDocument(QString(), m_doc);
    settles(requests);
    QCOMPARE(m_spies->log(), QString());
}

void TestChunkedUpload::aHundredJobsLeakNoHandles()
{
#ifdef Q_OS_LINUX
    // Of the file: kept-alive connections come and go.
    const auto handles = [this] {
        int count = 0;
        const QFileInfoList open = QDir("/proc/self/fd").entryInfoList(QDir::Files);
        for (const QFileInfo &handle : open)
            count += handle.symLinkTarget() == m_doc.filePath ? 1 : 0;
        return count;
    };
    {
        QFile open(m_doc.filePath);
        QVERIFY(open.open(QIODevice::ReadOnly));
        QCOMPARE(handles(), 1);
    }
    m_store.id = "r1";
    m_store.fsFileId = "c1";
    for (int i = 0; i < 100; ++i) {
        m_store.savedChunk = i % 2 == 0 ? 3 : 2;
        m_store.totalChunk = 3;
        m_job = std::make_unique<AsyncCreateDocument>();
        m_spies = std::make_unique<JobSpies>(m_job.get());
        QSignalSpy finished(m_job.get(), &AsyncCreateDocument::createDocumentFinish);
        start();
        QVERIFY(finished.wait(WaitMs));
        QVERIFY2(handles() <= 1, qPrintable(QString::number(handles())));
    }
    m_job.reset();
    QCOMPARE(handles(), 0);
#endif
}

QTEST_GUILESS_MAIN(TestChunkedUpload)
#include "tst_chunked_upload.moc"
