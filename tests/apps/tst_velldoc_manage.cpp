#include "RunningVelldoc.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QProcess>
#include <QTest>

#ifdef Q_OS_UNIX
#include <csignal>
#endif

//! Copies, sums, contents through pipes, logins.
class TestVelldocManage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void copyHasTheContentAndItsOwnName();
    void folderIsCopiedIntoItself();
    void copyDoesNotReplace();
    void sizesAreAddedUp();
    void standardInputIsStored();
    void contentsArePrinted();
    void checksumIsTold();
    void filesAreFoundBySize_data();
    void filesAreFoundBySize();
    void argumentWithASlashIsAPath();
    void emptyNameIsRefused();
    void versionsCountFromOne();
    void updateAndSkipExcludeEachOther();
    void linksAreSkippedOrFollowed_data();
    void linksAreSkippedOrFollowed();
    void deletedFolderIsLookedInto();
    void skipWorksAlone();
    void loginsHaveNames();
    void settingsAreChanged();
    void userAndProjectsAreTold();
    void earlierVersionBecomesCurrent();
    void earlierVersionIsDeleted();
    void deletedDocumentIsPurged();
    void treeOfDepthZeroIsTheFolder();
    void unknownProjectIsNoted();
#ifdef Q_OS_UNIX
    void changesAreSentWhileTheyAreWatched();
    void documentIsOpened();
    void signalsHaveTheirCodes_data();
    void signalsHaveTheirCodes();
#endif
};

void TestVelldocManage::copyHasTheContentAndItsOwnName()
{
    VelldocWorld world;
    world.write(QStringLiteral("a"), "content");
    world.succeedLine("put a /");
    world.succeedLine("mkdir /d");
    world.succeedLine("cp /a /b");
    world.succeedLine("cp /a /b /d");
    world.write(QStringLiteral("a"), "other");
    world.succeedLine("put -u a /");
    QCOMPARE(world.succeedLine("cat /b /d/a /d/b").out, QStringLiteral("contentcontentcontent"));
}

void TestVelldocManage::folderIsCopiedIntoItself()
{
    VelldocWorld world;
    world.write(QStringLiteral("d/below/a"), "1");
    world.succeedLine("put d /");
    QCOMPARE(world.runLine("cp /d /e").exitCode, 1);
    world.succeedLine("cp -r /d /d/copy");
    QCOMPARE(world.succeedLine("tree --json /d").result().value(QLatin1String("path")).toString(),
             QStringLiteral("/d"));
    QCOMPARE(world.succeedLine("find *").lines().size(), 6);
    QCOMPARE(world.succeedLine("cat /d/copy/below/a").out, QStringLiteral("1"));
}

void TestVelldocManage::copyDoesNotReplace()
{
    VelldocWorld world;
    world.write(QStringLiteral("a"), "1");
    world.succeedLine("put a /");
    const VelldocRun run = world.runLine("cp /a /a");
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.error.contains(QLatin1String("/a already exists")), qPrintable(run.error));
    QCOMPARE(world.runLine("cp /a /").exitCode, 1);
}

void TestVelldocManage::sizesAreAddedUp()
{
    VelldocWorld world;
    world.write(QStringLiteral("d/a"), "12345");
    world.write(QStringLiteral("d/e/b"), "123");
    world.succeedLine("put d /");
    QCOMPARE(world.succeedLine("du --output csv --columns path,size,files --depth 2").out,
             QStringLiteral("path,size,files\n/d/e,3,1\n/d,8,2\n/,8,2\n"));
}

void TestVelldocManage::standardInputIsStored()
{
    VelldocWorld world;
    QByteArray content;
    for (int i = 0; i < 300000; ++i)
        content += char(i % 251);
    world.succeedLine("put - /a.bin", content);
    QCOMPARE(world.succeedLine("cat /a.bin").bytes, content);
    const VelldocRun run = world.runLine("put - /", content);
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.error.contains(QLatin1String("needs a name: /NAME")), qPrintable(run.error));
}

void TestVelldocManage::contentsArePrinted()
{
    VelldocWorld world;
    world.write(QStringLiteral("a"), "1");
    world.succeedLine("put a /");
    world.write(QStringLiteral("a"), "22");
    world.succeedLine("put -u a /");
    QCOMPARE(world.succeedLine("cat /a /a").out, QStringLiteral("2222"));
    QCOMPARE(world.succeedLine("cat --version 1 /a").out, QStringLiteral("1"));
    QCOMPARE(world.runLine("cat /").exitCode, 1);
}

