#include <VellSoftBase/VellSettings.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QTest>

#include <atomic>
#include <thread>

// What the client has open, for the process and for one thread.
class TestSoftCache : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aScopeHidesTheProcess();
    void aScopeIsOfOneThread();
    void severalThreadsMayUseIt();
};

void TestSoftCache::aScopeHidesTheProcess()
{
    GetSoftCache()->setCurrentProjectId("p1");
    GetSoftCache()->setCurrentUserId("u1");
    {
        const VellSoftCacheScope outer("p2", "u2");
        {
            const VellSoftCacheScope inner("p3", QString());
            QCOMPARE(GetSoftCache()->currentProjectId(), QString("p3"));
            QCOMPARE(GetSoftCache()->currentUserId(), QString());
        }
        GetSoftCache()->setCurrentProjectId("p4");
        QCOMPARE(GetSoftCache()->currentProjectId(), QString("p2"));
        QCOMPARE(GetSoftCache()->currentUserId(), QString("u2"));
    }
    QCOMPARE(GetSoftCache()->currentProjectId(), QString("p4"));
    QCOMPARE(GetSoftCache()->currentUserId(), QString("u1"));
}

void TestSoftCache::aScopeIsOfOneThread()
{
    GetSoftCache()->setCurrentProjectId("p1");
    const VellSoftCacheScope scope("p2", QString());
    QString seen;
    std::thread([&seen] { seen = GetSoftCache()->currentProjectId(); }).join();
    QCOMPARE(seen, QString("p1"));
}

void TestSoftCache::severalThreadsMayUseIt()
{
    // Long enough to be on the heap, so that a reader without a lock would meet freed memory.
    const QString texts[] = {QString(500, QLatin1Char('a')), QString(500, QLatin1Char('b'))};
    GetSoftCache()->setCurrentProjectId(texts[0]);
    GetSettings()->setPdfFileTempPath(texts[0]);
    std::atomic<bool> isEnded{false};
    std::atomic<int> oddCount{0};
    const auto read = [&] {
        while (!isEnded) {
            const QString project = GetSoftCache()->currentProjectId();
            const QString path = GetSettings()->pdfFileTempPath();
            if ((project != texts[0] && project != texts[1])
                || (path != texts[0] && path != texts[1]))
                ++oddCount;
        }
    };
    std::thread first(read);
    std::thread second(read);
    for (int i = 0; i < 20'000; ++i) {
        GetSoftCache()->setCurrentProjectId(QString(texts[i % 2].constData(), 500));
        GetSettings()->setPdfFileTempPath(QString(texts[i % 2].constData(), 500));
    }
    isEnded = true;
    first.join();
    second.join();
    QCOMPARE(oddCount.load(), 0);
}

QTEST_GUILESS_MAIN(TestSoftCache)
#include "tst_soft_cache.moc"
