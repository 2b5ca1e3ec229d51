#include "VelldocWorld.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QTest>

class TestVelldocCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void treeIsDrawn();
    void treeIsInNaturalOrder();
    void treeIsJson();
    void findUsesEveryCondition_data();
    void findUsesEveryCondition();
    void findSaysHowToFindMore();
    void moveGoesIntoFoldersAndToNames();
    void moveRefusesWhatIsTaken();
    void refusedMoveLeavesTheName();
    void twoDocumentsOfOneNameAreNotConfused();
    void renameRefusesATakenName();
    void orderPutsTheNamedOnesFirst();
    void orderByNameKnowsNumbers();
    void deletedThingsComeBack();
    void restoreTellsOfATwin();
    void emptyingNeedsAYes();
    void marksAreKept_data();
    void marksAreKept();
    void favouriteCanBeChecked();
    void recentListsWhatWasStoredLast();
    void shareOpensTheDocuments();
    void sharesAreListedAndEnded();
    void historyAndRemarks();
    void sixRightsAreAsked();
    void linksAreChanged();
    void passwordIsShown();
    void typesAreListed();

private:
    static void putFile(VelldocWorld &world, const QString &name, const QString &folder,
                        const QByteArray &content = "1");
};

void TestVelldocCommands::putFile(VelldocWorld &world, const QString &name, const QString &folder,
                                  const QByteArray &content)
{
    world.succeed({QStringLiteral("put"), world.write(name, content), folder});
}

void TestVelldocCommands::treeIsDrawn()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("-p"), QStringLiteral("/A/B"),
                   QStringLiteral("/C")});
    putFile(world, QStringLiteral("图.dwg"), QStringLiteral("/A/B"));
    putFile(world, QStringLiteral("x"), QStringLiteral("/A"));
    const VelldocRun run = world.succeed({QStringLiteral("tree")});
    QCOMPARE(run.out,
             QStringLiteral("/\n"
                            "├── A/\n"
                            "│   ├── B/\n"
                            "│   │   └── 图.dwg\n"
                            "│   └── x\n"
                            "└── C/\n"));
    QCOMPARE(run.error, QStringLiteral("3 folders, 2 files\n"));
    QCOMPARE(world
                 .succeed({QStringLiteral("tree"), QStringLiteral("-d"), QStringLiteral("--depth"),
                           QStringLiteral("1"), QStringLiteral("/A")})
                 .out,
             QStringLiteral("/A\n└── B/\n"));
}

void TestVelldocCommands::treeIsInNaturalOrder()
{
    VelldocWorld world;
    world.succeed(
        {QStringLiteral("mkdir"), QStringLiteral("/Level 10"), QStringLiteral("/level 9")});
    QCOMPARE(world.succeedLine("tree").out, QStringLiteral("/\n├── level 9/\n└── Level 10/\n"));
}

void TestVelldocCommands::treeIsJson()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/A")});
    putFile(world, QStringLiteral("x"), QStringLiteral("/A"), "123");
    const QJsonObject folder = world.succeed({QStringLiteral("tree"), QStringLiteral("--json")})
                                   .result()
                                   .value(QLatin1String("children"))
                                   .toArray()
                                   .at(0)
                                   .toObject();
    QCOMPARE(folder.value(QLatin1String("name")).toString(), QStringLiteral("A"));
    const QJsonObject file = folder.value(QLatin1String("children")).toArray().at(0).toObject();
    QCOMPARE(file.value(QLatin1String("size")).toInt(), 3);
}

void TestVelldocCommands::findSaysHowToFindMore()
{
    VelldocWorld world;
    const QString advice = QStringLiteral("\"*plan*\" finds names that contain it.");
    world.succeedLine("mkdir /plans");
    QVERIFY(world.succeedLine("find plan").error.contains(advice));
    QCOMPARE(world.succeedLine("find *plan*").out, QStringLiteral("/plans/\n"));
    QCOMPARE(world.succeedLine("find x*").error, QStringLiteral("Nothing was found.\n"));
}