void TestVelldocManage::checksumIsTold()
{
    VelldocWorld world;
    world.write(QStringLiteral("a"), "1");
    world.succeedLine("put a /");
    QVERIFY(world.succeedLine("info --checksum /a")
                .out.contains(QLatin1String("c4ca4238a0b923820dcc509a6f75849b")));
    const QJsonObject document = world.succeedLine("info --checksum --json /a")
                                     .result()
                                     .value(QLatin1String("documents"))
                                     .toArray()
                                     .at(0)
                                     .toObject();
    QCOMPARE(document.value(QLatin1String("md5")).toString(),
             QStringLiteral("c4ca4238a0b923820dcc509a6f75849b"));
}

void TestVelldocManage::filesAreFoundBySize_data()
{
    QTest::addColumn<QByteArray>("options");
    QTest::addColumn<QString>("out");
    QTest::newRow("at least") << QByteArray("--size +1K") << QStringLiteral("/large\n");
    QTest::newRow("at most") << QByteArray("--size -3") << QStringLiteral("/small\n");
    QTest::newRow("exactly") << QByteArray("--size 2000") << QStringLiteral("/large\n");
    QTest::newRow("between") << QByteArray("--size +4 --size -1K") << QString();
}

void TestVelldocManage::filesAreFoundBySize()
{
    QFETCH(QByteArray, options);
    VelldocWorld world;
    world.write(QStringLiteral("small"), "123");
    world.write(QStringLiteral("large"), QByteArray(2000, 'x'));
    world.succeedLine("put small large /");
    world.succeedLine("mkdir /folder");
    QTEST(world.succeedLine(("find " + options).constData()).out, "out");
    QCOMPARE(world.runLine("find --size many").exitCode, 2);
}

void TestVelldocManage::argumentWithASlashIsAPath()
{
    VelldocWorld world;
    world.write(QStringLiteral("site/a.png"), "1");
    world.write(QStringLiteral("b.png"), "1");
    world.succeedLine("put site b.png /");
    QCOMPARE(world.succeedLine("find --kind image /site").out, QStringLiteral("/site/a.png\n"));
    QCOMPARE(world.runLine("find --kind image /nothing").exitCode, 3);
}

void TestVelldocManage::emptyNameIsRefused()
{
    VelldocWorld world;
    world.succeedLine("mkdir /a");
    const VelldocRun run = world.runLine("rename /a ");
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.error.contains(QLatin1String("at least one character")), qPrintable(run.error));
}

void TestVelldocManage::versionsCountFromOne()
{
    VelldocWorld world;
    world.write(QStringLiteral("a"), "1");
    world.succeedLine("put a /");
    QCOMPARE(world.runLine("get --version 0 /a -").exitCode, 2);
    QCOMPARE(world.runLine("remark --version 0 /a").exitCode, 2);
}

void TestVelldocManage::updateAndSkipExcludeEachOther()
{
    VelldocWorld world;
    world.write(QStringLiteral("a"), "1");
    const VelldocRun run = world.runLine("put -u --on-conflict skip a /");
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.error.contains(QLatin1String("cannot be used together")), qPrintable(run.error));
    world.succeedLine("put -u --on-conflict replace a /");
}

void TestVelldocManage::linksAreSkippedOrFollowed_data()
{
    QTest::addColumn<QByteArray>("options");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("names");
    QTest::newRow("refused") << QByteArray("") << 1 << QStringLiteral("a.lnk real");
    QTest::newRow("skipped") << QByteArray(" --links skip") << 0 << QStringLiteral("real");
    QTest::newRow("followed") << QByteArray(" --links follow") << 1
                              << QStringLiteral("a.lnk folder.lnk inside real");
}

void TestVelldocManage::linksAreSkippedOrFollowed()
{
    QFETCH(QByteArray, options);
    VelldocWorld world;
    world.write(QStringLiteral("other/inside"), "1");
    const QString real = world.write(QStringLiteral("d/real"), "2");
    QVERIFY(QFile::link(real, world.path(QStringLiteral("d/a.lnk"))));
    QVERIFY(QFile::link(world.path(QStringLiteral("other")),
                        world.path(QStringLiteral("d/folder.lnk"))));
    // Whoever followed this one would not come to an end.
    QVERIFY(QFile::link(world.path(QStringLiteral("d")), world.path(QStringLiteral("d/up.lnk"))));
    QTEST(world.runLine(("put d /" + options).constData()).exitCode, "exitCode");
    QStringList names;
    const QStringList found = world.succeedLine("find * /d").lines();
    for (const QString &path : found)
        names.append(path.section(QLatin1Char('/'), -1, -1, QString::SectionSkipEmpty));
    names.sort();
    QTEST(names.join(QLatin1Char(' ')), "names");
}

