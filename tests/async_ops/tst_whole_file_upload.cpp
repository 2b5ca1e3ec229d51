#include "UploadWorld.h"

#include <VellNetwork/NetworkSettings.h>
#include <VellNetwork/VellBaseApi.h>

#include <QDir>
#include <QFile>
#include <QPointer>
#include <QTest>

#include <memory>

Q_DECLARE_METATYPE(ScriptedReply)

// Files of at most 10,485,760 bytes: one request for the bytes, one for the document.
class TestWholeFileUpload : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aFileBecomesADocument();
    void aFileBecomesAVersion();
    void nullStandsForNoCategoryAndNoParent();
    void theHostOfANewDocumentIsNotSent();
    void theSizeOfTheRecordDecides_data();
    void theSizeOfTheRecordDecides();
    void anEmptyFileIsAFile();
    void theFirstNamedFileCounts_data();
    void theFirstNamedFileCounts();
    void anUpdateIsSentWithoutAFileToo_data();
    void anUpdateIsSentWithoutAFileToo();
    void theReplyIsReadAsADocument();
    void repliesThatAreNoDocument_data();
    void repliesThatAreNoDocument();
    void anEmptyFileReplyFinishesWithADefaultRecord();
    void aFileThatCannotBeOpenedDoesNothing_data();
    void aFileThatCannotBeOpenedDoesNothing();
    void networkErrorsAreRelayed_data();
    void networkErrorsAreRelayed();
    void progressEndsWithTheFileOfANewDocument();
    void progressGoesOnWithTheRequestOfAVersion();
    void aSecondUploadOfTheSameJob();
    void theJobMayBeDeletedInEachOfItsSignals_data();
    void theJobMayBeDeletedInEachOfItsSignals();
    void theJobMayBeDeletedInFlight();
    void theLocalFileIsClosedWhenItHasGoneUp();

private:
    void answer(const QByteArray &body, int status = 200)
    {
        m_world->server.enqueue(ScriptedReply::json(body, status));
    }
    QByteArray body(int request) const { return m_world->server.requests()[request].body; }

    std::unique_ptr<UploadWorld> m_world;
    std::unique_ptr<AsyncCreateDocument> m_job;
    std::unique_ptr<JobSpies> m_spies;
};

void TestWholeFileUpload::init()
{
    m_job.reset();
    m_world = std::make_unique<UploadWorld>();
    m_job = std::make_unique<AsyncCreateDocument>();
    m_spies = std::make_unique<JobSpies>(m_job.get());
}

void TestWholeFileUpload::aFileBecomesADocument()
{
    VellDocument doc = m_world->makeFile("R&D 100% #1 + 图纸.dwg", 100000);
    doc.parentId = "f1";
    doc.category = "doc";
    answer(R"({"files":["c1"]})");
    answer(R"({"_id":"d1","name":"as stored","fileId":"c1"})");
    m_job->createDocument("h1", doc);
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("createDocumentFinish"), WaitMs);

    QCOMPARE(
        m_world->requestLines(),
        QStringList({"POST /base-service/files", "POST /document-service/projects/p1/documents"}));
    const QList<FormPart> parts = formParts(m_world->server.requests()[0]);
    QCOMPARE(parts.size(), 1);
    QCOMPARE(parts[0].disposition,
             QByteArray("form-data; name=\"file\"; filename=\"R&D 100% #1 + 图纸.dwg\""));
    QFile file(doc.filePath);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(parts[0].body, file.readAll());
    QCOMPARE(body(1),
             QByteArray(R"({"category":"doc","file":"c1","name":"R&D 100% #1 + 图纸.dwg",)"
                        R"("parentId":"f1","type":"file"})"));
    QCOMPARE(m_spies->finished[0]._id, QString("d1"));
    QCOMPARE(m_spies->finished[0].name, QString("as stored"));
    QVERIFY(m_world->server.hasReusedItsConnection());
}