void TestVelldocCommands::findUsesEveryCondition_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("found");
    const QString plan = QStringLiteral("/A/plan.dwg");
    const QString photo = QStringLiteral("/A/B/Photo (1).PNG");
    const QString folder = QStringLiteral("/A/B/");
    QTest::newRow("pattern") << QStringList{QStringLiteral("*.dwg")} << QStringList{plan};
    QTest::newRow("pattern in any case")
        << QStringList{QStringLiteral("photo*.png")} << QStringList{photo};
    QTest::newRow("pattern is whole") << QStringList{QStringLiteral("plan")} << QStringList();
    QTest::newRow("parentheses are letters")
        << QStringList{QStringLiteral("* (1).*")} << QStringList{photo};
    QTest::newRow("regular expression")
        << QStringList{QStringLiteral("--regex"), QStringLiteral("^pl.n")} << QStringList{plan};
    QTest::newRow("below a folder")
        << QStringList{QStringLiteral("*"), QStringLiteral("/A/B")} << QStringList{photo};
    QTest::newRow("kind") << QStringList{QStringLiteral("--kind"), QStringLiteral("image")}
                          << QStringList{photo};
    QTest::newRow("type") << QStringList{QStringLiteral("*"), QStringLiteral("/A"),
                                         QStringLiteral("--type"), QStringLiteral("dir")}
                          << QStringList{folder};
    QTest::newRow("time span") << QStringList{QStringLiteral("*.dwg"), QStringLiteral("--from"),
                                              QStringLiteral("1h")}
                               << QStringList{plan};
    QTest::newRow("time span that is over")
        << QStringList{QStringLiteral("--to"), QStringLiteral("2001-01-01")} << QStringList();
    QTest::newRow("user") << QStringList{QStringLiteral("*.dwg"), QStringLiteral("--by"),
                                         QStringLiteral("local")}
                          << QStringList{plan};
    QTest::newRow("other user") << QStringList{QStringLiteral("--by"), QStringLiteral("nobody")}
                                << QStringList();
    QTest::newRow("category") << QStringList{QStringLiteral("--category"), QStringLiteral("x")}
                              << QStringList();
}

void TestVelldocCommands::findUsesEveryCondition()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("-p"), QStringLiteral("/A/B")});
    putFile(world, QStringLiteral("plan.dwg"), QStringLiteral("/A"));
    putFile(world, QStringLiteral("Photo (1).PNG"), QStringLiteral("/A/B"));
    QFETCH(QStringList, options);
    QTEST(world.succeed(QStringList{QStringLiteral("find")} + options).lines(), "found");
}

void TestVelldocCommands::moveGoesIntoFoldersAndToNames()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/A"), QStringLiteral("/B")});
    putFile(world, QStringLiteral("x"), QStringLiteral("/"));
    putFile(world, QStringLiteral("y"), QStringLiteral("/"));
    const QString mv = QStringLiteral("mv");
    world.succeed({mv, QStringLiteral("/x"), QStringLiteral("/y"), QStringLiteral("/A")});
    QCOMPARE(
        world.succeed({QStringLiteral("find"), QStringLiteral("--type"), QStringLiteral("file")})
            .lines()
            .size(),
        2);
    world.succeed({mv, QStringLiteral("/A/x"), QStringLiteral("/B/z #1.txt")});
    QCOMPARE(world.succeed({QStringLiteral("ls"), QStringLiteral("/B")}).out,
             QStringLiteral("z #1.txt\n"));
    world.succeed({mv, QStringLiteral("/A"), QStringLiteral("/B")});
    QCOMPARE(world.succeed({QStringLiteral("ls"), QStringLiteral("/B/A")}).out,
             QStringLiteral("y\n"));
    world.succeed({mv, QStringLiteral("/B/A/y"), QStringLiteral("/")});
    QCOMPARE(world.succeed({QStringLiteral("ls")}).out, QStringLiteral("B/\ny\n"));
}