void TestVelldocManage::deletedFolderIsLookedInto()
{
    VelldocWorld world;
    world.write(QStringLiteral("d/a"), "1");
    world.succeedLine("put d /");
    world.succeedLine("rm -r /d");
    QVERIFY(world.succeedLine("trash list d").out.endsWith(QLatin1String("/a\n")));
    QCOMPARE(world.runLine("trash list nothing").exitCode, 3);
}

void TestVelldocManage::skipWorksAlone()
{
    VelldocWorld world;
    world.succeedLine("mkdir /a /b /c");
    QCOMPARE(world.succeedLine("ls --sort name --skip 1").out, QStringLiteral("b/\nc/\n"));
}

void TestVelldocManage::loginsHaveNames()
{
    VelldocWorld world;
    world.service().addProject(QStringLiteral("p"), QStringLiteral("P"));
    const QString url = world.baseApi();
    const auto bare = [&world](const QStringList &words) { return world.runBare(words); };
    QCOMPARE(world
                 .runBare({QStringLiteral("login"), QStringLiteral("--profile"),
                           QStringLiteral("work"), url},
                          "\n")
                 .exitCode,
             0);
    QCOMPARE(bare(VelldocWorld::words("mkdir /there --profile work")).exitCode, 0);
    QCOMPARE(bare(VelldocWorld::words("ls")).out, QString());
    QCOMPARE(world.succeedLine("ls").out, QStringLiteral("there/\n"));
    QVERIFY(bare(VelldocWorld::words("config profiles")).out.startsWith(QLatin1String("work\t")));
    world.environment.insert(QStringLiteral("VELLDOC_PROFILE"), QStringLiteral("work"));
    QCOMPARE(bare(VelldocWorld::words("ls")).out, QStringLiteral("there/\n"));
    QCOMPARE(bare(VelldocWorld::words("logout")).exitCode, 0);
    QCOMPARE(bare(VelldocWorld::words("ls")).out, QString());
}