void TestWholeFileUpload::aFileBecomesAVersion()
{
    VellDocument doc = m_world->makeFile("plan.dwg", 100);
    doc._id = "d1";
    answer(R"({"files":["c2"]})");
    answer(R"({"_id":"d1","hostId":"h1"})");
    m_job->updateDocument("h1", doc);
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("createDocumentFinish"), WaitMs);

    QCOMPARE(m_world->requestLines(),
             QStringList({"POST /base-service/files", "PUT /document-service/documents/d1"}));
    QCOMPARE(body(1),
             QByteArray(R"({"category":null,"file":"c2","hostId":"h1","name":"plan.dwg",)"
                        R"("parentId":null,"type":"file"})"));
    QCOMPARE(m_spies->finished[0].hostId, QString("h1"));
}

void TestWholeFileUpload::nullStandsForNoCategoryAndNoParent()
{
    const VellDocument doc = m_world->makeFile("a.txt", 1);
    answer(R"({"files":["c1"]})");
    answer("{}");
    m_job->createDocument(QString(), doc);
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    QCOMPARE(body(1),
             QByteArray(R"({"category":null,"file":"c1","name":"a.txt","parentId":null,)"
                        R"("type":"file"})"));
}

void TestWholeFileUpload::theHostOfANewDocumentIsNotSent()
{
    answer(R"({"files":["c1"]})");
    answer("{}");
    m_job->createDocument("h1", m_world->makeFile("a.txt", 1));
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    QVERIFY(!body(1).contains("host"));
}

void TestWholeFileUpload::theSizeOfTheRecordDecides_data()
{
    QTest::addColumn<qint64>("fileSize");
    QTest::addColumn<QString>("firstRequest");
    const QString whole = "POST /base-service/files";
    const QString chunked = "GET /base-service/largefiles/md5/";
    QTest::newRow("0") << Q_INT64_C(0) << whole;
    QTest::newRow("10,485,759") << UploadWorld::WholeFileLimit - 1 << whole;
    QTest::newRow("10,485,760") << UploadWorld::WholeFileLimit << whole;
    QTest::newRow("10,485,761") << UploadWorld::WholeFileLimit + 1 << chunked;
    QTest::newRow("5 GiB") << (Q_INT64_C(5) << 30) << chunked;
    // Compared without its sign.
    QTest::newRow("negative") << Q_INT64_C(-1) << chunked;
}

void TestWholeFileUpload::theSizeOfTheRecordDecides()
{
    QFETCH(qint64, fileSize);
    QFETCH(QString, firstRequest);
    VellDocument doc = m_world->makeFile("a.bin", 10);
    doc.fileSize = fileSize;
    m_job->createDocument(QString(), doc);
    QTRY_VERIFY_WITH_TIMEOUT(!m_world->requestLines().isEmpty(), WaitMs);
    QVERIFY2(m_world->requestLines()[0].startsWith(firstRequest),
             qPrintable(m_world->requestLines()[0]));
}

void TestWholeFileUpload::anEmptyFileIsAFile()
{
    answer(R"({"files":["c1"]})");
    answer(R"({"_id":"d1"})");
    m_job->createDocument(QString(), m_world->makeFile("empty.txt", 0));
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    const QList<FormPart> parts = formParts(m_world->server.requests()[0]);
    QCOMPARE(parts.size(), 1);
    QCOMPARE(parts[0].body, QByteArray());
    QCOMPARE(m_spies->finished[0]._id, QString("d1"));
}

void TestWholeFileUpload::theFirstNamedFileCounts_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QByteArray>("fileId");
    QTest::newRow("one") << QByteArray(R"({"files":["c1"]})") << QByteArray("c1");
    QTest::newRow("the first of two") << QByteArray(R"({"files":["c1","c2"]})") << QByteArray("c1");
    QTest::newRow("behind an empty one")
        << QByteArray(R"({"files":["","abc"]})") << QByteArray("abc");
    QTest::newRow("behind a number and an object")
        << QByteArray(R"({"files":[7,{"id":"x"},null,"abc"]})") << QByteArray("abc");
    QTest::newRow("none") << QByteArray(R"({"files":[]})") << QByteArray();
    QTest::newRow("no list") << QByteArray(R"({"files":"c1"})") << QByteArray();
    QTest::newRow("nothing of the kind") << QByteArray("{}") << QByteArray();
    QTest::newRow("a list at the top") << QByteArray(R"(["c1"])") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("<html>") << QByteArray();
}

