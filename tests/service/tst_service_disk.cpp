#include <service/ServiceWorld.h>
#include <service/storage/GroupSync.h>

#include <QCryptographicHash>
#include <QFile>
#include <QStringList>
#include <QTest>

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <future>
#include <mutex>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

//! What is written to the disk by this process, and a hold on some of it.
class Disk
{
public:
    static Disk &instance()
    {
        static Disk disk;
        return disk;
    }

    //! Holds what ends with \a suffix until release(), or fails it.
    void hold(const QString &suffix, bool fails = false)
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        m_suffix = suffix;
        m_fails = fails;
        m_written.clear();
    }
    void release()
    {
        hold(QString());
        m_isReleased.notify_all();
    }
    int heldCount()
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        return m_heldCount;
    }
    QStringList written()
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        return m_written;
    }

    int write(int descriptor)
    {
        const QString path = QFile::symLinkTarget(QString("/proc/self/fd/%1").arg(descriptor));
        {
            std::unique_lock<std::mutex> lock(m_lock);
            if (!m_suffix.isEmpty() && path.endsWith(m_suffix)) {
                if (m_fails) {
                    errno = EIO;
                    return -1;
                }
                ++m_heldCount;
                m_isReleased.wait(lock, [this] { return m_suffix.isEmpty(); });
                --m_heldCount;
            }
            m_written.append(path);
        }
        return static_cast<int>(syscall(SYS_fdatasync, descriptor));
    }

private:
    std::mutex m_lock;
    std::condition_variable m_isReleased;
    QString m_suffix;
    bool m_fails = false;
    int m_heldCount = 0;
    QStringList m_written;
};

const QString Log = ".sqlite-wal";

QString md5Of(const QByteArray &content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
}

} // namespace

//! Instead of that of the system, also for the libraries.
extern "C" Q_DECL_EXPORT int fdatasync(int descriptor)
{
    return Disk::instance().write(descriptor);
}

//! What has been acknowledged is on the disk.
class TestServiceDisk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void changesAreAcknowledgedWhenTheyAreOnTheDisk_data();
    void changesAreAcknowledgedWhenTheyAreOnTheDisk();
    void writersDoNotWaitForTheDiskOfOthers();
    void aLogThatCannotBeWrittenIsAnError();
    void contentsWaitForTheirFoldersOfOtherUploads();
    void whoComesDuringAWriteWaitsForTheNext();
    void aFailedWriteIsRepeatedForTheOthers();

private:
    //! Sends a request on a thread and a connection of its own.
    template <typename Request>
    std::future<HttpAnswer> sent(Request request)
    {
        return std::async(std::launch::async, [this, request] {
            HttpClient client(m_world->service->baseApi());
            return request(client);
        });
    }
    std::future<HttpAnswer> sentFolder(const QString &name)
    {
        return sent([name](HttpClient &client) {
            return client.post(ServiceWorld::projectPath("documents"),
                               {{"name", name}, {"type", "dir"}});
        });
    }
    std::future<HttpAnswer> sentContent(const QByteArray &content)
    {
        return sent([content](HttpClient &client) {
            return client.postForm("base-service/files", {{"file/upload.bin", content}});
        });
    }
    static bool isOver(const std::future<HttpAnswer> &answer)
    {
        return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    }

    std::unique_ptr<ServiceWorld> m_world;
};

void TestServiceDisk::init()
{
    m_world = std::make_unique<ServiceWorld>();
    QVERIFY(m_world->isStarted);
}

void TestServiceDisk::cleanup()
{
    Disk::instance().release();
}

void TestServiceDisk::changesAreAcknowledgedWhenTheyAreOnTheDisk_data()
{
    QTest::addColumn<QString>("held");
    QTest::addColumn<QString>("change");
    const QString md5 = md5Of("held");
    QTest::newRow("a transaction") << Log << "folder";
    QTest::newRow("a single statement") << Log << "promise";
    QTest::newRow("the record of a content") << Log << "content";
    QTest::newRow("the name of a content") << QString("/%1").arg(md5.mid(2, 2)) << "content";
    QTest::newRow("its folder") << QString("/%1").arg(md5.left(2)) << "content";
    QTest::newRow("the folder above") << "/content"
                                      << "content";
}

