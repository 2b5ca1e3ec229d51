#include "VelldocWorld.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QTest>

class TestVelldocSync : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void folderGoesUpAndDown();
    void secondRunTransfersNothing_data();
    void secondRunTransfersNothing();
    void nothingIsReadTwice();
    void changeIsFound_data();
    void changeIsFound();
    void extrasGoOnlyWhenAsked_data();
    void extrasGoOnlyWhenAsked();
    void movedFileIsMoved();
    void dryRunChangesNothing();
    void filtersLeaveOut_data();
    void filtersLeaveOut();
    void localChangeIsNotLost();
    void newerExtraFileIsNotRemoved();
    void hiddenChangeIsFoundByChecksum();
    void downloadHasTheTimeOfTheDocument();
    void missingFolderIsNamed();
    void checkTellsTheDifferences_data();
    void checkTellsTheDifferences();
    void checkNamesWhatItCannotCompare();

private:
    static QString actions(const VelldocRun &run);
    static void age(const QString &path)
    {
        setTime(path, QDateTime(QDate(2020, 1, 1), QTime(0, 0)));
    }
    static void setTime(const QString &path, const QDateTime &time);
};

//! "action path" of each step, in the order of the paths.
QString TestVelldocSync::actions(const VelldocRun &run)
{
    QStringList lines;
    const QJsonArray steps = run.result().value(QLatin1String("actions")).toArray();
    for (const QJsonValue &step : steps)
        lines.append(step.toObject().value(QLatin1String("action")).toString() + QLatin1Char(' ')
                     + step.toObject().value(QLatin1String("path")).toString());
    lines.sort();
    return lines.join(QStringLiteral(", "));
}

void TestVelldocSync::setTime(const QString &path, const QDateTime &time)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
}

void TestVelldocSync::folderGoesUpAndDown()
{
    VelldocWorld world;
    world.write(QStringLiteral("site/a"), "1");
    world.write(QStringLiteral("site/below/图 b"), "2");
    QVERIFY(QDir().mkpath(world.path(QStringLiteral("site/empty"))));
    QCOMPARE(actions(world.succeedLine("sync up site /S --json")),
             QStringLiteral("mkdir below, mkdir empty, send a, send below/图 b"));
    QCOMPARE(actions(world.succeedLine("sync down /S copy --json")),
             QStringLiteral("fetch a, fetch below/图 b, mkdir below, mkdir empty"));
    QCOMPARE(VelldocWorld::tree(world.path(QStringLiteral("copy"))),
             VelldocWorld::tree(world.path(QStringLiteral("site"))));
}

void TestVelldocSync::secondRunTransfersNothing_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    QTest::newRow("up") << QByteArray("sync up site /S") << QByteArray("sync up site /S --json");
    QTest::newRow("up and down") << QByteArray("sync up site /S")
                                 << QByteArray("sync down /S site --json");
    QTest::newRow("down and up") << QByteArray("sync down /S copy")
                                 << QByteArray("sync up copy /S --json");
    QTest::newRow("put and sync") << QByteArray("put site /S/")
                                  << QByteArray("sync up site /S/site --json");
    QTest::newRow("contents") << QByteArray("sync up site /S")
                              << QByteArray("sync up --checksum site /S --json");
}

void TestVelldocSync::secondRunTransfersNothing()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    VelldocWorld world;
    world.write(QStringLiteral("site/a"), "1");
    world.write(QStringLiteral("site/below/b"), "2");
    world.write(QStringLiteral("site/zero"), "");
    world.succeedLine("sync up site /S");
    world.succeedLine(first.constData());
    QCOMPARE(actions(world.succeedLine(second.constData())), QString());
}

void TestVelldocSync::nothingIsReadTwice()
{
    VelldocWorld world;
    world.write(QStringLiteral("site/a"), "1");
    world.succeedLine("sync up site /S");
    world.succeedLine("sync up --log-file log site /S");
    const QByteArray log = VelldocWorld::read(world.path(QStringLiteral("log")));
    QVERIFY2(log.contains("/documents"), log.constData());
    QVERIFY2(!log.contains("/md5/"), log.constData());
    world.succeedLine("sync down --log-file log2 /S site");
    world.succeedLine("sync down --log-file log3 /S site");
    QVERIFY(!VelldocWorld::read(world.path(QStringLiteral("log3"))).contains("/md5/"));
}

void TestVelldocSync::changeIsFound_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isOld");
    QTest::addColumn<QString>("expected");
    QTest::newRow("longer") << QByteArray("22") << false << QStringLiteral("replace a");
    QTest::newRow("as long") << QByteArray("2") << false << QStringLiteral("replace a");
    QTest::newRow("as long, with an old time")
        << QByteArray("2") << true << QStringLiteral("replace a");
    QTest::newRow("only touched") << QByteArray("1") << false << QString();
}