void TestWholeFileUpload::theFirstNamedFileCounts()
{
    QFETCH(QByteArray, reply);
    QFETCH(QByteArray, fileId);
    answer(reply);
    answer(R"({"_id":"d1"})");
    m_job->createDocument(QString(), m_world->makeFile("a.txt", 1));
    if (fileId.isEmpty()) {
        // A new document without a file is not asked for, and nobody is told.
        QTRY_COMPARE_WITH_TIMEOUT(m_world->server.requests().size(), 1, WaitMs);
        QTest::qWait(50);
        QCOMPARE(m_world->server.requests().size(), 1);
        QCOMPARE(m_spies->log(), QString());
        return;
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    QVERIFY(body(1).contains("\"file\":\"" + fileId + "\""));
}

void TestWholeFileUpload::anUpdateIsSentWithoutAFileToo_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("none") << QByteArray(R"({"files":[]})");
    QTest::newRow("no JSON") << QByteArray("<html>");
}

void TestWholeFileUpload::anUpdateIsSentWithoutAFileToo()
{
    QFETCH(QByteArray, reply);
    answer(reply);
    answer(R"({"_id":"d1"})");
    m_job->updateDocument(QString(), m_world->makeFile("a.txt", 1));
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    QVERIFY(body(1).contains("\"file\":\"\""));
}

void TestWholeFileUpload::theReplyIsReadAsADocument()
{
    answer(R"({"files":["c1"]})");
    answer(R"({"_id":"d1","type":"file","category":"doc","order":4,"favorite":true,
        "fileId":"at the top","file":{"fileId":"nested","fileSize":5000000000,"suffix":"dwg"},
        "auths":[{"key":"edit","value":"true"},{"key":"edit","value":"false"},
                 {"key":"delete","value":true},{"key":"upload","value":"true"}]})");
    m_job->createDocument(QString(), m_world->makeFile("a.txt", 1));
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    const VellDocument &doc = m_spies->finished[0];
    QCOMPARE(doc.fileId, QString("at the top"));
    QCOMPARE(doc.fileSize, Q_INT64_C(5000000000));
    QCOMPARE(doc.suffix, QString("dwg"));
    QCOMPARE(doc.category, QString("doc"));
    QCOMPARE(doc.order, 4);
    QVERIFY(doc.favorite);
    const QMap<QString, bool> rights{{"edit", false}, {"delete", false}, {"upload", true}};
    QCOMPARE(doc.auths, rights);
}

void TestWholeFileUpload::repliesThatAreNoDocument_data()
{
    QTest::addColumn<bool>("isCreate");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("order");
    for (const bool isCreate : {true, false}) {
        const char *what = isCreate ? "new document" : "new version";
        QTest::addRow("%s: empty reply", what) << isCreate << QByteArray() << "dir" << -1;
        QTest::addRow("%s: no JSON", what) << isCreate << QByteArray("<html>") << "dir" << -1;
        // Readable, so it is mapped: of an object that is not there every field is empty.
        QTest::addRow("%s: a list", what) << isCreate << QByteArray("[]") << QString() << 0;
    }
}

void TestWholeFileUpload::repliesThatAreNoDocument()
{
    QFETCH(bool, isCreate);
    QFETCH(QByteArray, reply);
    QFETCH(QString, type);
    QFETCH(int, order);
    answer(R"({"files":["c1"]})");
    answer(reply);
    const VellDocument doc = m_world->makeFile("a.txt", 1);
    if (isCreate)
        m_job->createDocument(QString(), doc);
    else
        m_job->updateDocument(QString(), doc);
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("createDocumentFinish"), WaitMs);
    QCOMPARE(m_spies->finished[0]._id, QString());
    QCOMPARE(m_spies->finished[0].type, type);
    QCOMPARE(m_spies->finished[0].order, order);
}

void TestWholeFileUpload::anEmptyFileReplyFinishesWithADefaultRecord()
{
    answer("");
    m_job->createDocument(QString(), m_world->makeFile("a.txt", 1));
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("createDocumentFinish"), WaitMs);
    QCOMPARE(m_spies->finished[0].type, QString("dir"));
    QCOMPARE(m_world->server.requests().size(), 1);
}

