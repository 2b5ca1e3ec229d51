#include "TransferWorld.h"

#include <support/ScriptedServer.h>
#include <transfer/LocalNames.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QObject>
#include <QProcess>

using State = VellTransferState;
using Policy = VellConflictPolicy;
using Kind = VellError::Kind;

Q_DECLARE_METATYPE(VellConflictPolicy)

namespace {

//! A queue on the session of a scripted service that has one document, "content" of 7 bytes.
class ScriptedWorld
{
public:
    ScriptedWorld()
    {
        server.setHandler([this](const ScriptedRequest &request) { return answer(request); });
        queue.attach(&documents);
        VellConnection connection;
        connection.address = server.baseApi();
        session.open(connection);
        session.openProject(QStringLiteral("p1"));
        if (!QTest::qWaitFor([this] { return session.state() == VellSession::State::Online; }))
            qFatal("the session does not open");
        document._id = QStringLiteral("d1");
        document.name = QStringLiteral("a");
        document.type = QStringLiteral("file");
        document.fileSize = size;
    }

    ScriptedReply answer(const ScriptedRequest &request)
    {
        if (request.target.contains("base-service/me"))
            return ScriptedReply::json(R"({"_id":"u","name":"u","projects":[]})");
        if (request.target.contains("documents/d1")) {
            return ScriptedReply::json(R"({"_id":"d1","name":"a","type":"file","fileId":"f1",)"
                                       R"("fileSize":)"
                                       + QByteArray::number(size) + R"(,"file":{"fileId":"f1",)"
                                       + R"("fileSize":)" + QByteArray::number(size) + "}}");
        }
        ScriptedReply reply;
        reply.body = body;
        reply.headers.insert("ETag", tag);
        return reply;
    }

    ScriptedServer server;
    QByteArray body = "content";
    QByteArray tag =
        '"' + QCryptographicHash::hash("content", QCryptographicHash::Md5).toHex() + '"';
    qint64 size = 7;
    VellSession session;
    VellDocuments documents{&session};
    VellTransferQueue queue;
    VellDocument document;
    QTemporaryDir folder;
};

} // namespace

class TestTransferDownloads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDocumentBecomesAFile_data();
    void aDocumentBecomesAFile();
    void aDocumentComesUnderAnotherName();
    void anOlderVersionComes_data();
    void anOlderVersionComes();
    void aFolderComesWithEverythingBelow();
    void documentsOfOneNameGetDistinctNames();
    void aConflictIsSettledByThePolicy_data();
    void aConflictIsSettledByThePolicy();
    void aFileThatChangedSinceTheQuestionIsAskedAgain();
#ifndef Q_OS_WIN // which has no such files
    void whatIsNoPlainFileIsNotTouched_data();
    void whatIsNoPlainFileIsNotTouched();
#endif
    void aNameThatNoFileCanHaveFails();
    void theRestIsFetchedAfterAPause();
    void aPartOfAnEarlierQueueIsContinued_data();
    void aPartOfAnEarlierQueueIsContinued();
    void aConnectionThatBreaksOffGoesOnWhereItWas();
    void theAttemptsAreLimited();
    void otherBytesThanTheEntityTagSaysAreRefused();
    void withoutRoomNothingIsLeft();
    void aLimitHoldsBackWhatIsReceived();
};

void TestTransferDownloads::aDocumentBecomesAFile_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << 0 << QStringLiteral("empty");
    QTest::newRow("small") << int(SmallBytes) << QStringLiteral("R&D 100% #1 + 图纸.dwg");
    QTest::newRow("large") << int(LargeBytes) << QStringLiteral("large");
    QTest::newRow("longest name") << 10 << QString(255, QLatin1Char('n'));
}

void TestTransferDownloads::aDocumentBecomesAFile()
{
    QFETCH(const int, bytes);
    QFETCH(const QString, name);
    TransferWorld world;
    const QByteArray content =
        TransferWorld::contentOf(world.makeFile(QStringLiteral("source"), bytes));
    const VellDocument stored = await(world.documents.document(world.store(name, content)._id));
    const QString folder = world.path(QStringLiteral("new/folder"));
    const qint64 id = world.queue.download(stored, folder);
    const VellTransfer transfer = world.waitFor(id);
    QCOMPARE(transfer.error.text, QString());
    QCOMPARE(transfer.state, State::Done);
    QCOMPARE(transfer.doneBytes, qint64(bytes));
    QCOMPARE(transfer.localPath, folder + QLatin1Char('/') + name);
    QVERIFY(TransferWorld::contentOf(transfer.localPath) == content);
    // Nothing else is left.
    QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{name});
    QCOMPARE(world.endCounts.value(id), 1);
}

