#include "TransferWorld.h"

#include <support/HttpClient.h>

#include <QDir>
#include <QFile>
#include <QObject>
#include <QProcess>

using State = VellTransferState;
using Policy = VellConflictPolicy;
using Kind = VellError::Kind;

Q_DECLARE_METATYPE(VellConflictPolicy)

class TestTransferUploads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileBecomesADocument_data();
    void aFileBecomesADocument();
    void theStoreLearnsOfIt();
    void aFileGoesUpUnderAnotherName();
    void aFolderGoesUpWithEverythingBelow();
#ifndef Q_OS_WIN // which has neither such links nor such names
    void whatCannotGoUpFailsWithAReason();
#endif
    void aConflictIsSettledByThePolicy_data();
    void aConflictIsSettledByThePolicy();
    void aFolderInTheWayIsNotReplaced();
    void askingIsAnsweredLaterAndOthersGoOn();
    void anAnswerForAllCountsForTheBatch();
    void anAnswerForAllCountsForThoseUnderWay();
    void whatHasChangedSinceTheQuestionIsAskedAgain();
    void aVersionOfAnOlderStateIsRefused_data();
    void aVersionOfAnOlderStateIsRefused();
    void aNameThatIsTakenMeanwhileIsNotDoubled();
    void aLostAnswerMakesNoSecondDocument_data();
    void aLostAnswerMakesNoSecondDocument();
    void twoFilesOfOneNameFollowOneAnother();
    void theTransferKeepsItsProjectAndToken();
    void withoutAProjectItFails();
    void theServiceComesBack();
    void aServiceThatAlwaysFailsEndsIt();
    void aFileThatChangesIsStoredAsItIsInTheEnd();
};

void TestTransferUploads::aFileBecomesADocument_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::newRow("empty") << qint64(0);
    QTest::newRow("small") << SmallBytes;
    QTest::newRow("as large as a whole file may be") << qint64(10'485'760);
    QTest::newRow("large") << LargeBytes;
}

void TestTransferUploads::aFileBecomesADocument()
{
    QFETCH(const qint64, bytes);
    TransferWorld world;
    const QString path = world.makeFile(QStringLiteral("R&D 100% #1 + 图纸.dwg"), bytes);
    const qint64 id = world.queue.upload(path, {});
    QCOMPARE(world.queue.transfer(id).state, State::Waiting);
    const VellTransfer transfer = world.waitFor(id);
    QCOMPARE(transfer.error.text, QString());
    QCOMPARE(transfer.state, State::Done);
    QCOMPARE(transfer.sizeBytes, bytes);
    QCOMPARE(transfer.doneBytes, bytes);
    const QList<VellDocument> stored = world.find(QStringLiteral("R&D 100% #1 + 图纸.dwg"));
    QCOMPARE(stored.size(), 1);
    QCOMPARE(stored.first()._id, transfer.documentId);
    QVERIFY(world.download(stored.first()) == TransferWorld::contentOf(path));
    QCOMPARE(world.endCounts.value(id), 1);
    QCOMPARE(world.queue.totals().doneBytes, bytes);
    QCOMPARE(world.queue.totals().count(State::Done), 1);
}

void TestTransferUploads::theStoreLearnsOfIt()
{
    TransferWorld world;
    QSignalSpy folders(world.documents.store(), &VellDocumentStore::folderChanged);
    const qint64 id = world.queue.upload(world.makeFile(QStringLiteral("a"), SmallBytes), {});
    const VellTransfer transfer = world.waitFor(id);
    const auto known = world.documents.store()->document(transfer.documentId);
    QVERIFY(known.has_value());
    QCOMPARE(known->name, QStringLiteral("a"));
    QCOMPARE(known->fileSize, SmallBytes);
    QTRY_COMPARE_WITH_TIMEOUT(folders.size(), 1, WaitMs);
}

