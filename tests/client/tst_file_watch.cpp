#include "TransferWorld.h"

#include <transfer/VellFileWatch.h>

#include <QFile>
#include <QObject>

using State = VellTransferState;

namespace {

constexpr std::chrono::milliseconds SettleTime(200);

//! A watch on one file with the content "first", which has been looked at.
class Watched
{
public:
    explicit Watched(TransferWorld &world, const VellDocument &document = {})
        : path(world.path(QStringLiteral("a")))
    {
        TransferWorld::write(path, "first");
        watch.setSettleTime(SettleTime);
        watch.add(path, document);
        // Long enough that what follows is another state of the file.
        QTest::qWait(int(SettleTime.count()));
    }

    bool waitForChange(int count)
    {
        return QTest::qWaitFor([&] { return changed.size() >= count; }, WaitMs)
            && changed.size() == count;
    }

    const QString path;
    VellFileWatch watch;
    QSignalSpy changed{&watch, &VellFileWatch::changed};
    QSignalSpy vanished{&watch, &VellFileWatch::vanished};
};

} // namespace

class TestFileWatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aChangeIsReportedOnce();
    void aChangeBeforeTheFirstLookIsReported();
    void aFileThatIsReplacedIsFollowed();
    void theSameContentIsNoChange();
    void aFileThatIsGoneIsReported();
    void whatIsNotWatchedIsNotReported();
    void aChangeBecomesAVersion();
    void aVersionIsRefusedIfTheDocumentHasChanged();
};

void TestFileWatch::aChangeIsReportedOnce()
{
    TransferWorld world;
    Watched file(world);
    // In several steps, as programs write.
    for (const char *const content : {"s", "se", "second"})
        TransferWorld::write(file.path, content);
    QVERIFY(file.waitForChange(1));
    QCOMPARE(file.changed.first().first().toString(), file.path);
    TransferWorld::write(file.path, "third");
    QVERIFY(file.waitForChange(2));
    QTest::qWait(2 * int(SettleTime.count()));
    QCOMPARE(file.changed.size(), 2);
    QVERIFY(file.vanished.isEmpty());
}

//! Reading a large file takes seconds.
void TestFileWatch::aChangeBeforeTheFirstLookIsReported()
{
    TransferWorld world;
    VellFileWatch watch;
    watch.setSettleTime(SettleTime);
    const QSignalSpy changed(&watch, &VellFileWatch::changed);
    const QString large = world.path(QStringLiteral("large"));
    const QString path = world.path(QStringLiteral("a"));
    TransferWorld::write(large, QByteArray(32 << 20, 'x'));
    TransferWorld::write(path, "first");
    watch.add(large, {}); // files are read one after the other
    watch.add(path, {});
    TransferWorld::write(path, "second");
    QTRY_COMPARE_WITH_TIMEOUT(changed.size(), 1, WaitMs);
    QCOMPARE(changed.first().first().toString(), path);
    QTest::qWait(2 * int(SettleTime.count()));
    QCOMPARE(changed.size(), 1);
}

void TestFileWatch::aFileThatIsReplacedIsFollowed()
{
    TransferWorld world;
    Watched file(world);
    for (int i = 1; i <= 2; ++i) {
        const QString other = world.path(QStringLiteral("a.tmp"));
        TransferWorld::write(other, "version " + QByteArray::number(i));
        QVERIFY(QFile::remove(file.path));
        QVERIFY(QFile::rename(other, file.path));
        QVERIFY(file.waitForChange(i));
    }
    TransferWorld::write(file.path, "written in place");
    QVERIFY(file.waitForChange(3));
    QVERIFY(file.vanished.isEmpty());
}

void TestFileWatch::theSameContentIsNoChange()
{
    TransferWorld world;
    Watched file(world);
    TransferWorld::write(file.path, "first");
    QTest::qWait(4 * int(SettleTime.count()));
    QVERIFY(file.changed.isEmpty());
}

void TestFileWatch::aFileThatIsGoneIsReported()
{
    TransferWorld world;
    Watched file(world);
    QVERIFY(QFile::remove(file.path));
    QTRY_COMPARE_WITH_TIMEOUT(file.vanished.size(), 1, WaitMs);
    QVERIFY(file.changed.isEmpty());
    TransferWorld::write(file.path, "back");
    QVERIFY(file.waitForChange(1));
}

void TestFileWatch::whatIsNotWatchedIsNotReported()
{
    TransferWorld world;
    Watched file(world);
    TransferWorld::write(world.path(QStringLiteral("other")), "other");
    file.watch.remove(file.path);
    TransferWorld::write(file.path, "second");
    QTest::qWait(4 * int(SettleTime.count()));
    QVERIFY(file.changed.isEmpty());
    QCOMPARE(file.watch.queueVersion(file.path, &world.queue), qint64(0));
}

void TestFileWatch::aChangeBecomesAVersion()
{
    TransferWorld world;
    const VellDocument stored =
        await(world.documents.document(world.store(QStringLiteral("a"), "first")._id));
    Watched file(world, stored);
    for (const char *const content : {"second", "third"}) {
        TransferWorld::write(file.path, content);
        QTRY_VERIFY_WITH_TIMEOUT(!file.changed.isEmpty(), WaitMs);
        file.changed.clear();
        const qint64 id = file.watch.queueVersion(file.path, &world.queue);
        QVERIFY(id != 0);
        QCOMPARE(world.waitFor(id).state, State::Done);
        QCOMPARE(world.download(file.watch.document(file.path)), QByteArray(content));
    }
    QCOMPARE(await(world.documents.history(stored._id)).size(), 3);
}

void TestFileWatch::aVersionIsRefusedIfTheDocumentHasChanged()
{
    TransferWorld world;
    const VellDocument stored =
        await(world.documents.document(world.store(QStringLiteral("a"), "first")._id));
    Watched file(world, stored);
    world.renameElsewhere(stored, QStringLiteral("renamed"));
    TransferWorld::write(file.path, "second");
    QVERIFY(file.waitForChange(1));
    const VellTransfer transfer = world.waitFor(file.watch.queueVersion(file.path, &world.queue));
    QCOMPARE(transfer.error.kind, VellError::Kind::ChangedMeanwhile);
    QCOMPARE(world.names(), QStringList{QStringLiteral("renamed")});
}

QTEST_GUILESS_MAIN(TestFileWatch)
#include "tst_file_watch.moc"