void TestVelldocCommands::moveRefusesWhatIsTaken()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("-p"), QStringLiteral("/A/x")});
    putFile(world, QStringLiteral("x"), QStringLiteral("/"));
    putFile(world, QStringLiteral("y"), QStringLiteral("/"));
    QCOMPARE(world.run({QStringLiteral("mv"), QStringLiteral("/x"), QStringLiteral("/A")}).exitCode,
             1);
    QCOMPARE(world.run({QStringLiteral("mv"), QStringLiteral("/x"), QStringLiteral("/y")}).exitCode,
             1);
    QCOMPARE(
        world.run({QStringLiteral("mv"), QStringLiteral("/A"), QStringLiteral("/A/x")}).exitCode,
        1);
    QCOMPARE(world.run({QStringLiteral("mv"), QStringLiteral("/x"), QStringLiteral("/nothing/")})
                 .exitCode,
             3);
    QCOMPARE(world.succeed({QStringLiteral("ls")}).out.count(QLatin1Char('\n')), 3);
}

void TestVelldocCommands::refusedMoveLeavesTheName()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/A"), QStringLiteral("/B")});
    // A folder cannot go into itself, and the service refuses only the move.
    QCOMPARE(
        world.run({QStringLiteral("mv"), QStringLiteral("/A"), QStringLiteral("/A/x")}).exitCode,
        1);
    FaultRule refuse;
    refuse.kind = FaultRule::Kind::Status;
    refuse.value = 403;
    refuse.verb = "PUT";
    refuse.nth = 2;
    world.service().addFault(refuse);
    QCOMPARE(
        world.run({QStringLiteral("mv"), QStringLiteral("/A"), QStringLiteral("/B/x")}).exitCode,
        4);
    QCOMPARE(
        world.succeed({QStringLiteral("ls"), QStringLiteral("--sort"), QStringLiteral("name")}).out,
        QStringLiteral("A/\nB/\n"));
}

void TestVelldocCommands::twoDocumentsOfOneNameAreNotConfused()
{
    VelldocWorld world;
    putFile(world, QStringLiteral("x"), QStringLiteral("/"));
    world.succeed({QStringLiteral("rm"), QStringLiteral("/x")});
    putFile(world, QStringLiteral("x"), QStringLiteral("/"));
    world.succeed({QStringLiteral("trash"), QStringLiteral("restore"), QStringLiteral("x")});
    const VelldocRun run = world.run({QStringLiteral("info"), QStringLiteral("/x")});
    QCOMPARE(run.exitCode, 1);
    const QRegularExpressionMatch match =
        QRegularExpression(QStringLiteral("2 entries have .*(id:\\w+), (id:\\w+)"))
            .match(run.error);
    QVERIFY2(match.hasMatch(), qPrintable(run.error));
    world.succeed({QStringLiteral("rename"), match.captured(1), QStringLiteral("other")});
    world.succeed({QStringLiteral("info"), QStringLiteral("/x")});
}

void TestVelldocCommands::renameRefusesATakenName()
{
    VelldocWorld world;
    putFile(world, QStringLiteral("x"), QStringLiteral("/"));
    putFile(world, QStringLiteral("y"), QStringLiteral("/"));
    QCOMPARE(
        world.run({QStringLiteral("rename"), QStringLiteral("/x"), QStringLiteral("y")}).exitCode,
        1);
    world.succeed({QStringLiteral("rename"), QStringLiteral("/x"), QStringLiteral("图 & 纸")});
    QCOMPARE(
        world.succeed({QStringLiteral("ls"), QStringLiteral("--sort"), QStringLiteral("name")}).out,
        QStringLiteral("y\n图 & 纸\n"));
}

void TestVelldocCommands::orderPutsTheNamedOnesFirst()
{
    VelldocWorld world;
    for (const char *const name : {"a", "b", "c"})
        putFile(world, QString::fromLatin1(name), QStringLiteral("/"));
    world.succeed({QStringLiteral("order"), QStringLiteral("/b"), QStringLiteral("/a")});
    QCOMPARE(world.succeed({QStringLiteral("ls")}).out, QStringLiteral("b\na\nc\n"));
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/D")});
    putFile(world, QStringLiteral("d"), QStringLiteral("/D"));
    QCOMPARE(
        world.run({QStringLiteral("order"), QStringLiteral("/a"), QStringLiteral("/D/d")}).exitCode,
        2);
}

