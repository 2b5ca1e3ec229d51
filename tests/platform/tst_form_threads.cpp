#include <VellNetwork/AsyncNetManager.h>

#include <QCoreApplication>
#include <QHttpMultiPart>
#include <QProcess>
#include <QTest>
#include <QThread>

#include <atomic>
#include <cstring>
#include <memory>

namespace {

constexpr int Processes = 100; // each has about one chance in a hundred to show the race
const char *const SendArgument = "--send-forms";

//! Begins the first form of the process in two threads at once. Qt prints its warnings.
void sendForms()
{
    std::atomic_int waiting{2};
    std::unique_ptr<QThread> threads[2];
    for (auto &thread : threads) {
        thread.reset(QThread::create([&waiting] {
            AsyncNetManager manager;
            --waiting;
            while (waiting > 0) {}
            manager.post("http://127.0.0.1:9/", new QHttpMultiPart(QHttpMultiPart::FormDataType));
        }));
        thread->start();
    }
    for (auto &thread : threads)
        thread->wait();
}

} // namespace

class TestFormThreads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstFormsOfTwoThreadsGiveNoWarning();
};

void TestFormThreads::firstFormsOfTwoThreadsGiveNoWarning()
{
    for (int i = 0; i < Processes; ++i) {
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(), {SendArgument});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.readAllStandardError(), QByteArray());
        QCOMPARE(process.exitCode(), 0);
    }
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc > 1 && std::strcmp(argv[1], SendArgument) == 0) {
        sendForms();
        return 0;
    }
    TestFormThreads test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_form_threads.moc"