void TestTransferUploads::aFileGoesUpUnderAnotherName()
{
    TransferWorld world;
    const QString path = world.makeFile(QStringLiteral("local.dwg"), SmallBytes);
    const int batch = world.queue.addBatch(Policy::KeepBoth);
    const qint64 first = world.queue.uploadAs(path, {}, QStringLiteral("remote.dwg"), batch);
    QCOMPARE(world.waitFor(first).name, QStringLiteral("remote.dwg"));
    world.waitFor(world.queue.uploadAs(path, {}, QStringLiteral("remote.dwg"), batch));
    QCOMPARE(world.names(),
             (QStringList{QStringLiteral("remote(2).dwg"), QStringLiteral("remote.dwg")}));
}

void TestTransferUploads::aFolderGoesUpWithEverythingBelow()
{
    TransferWorld world;
    QVERIFY(QDir().mkpath(world.path(QStringLiteral("top/sub/deep"))));
    QVERIFY(QDir().mkpath(world.path(QStringLiteral("top/empty"))));
    world.makeFile(QStringLiteral("top/one"), SmallBytes, 1);
    world.makeFile(QStringLiteral("top/.hidden"), 10, 2);
    world.makeFile(QStringLiteral("top/sub/two"), LargeBytes, 3);
    world.makeFile(QStringLiteral("top/sub/deep/three"), 0);
    // A folder that is there is taken.
    const VellDocument there = await(world.documents.createFolder({}, QStringLiteral("top")));
    const qint64 id = world.queue.upload(world.path(QStringLiteral("top")), {});
    QCOMPARE(world.waitFor(id).state, State::Done);
    QVERIFY(world.waitForIdle());
    QCOMPARE(world.queue.totals().count(State::Done), 8);
    QCOMPARE(world.queue.transfer(id).documentId, there._id);
    QCOMPARE(world.names(), QStringList{QStringLiteral("top")});
    QCOMPARE(world.names(there._id),
             QStringList({QStringLiteral(".hidden"), QStringLiteral("empty"), QStringLiteral("one"),
                          QStringLiteral("sub")}));
    const QString sub = world.find(QStringLiteral("sub"), there._id).first()._id;
    QCOMPARE(world.names(sub), QStringList({QStringLiteral("deep"), QStringLiteral("two")}));
    const QString deep = world.find(QStringLiteral("deep"), sub).first()._id;
    QCOMPARE(world.names(deep), QStringList{QStringLiteral("three")});
    for (const qint64 each : world.queue.ids())
        QCOMPARE(world.endCounts.value(each), 1);
}

#ifndef Q_OS_WIN
void TestTransferUploads::whatCannotGoUpFailsWithAReason()
{
    TransferWorld world;
    const QString top = world.path(QStringLiteral("top"));
    QVERIFY(QDir().mkpath(top + QStringLiteral("/folder")));
    TransferWorld::write(top + QStringLiteral("/good"), "good");
    TransferWorld::write(top + QStringLiteral("/back\\slash"), "name");
    QVERIFY(QFile::link(top + QStringLiteral("/folder"), top + QStringLiteral("/to folder")));
    QVERIFY(QFile::link(top + QStringLiteral("/none"), top + QStringLiteral("/broken")));
    QCOMPARE(QProcess::execute(QStringLiteral("mkfifo"), {top + QStringLiteral("/fifo")}), 0);
    QCOMPARE(QProcess::execute(
                 QStringLiteral("sh"),
                 {QStringLiteral("-c"), QStringLiteral("touch \"$0/$(printf '\\377')\""), top}),
             0);
    const qint64 id = world.queue.upload(top, {});
    QCOMPARE(world.waitFor(id).state, State::Done);
    QVERIFY(world.waitForIdle());
    QMap<QString, Kind> failed;
    for (const qint64 each : world.queue.ids()) {
        const VellTransfer transfer = world.queue.transfer(each);
        if (transfer.state != State::Failed)
            continue;
        QVERIFY(!transfer.error.text.isEmpty());
        failed.insert(transfer.name, transfer.error.kind);
        QTRY_COMPARE_WITH_TIMEOUT(world.endCounts.value(each), 1, WaitMs);
    }
    QCOMPARE(failed.size(), 5);
    QCOMPARE(failed.value(QStringLiteral("back\\slash")), Kind::BadName);
    QCOMPARE(failed.value(QStringLiteral("to folder")), Kind::LocalFile);
    QCOMPARE(failed.value(QStringLiteral("broken")), Kind::LocalFile);
    QCOMPARE(failed.value(QStringLiteral("fifo")), Kind::LocalFile);
    const QString folder = world.find(QStringLiteral("top")).first()._id;
    QCOMPARE(world.names(folder), QStringList({QStringLiteral("folder"), QStringLiteral("good")}));
    QProcess::execute(QStringLiteral("rm"), {QStringLiteral("-r"), top});
}
#endif