void TestVelldocCommands::orderByNameKnowsNumbers()
{
    VelldocWorld world;
    for (const int level : {10, 9, 2})
        world.succeed({QStringLiteral("mkdir"), QStringLiteral("/Level %1").arg(level)});
    world.succeed({QStringLiteral("order"), QStringLiteral("--by-name"), QStringLiteral("/")});
    QCOMPARE(world.succeed({QStringLiteral("ls")}).out,
             QStringLiteral("Level 2/\nLevel 9/\nLevel 10/\n"));
}

void TestVelldocCommands::deletedThingsComeBack()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/A")});
    putFile(world, QStringLiteral("x"), QStringLiteral("/A"));
    QCOMPARE(world.run({QStringLiteral("rm"), QStringLiteral("/A")}).exitCode, 1);
    world.succeed({QStringLiteral("rm"), QStringLiteral("-r"), QStringLiteral("/A")});
    QCOMPARE(world.succeed({QStringLiteral("ls")}).out, QString());
    QCOMPARE(world.succeed({QStringLiteral("trash")}).out, QStringLiteral("/A/\n"));
    world.succeed({QStringLiteral("trash"), QStringLiteral("restore"), QStringLiteral("A")});
    QCOMPARE(world.succeed({QStringLiteral("ls"), QStringLiteral("/A")}).out,
             QStringLiteral("x\n"));
    QCOMPARE(world.run({QStringLiteral("trash"), QStringLiteral("restore"), QStringLiteral("A")})
                 .exitCode,
             3);
}

void TestVelldocCommands::restoreTellsOfATwin()
{
    VelldocWorld world;
    putFile(world, QStringLiteral("x"), QStringLiteral("/"));
    world.succeed({QStringLiteral("rm"), QStringLiteral("/x")});
    putFile(world, QStringLiteral("x"), QStringLiteral("/"));
    const VelldocRun run = world.succeed(
        {QStringLiteral("trash"), QStringLiteral("restore"), QStringLiteral("--all")});
    QVERIFY2(
        run.error.contains(QLatin1String("x has been restored, but its folder has another entry")),
        qPrintable(run.error));
}

void TestVelldocCommands::emptyingNeedsAYes()
{
    VelldocWorld world;
    putFile(world, QStringLiteral("x"), QStringLiteral("/"));
    world.succeed({QStringLiteral("rm"), QStringLiteral("/x")});
    QCOMPARE(world.run({QStringLiteral("trash"), QStringLiteral("empty")}).exitCode, 2);
    world.succeed({QStringLiteral("trash"), QStringLiteral("empty"), QStringLiteral("--yes")});
    QCOMPARE(world.succeed({QStringLiteral("trash")}).error,
             QStringLiteral("The recycle bin is empty.\n"));
}

void TestVelldocCommands::marksAreKept_data()
{
    QTest::addColumn<QString>("command");
    for (const char *const command : {"fav", "frequent", "recent"})
        QTest::newRow(command) << QString::fromLatin1(command);
}

void TestVelldocCommands::marksAreKept()
{
    QFETCH(QString, command);
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/A")});
    putFile(world, QStringLiteral("x"), QStringLiteral("/A"));
    const QStringList list{command, QStringLiteral("list")};
    QCOMPARE(world.succeed(list).out, QString());
    world.succeed({command, QStringLiteral("add"), QStringLiteral("/A/x")});
    QCOMPARE(world.succeed(list).out, QStringLiteral("/A/x\n"));
    world.succeed({command, QStringLiteral("remove"), QStringLiteral("/A/x")});
    QCOMPARE(world.succeed(list).out, QString());
    QCOMPARE(world.run({command, QStringLiteral("paint")}).exitCode, 2);
}

void TestVelldocCommands::favouriteCanBeChecked()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/A")});
    const QStringList check{QStringLiteral("fav"), QStringLiteral("check"), QStringLiteral("/A")};
    QCOMPARE(world.succeed(check).out, QStringLiteral("no\n"));
    world.succeed({QStringLiteral("fav"), QStringLiteral("add"), QStringLiteral("/A")});
    QCOMPARE(world.succeed(check).out, QStringLiteral("yes\n"));
}