void TestTransferDownloads::aDocumentComesUnderAnotherName()
{
    TransferWorld world;
    const VellDocument stored =
        await(world.documents.document(world.store(QStringLiteral("remote"), "content")._id));
    const QString path = world.path(QStringLiteral("new/local"));
    const qint64 id = world.queue.downloadAs(stored, path, world.queue.addBatch(Policy::Skip));
    QCOMPARE(world.waitFor(id).localPath, path);
    QCOMPARE(TransferWorld::contentOf(path), QByteArray("content"));
}

void TestTransferDownloads::anOlderVersionComes_data()
{
    QTest::addColumn<bool>("isSizeKnown");
    QTest::newRow("with its size") << true;
    QTest::newRow("without its size, as of large ones") << false;
}

void TestTransferDownloads::anOlderVersionComes()
{
    QFETCH(const bool, isSizeKnown);
    TransferWorld world;
    const VellDocument first = world.store(QStringLiteral("a"), "the first");
    TransferWorld::write(world.path(QStringLiteral("a")), "another one");
    const VellDocument current = await(world.documents.document(first._id));
    QCOMPARE(
        world.waitFor(world.queue.uploadVersion(world.path(QStringLiteral("a")), current)).state,
        State::Done);
    VellDocument version = await(world.documents.history(first._id)).last();
    if (!isSizeKnown)
        version.fileSize = 0;
    const QString path = world.path(QStringLiteral("older"));
    const qint64 id =
        world.queue.downloadVersion(version, path, world.queue.addBatch(Policy::Skip));
    const VellTransfer transfer = world.waitFor(id);
    QCOMPARE(transfer.error.text, QString());
    QCOMPARE(transfer.sizeBytes, 9);
    QCOMPARE(TransferWorld::contentOf(path), QByteArray("the first"));
    // A version is no document of its own.
    QVERIFY(!world.documents.store()->document(version._id));
}

void TestTransferDownloads::aFolderComesWithEverythingBelow()
{
    TransferWorld world;
    const VellDocument top = await(world.documents.createFolder({}, QStringLiteral("top")));
    const VellDocument sub = await(world.documents.createFolder(top._id, QStringLiteral("sub")));
    await(world.documents.createFolder(top._id, QStringLiteral("empty")));
    world.store(QStringLiteral("one"), "1", top._id);
    world.store(QStringLiteral("two"), "22", sub._id);
    const qint64 id = world.queue.download(top, world.path(QStringLiteral("here")));
    QCOMPARE(world.waitFor(id).state, State::Done);
    QVERIFY(world.waitForIdle());
    QCOMPARE(world.queue.totals().count(State::Done), 5);
    QCOMPARE(TransferWorld::contentOf(world.path(QStringLiteral("here/top/one"))), QByteArray("1"));
    QCOMPARE(TransferWorld::contentOf(world.path(QStringLiteral("here/top/sub/two"))),
             QByteArray("22"));
    QVERIFY(QDir(world.path(QStringLiteral("here/top/empty"))).exists());
}

void TestTransferDownloads::documentsOfOneNameGetDistinctNames()
{
    TransferWorld world;
    const VellDocument top = await(world.documents.createFolder({}, QStringLiteral("top")));
    world.store(QStringLiteral("a.txt"), "one", top._id);
    world.store(QStringLiteral("a.txt"), "two", top._id);
    world.store(QStringLiteral("a(2).txt"), "three", top._id);
    world.queue.download(top, world.path(QStringLiteral(".")));
    QVERIFY(world.waitForIdle());
    QSet<QByteArray> contents;
    for (const char *const name : {"a.txt", "a(2).txt", "a(3).txt"})
        contents.insert(TransferWorld::contentOf(
            world.path(QStringLiteral("top/") + QString::fromLatin1(name))));
    QCOMPARE(contents, QSet<QByteArray>({"one", "two", "three"}));
    QCOMPARE(TransferWorld::contentOf(world.path(QStringLiteral("top/a(2).txt"))),
             QByteArray("three"));
}