void TestTransferUploads::aConflictIsSettledByThePolicy_data()
{
    QTest::addColumn<VellConflictPolicy>("policy");
    QTest::addColumn<bool>("isLocalNewer");
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isSkipped");
    const QStringList one{QStringLiteral("a.txt")};
    const QStringList two{QStringLiteral("a(2).txt"), QStringLiteral("a.txt")};
    QTest::newRow("replace") << Policy::Replace << false << one << QByteArray("local") << false;
    QTest::newRow("keep both") << Policy::KeepBoth << true << two << QByteArray("remote") << false;
    QTest::newRow("skip") << Policy::Skip << true << one << QByteArray("remote") << true;
    QTest::newRow("newer") << Policy::NewerOnly << true << one << QByteArray("local") << false;
    QTest::newRow("older") << Policy::NewerOnly << false << one << QByteArray("remote") << true;
}

void TestTransferUploads::aConflictIsSettledByThePolicy()
{
    QFETCH(const VellConflictPolicy, policy);
    QFETCH(const bool, isLocalNewer);
    TransferWorld world;
    world.store(QStringLiteral("a.txt"), "remote");
    const QString path = world.path(QStringLiteral("a.txt"));
    TransferWorld::write(path, "local");
    TransferWorld::setAge(path, std::chrono::hours(isLocalNewer ? -1 : 1));
    const VellTransfer transfer = world.waitFor(world.queue.upload(path, {}, policy));
    QCOMPARE(transfer.state, State::Done);
    QTEST(transfer.isSkipped, "isSkipped");
    QTEST(world.names(), "names");
    QTEST(world.download(world.find(QStringLiteral("a.txt")).first()), "content");
    QVERIFY(world.questions.isEmpty());
}

void TestTransferUploads::aFolderInTheWayIsNotReplaced()
{
    TransferWorld world;
    await(world.documents.createFolder({}, QStringLiteral("a.txt")));
    const QString path = world.path(QStringLiteral("a.txt"));
    TransferWorld::write(path, "local");
    const VellTransfer refused = world.waitFor(world.queue.upload(path, {}, Policy::Replace));
    QCOMPARE(refused.error.kind, Kind::NameTaken);
    QCOMPARE(world.waitFor(world.queue.upload(path, {}, Policy::KeepBoth)).state, State::Done);
    QCOMPARE(world.names(), QStringList({QStringLiteral("a(2).txt"), QStringLiteral("a.txt")}));
}

void TestTransferUploads::askingIsAnsweredLaterAndOthersGoOn()
{
    TransferWorld world;
    const VellDocument there = world.store(QStringLiteral("a.txt"), "remote");
    TransferWorld::write(world.path(QStringLiteral("a.txt")), "local");
    TransferWorld::write(world.path(QStringLiteral("b.txt")), "local");
    const int batch = world.queue.addBatch(Policy::Ask);
    const qint64 asking = world.queue.upload(world.path(QStringLiteral("a.txt")), {}, batch);
    const qint64 other = world.queue.upload(world.path(QStringLiteral("b.txt")), {}, batch);
    QCOMPARE(world.waitFor(other).state, State::Done);
    QVERIFY(world.waitForState(asking, State::Asking));
    QCOMPARE(world.questions.size(), 1);
    QCOMPARE(world.questions.first().id, asking);
    QCOMPARE(world.questions.first().existing._id, there._id);
    QCOMPARE(world.questions.first().freeName, QStringLiteral("a(2).txt"));
    QVERIFY(!world.questions.first().hasChanged);
    QCOMPARE(world.queue.question(asking).id, asking);
    world.queue.answer(asking, Policy::Replace);
    QCOMPARE(world.waitFor(asking).state, State::Done);
    QCOMPARE(world.queue.transfer(asking).documentId, there._id);
    QCOMPARE(world.download(world.find(QStringLiteral("a.txt")).first()), QByteArray("local"));
    QCOMPARE(world.questions.size(), 1);
}