void TestVelldocManage::settingsAreChanged()
{
    VelldocWorld world;
    world.succeedLine("config set project tower");
    QCOMPARE(world.succeedLine("config get project").out, QStringLiteral("tower\n"));
    world.succeedLine("config set token secret");
    QVERIFY(!world.succeedLine("config").out.contains(QLatin1String("secret")));
#ifndef Q_OS_WIN
    QCOMPARE(QFile::permissions(world.configPath()),
             QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
#endif
    world.succeedLine("config unset project");
    QCOMPARE(world.succeedLine("config get project").out, QStringLiteral("default\n"));
    QCOMPARE(world.runLine("config set colour red").exitCode, 2);
}

void TestVelldocManage::userAndProjectsAreTold()
{
    VelldocWorld world;
    QVERIFY(world.service().addProject(QStringLiteral("p"), QStringLiteral("The tower")));
    const QString token = world.service().addUser(QStringLiteral("vera"));
    QVERIFY(world.service().setRole(QStringLiteral("p"), QStringLiteral("vera"),
                                    QStringLiteral("editor")));
    world.environment.insert(QStringLiteral("VELLDOC_TOKEN"), token);
    world.environment.insert(QStringLiteral("VELLDOC_PROJECT"), QStringLiteral("p"));
    QCOMPARE(world.succeedLine("whoami").out, QStringLiteral("vera\n"));
    QVERIFY(world.succeedLine("whoami").error.contains(QLatin1String("\"p\", as editor")));
    QCOMPARE(world.succeedLine("projects --output csv --columns id,role,name").out,
             QStringLiteral("id,role,name\np,editor,The tower\n"));
}

void TestVelldocManage::earlierVersionBecomesCurrent()
{
    VelldocWorld world;
    world.write(QStringLiteral("a"), "first");
    world.succeedLine("put a /");
    world.write(QStringLiteral("a"), "second");
    world.succeedLine("put -u a /");
    world.succeedLine("history --make-current 1 --dry-run /a");
    QCOMPARE(world.succeedLine("cat /a").out, QStringLiteral("second"));
    world.succeedLine("history --make-current 1 /a");
    QCOMPARE(world.succeedLine("cat /a").out, QStringLiteral("first"));
    QCOMPARE(world.succeedLine("cat --version 2 /a").out, QStringLiteral("second"));
    QCOMPARE(world.runLine("history --make-current 9 /a").exitCode, 3);
}

void TestVelldocManage::earlierVersionIsDeleted()
{
    VelldocWorld world;
    for (const char *const content : {"first", "second", "third"}) {
        world.write(QStringLiteral("a"), content);
        world.succeedLine("put -u a /");
    }
    QCOMPARE(world.runLine("history --delete 1 /a").exitCode, 2);
    world.succeedLine("history --delete 1 -y --dry-run /a");
    QCOMPARE(world.succeedLine("cat --version 1 /a").out, QStringLiteral("first"));
    world.succeedLine("history --delete 1 -y /a");
    QCOMPARE(world.succeedLine("cat --version 1 /a").out, QStringLiteral("second"));
    const VelldocRun current = world.runLine("history --delete 2 -y /a");
    QCOMPARE(current.exitCode, 1);
    QVERIFY2(current.error.contains(QLatin1String("current version")), qPrintable(current.error));
    QCOMPARE(world.succeedLine("cat /a").out, QStringLiteral("third"));
}

void TestVelldocManage::deletedDocumentIsPurged()
{
    VelldocWorld world;
    world.succeedLine("mkdir /a /b /c");
    world.succeedLine("rm -r /a /b /c");
    QCOMPARE(world.runLine("trash purge a").exitCode, 2);
    QCOMPARE(world.runLine("trash purge -y a none").exitCode, 3);
    QCOMPARE(world.succeedLine("trash").lines().size(), 3);
    const VelldocRun run = world.succeedLine("trash purge -y a c");
    QVERIFY2(run.error.contains(QLatin1String("2 documents deleted permanently")),
             qPrintable(run.error));
    QCOMPARE(world.succeedLine("trash").out, QStringLiteral("/b/\n"));
}

void TestVelldocManage::treeOfDepthZeroIsTheFolder()
{
    VelldocWorld world;
    world.succeedLine("mkdir -p /a/b");
    QCOMPARE(world.succeedLine("tree --depth 0").out, QStringLiteral("/\n"));
    QCOMPARE(world.succeedLine("tree --depth 1").lines().size(), 2);
    QCOMPARE(world.succeedLine("tree").lines().size(), 3);
}

void TestVelldocManage::unknownProjectIsNoted()
{
#ifndef Q_OS_WIN // where no service is inside
    VelldocWorld world;
    world.runBare(VelldocWorld::words("mkdir /a"));
    const VelldocRun run = world.runBare(VelldocWorld::words("ls --project another"));
    QVERIFY2(run.error.contains(QLatin1String("There is no project \"another\" yet")),
             qPrintable(run.error));
    QVERIFY(!world.runBare(VelldocWorld::words("ls")).error.contains(QLatin1String("project")));
#endif
}

#ifdef Q_OS_UNIX
void TestVelldocManage::changesAreSentWhileTheyAreWatched()
{
    VelldocWorld world;
    world.write(QStringLiteral("work/a"), "1");
    RunningVelldoc watch(world, "watch work /W");
    QTRY_COMPARE_WITH_TIMEOUT(world.runLine("cat /W/a").out, QStringLiteral("1"), 20000);
    world.write(QStringLiteral("work/a"), "22");
    world.write(QStringLiteral("work/below/b"), "3");
    QTRY_COMPARE_WITH_TIMEOUT(world.runLine("cat /W/a /W/below/b").out, QStringLiteral("223"),
                              20000);
}

void TestVelldocManage::documentIsOpened()
{
    VelldocWorld world;
    world.write(QStringLiteral("plan.txt"), "content");
    world.succeedLine("put plan.txt /");
    const QString program =
        world.write(QStringLiteral("bin/xdg-open"), "#!/bin/sh\ncp \"$1\" \"$HOME/../shown\"\n");
    QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(QDir().mkpath(world.path(QStringLiteral("home"))));
    world.environment.insert(QStringLiteral("PATH"),
                             world.path(QStringLiteral("bin")) + QLatin1Char(':')
                                 + world.environment.value(QStringLiteral("PATH")));
    world.succeedLine("open /plan.txt");
    QTRY_COMPARE(VelldocWorld::read(world.path(QStringLiteral("shown"))), QByteArray("content"));
    QCOMPARE(world.runLine("open /").exitCode, 1);
}

void TestVelldocManage::signalsHaveTheirCodes_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("SIGHUP") << SIGHUP << 129;
    QTest::newRow("SIGINT") << SIGINT << 130;
    QTest::newRow("SIGTERM") << SIGTERM << 143;
}

void TestVelldocManage::signalsHaveTheirCodes()
{
    QFETCH(int, number);
    VelldocWorld world;
    FaultRule stall;
    stall.kind = FaultRule::Kind::Stall;
    stall.pathPrefix = QStringLiteral("/document-service/projects");
    world.service().addFault(stall);
    RunningVelldoc ls(world, "ls --log-file log");
    QTRY_VERIFY(VelldocWorld::read(world.path(QStringLiteral("log"))).contains("/me"));
    ::kill(pid_t(ls.processId()), number);
    QVERIFY(ls.waitForFinished());
    QCOMPARE(ls.exitStatus(), QProcess::NormalExit);
    QTEST(ls.exitCode(), "exitCode");
}
#endif

QTEST_GUILESS_MAIN(TestVelldocManage)
#include "tst_velldoc_manage.moc"
