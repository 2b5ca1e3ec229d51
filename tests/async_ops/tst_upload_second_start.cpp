#include "UploadTest.h"

#include <QTest>
#include <QTimer>

#include <memory>

// A job that is given another file while the first one is under way. Clients make a job for each file; this is what the
// second call does all the same.
class TestUploadSecondStart : public UploadTest
{
    Q_OBJECT

private Q_SLOTS:
    void aSecondFileWhileTheFirstGoesUp();
    void aMissingFileWhileTheFirstGoesUp();
    void aSecondFileWhileTheFirstIsAnswered();
    void aMissingFileWhileTheFirstIsAnswered();

private:
    VellDocument otherFile() const { return m_world->makeFile("b.txt", 20); }
    VellDocument missingFile() const
    {
        VellDocument doc;
        doc.name = "missing.txt";
        doc.filePath = m_world->folder.filePath(doc.name);
        doc.fileSize = 10;
        return doc;
    }
    //! Starts a file that a slow server takes in, and \a second when the first bytes have gone.
    void startInTheMiddle(const VellDocument &second)
    {
        m_world->server.readSlowly(1 << 20, 20);
        auto once = std::make_shared<QMetaObject::Connection>();
        *once = connect(m_job.get(), &AsyncCreateDocument::uploadProgress, this, [=] {
            disconnect(*once);
            QTimer::singleShot(0, this, [=] { start(second); });
        });
        start(m_world->makeFile("a.bin", 10'000'000));
    }
};

// The first file is closed in the middle, so its request fails; the second one becomes a document.
void TestUploadSecondStart::aSecondFileWhileTheFirstGoesUp()
{
    startInTheMiddle(otherFile());
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->events.size(), 2, WaitMs);
    settles(2);
    QCOMPARE(m_world->requestWords(), QString("file document"));
    QVERIFY(body(1).contains("\"name\":\"b.txt\""));
    m_spies->events.sort();
    QCOMPARE(m_spies->log(), QString("createDocumentFinish error"));
    QCOMPARE(m_spies->finished[0]._id, QString("d1"));
}

void TestUploadSecondStart::aMissingFileWhileTheFirstGoesUp()
{
    startInTheMiddle(missingFile());
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("error"), WaitMs);
    settles(0);
    QCOMPARE(m_spies->log(), QString("error"));
}

// The second file's reply is the first to come and makes its document; the first file's reply comes last, after
// the document's, and makes a document of the second's record, too.
void TestUploadSecondStart::aSecondFileWhileTheFirstIsAnswered()
{
    m_slow = {0};
    m_slowMs = 1000; // on a busy machine, too, longer than all that follows takes
    m_instead.insert(0, ScriptedReply::json(R"({"files":["first"]})"));
    whenRequested(0, [this] { start(otherFile()); });
    start(smallFile());
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("createDocumentFinish createDocumentFinish"),
                              WaitMs);
    settles(4);
    QCOMPARE(m_world->requestWords(), QString("file file document document"));
    QVERIFY(body(2).contains("\"file\":\"c1\""));
    QVERIFY(body(3).contains("\"file\":\"first\""));
    for (int request : {2, 3})
        QVERIFY(body(request).contains("\"name\":\"b.txt\""));
}

void TestUploadSecondStart::aMissingFileWhileTheFirstIsAnswered()
{
    m_slow = {0};
    whenRequested(0, [this] { start(missingFile()); });
    start(smallFile());
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->log(), QString("createDocumentFinish"), WaitMs);
    settles(2);
    QVERIFY(body(1).contains("\"name\":\"missing.txt\""));
    QVERIFY(body(1).contains("\"file\":\"c1\""));
}

QTEST_GUILESS_MAIN(TestUploadSecondStart)
#include "tst_upload_second_start.moc"