void TestWholeFileUpload::aFileThatCannotBeOpenedDoesNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<qint64>("fileSize");
    QTest::newRow("missing") << "missing.txt" << Q_INT64_C(1);
    QTest::newRow("missing, large") << "missing.txt" << UploadWorld::WholeFileLimit + 1;
    QTest::newRow("a folder") << "." << Q_INT64_C(1);
    QTest::newRow("no path") << QString() << Q_INT64_C(1);
}

void TestWholeFileUpload::aFileThatCannotBeOpenedDoesNothing()
{
    QFETCH(QString, name);
    QFETCH(qint64, fileSize);
    VellDocument doc;
    doc.filePath = name.isEmpty() ? name : m_world->folder.filePath(name);
    doc.fileSize = fileSize;
    m_job->createDocument(QString(), doc);
    m_job->updateDocument(QString(), doc);
    QTest::qWait(50);
    QCOMPARE(m_spies->log(), QString());
    QCOMPARE(m_world->server.requests().size(), 0);
}

void TestWholeFileUpload::networkErrorsAreRelayed_data()
{
    QTest::addColumn<int>("failingRequest");
    QTest::addColumn<ScriptedReply>("reply");
    QTest::addColumn<int>("code");
    const char *requests[] = {"file", "document"};
    for (int i = 0; i < 2; ++i) {
        QTest::addRow("%s refused", requests[i])
            << i << ScriptedReply::json("{}", 403) << int(QNetworkReply::ContentAccessDenied);
        QTest::addRow("%s not found", requests[i])
            << i << ScriptedReply::json("", 404) << int(QNetworkReply::ContentNotFoundError);
        QTest::addRow("%s: server in trouble", requests[i])
            << i << ScriptedReply::json("", 500) << int(QNetworkReply::InternalServerError);
        QTest::addRow("%s: connection lost", requests[i])
            << i << ScriptedReply::endingAs(ScriptedReply::Ending::Truncated)
            << int(QNetworkReply::RemoteHostClosedError);
        QTest::addRow("%s: no answer", requests[i])
            << i << ScriptedReply::endingAs(ScriptedReply::Ending::Withheld)
            << int(QNetworkReply::TimeoutError);
    }
}

void TestWholeFileUpload::networkErrorsAreRelayed()
{
    QFETCH(int, failingRequest);
    QFETCH(ScriptedReply, reply);
    QFETCH(int, code);
    NetworkSettings::instance().setStallTimeout(std::chrono::milliseconds(200));
    if (failingRequest == 1)
        answer(R"({"files":["c1"]})");
    m_world->server.enqueue(reply);
    m_job->createDocument(QString(), m_world->makeFile("a.txt", 1));
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("error"), WaitMs);
    QCOMPARE(m_spies->errors, QList<int>({code}));
    NetworkSettings::instance().setStallTimeout(std::chrono::seconds(30));
}

void TestWholeFileUpload::progressEndsWithTheFileOfANewDocument()
{
    answer(R"({"files":["c1"]})");
    answer(R"({"_id":"d1"})");
    m_job->createDocument(QString(), m_world->makeFile("a.bin", 1000000));
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    QVERIFY(!m_spies->progress.isEmpty());
    const qint64 bodyBytes = body(0).size();
    for (const auto &step : qAsConst(m_spies->progress))
        QCOMPARE(step.second, bodyBytes);
    QCOMPARE(m_spies->progress.last().first, bodyBytes);
}

void TestWholeFileUpload::progressGoesOnWithTheRequestOfAVersion()
{
    answer(R"({"files":["c1"]})");
    answer(R"({"_id":"d1"})");
    m_job->updateDocument(QString(), m_world->makeFile("a.bin", 1000000));
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    const qint64 documentBytes = body(1).size();
    bool seen = false;
    for (const auto &step : qAsConst(m_spies->progress))
        seen = seen || step.second == documentBytes;
    QVERIFY(seen);
}

