#include "UploadTest.h"

#include <async_ops/RunAndWait.h>
#include <document_service/VellDocumentData.h>

#include <QCoreApplication>
#include <QSemaphore>
#include <QTest>
#include <QTimer>

// The application quits while something waits: every wait ends, nothing hangs, nothing is emitted afterwards.
class TestQuitting : public UploadTest
{
    Q_OBJECT

private Q_SLOTS:
    void aFunctionThatIsWaitedForStillGivesItsResult();
    void aJobThatHashes();
    void aJobThatAsksForTheRecord();
    void aRequestThatIsWaitedFor();

private:
    //! Runs the application's own event loop, in it \a work, and quits when \a work waits.
    template <typename Work>
    void quitDuring(Work work)
    {
        QTimer::singleShot(0, this, work);
        QTimer::singleShot(WaitMs, m_job.get(), [] { QFAIL("The application did not quit"); });
        QCOMPARE(QCoreApplication::exec(), 0);
    }
};

void TestQuitting::aFunctionThatIsWaitedForStillGivesItsResult()
{
    QSemaphore gate;
    QString result;
    quitDuring([&] {
        QTimer::singleShot(0, this, [&] {
            QCoreApplication::quit();
            // Only once the loop has been told to end.
            gate.release();
        });
        result = runAndWait([&gate] {
            gate.acquire();
            return "d41d8cd98f00b204e9800998ecf8427e";
        });
    });
    QCOMPARE(result, QString("d41d8cd98f00b204e9800998ecf8427e"));
}

void TestQuitting::aJobThatHashes()
{
    bool returned = false;
    quitDuring([&] {
        QTimer::singleShot(0, this, [] { QCoreApplication::quit(); });
        start(largeFile());
        returned = true;
    });
    QVERIFY(returned);
    QCOMPARE(m_spies->log(), QString());
    m_job.reset();
    QTest::qWait(50);
    QVERIFY(!m_world->requestWords().contains(QLatin1String("document")));
}

void TestQuitting::aJobThatAsksForTheRecord()
{
    m_instead.insert(0, ScriptedReply::endingAs(ScriptedReply::Ending::Withheld));
    whenRequested(0, [] { QCoreApplication::quit(); });
    bool returned = false;
    quitDuring([&] {
        start(largeFile());
        returned = true;
    });
    QVERIFY(returned);
    QCOMPARE(m_world->requestWords(), QString("record"));
    QCOMPARE(m_spies->log(), QString());
    m_job.reset();
}

void TestQuitting::aRequestThatIsWaitedFor()
{
    for (int i = 0; i < 3; ++i)
        m_instead.insert(i, ScriptedReply::endingAs(ScriptedReply::Ending::Withheld));
    whenRequested(0, [] { QCoreApplication::quit(); });
    VellDocumentData data;
    VellDocument doc;
    doc._id = "d1";
    doc.name = "plan";
    data.addDocToCache(doc);
    QList<VellDocument> list;
    bool isDeleted = true;
    int count = 1;
    quitDuring([&] {
        isDeleted = data.deleteDoc(doc._id);
        // What comes after in the same slot does not wait at all.
        data.getDocuments(VellDocumentConditon(), list);
        count = data.getDocumentsRangeCount(VellDocumentConditon());
    });
    QVERIFY(!isDeleted);
    QCOMPARE(data.getFolderName(doc._id), QString("plan"));
    QVERIFY(list.isEmpty());
    QCOMPARE(count, 0);
}

QTEST_GUILESS_MAIN(TestQuitting)
#include "tst_quitting.moc"
