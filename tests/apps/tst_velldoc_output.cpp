#include "VelldocWorld.h"

#include <QJsonArray>
#include <QTest>

//! Patterns, forms of the output, messages: what many commands have in common.
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
    void slipsAreNoticed_data();
    void slipsAreNoticed();
    void missingArgumentIsNamed_data();
    void missingArgumentIsNamed();
    void logHasMessagesAndRequests();
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

void TestVelldocOutput::slipsAreNoticed_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("command") << QByteArray("mkdri /a") << QStringLiteral(" Did you mean mkdir?");
    QTest::newRow("option") << QByteArray("ls --recurse")
                            << QStringLiteral(" Did you mean --recursive?");
    QTest::newRow("value") << QByteArray("find --kind imag")
                           << QStringLiteral(" Did you mean image?");
    QTest::newRow("value of ls") << QByteArray("ls --sort nme")
                                 << QStringLiteral(" Did you mean name?");
    QTest::newRow("empty value") << QByteArray("ls --sort=")
                                 << QStringLiteral("--sort takes one of name, size,");
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
                           << QStringLiteral("velldoc: LOCAL is missing: \"velldoc put ");
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