void TestVelldocCommands::recentListsWhatWasStoredLast()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/A")});
    putFile(world, QStringLiteral("x"), QStringLiteral("/"));
    putFile(world, QStringLiteral("y"), QStringLiteral("/A"));
    QCOMPARE(world.succeed({QStringLiteral("recent")}).out, QStringLiteral("/A/y\n/x\n"));
}

void TestVelldocCommands::shareOpensTheDocuments()
{
    VelldocWorld world;
    putFile(world, QStringLiteral("x"), QStringLiteral("/"));
    const VelldocRun run =
        world.succeed({QStringLiteral("share"), QStringLiteral("--json"), QStringLiteral("--days"),
                       QStringLiteral("2"), QStringLiteral("/x")});
    const QString code = run.result().value(QLatin1String("code")).toString();
    QCOMPARE(run.result().value(QLatin1String("address")).toString(),
             world.baseApi() + QLatin1String("share/") + code);
    QVERIFY(!run.result().value(QLatin1String("expiresAt")).toString().isEmpty());
    QCOMPARE(world
                 .run({QStringLiteral("share"), QStringLiteral("--until"),
                       QStringLiteral("2001-01-01"), QStringLiteral("/x")})
                 .exitCode,
             2);
    const VelldocRun endless =
        world.succeed({QStringLiteral("share"), QStringLiteral("--forever"), QStringLiteral("/x")});
    QVERIFY(endless.error.contains(QLatin1String("does not expire")));
}

void TestVelldocCommands::sharesAreListedAndEnded()
{
    VelldocWorld world;
    const QString share = QStringLiteral("share");
    const QString list = QStringLiteral("--list");
    const QString json = QStringLiteral("--json");
    putFile(world, QStringLiteral("x"), QStringLiteral("/"));
    QVERIFY(world.succeed({share, list}).error.contains(QLatin1String("There are no shares")));
    world.succeed({share, QStringLiteral("--forever"), QStringLiteral("/x")});
    const QStringList lines = world.succeed({share, list}).lines();
    QCOMPARE(lines.size(), 2);
    QVERIFY2(lines.at(1).contains(QLatin1String("never")), qPrintable(lines.at(1)));
    QVERIFY2(lines.at(1).endsWith(QLatin1String(" x")), qPrintable(lines.at(1)));
    const QJsonArray shares =
        world.succeed({share, list, json}).result().value(QLatin1String("shares")).toArray();
    const QString id = shares.at(0).toObject().value(QLatin1String("id")).toString();
    const VelldocRun revoked = world.succeed({share, json, QStringLiteral("--revoke"), id});
    QCOMPARE(revoked.result().value(QLatin1String("revoked")).toArray(), QJsonArray{id});
    QCOMPARE(world.succeed({share, list}).out, QString());
    QVERIFY(world.run({share, QStringLiteral("--revoke"), id}).exitCode != 0);
}

void TestVelldocCommands::historyAndRemarks()
{
    VelldocWorld world;
    putFile(world, QStringLiteral("x"), QStringLiteral("/"), "1");
    world.succeed({QStringLiteral("put"), QStringLiteral("-u"),
                   world.write(QStringLiteral("x"), "22"), QStringLiteral("/")});
    const QString remark = QStringLiteral("remark");
    world.succeed({remark, QStringLiteral("--version"), QStringLiteral("1"), QStringLiteral("/x"),
                   QStringLiteral("as built")});
    world.succeed({remark, QStringLiteral("/x"), QStringLiteral("for all 图")});
    QCOMPARE(world.succeed({remark, QStringLiteral("/x")}).out, QStringLiteral("for all 图\n"));
    QCOMPARE(world
                 .succeed({remark, QStringLiteral("--version"), QStringLiteral("1"),
                           QStringLiteral("/x")})
                 .out,
             QStringLiteral("as built\n"));
    QStringList lines = world.succeed({QStringLiteral("history"), QStringLiteral("/x")}).lines();
    QCOMPARE(lines.size(), 3);
    QVERIFY2(lines.at(1).startsWith(QLatin1String("      2   2 B  ")), qPrintable(lines.at(1)));
    QVERIFY2(lines.at(2).endsWith(QLatin1String("  local  as built")), qPrintable(lines.at(2)));
    QCOMPARE(
        world.run({remark, QStringLiteral("--version"), QStringLiteral("7"), QStringLiteral("/x")})
            .exitCode,
        3);
}

