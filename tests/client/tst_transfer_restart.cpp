#include "TransferSite.h"
#include "TransferWorld.h"

#include <QCryptographicHash>
#include <QDir>
#include <QObject>

using State = VellTransferState;
using Policy = VellConflictPolicy;

namespace {

const QString QueueFile = QStringLiteral("queue");

//! Opens the queue file of \a world in another queue, and waits until it is read.
bool open(VellTransferQueue &queue, const QString &path, bool *isDamaged = nullptr)
{
    const QSignalSpy opened(&queue, &VellTransferQueue::opened);
    queue.open(path);
    if (!QTest::qWaitFor([&] { return !opened.isEmpty(); }, WaitMs))
        return false;
    if (isDamaged)
        *isDamaged = opened.first().first().toBool();
    return true;
}

bool isRefused(const QString &path)
{
    VellTransferQueue queue;
    const QSignalSpy failed(&queue, &VellTransferQueue::openFailed);
    queue.open(path);
    return QTest::qWaitFor([&failed] { return failed.size() == 1; }, WaitMs);
}

} // namespace

class TestTransferRestart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everythingIsBack();
    void whatIsPausedStaysPaused();
    void aQuestionIsAskedAgain();
    void theTokenIsNotWritten();
    void withoutTheProjectItWaits();
    void aDamagedEndIsIgnored_data();
    void aDamagedEndIsIgnored();
    void anotherFileIsLeftAlone();
    void aQueueInUseIsRefused();
    void aLockThatNamesNobodyIsTakenOver();
    void aKilledUploadGoesOn();
    void aKilledDownloadGoesOn();
};

void TestTransferRestart::everythingIsBack()
{
    TransferWorld world;
    QVERIFY(open(world.queue, world.path(QueueFile)));
    QDir().mkpath(world.path(QStringLiteral("top")));
    world.makeFile(QStringLiteral("top/a"), SmallBytes);
    world.makeFile(QStringLiteral("top/b"), LargeBytes);
    QFile::link(world.path(QStringLiteral("nowhere")), world.path(QStringLiteral("top/broken")));
    const qint64 id = world.queue.upload(world.path(QStringLiteral("top")), {});
    QCOMPARE(world.waitFor(id).state, State::Done);
    QVERIFY(world.waitForIdle());
    const qint64 gone = world.queue.upload(world.makeFile(QStringLiteral("c"), 1), {});
    QCOMPARE(world.waitFor(gone).state, State::Done);
    QVERIFY(world.queue.remove(gone));
    QVector<VellTransfer> before;
    for (const qint64 each : world.queue.ids())
        before.append(world.queue.transfer(each));
    {
        VellTransferQueue second;
        const QSignalSpy failed(&second, &VellTransferQueue::openFailed);
        second.open(world.path(QStringLiteral("none/queue")));
        QTRY_COMPARE_WITH_TIMEOUT(failed.size(), 1, WaitMs);
    }
    const QString copy = world.path(QStringLiteral("copy"));
    QVERIFY(QFile::copy(world.path(QueueFile), copy));
    VellTransferQueue back;
    const QSignalSpy ends(&back, &VellTransferQueue::ended);
    bool isDamaged = true;
    QVERIFY(open(back, copy, &isDamaged));
    QVERIFY(!isDamaged);
    QCOMPARE(back.count(), before.size());
    const QVector<qint64> ids = back.ids();
    for (int i = 0; i < ids.size(); ++i) {
        const VellTransfer transfer = back.transfer(ids.at(i));
        QCOMPARE(transfer.localPath, before.at(i).localPath);
        QCOMPARE(transfer.state, before.at(i).state);
        QCOMPARE(transfer.documentId, before.at(i).documentId);
        QCOMPARE(transfer.error.kind, before.at(i).error.kind);
        QCOMPARE(transfer.error.text, before.at(i).error.text);
    }
    QCOMPARE(back.totals().count(State::Failed), 1);
    QVERIFY(ends.isEmpty());
}

