#include "VelldocWorld.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <unistd.h>
#endif

class TestVelldocTransfers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filesGoUpAndComeBack_data();
    void filesGoUpAndComeBack();
    void folderKeepsItsTree();
    void fileTakesTheNameOfItsTarget();
    void updateMakesANewVersion();
    void olderVersionCanBeFetched();
    void conflictCancelsWithoutATerminal();
    void conflictRenames();
    void conflictSkips();
    void secondFileOfTheSameNameIsAConflict();
    void folderInTheWayIsNotReplaced();
    void fetchDoesNotReplaceUnasked();
    void fetchLeavesNothingHalfDone();
    void whatCannotBeFetchedIsNamedAndTheRestComes();
#ifdef Q_OS_UNIX
    void everyEntryIsStoredOrNamed();
    void pipeIsWrittenTo();
    void linkStays();
#endif
    void contentGoesToTheStandardOutput();
    void nothingIsSentTwiceForOneFolder();
    void unreadableFileIsNamedAndTheRestIsStored();
    void resultOfAnUploadIsJson();
    void longTransferHasPlainLinesWithoutATerminal();
};

void TestVelldocTransfers::filesGoUpAndComeBack_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::newRow("empty") << Q_INT64_C(0);
    QTest::newRow("one byte") << Q_INT64_C(1);
    QTest::newRow("largest whole file") << Q_INT64_C(10'485'760);
}

void TestVelldocTransfers::filesGoUpAndComeBack()
{
    QFETCH(qint64, bytes);
    VelldocWorld world;
    const QString local = world.writeUnequalBlocks(QStringLiteral("f.bin"), bytes);
    const VelldocRun up = world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    QCOMPARE(up.out, QString());
    QVERIFY2(up.error.startsWith(QLatin1String("1 file stored, ")), qPrintable(up.error));
    world.succeed({QStringLiteral("get"), QStringLiteral("/f.bin"), QStringLiteral("back.bin")});
    QCOMPARE(QFileInfo(world.path(QStringLiteral("back.bin"))).size(), bytes);
    QVERIFY(VelldocWorld::read(world.path(QStringLiteral("back.bin")))
            == VelldocWorld::read(local));
}

void TestVelldocTransfers::folderKeepsItsTree()
{
    VelldocWorld world;
    world.write(QStringLiteral("site/a.txt"), "1");
    world.write(QStringLiteral("site/.hidden"), "2");
    world.write(QStringLiteral("site/图 纸/b.txt"), "3");
    QDir().mkpath(world.path(QStringLiteral("site/empty/below")));
    world.succeed({QStringLiteral("put"), QStringLiteral("site"), QStringLiteral("/")});
    world.succeed({QStringLiteral("get"), QStringLiteral("-r"), QStringLiteral("/site"),
                   QStringLiteral("back")});
    QCOMPARE(VelldocWorld::tree(world.path(QStringLiteral("back"))),
             VelldocWorld::tree(world.path(QStringLiteral("site"))));
}

void TestVelldocTransfers::fileTakesTheNameOfItsTarget()
{
    VelldocWorld world;
    world.succeed(
        {QStringLiteral("put"), world.write(QStringLiteral("a"), "1"), QStringLiteral("/b.txt")});
    QCOMPARE(world.succeed({QStringLiteral("ls")}).out, QStringLiteral("b.txt\n"));
}

void TestVelldocTransfers::updateMakesANewVersion()
{
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("a"), "1");
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    world.write(QStringLiteral("a"), "22");
    const VelldocRun run = world.succeed({QStringLiteral("put"), QStringLiteral("--json"),
                                          QStringLiteral("--update"), local, QStringLiteral("/")});
    const QJsonObject stored =
        run.result().value(QLatin1String("stored")).toArray().at(0).toObject();
    QCOMPARE(stored.value(QLatin1String("action")).toString(), QStringLiteral("replaced"));
    QCOMPARE(world.succeed({QStringLiteral("ls")}).out, QStringLiteral("a\n"));
    QCOMPARE(world.succeed({QStringLiteral("get"), QStringLiteral("/a"), QStringLiteral("-")}).out,
             QStringLiteral("22"));
}

void TestVelldocTransfers::olderVersionCanBeFetched()
{
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("a"), "first");
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    world.write(QStringLiteral("a"), "second");
    world.succeed({QStringLiteral("put"), QStringLiteral("-u"), local, QStringLiteral("/")});
    const QStringList get{QStringLiteral("get"), QStringLiteral("/a"), QStringLiteral("-"),
                          QStringLiteral("--version")};
    QCOMPARE(world.succeed(get + QStringList(QStringLiteral("1"))).out, QStringLiteral("first"));
    QCOMPARE(world.succeed(get + QStringList(QStringLiteral("2"))).out, QStringLiteral("second"));
    QCOMPARE(world.run(get + QStringList(QStringLiteral("3"))).exitCode, 3);
}