// After a new document the job takes the next reply for a file's again; after a version it does not.
void TestWholeFileUpload::aSecondUploadOfTheSameJob()
{
    for (int i = 0; i < 2; ++i) {
        answer(R"({"files":["c1"]})");
        answer(R"({"_id":"d1"})");
        m_job->createDocument(QString(), m_world->makeFile("a.txt", 1));
        QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), i + 1, WaitMs);
        QCOMPARE(m_spies->finished[i]._id, QString("d1"));
    }
    QCOMPARE(m_world->server.requests().size(), 4);

    answer(R"({"files":["c1"]})");
    answer(R"({"_id":"d1"})");
    m_job->updateDocument(QString(), m_world->makeFile("a.txt", 1));
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 3, WaitMs);
    answer(R"({"files":["c1"],"_id":"taken for a document"})");
    m_job->updateDocument(QString(), m_world->makeFile("a.txt", 1));
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 4, WaitMs);
    QCOMPARE(m_spies->finished[3]._id, QString("taken for a document"));
    QCOMPARE(m_world->server.requests().size(), 7);
}

void TestWholeFileUpload::theJobMayBeDeletedInEachOfItsSignals_data()
{
    QTest::addColumn<QString>("signal");
    QTest::addColumn<bool>("isCreate");
    for (const bool isCreate : {true, false}) {
        for (const char *signal : {"createDocumentFinish", "uploadProgress", "error"})
            QTest::addRow("%s of a new %s", signal, isCreate ? "document" : "version")
                << QString::fromLatin1(signal) << isCreate;
    }
}

void TestWholeFileUpload::theJobMayBeDeletedInEachOfItsSignals()
{
    QFETCH(QString, signal);
    QFETCH(bool, isCreate);
    auto *job = new AsyncCreateDocument;
    const QPointer<AsyncCreateDocument> watched(job);
    const auto drop = [job] { delete job; };
    if (signal == QLatin1String("createDocumentFinish"))
        connect(job, &AsyncCreateDocument::createDocumentFinish, this, drop);
    else if (signal == QLatin1String("uploadProgress"))
        connect(job, &AsyncCreateDocument::uploadProgress, this, drop);
    else
        connect(job, &AsyncCreateDocument::error, this, drop);

    answer(R"({"files":["c1"]})");
    answer(R"({"_id":"d1"})", signal == QLatin1String("error") ? 500 : 200);
    const VellDocument doc = m_world->makeFile("a.bin", 3000000);
    if (isCreate)
        job->createDocument(QString(), doc);
    else
        job->updateDocument(QString(), doc);
    QTRY_VERIFY_WITH_TIMEOUT(!watched, WaitMs);
    QTest::qWait(50);
}

void TestWholeFileUpload::theJobMayBeDeletedInFlight()
{
    auto *job = new AsyncCreateDocument;
    JobSpies spies(job);
    m_world->server.readSlowly(65536, 20);
    job->createDocument(QString(), m_world->makeFile("a.bin", 10000000));
    QTRY_VERIFY_WITH_TIMEOUT(m_world->server.connectionCount() > 0, WaitMs);
    delete job;
    QTest::qWait(50);
    QCOMPARE(spies.log(), QString());
    QVERIFY(m_world->server.requests().isEmpty());
}

void TestWholeFileUpload::theLocalFileIsClosedWhenItHasGoneUp()
{
    const VellDocument doc = m_world->makeFile("a.txt", 1);
    const auto openFiles = [&doc] {
        int count = 0;
        const QDir handles("/proc/self/fd");
        for (const QString &handle : handles.entryList(QDir::System | QDir::Files))
            count += QFile::symLinkTarget(handles.filePath(handle)) == doc.filePath ? 1 : 0;
        return count;
    };
    answer(R"({"files":["c1"]})");
    m_job->createDocument(QString(), doc);
#ifdef Q_OS_LINUX
    QCOMPARE(openFiles(), 1);
#endif
    QTRY_COMPARE_WITH_TIMEOUT(m_world->server.requests().size(), 2, WaitMs);
    QCOMPARE(openFiles(), 0);
}

QTEST_GUILESS_MAIN(TestWholeFileUpload)
#include "tst_whole_file_upload.moc"