void TestTransferUploads::anAnswerForAllCountsForTheBatch()
{
    TransferWorld world;
    const int batch = world.queue.addBatch(Policy::Ask);
    QVector<qint64> ids;
    for (int i = 0; i < 12; ++i) {
        const QString name = QStringLiteral("%1.txt").arg(i);
        world.store(name, "remote");
        TransferWorld::write(world.path(name), "local");
        ids.append(world.queue.upload(world.path(name), {}, batch));
    }
    const qint64 alone = world.queue.upload(world.path(QStringLiteral("0.txt")), {});
    QVERIFY(world.waitForState(ids.first(), State::Asking));
    world.queue.answerAll(ids.first(), Policy::Skip);
    for (const qint64 id : ids) {
        QCOMPARE(world.waitFor(id).state, State::Done);
        QVERIFY(world.queue.transfer(id).isSkipped);
    }
    QVERIFY(world.waitForState(alone, State::Asking));
}

void TestTransferUploads::anAnswerForAllCountsForThoseUnderWay()
{
    TransferWorld world;
    const int batch = world.queue.addBatch(Policy::Ask);
    for (const char *const name : {"a", "b"}) {
        world.store(QString::fromLatin1(name), "remote");
        TransferWorld::write(world.path(QString::fromLatin1(name)), "local");
    }
    const qint64 first = world.queue.upload(world.path(QStringLiteral("a")), {}, batch);
    QVERIFY(world.waitForState(first, State::Asking));
    FaultRule slow;
    slow.kind = FaultRule::Kind::Slow;
    slow.value = 1000;
    slow.verb = "GET";
    world.service.addFault(slow);
    const qint64 underWay = world.queue.upload(world.path(QStringLiteral("b")), {}, batch);
    QVERIFY(world.waitForState(underWay, State::Sending));
    world.queue.answerAll(first, Policy::Skip);
    QCOMPARE(world.waitFor(underWay).state, State::Done);
    QVERIFY(world.queue.transfer(underWay).isSkipped);
    QCOMPARE(world.questions.size(), 1);
}

void TestTransferUploads::whatHasChangedSinceTheQuestionIsAskedAgain()
{
    TransferWorld world;
    const VellDocument there = world.store(QStringLiteral("a.txt"), "remote");
    TransferWorld::write(world.path(QStringLiteral("a.txt")), "local");
    const qint64 id = world.queue.upload(world.path(QStringLiteral("a.txt")), {}, Policy::Ask);
    QVERIFY(world.waitForState(id, State::Asking));
    world.renameElsewhere(there, QStringLiteral("renamed.txt"));
    world.queue.answer(id, Policy::Replace);
    QTRY_COMPARE_WITH_TIMEOUT(world.questions.size(), 2, WaitMs);
    QVERIFY(world.questions.last().hasChanged);
    QCOMPARE(world.questions.last().existing.name, QStringLiteral("renamed.txt"));
    QCOMPARE(world.names(), QStringList{QStringLiteral("renamed.txt")});
    world.queue.answer(id, Policy::KeepBoth);
    QCOMPARE(world.waitFor(id).state, State::Done);
    QCOMPARE(world.endCounts.value(id), 1);
    QCOMPARE(world.find(QStringLiteral("renamed.txt")).size(), 1);
    QCOMPARE(world.download(world.find(QStringLiteral("renamed.txt")).first()),
             QByteArray("remote"));
}

void TestTransferUploads::aVersionOfAnOlderStateIsRefused_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("change");
    for (const qint64 bytes : {SmallBytes, LargeBytes}) {
        const char *const size = bytes == SmallBytes ? "small" : "large";
        for (const char *const change : {"nothing", "renamed", "new version", "deleted"})
            QTest::addRow("%s, %s", size, change) << bytes << QString::fromLatin1(change);
    }
}