void TestVelldocSync::changeIsFound()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, isOld);
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("site/a"), "1");
    age(local);
    world.succeedLine("sync up site /S");
    world.succeedLine("sync up site /S");
    world.write(QStringLiteral("site/a"), content);
    if (isOld)
        setTime(local, QDateTime(QDate(2019, 1, 1), QTime(0, 0)));
    QTEST(actions(world.succeedLine("sync up site /S --json")), "expected");
    QCOMPARE(world.succeedLine("cat /S/a").bytes, content);
}

void TestVelldocSync::extrasGoOnlyWhenAsked_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("expected");
    QTest::newRow("up, kept") << QByteArray("sync up site /S --json") << QString();
    QTest::newRow("up, removed") << QByteArray("sync up --delete site /S --json")
                                 << QStringLiteral("remove d, remove d/x");
    QTest::newRow("down, kept") << QByteArray("sync down /Other site --json") << QString();
    QTest::newRow("down, removed")
        << QByteArray("sync down --delete /Other site --json") << QStringLiteral("remove a");
}

void TestVelldocSync::extrasGoOnlyWhenAsked()
{
    QFETCH(QByteArray, line);
    VelldocWorld world;
    world.write(QStringLiteral("site/a"), "1");
    world.write(QStringLiteral("site/d/x"), "2");
    world.succeedLine("sync up site /S");
    QVERIFY(QDir(world.path(QStringLiteral("site/d"))).removeRecursively());
    world.succeedLine("mkdir /Other");
    QTEST(actions(world.succeedLine(line.constData())), "expected");
    if (line.contains("up --delete"))
        QCOMPARE(world.succeedLine("trash").out, QStringLiteral("/S/d/\n"));
}

void TestVelldocSync::movedFileIsMoved()
{
    VelldocWorld world;
    world.write(QStringLiteral("site/a"), "some content");
    world.succeedLine("sync up site /S");
    QVERIFY(QDir().mkpath(world.path(QStringLiteral("site/d"))));
    QVERIFY(QFile::rename(world.path(QStringLiteral("site/a")),
                          world.path(QStringLiteral("site/d/b"))));
    QCOMPARE(world.succeedLine("sync up --delete --dry-run site /S").error.section('\n', 0, 0),
             QStringLiteral("0 files to transfer, 0 B; 1 to move; 0 to remove; 0 unchanged."));
    QCOMPARE(actions(world.succeedLine("sync up --delete site /S --json")),
             QStringLiteral("mkdir d, move d/b"));
    QCOMPARE(world.succeedLine("cat /S/d/b").out, QStringLiteral("some content"));
    QCOMPARE(actions(world.succeedLine("sync up --delete site /S --json")), QString());
    QVERIFY(QFile::rename(world.path(QStringLiteral("site/d/b")),
                          world.path(QStringLiteral("site/d/c"))));
    QCOMPARE(world.succeedLine("sync up --delete site /S").error,
             QStringLiteral("0 files transferred, 0 B; 1 moved; 0 removed; 1 unchanged.\n"));
}

void TestVelldocSync::dryRunChangesNothing()
{
    VelldocWorld world;
    world.write(QStringLiteral("site/d/a"), "1");
    QCOMPARE(actions(world.succeedLine("sync up --dry-run site /S --json")),
             QStringLiteral("mkdir d, send d/a"));
    QCOMPARE(world.succeedLine("ls").out, QString());
    world.succeedLine("sync up site /S");
    QVERIFY(QFile::remove(world.path(QStringLiteral("site/d/a"))));
    QCOMPARE(world.succeedLine("sync up --delete --dry-run site /S").out,
             QStringLiteral("remove  d/a\n"));
    QCOMPARE(world.succeedLine("ls /S/d").out, QStringLiteral("a\n"));
    QCOMPARE(actions(world.succeedLine("sync down --dry-run /S copy --json")),
             QStringLiteral("fetch d/a, mkdir d"));
    QVERIFY(!QFileInfo::exists(world.path(QStringLiteral("copy"))));
}

void TestVelldocSync::filtersLeaveOut_data()
{
    QTest::addColumn<QByteArray>("options");
    QTest::addColumn<QString>("expected");
    const QString all =
        QStringLiteral("mkdir d, send .vellignore, send a.bak, send a.txt, send d/b.txt");
    QTest::newRow("none") << QByteArray(" --ignore-file=") << all;
    QTest::newRow("ignore file") << QByteArray(
        "") << QStringLiteral("mkdir d, send .vellignore, send a.txt, send d/b.txt");
    QTest::newRow("exclude") << QByteArray(" --exclude d/ --exclude .vellignore")
                             << QStringLiteral("send a.txt");
    QTest::newRow("include") << QByteArray(" --include b.*")
                             << QStringLiteral("mkdir d, send d/b.txt");
}

void TestVelldocSync::filtersLeaveOut()
{
    QFETCH(QByteArray, options);
    VelldocWorld world;
    world.write(QStringLiteral("site/.vellignore"), "*.bak\n");
    for (const char *const name : {"site/a.bak", "site/a.txt", "site/d/b.txt"})
        world.write(QString::fromLatin1(name), name);
    QTEST(actions(world.succeedLine(("sync up site /S --json" + options).constData())), "expected");
    // Storing a folder takes the same options.
    world.succeedLine(("put site /P" + options).constData());
    QCOMPARE(actions(world.succeedLine(("sync up site /P --json" + options).constData())),
             QString());
    QCOMPARE(world.succeedLine("find * /P").lines().size(),
             world.succeedLine("find * /S").lines().size());
}

