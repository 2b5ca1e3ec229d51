#include "VelldocWorld.h"

#include <QJsonArray>
#include <QTest>

//! Patterns, forms of the output, dry runs: what many commands have in common.
class TestVelldocOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void patternsStandForNames_data();
    void patternsStandForNames();
    void rowsAreForPrograms_data();
    void rowsAreForPrograms();
    void namesInAPipeAreExact();
    void nulSeparatesNames();
    void dryRunChangesNothing_data();
    void dryRunChangesNothing();
    void dryRunOfALoginStoresNothing();
    void slipsAreNoticed_data();
    void slipsAreNoticed();
    void missingArgumentIsNamed_data();
    void missingArgumentIsNamed();
    void logHasMessagesAndRequests();

private:
    static QString stateOf(VelldocWorld &world);
};

void TestVelldocOutput::patternsStandForNames_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("out");
    QTest::newRow("any text") << QByteArray("ls /*.txt") << QStringLiteral("/a.txt\n/b.txt\n");
    QTest::newRow("one character") << QByteArray("ls /?.txt") << QStringLiteral("/a.txt\n/b.txt\n");
    QTest::newRow("a set") << QByteArray("ls /[bc].*") << QStringLiteral("b.txt\n");
    QTest::newRow("in a folder") << QByteArray("cat /*/x.txt") << QStringLiteral("d/x.txt");
    QTest::newRow("no hidden ones") << QByteArray("cat /*idden") << QString();
    QTest::newRow("the name itself") << QByteArray("cat /d/[x].txt") << QStringLiteral("d/[x].txt");
    QTest::newRow("nothing") << QByteArray("ls /*.none") << QString();
}

void TestVelldocOutput::patternsStandForNames()
{
    QFETCH(QByteArray, line);
    VelldocWorld world;
    for (const char *const name : {"a.txt", "b.txt", ".hidden", "d/x.txt", "d/[x].txt"})
        world.write(QString::fromLatin1(name), name);
    world.succeedLine("put a.txt b.txt .hidden d /");
    const VelldocRun run = world.runLine(line.constData());
    QTEST(run.out, "out");
    QCOMPARE(run.exitCode, run.out.isEmpty() ? 3 : 0);
}

void TestVelldocOutput::rowsAreForPrograms_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("out");
    QTest::newRow("CSV") << QByteArray("ls --output csv --columns name,size /d")
                         << QStringLiteral("name,size\n\"a,\"\"b\"\".txt\",1\n");
    QTest::newRow("TSV") << QByteArray("ls --output=tsv --columns path,type /d")
                         << QStringLiteral("path\ttype\n/d/a,\"b\".txt\tfile\n");
    QTest::newRow("table") << QByteArray("ls --output table --columns size,name /d")
                           << QStringLiteral("size  name\n1     a,\"b\".txt\n");
    QTest::newRow("another list") << QByteArray(
        "history --output csv --columns number,size /d/a,\"b\".txt")
                                  << QStringLiteral("number,size\n1,1\n");
    QTest::newRow("not a list") << QByteArray("can --output csv --columns rights / upload")
                                << QStringLiteral("rights\n\"{\"\"upload\"\":true}\"\n");
}

void TestVelldocOutput::rowsAreForPrograms()
{
    QFETCH(QByteArray, line);
    VelldocWorld world;
    world.write(QStringLiteral("d/a.txt"), "1");
    world.succeedLine("put d /");
    // Windows has no local files of this name.
    world.succeed(
        {QStringLiteral("rename"), QStringLiteral("/d/a.txt"), QStringLiteral("a,\"b\".txt")});
    QTEST(world.succeedLine(line.constData()).out, "out");
    QCOMPARE(world.runLine("ls --output xml").exitCode, 2);
}

void TestVelldocOutput::namesInAPipeAreExact()
{
    VelldocWorld world;
    const QString name = QStringLiteral("a\u202eb.txt");
    world.write(name, "1");
    world.succeed({QStringLiteral("put"), name, QStringLiteral("/")});
    QCOMPARE(world.succeedLine("ls").out, name + QLatin1Char('\n'));
    QVERIFY(world.succeedLine("ls -l").out.contains(name));
}

void TestVelldocOutput::nulSeparatesNames()
{
    VelldocWorld world;
    world.write(QStringLiteral("a"), "1");
    world.write(QStringLiteral("b"), "1");
    world.succeedLine("put a b /");
    QCOMPARE(world.succeedLine("ls -0 --sort name").bytes, QByteArray("a\0b\0", 4));
    QCOMPARE(world.succeedLine("find --null a").bytes, QByteArray("/a\0", 3));
}

//! What commands can change.
QString TestVelldocOutput::stateOf(VelldocWorld &world)
{
    QString state;
    for (const char *const line : {"ls -lR", "trash -l", "share --list", "fav", "frequent",
                                   "recent list", "ls /d", "remark /a", "links /a"})
        state += world.succeedLine(line).out;
    return state + QString::fromUtf8(VelldocWorld::read(world.configPath()));
}

