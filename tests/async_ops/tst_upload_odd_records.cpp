#include "UploadTest.h"

#include <VellNetwork/AsyncNetManager.h>

#include <QTest>

#include <utility>

Q_DECLARE_METATYPE(ScriptedReply)

// What a chunked upload makes of a store that leaves something out, and the figures of its progress.
class TestUploadOddRecords : public UploadTest
{
    Q_OBJECT

private Q_SLOTS:
    void countersWithoutARecordDecideWhereToStart();
    void aCompleteRecordWhoseFileIsUnknown_data();
    void aCompleteRecordWhoseFileIsUnknown();
    void aLastReplyThatNamesNoFile_data();
    void aLastReplyThatNamesNoFile();
    void progressCountsTheChunksBefore();
};

// The counter of chunks is the file's own then, the one of the first chunk the store's.
void TestUploadOddRecords::countersWithoutARecordDecideWhereToStart()
{
    m_instead.insert(0, ScriptedReply::json(R"({"savedChunk":2,"totalChunk":9})"));
    start(largeFile());
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("finishUpload createDocumentFinish"), WaitMs);
    QCOMPARE(m_world->requestWords(), QString("record chunk2 document"));
    QCOMPARE(formField(formParts(m_world->server.requests()[1]), "totalChunk"), QByteArray("3"));
}

void TestUploadOddRecords::aCompleteRecordWhoseFileIsUnknown_data()
{
    QTest::addColumn<bool>("isCreate");
    QTest::addColumn<ScriptedReply>("info");
    const std::pair<const char *, ScriptedReply> infos[] = {
        {"empty object", ScriptedReply::json("{}")},
        {"a number for a name", ScriptedReply::json(R"({"_id":7})")},
        {"not found", ScriptedReply::json("{}", 404)},
    };
    for (const auto &[name, info] : infos) {
        QTest::addRow("document, %s", name) << true << info;
        QTest::addRow("version, %s", name) << false << info;
    }
}

void TestUploadOddRecords::aCompleteRecordWhoseFileIsUnknown()
{
    QFETCH(bool, isCreate);
    QFETCH(ScriptedReply, info);
    m_store.id = "r1";
    m_store.savedChunk = m_store.totalChunk = 3;
    m_instead.insert(1, info);
    start(largeFile(), isCreate);
    if (isCreate) {
        settles(2);
        QCOMPARE(m_world->requestWords(), QString("record info"));
        QCOMPARE(m_spies->log(), QString());
        return;
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("createDocumentFinish"), WaitMs);
    QCOMPARE(m_world->requestWords(), QString("record info document"));
    QVERIFY(body(2).contains("\"file\":\"\""));
}

void TestUploadOddRecords::aLastReplyThatNamesNoFile_data()
{
    QTest::addColumn<bool>("isCreate");
    QTest::newRow("document") << true;
    QTest::newRow("version") << false;
}

void TestUploadOddRecords::aLastReplyThatNamesNoFile()
{
    QFETCH(bool, isCreate);
    m_instead.insert(3, ScriptedReply::json(R"({"savedChunk":3,"totalChunk":3})"));
    start(largeFile(), isCreate);
    if (isCreate) {
        QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("finishUpload"), WaitMs);
        settles(4);
        QCOMPARE(m_spies->log(), QString("finishUpload"));
        return;
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("finishUpload createDocumentFinish"), WaitMs);
    QVERIFY(body(4).contains("\"file\":\"\""));
}

void TestUploadOddRecords::progressCountsTheChunksBefore()
{
    m_slow = {2};
    bool told = false;
    whenRequested(2, [this, &told] {
        // The manager of the chunk is the one that was made last.
        const auto managers = m_job->findChildren<AsyncNetManager *>();
        m_spies->progress.clear();
        Q_EMIT managers.last()->uploadProgress(100, 5000);
        Q_EMIT managers.last()->uploadProgress(100, 0);
        const QList<QPair<qint64, qint64>> expected{{4'194'404, 10'485'761}};
        QCOMPARE(m_spies->progress, expected);
        told = true;
    });
    start(largeFile());
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    QVERIFY(told);
}

QTEST_GUILESS_MAIN(TestUploadOddRecords)
#include "tst_upload_odd_records.moc"