void TestVelldocTransfers::conflictCancelsWithoutATerminal()
{
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("a"), "1");
    const QString other = world.write(QStringLiteral("b"), "1");
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    world.write(QStringLiteral("a"), "2");
    const VelldocRun run = world.run({QStringLiteral("put"), other, local, QStringLiteral("/")});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.error.contains(QLatin1String("/a already exists, so no file was sent")),
             qPrintable(run.error));
    QCOMPARE(world.succeed({QStringLiteral("ls")}).out, QStringLiteral("a\n"));
}

void TestVelldocTransfers::conflictRenames()
{
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("a.txt"), "1");
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    world.write(QStringLiteral("a.txt"), "2");
    const VelldocRun run = world.succeed({QStringLiteral("put"), QStringLiteral("--on-conflict"),
                                          QStringLiteral("rename"), local, QStringLiteral("/")});
    QVERIFY2(run.error.contains(QLatin1String("is stored as /a(2).txt.")), qPrintable(run.error));
    QCOMPARE(
        world.succeed({QStringLiteral("ls"), QStringLiteral("--sort"), QStringLiteral("name")}).out,
        QStringLiteral("a(2).txt\na.txt\n"));
}

void TestVelldocTransfers::conflictSkips()
{
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("a"), "1");
    const QString other = world.write(QStringLiteral("b"), "1");
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    world.write(QStringLiteral("a"), "changed");
    const VelldocRun run =
        world.succeed({QStringLiteral("put"), QStringLiteral("--on-conflict"),
                       QStringLiteral("skip"), local, other, QStringLiteral("/")});
    QVERIFY2(run.error.endsWith(QLatin1String("1 file skipped.\n")), qPrintable(run.error));
    QCOMPARE(world.succeed({QStringLiteral("get"), QStringLiteral("/a"), QStringLiteral("-")}).out,
             QStringLiteral("1"));
}

void TestVelldocTransfers::secondFileOfTheSameNameIsAConflict()
{
    VelldocWorld world;
    const QString one = world.write(QStringLiteral("x/a"), "1");
    const QString two = world.write(QStringLiteral("y/a"), "2");
    QCOMPARE(world.run({QStringLiteral("put"), one, two, QStringLiteral("/")}).exitCode, 1);
    world.succeed({QStringLiteral("put"), QStringLiteral("--on-conflict"), QStringLiteral("rename"),
                   one, two, QStringLiteral("/")});
    QCOMPARE(
        world.succeed({QStringLiteral("get"), QStringLiteral("/a(2)"), QStringLiteral("-")}).out,
        QStringLiteral("2"));
}

void TestVelldocTransfers::folderInTheWayIsNotReplaced()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("-p"), QStringLiteral("/D/a")});
    const QString local = world.write(QStringLiteral("a"), "1");
    const VelldocRun run =
        world.run({QStringLiteral("put"), QStringLiteral("-u"), local, QStringLiteral("/D")});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.error.contains(QLatin1String("/D/a is a folder")), qPrintable(run.error));
}

void TestVelldocTransfers::fetchDoesNotReplaceUnasked()
{
    VelldocWorld world;
    world.succeed(
        {QStringLiteral("put"), world.write(QStringLiteral("a"), "remote"), QStringLiteral("/")});
    world.write(QStringLiteral("a"), "local");
    QCOMPARE(world.run({QStringLiteral("get"), QStringLiteral("/a")}).exitCode, 1);
    world.succeed({QStringLiteral("get"), QStringLiteral("-n"), QStringLiteral("/a")});
    QCOMPARE(VelldocWorld::read(world.path(QStringLiteral("a"))), QByteArray("local"));
    world.succeed({QStringLiteral("get"), QStringLiteral("-f"), QStringLiteral("/a")});
    QCOMPARE(VelldocWorld::read(world.path(QStringLiteral("a"))), QByteArray("remote"));
}

