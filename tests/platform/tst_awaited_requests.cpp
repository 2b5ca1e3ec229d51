#include "support/ScriptedServer.h"

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QSemaphore>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

using Ending = ScriptedReply::Ending;
using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

constexpr seconds LongEnough{20};

//! A scripted server on a thread of its own, which answers while the test's thread runs no events.
class ServerThread
{
public:
    explicit ServerThread(const ScriptedServer::Handler &handler)
    {
        std::promise<void> start;
        std::future<void> isStarted = start.get_future();
        m_thread = std::thread([this, handler, start = std::move(start)]() mutable {
            QEventLoop loop; // first: sockets need it in a thread that Qt has not started
            m_loop = &loop;
            ScriptedServer server;
            server.setHandler(handler);
            m_baseApi = server.baseApi();
            start.set_value();
            loop.exec();
            m_connectionCount = server.connectionCount();
        });
        isStarted.wait();
    }

    ~ServerThread()
    {
        if (m_thread.joinable())
            stop();
    }

    void stop()
    {
        QMetaObject::invokeMethod(m_loop, &QEventLoop::quit, Qt::QueuedConnection);
        m_thread.join();
    }

    QString url(const QString &path) const { return m_baseApi + path; }
    //! Of the server that has been stopped.
    int connectionCount() const { return m_connectionCount; }

private:
    std::thread m_thread;
    QEventLoop *m_loop = nullptr;
    QString m_baseApi;
    int m_connectionCount = 0;
};

ScriptedReply echo(const ScriptedRequest &request)
{
    return ScriptedReply::json("{\"target\":\"" + request.target + "\"}");
}

QNetworkReply *get(const QString &url)
{
    return NetworkManager::instance()->get(url);
}

//! What the server has echoed; empty when the request failed.
QString targetOf(const QString &url)
{
    NetworkEventLoop loop(get(url));
    loop.exec();
    return loop.object().value(QLatin1String("target")).toString();
}

bool comesTrueWithoutEvents(const std::function<bool()> &condition)
{
    const QDeadlineTimer deadline(LongEnough);
    while (!condition() && !deadline.hasExpired())
        QThread::msleep(1);
    return condition();
}

} // namespace

//! Requests that their caller waits for: its thread may run them itself for a moment, after a first one to the server.
class TestAwaitedRequests : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void oneConnectionCarriesOneAfterTheOther();
    void eventsRunWhileTheServerTakesItsTime();
    void requestGoesOnWhileItsThreadIsBusy();
    void requestThatIsDroppedAtOnceHindersNobody();
    void threadsDoNotHoldEachOtherUp();
    void threadsGetEachItsOwnResponse();
};

void TestAwaitedRequests::init()
{
    NetworkSettings::instance().setStallTimeout(LongEnough);
}

void TestAwaitedRequests::oneConnectionCarriesOneAfterTheOther()
{
    ServerThread server(&echo);
    for (int i = 0; i < 50; ++i) {
        const QString path = QString::number(i);
        QCOMPARE(targetOf(server.url(path)), QLatin1Char('/') + path);
    }
    server.stop();
    QCOMPARE(server.connectionCount(), 1);
}

void TestAwaitedRequests::eventsRunWhileTheServerTakesItsTime()
{
    QSemaphore eventHasRun;
    ServerThread server([&](const ScriptedRequest &request) {
        const bool isInTime = request.target != "/late"
            || eventHasRun.tryAcquire(1, int(milliseconds(LongEnough).count()));
        return isInTime ? echo(request) : ScriptedReply::json("{}", 500);
    });
    QCOMPARE(targetOf(server.url("first")), QString("/first"));
    QTimer::singleShot(0, this, [&] { eventHasRun.release(); });
    QCOMPARE(targetOf(server.url("late")), QString("/late"));
}

void TestAwaitedRequests::requestGoesOnWhileItsThreadIsBusy()
{
    ServerThread server(&echo);
    QCOMPARE(targetOf(server.url("first")), QString("/first"));
    const std::unique_ptr<QNetworkReply> reply(get(server.url("second")));
    // The thread looks at what has come for the reply and runs nothing else.
    QVERIFY(comesTrueWithoutEvents([&] {
        QCoreApplication::sendPostedEvents(reply.get());
        return reply->isFinished();
    }));
    QCOMPARE(reply->error(), QNetworkReply::NoError);
}

void TestAwaitedRequests::requestThatIsDroppedAtOnceHindersNobody()
{
    ServerThread server([](const ScriptedRequest &request) {
        return request.target == "/dropped" ? ScriptedReply::endingAs(Ending::Withheld)
                                            : echo(request);
    });
    for (int i = 0; i < 20; ++i) {
        QCOMPARE(targetOf(server.url("kept")), QString("/kept"));
        delete get(server.url("dropped"));
    }
}

void TestAwaitedRequests::threadsDoNotHoldEachOtherUp()
{
    std::atomic<bool> isAsked{false};
    QSemaphore isOver;
    ServerThread server([&](const ScriptedRequest &request) {
        if (request.target != "/withheld")
            return echo(request);
        isAsked = true;
        return ScriptedReply::endingAs(Ending::Withheld);
    });
    QCOMPARE(targetOf(server.url("first")), QString("/first"));
    const std::unique_ptr<QThread> waiting(QThread::create([&] {
        NetworkEventLoop loop(get(server.url("withheld")));
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
            if (isOver.tryAcquire())
                loop.quit();
        });
        poll.start(milliseconds(1));
        loop.exec();
    }));
    waiting->start();
    QVERIFY(comesTrueWithoutEvents([&] { return isAsked.load(); }));
    for (int i = 0; i < 20; ++i)
        QCOMPARE(targetOf(server.url("other")), QString("/other"));
    isOver.release();
    QVERIFY(waiting->wait(milliseconds(LongEnough).count()));
}

void TestAwaitedRequests::threadsGetEachItsOwnResponse()
{
    constexpr int Threads = 4;
    constexpr int Requests = 50;
    ServerThread server(&echo);
    std::atomic<int> right{0};
    std::vector<std::unique_ptr<QThread>> threads;
    for (int thread = 0; thread < Threads; ++thread) {
        threads.emplace_back(QThread::create([&, thread] {
            for (int i = 0; i < Requests; ++i) {
                const QString path = QString("%1/%2").arg(thread).arg(i);
                right += targetOf(server.url(path)) == QLatin1Char('/') + path ? 1 : 0;
            }
        }));
        threads.back()->start();
    }
    for (const std::unique_ptr<QThread> &thread : threads)
        QVERIFY(thread->wait(milliseconds(LongEnough).count()));
    QCOMPARE(right.load(), Threads * Requests);
}

QTEST_GUILESS_MAIN(TestAwaitedRequests)

#include "tst_awaited_requests.moc"