void TestVelldocCommands::sixRightsAreAsked()
{
    VelldocWorld world;
    putFile(world, QStringLiteral("x"), QStringLiteral("/"));
    QVERIFY(world.service().addProject(QStringLiteral("default"), QStringLiteral("D"))
            || !world.baseApi().isEmpty());
    const QString token = world.service().addUser(QStringLiteral("vera"));
    QVERIFY(world.service().setRole(QStringLiteral("default"), QStringLiteral("vera"),
                                    QStringLiteral("contributor")));
    world.environment.insert(QStringLiteral("VELLDOC_TOKEN"), token);
    const QJsonObject rights =
        world.succeed({QStringLiteral("can"), QStringLiteral("--json"), QStringLiteral("/x")})
            .result()
            .value(QLatin1String("rights"))
            .toObject();
    const QJsonObject expected{
        {QStringLiteral("download"), true},  {QStringLiteral("upload"), true},
        {QStringLiteral("edit"), false},     {QStringLiteral("delete"), false},
        {QStringLiteral("edit-self"), true}, {QStringLiteral("delete-self"), true}};
    QCOMPARE(rights, expected);
    QCOMPARE(world.run({QStringLiteral("can"), QStringLiteral("/x"), QStringLiteral("download")})
                 .exitCode,
             0);
    const VelldocRun no =
        world.run({QStringLiteral("can"), QStringLiteral("/x"), QStringLiteral("edit")});
    QCOMPARE(no.exitCode, 4);
    QCOMPARE(no.out, QStringLiteral("no\n"));
}

void TestVelldocCommands::linksAreChanged()
{
    VelldocWorld world;
    putFile(world, QStringLiteral("x"), QStringLiteral("/"));
    const QString links = QStringLiteral("links");
    const QString room = QStringLiteral("room");
    world.succeed({links, QStringLiteral("/x"), QStringLiteral("add"), room, QStringLiteral("12"),
                   QStringLiteral("7")});
    world.succeed({links, QStringLiteral("/x"), QStringLiteral("add"), QStringLiteral("wall"),
                   QStringLiteral("w1")});
    QCOMPARE(world.succeed({links, QStringLiteral("/x")}).out,
             QStringLiteral("Type  Entity\nroom  12\nroom  7\nwall  w1\n"));
    const VelldocRun linked = world.succeed({links, QStringLiteral("--to"), QStringLiteral("7")});
    QVERIFY2(linked.lines().at(1).contains(QLatin1String("  x     id:")), qPrintable(linked.out));
    world.succeed(
        {links, QStringLiteral("/x"), QStringLiteral("remove"), room, QStringLiteral("12")});
    QCOMPARE(world.succeed({links, QStringLiteral("/x")}).out,
             QStringLiteral("Type  Entity\nroom  7\nwall  w1\n"));
    QCOMPARE(world
                 .run({links, QStringLiteral("/x"), QStringLiteral("remove"), room,
                       QStringLiteral("12")})
                 .exitCode,
             3);
}

void TestVelldocCommands::passwordIsShown()
{
    VelldocWorld world;
    putFile(world, QStringLiteral("x"), QStringLiteral("/"));
    const VelldocRun run = world.succeed({QStringLiteral("pwd"), QStringLiteral("/x")});
    QCOMPARE(run.out, QString());
    QCOMPARE(run.error, QStringLiteral("/x has no password.\n"));
}

void TestVelldocCommands::typesAreListed()
{
    VelldocWorld world;
    QCOMPARE(
        world.succeed({QStringLiteral("types"), QStringLiteral("a.DWG"), QStringLiteral("b.zip")})
            .out,
        QStringLiteral("Name   Type   Meaning\na.DWG  dwg    Drawings\nb.zip  other  Other\n"));
    QCOMPARE(world.succeed({QStringLiteral("types")}).lines().size(), 6);
}

QTEST_GUILESS_MAIN(TestVelldocCommands)
#include "tst_velldoc_commands.moc"