void TestVelldocOutput::dryRunChangesNothing_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("out");
    QTest::newRow("put") << QByteArray("put site /") << QStringLiteral("/site/b\n");
    QTest::newRow("put, new version") << QByteArray("put -u a /") << QStringLiteral("/a\n");
    QTest::newRow("get") << QByteArray("get -r /d back") << QStringLiteral("back/x\nback/y\n");
    QTest::newRow("rm") << QByteArray("rm -r /d") << QStringLiteral("/d\n");
    QTest::newRow("mv into") << QByteArray("mv /a /d") << QStringLiteral("/a\n");
    QTest::newRow("mv to") << QByteArray("mv /a /c") << QStringLiteral("/a\n");
    QTest::newRow("cp") << QByteArray("cp -r /d /e") << QStringLiteral("/e\n/e/x\n/e/y\n");
    QTest::newRow("rename") << QByteArray("rename /a z") << QStringLiteral("/a\n");
    QTest::newRow("mkdir") << QByteArray("mkdir -p /n/m") << QStringLiteral("/n/m\n");
    QTest::newRow("trash restore") << QByteArray("trash restore old") << QStringLiteral("old\n");
    QTest::newRow("trash empty") << QByteArray("trash empty") << QStringLiteral("/old\n");
    QTest::newRow("share") << QByteArray("share /a") << QStringLiteral("/a\n");
    QTest::newRow("fav add") << QByteArray("fav add /a") << QStringLiteral("/a\n");
    QTest::newRow("fav remove") << QByteArray("fav remove /d") << QStringLiteral("/d\n");
    QTest::newRow("frequent add") << QByteArray("frequent add /a") << QStringLiteral("/a\n");
    QTest::newRow("recent add") << QByteArray("recent add /a") << QStringLiteral("/a\n");
    QTest::newRow("order") << QByteArray("order /d/y") << QStringLiteral("y\nx\n");
    QTest::newRow("remark") << QByteArray("remark /a as-built") << QStringLiteral("/a\n");
    QTest::newRow("links") << QByteArray("links /a add room 1") << QStringLiteral("/a\n");
    QTest::newRow("watch") << QByteArray("watch site /S") << QStringLiteral("send    b\n");
    QTest::newRow("config set") << QByteArray("config set project p")
                                << QStringLiteral("project\n");
    QTest::newRow("config unset") << QByteArray("config unset proxy") << QStringLiteral("proxy\n");
    QTest::newRow("logout") << QByteArray("logout") << QStringLiteral("http://localhost:1/\n");
}

void TestVelldocOutput::dryRunChangesNothing()
{
    QFETCH(QByteArray, line);
    VelldocWorld world;
    world.write(QStringLiteral("a"), "1");
    world.write(QStringLiteral("old"), "1");
    world.write(QStringLiteral("site/b"), "1");
    world.write(QStringLiteral("d/x"), "1");
    world.write(QStringLiteral("d/y"), "1");
    world.succeedLine("put a d old /");
    world.succeedLine("rm /old");
    world.succeedLine("fav add /d");
    world.succeedLine("order /d/x");
    world.succeedLine("config set url http://localhost:1/");
    world.succeedLine("config set proxy none");
    world.write(QStringLiteral("a"), "changed");
    const QString before = stateOf(world);
    const QMap<QString, QByteArray> files = VelldocWorld::tree(world.path(QStringLiteral("d")));
    const VelldocRun run = world.succeedLine((line + " --dry-run").constData());
    QTEST(run.out, "out");
    QVERIFY2(run.error.contains(QLatin1String("Nothing was changed")), qPrintable(run.error));
    QCOMPARE(stateOf(world), before);
    QVERIFY(!QFile::exists(world.path(QStringLiteral("back"))));
}

void TestVelldocOutput::dryRunOfALoginStoresNothing()
{
    VelldocWorld world;
    const VelldocRun run = world.succeedLine("login --dry-run", "\n");
    QCOMPARE(run.out, world.baseApi() + QLatin1Char('\n'));
    QVERIFY(!QFile::exists(world.configPath()));
    QCOMPARE(
        world.runBare(VelldocWorld::words("login --dry-run http://localhost:1/"), "\n").exitCode,
        5);
}

void TestVelldocOutput::slipsAreNoticed_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("command") << QByteArray("mkdri /a") << QStringLiteral("Did you mean mkdir?");
    QTest::newRow("option") << QByteArray("ls --recurse")
                            << QStringLiteral("Did you mean --recursive?");
    QTest::newRow("value") << QByteArray("find --kind imag")
                           << QStringLiteral("Did you mean image?");
}

void TestVelldocOutput::slipsAreNoticed()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, sentence);
    VelldocWorld world;
    const VelldocRun run = world.runLine(line.constData());
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.error.contains(sentence), qPrintable(run.error));
    QVERIFY(!world.runLine("ls --xyz").error.contains(QLatin1String("Did you mean")));
}

void TestVelldocOutput::missingArgumentIsNamed_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("begin");
    QTest::newRow("first") << QByteArray("put")
                           << QStringLiteral("velldoc: LOCAL is missing: velldoc put ");
    QTest::newRow("last") << QByteArray("put a") << QStringLiteral("velldoc: REMOTE is missing: ");
    QTest::newRow("after options")
        << QByteArray("get -r") << QStringLiteral("velldoc: REMOTE is missing: ");
}

void TestVelldocOutput::missingArgumentIsNamed()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, begin);
    VelldocWorld world;
    const VelldocRun run = world.runLine(line.constData());
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.error.startsWith(begin), qPrintable(run.error));
}

void TestVelldocOutput::logHasMessagesAndRequests()
{
    VelldocWorld world;
    const VelldocRun run = world.runLine("ls --log-file log /nothing");
    QCOMPARE(run.exitCode, 3);
    const QByteArray log = VelldocWorld::read(world.path(QStringLiteral("log")));
    QVERIFY2(log.contains("GET http://"), log.constData());
    QVERIFY2(log.contains("There is no /nothing in the project"), log.constData());
    QVERIFY(!run.error.contains(QLatin1String("GET ")));
    QVERIFY(world.runLine("ls -vv").error.contains(QLatin1String("GET http://")));
}

QTEST_GUILESS_MAIN(TestVelldocOutput)
#include "tst_velldoc_output.moc"