void TestTransferRestart::whatIsPausedStaysPaused()
{
    TransferWorld world;
    QVERIFY(open(world.queue, world.path(QueueFile)));
    world.session.openProject(QStringLiteral("p1"));
    const qint64 paused = world.queue.upload(world.makeFile(QStringLiteral("a"), 1), {});
    world.queue.pause(paused);
    const qint64 done = world.queue.upload(world.makeFile(QStringLiteral("b"), 1), {});
    QCOMPARE(world.waitFor(done).state, State::Done);
    const QString copy = world.path(QStringLiteral("copy"));
    QVERIFY(QFile::copy(world.path(QueueFile), copy));
    VellTransferQueue back;
    back.attach(&world.documents);
    QVERIFY(open(back, copy));
    QCOMPARE(back.totals().count(State::Paused), 1);
    back.resumeAll();
    QTRY_COMPARE_WITH_TIMEOUT(back.totals().count(State::Done), 2, WaitMs);
    QCOMPARE(world.names(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

void TestTransferRestart::aQuestionIsAskedAgain()
{
    TransferWorld world;
    QVERIFY(open(world.queue, world.path(QueueFile)));
    world.store(QStringLiteral("a"), "there");
    const qint64 id = world.queue.upload(world.makeFile(QStringLiteral("a"), 1), {});
    QVERIFY(world.waitForState(id, State::Asking));
    const QString copy = world.path(QStringLiteral("copy"));
    QVERIFY(QFile::copy(world.path(QueueFile), copy));
    VellTransferQueue back;
    const QSignalSpy asked(&back, &VellTransferQueue::asked);
    back.attach(&world.documents);
    QVERIFY(open(back, copy));
    QTRY_COMPARE_WITH_TIMEOUT(asked.size(), 1, WaitMs);
}

void TestTransferRestart::theTokenIsNotWritten()
{
    TransferWorld world;
    const QString token = world.service.addUser(QStringLiteral("ann"));
    QVERIFY(world.service.addProject(QStringLiteral("p1"), QStringLiteral("one")));
    QVERIFY(world.service.setRole(QStringLiteral("p1"), QStringLiteral("ann"),
                                  QStringLiteral("owner")));
    const QSignalSpy opened(&world.session, &VellSession::opened);
    world.session.open(world.connection(token));
    QTRY_COMPARE_WITH_TIMEOUT(opened.size(), 1, WaitMs);
    world.session.openProject(QStringLiteral("p1"));
    QVERIFY(open(world.queue, world.path(QueueFile)));
    const qint64 id = world.queue.upload(world.makeFile(QStringLiteral("a"), SmallBytes), {});
    QCOMPARE(world.waitFor(id).state, State::Done);
    const QByteArray kept = TransferWorld::contentOf(world.path(QueueFile));
    QVERIFY(kept.contains(QByteArray("p\0001", 3)));
    for (const auto order : {QSysInfo::BigEndian, QSysInfo::LittleEndian}) {
        QByteArray wide;
        for (const QChar c : token) {
            wide.append(order == QSysInfo::BigEndian ? char(c.row()) : char(c.cell()));
            wide.append(order == QSysInfo::BigEndian ? char(c.cell()) : char(c.row()));
        }
        QVERIFY(!kept.contains(wide));
    }
    QVERIFY(!kept.contains(token.toUtf8()));
}

void TestTransferRestart::withoutTheProjectItWaits()
{
    TransferWorld world;
    QVERIFY(open(world.queue, world.path(QueueFile)));
    const qint64 id = world.queue.upload(world.makeFile(QStringLiteral("a"), 1), {});
    world.queue.pause(id);
    QTRY_VERIFY_WITH_TIMEOUT(TransferWorld::contentOf(world.path(QueueFile)).size() > 200, WaitMs);
    const QString copy = world.path(QStringLiteral("copy"));
    QVERIFY(QFile::copy(world.path(QueueFile), copy));
    world.session.openProject(QStringLiteral("p2"));
    VellTransferQueue back;
    back.attach(&world.documents);
    QVERIFY(open(back, copy));
    back.resumeAll();
    QTest::qWait(300);
    QCOMPARE(back.totals().count(State::Waiting), 1);
    world.session.openProject(QStringLiteral("p1"));
    QTRY_COMPARE_WITH_TIMEOUT(back.totals().count(State::Done), 1, WaitMs);
}

void TestTransferRestart::aDamagedEndIsIgnored_data()
{
    QTest::addColumn<QByteArray>("added");
    QTest::newRow("part of an entry") << QByteArray("\0\0\1\0abc", 7);
    QTest::newRow("wrong checksum") << QByteArray("\0\0\0\2abcdef", 10);
    QTest::newRow("no entry") << QByteArray(200, '\xff');
}

void TestTransferRestart::aDamagedEndIsIgnored()
{
    QFETCH(const QByteArray, added);
    TransferWorld world;
    const QString kept = world.path(QueueFile);
    {
        VellTransferQueue queue;
        QVERIFY(open(queue, kept));
        queue.attach(&world.documents);
        const qint64 id = queue.upload(world.path(QStringLiteral("nothing")), {});
        QTRY_COMPARE_WITH_TIMEOUT(queue.transfer(id).state, State::Failed, WaitMs);
    }
    QFile file(kept);
    QVERIFY(file.open(QIODevice::Append));
    file.write(added);
    file.close();
    {
        VellTransferQueue queue;
        bool isDamaged = false;
        QVERIFY(open(queue, kept, &isDamaged));
        QVERIFY(isDamaged);
        QCOMPARE(queue.totals().count(State::Failed), 1);
    }
    VellTransferQueue queue;
    bool isDamaged = true;
    QVERIFY(open(queue, kept, &isDamaged));
    QVERIFY(!isDamaged);
    QCOMPARE(queue.totals().count(State::Failed), 1);
}

void TestTransferRestart::anotherFileIsLeftAlone()
{
    const TransferWorld world;
    const QString path = world.path(QueueFile);
    TransferWorld::write(path, "a letter to a friend");
    QVERIFY(isRefused(path));
    QCOMPARE(TransferWorld::contentOf(path), QByteArray("a letter to a friend"));
}

void TestTransferRestart::aQueueInUseIsRefused()
{
    const TransferWorld world;
    VellTransferQueue queue;
    QVERIFY(open(queue, world.path(QueueFile)));
    QVERIFY(isRefused(world.path(QueueFile)));
}

//! As left by a program that was killed while it made the lock.
void TestTransferRestart::aLockThatNamesNobodyIsTakenOver()
{
    const TransferWorld world;
    TransferWorld::write(world.path(QueueFile) + QStringLiteral(".lock"), "");
    VellTransferQueue queue;
    QVERIFY(open(queue, world.path(QueueFile)));
    QVERIFY(isRefused(world.path(QueueFile)));
}

void TestTransferRestart::aKilledUploadGoesOn()
{
    TransferSite site;
    const TransferWorld files;
    QDir().mkpath(files.path(QStringLiteral("top")));
    const QString large = files.makeFile(QStringLiteral("top/large"), 2 * LargeBytes);
    site.startClient({QStringLiteral("--add"), files.path(QStringLiteral("top")),
                      QStringLiteral("--limit"), QStringLiteral("8000000")});
    HttpClient http(site.service.baseApi());
    const QString md5 = QString::fromLatin1(
        QCryptographicHash::hash(TransferWorld::contentOf(large), QCryptographicHash::Md5).toHex());
    QTRY_VERIFY_WITH_TIMEOUT(http.get(QStringLiteral("base-service/largefiles/md5/") + md5)
                                     .object()
                                     .value(QLatin1String("savedChunk"))
                                     .toInt()
                                 > 1,
                             WaitMs);
    site.killClient();
    site.startClient();
    QCOMPARE(site.waitForClient(), 0);
    const auto stored = site.documentsBelow({});
    QCOMPARE(stored.keys(), QStringList({QStringLiteral("top/"), QStringLiteral("top/large")}));
    QVERIFY(site.content(stored.value(QStringLiteral("top/large")))
            == TransferWorld::contentOf(large));
}

void TestTransferRestart::aKilledDownloadGoesOn()
{
    TransferSite site;
    const TransferWorld files;
    QDir().mkpath(files.path(QStringLiteral("top")));
    const QString large = files.makeFile(QStringLiteral("top/large"), LargeBytes);
    site.startClient({QStringLiteral("--add"), files.path(QStringLiteral("top"))});
    QCOMPARE(site.waitForClient(), 0);
    const QString top = site.documentsBelow({}).value(QStringLiteral("top/"));
    site.startClient({QStringLiteral("--fetch"), top, QStringLiteral("--into"),
                      site.path(QStringLiteral("into")), QStringLiteral("--limit"),
                      QStringLiteral("4000000")});
    const QDir fetched(site.path(QStringLiteral("into/fetched")));
    const auto partBytes = [&fetched] {
        const QFileInfoList parts =
            fetched.entryInfoList({QStringLiteral("*.part")}, QDir::Files | QDir::Hidden);
        return parts.isEmpty() ? qint64(0) : parts.first().size();
    };
    QTRY_VERIFY_WITH_TIMEOUT(partBytes() > 1'000'000, WaitMs);
    site.killClient();
    QVERIFY(partBytes() > 0);
    site.startClient();
    QCOMPARE(site.waitForClient(), 0);
    QVERIFY(TransferWorld::contentOf(fetched.filePath(QStringLiteral("large")))
            == TransferWorld::contentOf(large));
    QCOMPARE(partBytes(), qint64(0));
}

QTEST_GUILESS_MAIN(TestTransferRestart)
#include "tst_transfer_restart.moc"