void TestVelldocTransfers::fetchLeavesNothingHalfDone()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("put"),
                   world.write(QStringLiteral("a"), QByteArray(100'000, 'x')),
                   QStringLiteral("/")});
    FaultRule fault;
    fault.kind = FaultRule::Kind::CutReply;
    fault.value = 0;
    fault.pathPrefix = QStringLiteral("/base-service/files");
    fault.times = 0;
    world.service().addFault(fault);
    QDir().mkpath(world.path(QStringLiteral("down")));
    const VelldocRun run =
        world.run({QStringLiteral("get"), QStringLiteral("/a"), QStringLiteral("down")});
    QCOMPARE(run.exitCode, 5);
    QVERIFY(QDir(world.path(QStringLiteral("down"))).isEmpty());

    world.service().clearFaults();
    fault.value = 50'000;
    fault.times = 1;
    world.service().addFault(fault);
    world.succeed({QStringLiteral("get"), QStringLiteral("/a"), QStringLiteral("down")});
    QCOMPARE(VelldocWorld::read(world.path(QStringLiteral("down/a"))), QByteArray(100'000, 'x'));
}

void TestVelldocTransfers::whatCannotBeFetchedIsNamedAndTheRestComes()
{
    VelldocWorld world;
    for (const QString &name :
         {QStringLiteral("d/a"), QStringLiteral("d/b"), QStringLiteral("d/c")})
        world.write(name, name.toUtf8());
    world.succeed({QStringLiteral("put"), QStringLiteral("d"), QStringLiteral("/")});
    QVERIFY(QDir().mkpath(world.path(QStringLiteral("back"))));
    const VelldocRun run = world.run({QStringLiteral("get"), QStringLiteral("-r"),
                                      QStringLiteral("/d"), QStringLiteral("back/d")});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(QFile::remove(world.path(QStringLiteral("back/d/b"))));
    QVERIFY(QDir().mkpath(world.path(QStringLiteral("back/d/b"))));
    const VelldocRun again =
        world.run({QStringLiteral("get"), QStringLiteral("-rf"), QStringLiteral("/d/a"),
                   QStringLiteral("/d/b"), QStringLiteral("/d/c"), QStringLiteral("back/d")});
    QCOMPARE(again.exitCode, 1);
    QVERIFY2(
        again.error.contains(QLatin1String("back/d/b was not downloaded: it is a local folder.")),
        qPrintable(again.error));
    QVERIFY2(again.error.contains(QLatin1String("2 files already existed")),
             qPrintable(again.error));
}

#ifdef Q_OS_UNIX
void TestVelldocTransfers::everyEntryIsStoredOrNamed()
{
    VelldocWorld world;
    world.write(QStringLiteral("d/good"), "1");
    const QByteArray folder = QFile::encodeName(world.path(QStringLiteral("d")));
    QFile file;
    QVERIFY(file.open(fopen((folder + "/bad\xff").constData(), "w"), QIODevice::WriteOnly,
                      QFileDevice::AutoCloseHandle));
    file.close();
    QCOMPARE(mkdir((folder + "/folder\xfe").constData(), 0700), 0);
    QCOMPARE(mkfifo((folder + "/pipe").constData(), 0600), 0);
    const VelldocRun run = world.run({QStringLiteral("put"), QStringLiteral("--json"),
                                      QStringLiteral("d"), QStringLiteral("/")});
    // QTemporaryDir does not find them.
    QCOMPARE(unlink((folder + "/bad\xff").constData()), 0);
    QCOMPARE(rmdir((folder + "/folder\xfe").constData()), 0);
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.result().value(QLatin1String("stored")).toArray().size(), 1);
    QStringList reasons;
    const QJsonArray failed = run.result().value(QLatin1String("failed")).toArray();
    for (const QJsonValue &entry : failed)
        reasons.append(entry.toObject().value(QLatin1String("message")).toString());
    reasons.sort();
    QCOMPARE(reasons,
             (QStringList{QStringLiteral("it is not a regular file"),
                          QStringLiteral("its name is not valid UTF-8"),
                          QStringLiteral("its name is not valid UTF-8")}));
}

void TestVelldocTransfers::pipeIsWrittenTo()
{
    VelldocWorld world;
    world.succeed(
        {QStringLiteral("put"), world.write(QStringLiteral("a"), "content"), QStringLiteral("/")});
    const QString pipe = world.path(QStringLiteral("pipe"));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QProcess reader;
    reader.start(QStringLiteral("cat"), {pipe});
    QVERIFY(reader.waitForStarted());
    world.succeed({QStringLiteral("get"), QStringLiteral("-f"), QStringLiteral("/a"), pipe});
    QVERIFY(reader.waitForFinished());
    QCOMPARE(reader.readAllStandardOutput(), QByteArray("content"));
    QVERIFY(!QFileInfo(pipe).isFile());
}