void TestTransferDownloads::aConflictIsSettledByThePolicy_data()
{
    QTest::addColumn<VellConflictPolicy>("policy");
    QTest::addColumn<bool>("isLocalNewer");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isDoubled");
    QTest::newRow("replace") << Policy::Replace << true << QByteArray("remote") << false;
    QTest::newRow("keep both") << Policy::KeepBoth << true << QByteArray("local") << true;
    QTest::newRow("skip") << Policy::Skip << false << QByteArray("local") << false;
    QTest::newRow("newer") << Policy::NewerOnly << false << QByteArray("remote") << false;
    QTest::newRow("older") << Policy::NewerOnly << true << QByteArray("local") << false;
}

void TestTransferDownloads::aConflictIsSettledByThePolicy()
{
    QFETCH(const VellConflictPolicy, policy);
    QFETCH(const bool, isLocalNewer);
    TransferWorld world;
    const VellDocument stored = world.store(QStringLiteral("a.txt"), "remote");
    const QString path = world.path(QStringLiteral("a.txt"));
    TransferWorld::write(path, "local");
    TransferWorld::setAge(path, std::chrono::hours(isLocalNewer ? -1 : 1));
    const qint64 id = world.queue.download(stored, world.path(QString()), policy);
    QCOMPARE(world.waitFor(id).state, State::Done);
    QTEST(TransferWorld::contentOf(path), "content");
    const QString second = world.path(QStringLiteral("a(2).txt"));
    QTEST(QFile::exists(second), "isDoubled");
    if (QFile::exists(second))
        QCOMPARE(TransferWorld::contentOf(second), QByteArray("remote"));
}

void TestTransferDownloads::aFileThatChangedSinceTheQuestionIsAskedAgain()
{
    TransferWorld world;
    const VellDocument stored = world.store(QStringLiteral("a.txt"), "remote");
    const QString path = world.path(QStringLiteral("a.txt"));
    TransferWorld::write(path, "local");
    const qint64 id = world.queue.download(stored, world.path(QString()), Policy::Ask);
    QVERIFY(world.waitForState(id, State::Asking));
    QCOMPARE(world.questions.first().localPath, path);
    QCOMPARE(world.questions.first().freeName, QStringLiteral("a(2).txt"));
    TransferWorld::write(path, "changed since");
    world.queue.answer(id, Policy::Replace);
    QTRY_COMPARE_WITH_TIMEOUT(world.questions.size(), 2, WaitMs);
    QVERIFY(world.questions.last().hasChanged);
    QCOMPARE(TransferWorld::contentOf(path), QByteArray("changed since"));
    world.queue.answer(id, Policy::Replace);
    QCOMPARE(world.waitFor(id).state, State::Done);
    QCOMPARE(TransferWorld::contentOf(path), QByteArray("remote"));
}

#ifndef Q_OS_WIN
void TestTransferDownloads::whatIsNoPlainFileIsNotTouched_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("folder") << QStringLiteral("mkdir a.txt");
    QTest::newRow("fifo") << QStringLiteral("mkfifo a.txt");
    QTest::newRow("link") << QStringLiteral("echo kept > other; ln -s other a.txt");
    QTest::newRow("broken link") << QStringLiteral("ln -s nowhere a.txt");
}

void TestTransferDownloads::whatIsNoPlainFileIsNotTouched()
{
    QFETCH(const QString, command);
    TransferWorld world;
    QProcess shell;
    shell.setWorkingDirectory(world.path(QString()));
    shell.start(QStringLiteral("sh"), {QStringLiteral("-c"), command});
    QVERIFY(shell.waitForFinished());
    const QStringList before =
        QDir(world.path(QString())).entryList(QDir::AllEntries | QDir::System | QDir::Hidden);
    const VellDocument stored = world.store(QStringLiteral("a.txt"), "remote");
    const VellTransfer transfer =
        world.waitFor(world.queue.download(stored, world.path(QString()), Policy::Replace));
    QCOMPARE(transfer.error.kind, Kind::LocalFile);
    QVERIFY(transfer.error.text.contains(QLatin1String("a.txt")));
    QCOMPARE(QDir(world.path(QString())).entryList(QDir::AllEntries | QDir::System | QDir::Hidden),
             before);
}
#endif