void TestTransferUploads::aVersionOfAnOlderStateIsRefused()
{
    QFETCH(const qint64, bytes);
    QFETCH(const QString, change);
    TransferWorld world;
    const VellDocument stored = world.store(QStringLiteral("a"), "old");
    const VellDocument looked = await(world.documents.document(stored._id));
    if (change == QLatin1String("renamed"))
        world.renameElsewhere(stored, QStringLiteral("b"));
    if (change == QLatin1String("deleted"))
        await(world.documents.remove({stored._id}));
    if (change == QLatin1String("new version")) {
        TransferWorld::write(world.path(QStringLiteral("other")), "other");
        QCOMPARE(
            world.waitFor(world.queue.uploadVersion(world.path(QStringLiteral("other")), looked))
                .state,
            State::Done);
    }
    const QString path = world.makeFile(QStringLiteral("local"), bytes);
    const VellTransfer transfer = world.waitFor(world.queue.uploadVersion(path, looked));
    if (change == QLatin1String("nothing")) {
        QCOMPARE(transfer.state, State::Done);
        QCOMPARE(transfer.documentId, stored._id);
        QCOMPARE(world.names(), QStringList{QStringLiteral("a")});
        QVERIFY(world.download(world.find(QStringLiteral("a")).first())
                == TransferWorld::contentOf(path));
        return;
    }
    QCOMPARE(transfer.state, State::Failed);
    QCOMPARE(transfer.error.kind, Kind::ChangedMeanwhile);
    QVERIFY(await(world.documents.document(stored._id)).fileSize < bytes);
}

void TestTransferUploads::aNameThatIsTakenMeanwhileIsNotDoubled()
{
    // Taken while the chunks go up: after the first look and before the document is made.
    TransferWorld world;
    world.queue.setSpeedLimits(8'000'000, 0);
    const QString path = world.makeFile(QStringLiteral("a"), LargeBytes);
    const qint64 id = world.queue.upload(path, {}, Policy::Skip);
    QTRY_VERIFY_WITH_TIMEOUT(world.queue.transfer(id).doneBytes > 0
                                 && world.queue.transfer(id).state == State::Sending,
                             WaitMs);
    world.store(QStringLiteral("a"), "somebody else's");
    QCOMPARE(world.waitFor(id).state, State::Done);
    QVERIFY(world.queue.transfer(id).isSkipped);
    QCOMPARE(world.find(QStringLiteral("a")).size(), 1);
}

void TestTransferUploads::aLostAnswerMakesNoSecondDocument_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<bool>("isVersion");
    QTest::newRow("small") << SmallBytes << false;
    QTest::newRow("large") << LargeBytes << false;
    QTest::newRow("small version") << SmallBytes << true;
    QTest::newRow("large version") << LargeBytes << true;
}

void TestTransferUploads::aLostAnswerMakesNoSecondDocument()
{
    QFETCH(const qint64, bytes);
    QFETCH(const bool, isVersion);
    TransferWorld world;
    VellDocument before;
    if (isVersion)
        before = await(world.documents.document(world.store(QStringLiteral("a"), "old")._id));
    FaultRule rule;
    rule.kind = FaultRule::Kind::LoseReply;
    rule.verb = isVersion ? "PUT" : "POST";
    rule.pathPrefix = QStringLiteral("/document-service");
    world.service.addFault(rule);
    const QString path = world.makeFile(QStringLiteral("a"), bytes);
    const qint64 id = isVersion ? world.queue.uploadVersion(path, before)
                                : world.queue.upload(path, {}, Policy::KeepBoth);
    const VellTransfer transfer = world.waitFor(id);
    QCOMPARE(transfer.error.text, QString());
    QCOMPARE(transfer.state, State::Done);
    QCOMPARE(world.names(), QStringList{QStringLiteral("a")});
    QCOMPARE(await(world.documents.history(transfer.documentId)).size(), isVersion ? 2 : 1);
    QCOMPARE(world.endCounts.value(id), 1);
}

void TestTransferUploads::twoFilesOfOneNameFollowOneAnother()
{
    TransferWorld world;
    QVERIFY(QDir().mkpath(world.path(QStringLiteral("1"))));
    QVERIFY(QDir().mkpath(world.path(QStringLiteral("2"))));
    QVERIFY(QDir().mkpath(world.path(QStringLiteral("3"))));
    for (int i = 1; i <= 3; ++i) {
        const QString path = world.makeFile(QStringLiteral("%1/a").arg(i), SmallBytes, i);
        world.queue.upload(path, {}, Policy::KeepBoth);
    }
    QVERIFY(world.waitForIdle());
    QCOMPARE(world.names(),
             QStringList({QStringLiteral("a"), QStringLiteral("a(2)"), QStringLiteral("a(3)")}));
}