void TestVelldocSync::localChangeIsNotLost()
{
    VelldocWorld world;
    world.write(QStringLiteral("site/a"), "1");
    world.succeedLine("sync up site /S");
    world.write(QStringLiteral("site/a"), "my own words");
    const VelldocRun run = world.runLine("sync down /S site");
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.error.contains(QLatin1String("the local file is newer")), qPrintable(run.error));
    QCOMPARE(VelldocWorld::read(world.path(QStringLiteral("site/a"))), QByteArray("my own words"));
    world.succeedLine("sync down --force /S site");
    QCOMPARE(VelldocWorld::read(world.path(QStringLiteral("site/a"))), QByteArray("1"));
}

void TestVelldocSync::newerExtraFileIsNotRemoved()
{
    VelldocWorld world;
    world.succeedLine("mkdir /S");
    const QString local = world.write(QStringLiteral("site/a"), "1");
    setTime(local, QDateTime::currentDateTime().addDays(1));
    const VelldocRun run = world.runLine("sync down --delete /S site");
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.error.contains(QLatin1String("a: it has been changed meanwhile")),
             qPrintable(run.error));
    QVERIFY2(run.error.contains(QLatin1String(" 0 removed;")), qPrintable(run.error));
    QCOMPARE(VelldocWorld::read(local), QByteArray("1"));
}

void TestVelldocSync::hiddenChangeIsFoundByChecksum()
{
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("site/a"), "1");
    age(local);
    world.succeedLine("sync up site /S");
    world.write(QStringLiteral("site/a"), "2");
    age(local);
    QCOMPARE(actions(world.succeedLine("sync up site /S --json")), QString());
    QCOMPARE(actions(world.succeedLine("sync up --checksum site /S --json")),
             QStringLiteral("replace a"));
}

void TestVelldocSync::downloadHasTheTimeOfTheDocument()
{
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("site/a"), "1");
    world.succeedLine("sync up site /S");
    world.succeedLine("remark /S/a later");
    world.succeedLine("sync down /S copy");
    const QString updated = world.succeedLine("info --json /S/a")
                                .result()
                                .value(QLatin1String("documents"))
                                .toArray()
                                .first()
                                .toObject()
                                .value(QLatin1String("updatedAt"))
                                .toString();
    QCOMPARE(QFileInfo(world.path(QStringLiteral("copy/a"))).lastModified().toUTC(),
             QDateTime::fromString(updated, Qt::ISODateWithMs));
}

void TestVelldocSync::missingFolderIsNamed()
{
    VelldocWorld world;
    QCOMPARE(world.runLine("sync up nothing /S").exitCode, 3);
    QCOMPARE(world.runLine("sync down /nothing copy").exitCode, 3);
    QCOMPARE(world.runLine("sync sideways a b").exitCode, 2);
    QCOMPARE(world.succeedLine("ls").out, QString());
}

void TestVelldocSync::checkTellsTheDifferences_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("out");
    const QByteArray check("check site /S");
    QTest::newRow("equal") << QByteArray("a") << QByteArray("1") << check << 0 << QString();
    QTest::newRow("size") << QByteArray("a") << QByteArray("22") << check << 6
                          << QStringLiteral("size        a\n");
    QTest::newRow("content") << QByteArray("a") << QByteArray("2") << check << 6
                             << QStringLiteral("content     a\n");
    QTest::newRow("content, not looked at")
        << QByteArray("a") << QByteArray("2") << check + " --size-only" << 0 << QString();
    QTest::newRow("local only") << QByteArray("new") << QByteArray("2") << check << 6
                                << QStringLiteral("local-only  new\n");
    QTest::newRow("excluded") << QByteArray("new") << QByteArray("2") << check + " --exclude new"
                              << 0 << QString();
}

void TestVelldocSync::checkTellsTheDifferences()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, line);
    VelldocWorld world;
    world.write(QStringLiteral("site/a"), "1");
    world.succeedLine("sync up site /S");
    world.write(QStringLiteral("site/") + QString::fromLatin1(name), content);
    const VelldocRun run = world.runLine(line.constData());
    QTEST(run.exitCode, "exitCode");
    QTEST(run.out, "out");
}

void TestVelldocSync::checkNamesWhatItCannotCompare()
{
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("site/a"), "1");
    world.succeedLine("sync up site /S");
    QVERIFY(QFile::link(local, world.path(QStringLiteral("site/link.lnk"))));
    const VelldocRun run = world.runLine("check site /S");
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.error.startsWith(QLatin1String("velldoc: link.lnk: ")), qPrintable(run.error));
    world.succeedLine("check --links skip site /S");
}

QTEST_GUILESS_MAIN(TestVelldocSync)
#include "tst_velldoc_sync.moc"