void TestVelldocTransfers::linkStays()
{
    VelldocWorld world;
    world.succeed(
        {QStringLiteral("put"), world.write(QStringLiteral("a"), "remote"), QStringLiteral("/")});
    const QString target = world.write(QStringLiteral("target"), "local");
    const QString link = world.path(QStringLiteral("link"));
    QVERIFY(QFile::link(target, link));
    world.succeed({QStringLiteral("get"), QStringLiteral("-f"), QStringLiteral("/a"), link});
    QCOMPARE(VelldocWorld::read(target), QByteArray("remote"));
    QCOMPARE(QFile::symLinkTarget(link), target);
}
#endif

void TestVelldocTransfers::contentGoesToTheStandardOutput()
{
    VelldocWorld world;
    QByteArray everyByte;
    for (int byte = 0; byte < 256; ++byte)
        everyByte += static_cast<char>(byte);
    world.succeed(
        {QStringLiteral("put"), world.write(QStringLiteral("a"), everyByte), QStringLiteral("/")});
    const VelldocRun run =
        world.succeed({QStringLiteral("get"), QStringLiteral("/a"), QStringLiteral("-")});
    QCOMPARE(run.bytes, everyByte);
    QCOMPARE(run.error, QString());
}

void TestVelldocTransfers::nothingIsSentTwiceForOneFolder()
{
    VelldocWorld world;
    for (int i = 0; i < 20; ++i)
        world.write(QStringLiteral("many/%1").arg(i), QByteArray::number(i));
    // A third question would fail: one lists the target, one makes sure that the folder's name is free; what has just
    // been made needs none.
    FaultRule fault;
    fault.kind = FaultRule::Kind::Status;
    fault.value = 500;
    fault.verb = "GET";
    fault.pathPrefix = QStringLiteral("/document-service/projects");
    fault.nth = 3;
    world.service().addFault(fault);
    world.succeed({QStringLiteral("put"), QStringLiteral("many"), QStringLiteral("/")});
}

void TestVelldocTransfers::unreadableFileIsNamedAndTheRestIsStored()
{
    VelldocWorld world;
    world.write(QStringLiteral("d/a"), "1");
    QFile::link(world.path(QStringLiteral("nowhere")), world.path(QStringLiteral("d/broken.lnk")));
    const VelldocRun run =
        world.run({QStringLiteral("put"), QStringLiteral("d"), QStringLiteral("/")});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.error.contains(QLatin1String("d/broken.lnk was skipped: it does not exist.")),
             qPrintable(run.error));
    QCOMPARE(world.succeed({QStringLiteral("ls"), QStringLiteral("/d")}).out,
             QStringLiteral("a\n"));
}

void TestVelldocTransfers::resultOfAnUploadIsJson()
{
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("a"), "1");
    const VelldocRun run = world.succeed(
        {QStringLiteral("put"), QStringLiteral("--json"), local, QStringLiteral("/")});
    QCOMPARE(run.error, QString());
    const QJsonObject stored =
        run.result().value(QLatin1String("stored")).toArray().at(0).toObject();
    QCOMPARE(stored.value(QLatin1String("local")).toString(), local);
    QCOMPARE(stored.value(QLatin1String("action")).toString(), QStringLiteral("created"));
    const QJsonObject document = stored.value(QLatin1String("document")).toObject();
    QCOMPARE(document.value(QLatin1String("path")).toString(), QStringLiteral("/a"));
    QCOMPARE(document.value(QLatin1String("size")).toInt(), 1);
}

void TestVelldocTransfers::longTransferHasPlainLinesWithoutATerminal()
{
    VelldocWorld world;
    const QString local = world.writeUnequalBlocks(QStringLiteral("big"), 40'000'000);
    world.slowDownChunks(250);
    const VelldocRun run = world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    QVERIFY2(!run.error.contains(QLatin1Char('\r')) && !run.error.contains(QLatin1Char('\x1b')),
             qPrintable(run.error));
    // Hashing takes long enough for a line of its own if the machine is busy.
    const QStringList lines = run.error.split(QLatin1Char('\n'), Qt::SkipEmptyParts)
                                  .filter(QRegularExpression(QStringLiteral("^(?!Checking big)")));
    QVERIFY2(lines.size() > 2 && lines.size() <= 11, qPrintable(run.error));
    const QRegularExpression form(
        QStringLiteral("^big: [1-9]\\d % [0-9.]+ MiB of 38 MiB  [0-9.]+ MiB/s  \\d+:\\d\\d left$"));
    for (int i = 0; i + 1 < lines.size(); ++i)
        QVERIFY2(form.match(lines.at(i)).hasMatch(), qPrintable(lines.at(i)));
    QCOMPARE(lines.constLast(), QStringLiteral("1 file stored, 38 MiB."));
}

QTEST_GUILESS_MAIN(TestVelldocTransfers)
#include "tst_velldoc_transfers.moc"