void TestTransferDownloads::aNameThatNoFileCanHaveFails()
{
    ScriptedWorld world;
    world.document.name = QStringLiteral("../a");
    const qint64 id = world.queue.download(world.document, world.folder.path());
    QTRY_COMPARE_WITH_TIMEOUT(world.queue.transfer(id).state, State::Failed, WaitMs);
    QCOMPARE(world.queue.transfer(id).error.kind, Kind::BadName);
    QVERIFY(local_names::isWindowsName(QStringLiteral("com.txt")));
    for (const char *const name : {"NUL.txt", "a:b", "a ", "a.", "lpt1", "", "a\tb"})
        QVERIFY2(!local_names::isWindowsName(QString::fromLatin1(name)), name);
}

void TestTransferDownloads::aPartOfAnEarlierQueueIsContinued_data()
{
    QTest::addColumn<bool>("resumes");
    QTest::addColumn<qint64>("partBytes"); // 0 for as many as have arrived
    QTest::addColumn<bool>("isDamaged");
    QTest::newRow("goes on") << true << Q_INT64_C(0) << false;
    QTest::newRow("all of it is there") << true << LargeBytes << false;
    QTest::newRow("too much is there") << true << LargeBytes + 10 << false;
    QTest::newRow("another content") << true << Q_INT64_C(0) << true;
    QTest::newRow("unasked it is removed") << false << Q_INT64_C(0) << true;
}

void TestTransferDownloads::aPartOfAnEarlierQueueIsContinued()
{
    QFETCH(const bool, resumes);
    QFETCH(const qint64, partBytes);
    QFETCH(const bool, isDamaged);
    TransferWorld world;
    const QByteArray content =
        TransferWorld::contentOf(world.makeFile(QStringLiteral("source"), LargeBytes));
    const VellDocument stored =
        await(world.documents.document(world.store(QStringLiteral("large"), content)._id));
    const QString folder = world.path(QStringLiteral("here"));
    const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    {
        VellTransferQueue earlier;
        earlier.attach(&world.documents);
        earlier.setResumesParts(true);
        earlier.setSpeedLimits(0, 4'000'000);
        const qint64 id = earlier.download(stored, folder);
        QTRY_VERIFY_WITH_TIMEOUT(earlier.transfer(id).doneBytes > 1'000'000, WaitMs);
        earlier.cancelAll();
        QTRY_COMPARE_WITH_TIMEOUT(earlier.transfer(id).state, State::Cancelled, WaitMs);
    }
    QCOMPARE(QDir(folder).entryList(all).size(), 1);
    QFile part(folder + QLatin1Char('/') + QDir(folder).entryList(all).first());
    QVERIFY(part.open(QIODevice::ReadWrite));
    QVERIFY(part.size() > 0 && part.size() < LargeBytes);
    if (partBytes > 0)
        part.write((content + QByteArray(10, 'x')).left(int(partBytes)));
    if (isDamaged)
        part.write("something else");
    part.close();
    world.queue.setResumesParts(resumes);
    const qint64 id = world.queue.download(stored, folder);
    const VellTransfer transfer = world.waitFor(id);
    QCOMPARE(transfer.error.text, QString());
    QVERIFY(TransferWorld::contentOf(transfer.localPath) == content);
    QCOMPARE(QDir(folder).entryList(all), QStringList{QStringLiteral("large")});
}

void TestTransferDownloads::theRestIsFetchedAfterAPause()
{
    TransferWorld world;
    const QByteArray content =
        TransferWorld::contentOf(world.makeFile(QStringLiteral("source"), LargeBytes));
    const VellDocument stored =
        await(world.documents.document(world.store(QStringLiteral("large"), content)._id));
    world.queue.setSpeedLimits(0, 4'000'000);
    const QString folder = world.path(QStringLiteral("here"));
    const qint64 id = world.queue.download(stored, folder);
    QTRY_VERIFY_WITH_TIMEOUT(world.queue.transfer(id).doneBytes > 1'000'000, WaitMs);
    world.queue.pause(id);
    QCOMPARE(world.queue.transfer(id).state, State::Paused);
    const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    QTRY_COMPARE_WITH_TIMEOUT(QDir(folder).entryList(all).size(), 1, WaitMs);
    const QString part = folder + QLatin1Char('/') + QDir(folder).entryList(all).first();
    QVERIFY(part.endsWith(QLatin1String(".part")));
    // What is there is not fetched again: another byte in it shows in the MD5.
    QFile file(part);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.size() > 0);
    file.putChar('x');
    file.close();
    bool isRefused = false;
    connect(&world.queue, &VellTransferQueue::changed, this, [&] {
        isRefused = isRefused || world.queue.transfer(id).error.kind == Kind::ServiceFailed;
    });
    world.queue.setSpeedLimits(0, 0);
    world.queue.resume(id);
    QTRY_VERIFY_WITH_TIMEOUT(isRefused, WaitMs);
    QVERIFY(world.waitForState(id, State::Done));
    QVERIFY(TransferWorld::contentOf(folder + QStringLiteral("/large")) == content);
    QCOMPARE(world.endCounts.value(id), 1);
}