void TestTransferUploads::theTransferKeepsItsProjectAndToken()
{
    TransferWorld world;
    world.queue.setSpeedLimits(8'000'000, 0);
    const qint64 large =
        world.queue.upload(world.makeFile(QStringLiteral("large"), LargeBytes), {});
    const qint64 small =
        world.queue.upload(world.makeFile(QStringLiteral("small"), SmallBytes), {});
    QTRY_VERIFY_WITH_TIMEOUT(world.queue.transfer(large).doneBytes > 0, WaitMs);
    world.session.openProject(QStringLiteral("p2"));
    QCOMPARE(world.waitFor(large).state, State::Done);
    QCOMPARE(world.waitFor(small).state, State::Done);
    QCOMPARE(world.names(), QStringList());
    // What is of another project does not enter the store.
    QVERIFY(!world.documents.store()->document(world.queue.transfer(large).documentId));
    world.session.openProject(QStringLiteral("p1"));
    QCOMPARE(world.names(), QStringList({QStringLiteral("large"), QStringLiteral("small")}));
}

void TestTransferUploads::withoutAProjectItFails()
{
    TransferWorld world;
    world.session.openProject(QString());
    const qint64 id = world.queue.upload(world.makeFile(QStringLiteral("a"), 1), {});
    const VellTransfer transfer = world.waitFor(id);
    QCOMPARE(transfer.error.kind, Kind::NotSignedIn);
    world.session.openProject(QStringLiteral("p1"));
    world.queue.retry(id);
    QCOMPARE(world.waitFor(id).state, State::Done);
    QCOMPARE(world.endCounts.value(id), 2);
}

void TestTransferUploads::theServiceComesBack()
{
    TransferWorld world;
    const QString path = world.makeFile(QStringLiteral("a"), SmallBytes);
    FaultRule rule;
    rule.value = 503;
    rule.times = 3;
    world.service.addFault(rule);
    const qint64 id = world.queue.upload(path, {});
    QCOMPARE(world.waitFor(id).state, State::Done);
    QCOMPARE(world.find(QStringLiteral("a")).size(), 1);
}

void TestTransferUploads::aServiceThatAlwaysFailsEndsIt()
{
    TransferWorld world;
    FaultRule rule;
    rule.value = 507;
    rule.verb = "POST";
    rule.times = 0;
    world.service.addFault(rule);
    const qint64 id = world.queue.upload(world.makeFile(QStringLiteral("a"), SmallBytes), {});
    const VellTransfer transfer = world.waitFor(id);
    QCOMPARE(transfer.state, State::Failed);
    QCOMPARE(transfer.error.kind, Kind::NoRoom);
    world.service.clearFaults();
    world.queue.retryAll();
    QTRY_COMPARE_WITH_TIMEOUT(world.queue.transfer(id).state, State::Done, WaitMs);
    QCOMPARE(world.endCounts.value(id), 2);
}

void TestTransferUploads::aFileThatChangesIsStoredAsItIsInTheEnd()
{
    TransferWorld world;
    world.queue.setSpeedLimits(8'000'000, 0);
    const QString path = world.makeFile(QStringLiteral("a"), LargeBytes, 1);
    const qint64 id = world.queue.upload(path, {});
    QTRY_VERIFY_WITH_TIMEOUT(world.queue.transfer(id).state == State::Sending, WaitMs);
    world.makeFile(QStringLiteral("a"), LargeBytes, 2);
    world.queue.setSpeedLimits(0, 0);
    QCOMPARE(world.waitFor(id).state, State::Done);
    QCOMPARE(world.find(QStringLiteral("a")).size(), 1);
    QVERIFY(world.download(world.find(QStringLiteral("a")).first())
            == TransferWorld::contentOf(path));
}

QTEST_GUILESS_MAIN(TestTransferUploads)
#include "tst_transfer_uploads.moc"
