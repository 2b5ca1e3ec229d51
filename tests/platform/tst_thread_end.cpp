#include "support/ScriptedServer.h"

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>

#include <openssl/core_dispatch.h>
#include <openssl/provider.h>

#include <QTest>
#include <QThread>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

namespace {

//! A provider of OpenSSL, which is called when the state of a thread is freed.
class ThreadWatch
{
public:
    static void install()
    {
        OSSL_PROVIDER_add_builtin(nullptr, "watch", &ThreadWatch::init);
        // Loading another one turns the default provider off.
        QVERIFY(OSSL_PROVIDER_load(nullptr, "default"));
        QVERIFY(OSSL_PROVIDER_load(nullptr, "watch"));
    }

    static void watchThisThread()
    {
        QVERIFY(s_start(
            s_handle, [](void *) { isFreed = true; }, nullptr));
    }

    static inline std::atomic_bool isFreed{false};

private:
    static int init(const OSSL_CORE_HANDLE *handle, const OSSL_DISPATCH *functions,
                    const OSSL_DISPATCH **own, void **)
    {
        static const OSSL_DISPATCH none[] = {{0, nullptr}};
        *own = none;
        s_handle = handle;
        for (; functions->function_id != 0; ++functions) {
            if (functions->function_id == OSSL_FUNC_CORE_THREAD_START)
                s_start = OSSL_FUNC_core_thread_start(functions);
        }
        return s_start ? 1 : 0;
    }

    static inline const OSSL_CORE_HANDLE *s_handle = nullptr;
    static inline OSSL_FUNC_core_thread_start_fn *s_start = nullptr;
};

//! Lengthens the time between the end of a QThread and the end of the thread of the system.
struct SlowEnd
{
    ~SlowEnd() { std::this_thread::sleep_for(std::chrono::milliseconds(500)); }
};

} // namespace

class TestThreadEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tlsStateIsFreedBeforeTheThreadFinishes();
};

//! Otherwise a process that ends at once frees the state of OpenSSL while a thread still uses it.
void TestThreadEnd::tlsStateIsFreedBeforeTheThreadFinishes()
{
    ScriptedServer server;
    server.setHandler([](const ScriptedRequest &) { return ScriptedReply::json("{}"); });
    ThreadWatch::install();
    bool isSuccessful = false;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        static thread_local SlowEnd slowEnd;
        Q_UNUSED(slowEnd)
        ThreadWatch::watchThisThread();
        NetworkEventLoop loop(NetworkManager::instance()->get(server.baseApi()));
        loop.exec();
        isSuccessful = loop.isSuccessful();
    }));
    thread->start();
    QTRY_VERIFY(thread->isFinished());
    QVERIFY(thread->wait());
    QVERIFY(isSuccessful);
    QVERIFY(ThreadWatch::isFreed);
}

QTEST_GUILESS_MAIN(TestThreadEnd)
#include "tst_thread_end.moc"