void TestTransferDownloads::aConnectionThatBreaksOffGoesOnWhereItWas()
{
    TransferWorld world;
    const QByteArray content =
        TransferWorld::contentOf(world.makeFile(QStringLiteral("source"), LargeBytes));
    const VellDocument stored =
        await(world.documents.document(world.store(QStringLiteral("large"), content)._id));
    FaultRule rule;
    rule.kind = FaultRule::Kind::CutReply;
    rule.value = 2'000'000;
    rule.pathPrefix = QStringLiteral("/base-service/files");
    rule.times = 3;
    world.service.addFault(rule);
    const qint64 id = world.queue.download(stored, world.path(QStringLiteral("here")));
    QCOMPARE(world.waitFor(id).state, State::Done);
    QVERIFY(TransferWorld::contentOf(world.path(QStringLiteral("here/large"))) == content);
}

void TestTransferDownloads::theAttemptsAreLimited()
{
    ScriptedWorld world;
    int attempts = 0;
    world.server.setHandler([&](const ScriptedRequest &request) {
        if (!request.target.contains("base-service/files"))
            return world.answer(request);
        ++attempts;
        ScriptedReply busy = ScriptedReply::json("{}");
        busy.status = 503;
        return busy;
    });
    world.queue.setAttemptLimit(2);
    const qint64 id = world.queue.download(world.document, world.folder.path());
    QTRY_COMPARE_WITH_TIMEOUT(world.queue.transfer(id).state, State::Failed, WaitMs);
    QCOMPARE(attempts, 2);
}

void TestTransferDownloads::otherBytesThanTheEntityTagSaysAreRefused()
{
    ScriptedWorld world;
    world.body = "CONTENT";
    const qint64 id = world.queue.download(world.document, world.folder.path());
    QTRY_COMPARE_WITH_TIMEOUT(world.queue.transfer(id).error.kind, Kind::ServiceFailed, WaitMs);
    QVERIFY(!QFile::exists(world.folder.filePath(QStringLiteral("a"))));
    world.body = "content";
    QTRY_COMPARE_WITH_TIMEOUT(world.queue.transfer(id).state, State::Done, WaitMs);
    QCOMPARE(TransferWorld::contentOf(world.folder.filePath(QStringLiteral("a"))),
             QByteArray("content"));
}

void TestTransferDownloads::withoutRoomNothingIsLeft()
{
    ScriptedWorld world;
    world.size = Q_INT64_C(1) << 55;
    world.document.fileSize = world.size;
    const qint64 id = world.queue.download(world.document, world.folder.path());
    QTRY_COMPARE_WITH_TIMEOUT(world.queue.transfer(id).state, State::Failed, WaitMs);
    QCOMPARE(world.queue.transfer(id).error.kind, Kind::NoRoom);
    QVERIFY(QDir(world.folder.path())
                .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)
                .isEmpty());
}

void TestTransferDownloads::aLimitHoldsBackWhatIsReceived()
{
    // Held to a tenth of a second for each 100,000 bytes, whatever the machine does.
    TransferWorld world;
    const QByteArray content =
        TransferWorld::contentOf(world.makeFile(QStringLiteral("source"), 6'000'000));
    const VellDocument stored =
        await(world.documents.document(world.store(QStringLiteral("a"), content)._id));
    world.queue.setSpeedLimits(0, 1'000'000);
    QElapsedTimer clock;
    clock.start();
    const qint64 id = world.queue.download(stored, world.path(QStringLiteral("here")));
    QCOMPARE(world.waitFor(id).state, State::Done);
    constexpr int LeastMs = 3000;
    QVERIFY2(clock.elapsed() > LeastMs, qPrintable(QString::number(clock.elapsed())));
}

QTEST_GUILESS_MAIN(TestTransferDownloads)
#include "tst_transfer_downloads.moc"