void TestServiceDisk::changesAreAcknowledgedWhenTheyAreOnTheDisk()
{
    QFETCH(QString, held);
    QFETCH(QString, change);
    // A promise is noted again after a minute.
    QVERIFY(!m_world->upload("promised").isEmpty());
    QVERIFY(m_world->runSql("UPDATE file SET promised_at = 0"));
    Disk::instance().hold(held);
    std::future<HttpAnswer> answer;
    if (change == "folder")
        answer = sentFolder("new");
    else if (change == "content")
        answer = sentContent("held");
    else
        answer = sent([](HttpClient &client) {
            return client.get(QString("base-service/md5/%1/info").arg(md5Of("promised")));
        });
    QTRY_COMPARE(Disk::instance().heldCount(), 1);
    QVERIFY(!isOver(answer));
    Disk::instance().release();
    const HttpAnswer found = answer.get();
    QVERIFY2(found.isSuccess(), found.body.constData());
}

void TestServiceDisk::writersDoNotWaitForTheDiskOfOthers()
{
    Disk::instance().hold(Log);
    std::vector<std::future<HttpAnswer>> answers;
    for (int i = 0; i < 4; ++i)
        answers.push_back(sentFolder(QString::number(i)));
    QTRY_COMPARE(m_world->list(ServiceWorld::below(QString())).size(), 4);
    for (const std::future<HttpAnswer> &answer : answers)
        QVERIFY(!isOver(answer));
    QCOMPARE(Disk::instance().heldCount(), 1);
    Disk::instance().release();
    for (std::future<HttpAnswer> &answer : answers)
        QVERIFY(answer.get().isSuccess());
}

void TestServiceDisk::aLogThatCannotBeWrittenIsAnError()
{
    Disk::instance().hold(Log, true);
    const HttpAnswer refused = m_world->client.post(ServiceWorld::projectPath("documents"),
                                                    {{"name", "x"}, {"type", "dir"}});
    Disk::instance().release();
    QCOMPARE(refused.status, 500);
    QVERIFY(!m_world->makeFolder("y").isEmpty());
}

void TestServiceDisk::contentsWaitForTheirFoldersOfOtherUploads()
{
    constexpr int FolderDigits = 4;
    const auto folderOf = [](const QByteArray &content) {
        return md5Of(content).left(FolderDigits);
    };
    const QByteArray first = "first";
    int number = 0;
    while (folderOf(QByteArray::number(number)) != folderOf(first))
        ++number;
    Disk::instance().hold(QString("/content/%1").arg(folderOf(first).left(2)));
    std::future<HttpAnswer> earlier = sentContent(first);
    QTRY_COMPARE(Disk::instance().heldCount(), 1);
    std::future<HttpAnswer> later = sentContent(QByteArray::number(number));
    QTRY_COMPARE(Disk::instance().heldCount(), 2);
    QVERIFY(!isOver(later));
    Disk::instance().release();
    QVERIFY(earlier.get().isSuccess());
    QVERIFY(later.get().isSuccess());
}

void TestServiceDisk::whoComesDuringAWriteWaitsForTheNext()
{
    service::GroupSync group;
    std::atomic<int> written{0};
    std::promise<void> begun;
    std::promise<void> goOn;
    std::future<void> first = std::async(std::launch::async, [&] {
        group.wait([&] {
            begun.set_value();
            goOn.get_future().wait();
            ++written;
        });
    });
    begun.get_future().wait();
    std::future<int> second = std::async(std::launch::async, [&] {
        group.wait([&] { ++written; });
        return written.load();
    });
    // Whether the second has come before the first ends does not matter.
    QCOMPARE(second.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    goOn.set_value();
    first.get();
    QCOMPARE(second.get(), 2);
}

void TestServiceDisk::aFailedWriteIsRepeatedForTheOthers()
{
    service::GroupSync group;
    std::atomic<int> begun{0};
    std::promise<void> goOn;
    std::future<void> first = std::async(std::launch::async, [&] {
        group.wait([&] {
            ++begun;
            goOn.get_future().wait();
        });
    });
    QTRY_COMPARE(begun.load(), 1);
    const auto failSecond = [&] {
        if (++begun == 2)
            throw std::runtime_error("broken");
    };
    const auto isDone = [&] {
        try {
            group.wait(failSecond);
            return true;
        } catch (const std::runtime_error &) {
            return false;
        }
    };
    std::future<bool> second = std::async(std::launch::async, isDone);
    std::future<bool> third = std::async(std::launch::async, isDone);
    goOn.set_value();
    first.get();
    QCOMPARE(int(second.get()) + int(third.get()), 1);
    QCOMPARE(begun.load(), 3);
}

QTEST_GUILESS_MAIN(TestServiceDisk)
#include "tst_service_disk.moc"
