#include "VelldocWorld.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QTest>

class TestVelldocLists : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreListedFoldersFirst();
    void longListIsATable();
    void recursiveListGoesThroughTheFolders();
    void listIsSorted_data();
    void listIsSorted();
    void pageSaysWhereItStands();
    void largeFolderIsListedOnce();
    void firstNamesDoNotWaitForTheRest();
    void jsonIsOneDocument();
    void emptyFolderIsCalledEmpty();
    void infoTellsEverything();
    void ownUserHasAName();
    void anyNameIsFound_data();
    void anyNameIsFound();
    void identifierNamesADocument();

private:
    static QStringList namesIn(const VelldocRun &run);
    static QStringList makeLargeFolder(VelldocWorld &world);
};

//! \return the lines that name its entries, sorted
QStringList TestVelldocLists::makeLargeFolder(VelldocWorld &world)
{
    QStringList names;
    for (int i = 0; i < 250; ++i)
        names.append(QStringLiteral("%1").arg(i, 3, 10, QLatin1Char('0')));
    world.succeed(QStringList{QStringLiteral("mkdir")} + names);
    for (QString &name : names)
        name += QLatin1Char('/');
    return names;
}

QStringList TestVelldocLists::namesIn(const VelldocRun &run)
{
    QStringList names;
    const QJsonArray folders = run.result().value(QLatin1String("folders")).toArray();
    for (const QJsonValue &folder : folders) {
        const QJsonArray entries = folder.toObject().value(QLatin1String("entries")).toArray();
        for (const QJsonValue &entry : entries)
            names.append(entry.toObject().value(QLatin1String("name")).toString());
    }
    return names;
}

void TestVelldocLists::namesAreListedFoldersFirst()
{
    VelldocWorld world;
    world.succeed(
        {QStringLiteral("put"), world.write(QStringLiteral("a.txt"), "1"), QStringLiteral("/")});
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/图纸")});
    const VelldocRun run = world.succeed({QStringLiteral("ls")});
    QCOMPARE(run.out, QStringLiteral("图纸/\na.txt\n"));
    QCOMPARE(run.error, QString());
}

void TestVelldocLists::longListIsATable()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/D")});
    world.succeed({QStringLiteral("put"),
                   world.write(QStringLiteral("图.dwg"), QByteArray(1536, 'x')),
                   QStringLiteral("/")});
    const VelldocRun run = world.succeed({QStringLiteral("ls"), QStringLiteral("-l")});
    QStringList lines = run.lines();
    QCOMPARE(lines.size(), 3);
    const QRegularExpression time(QStringLiteral("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d"));
    for (QString &line : lines)
        line.replace(time, QStringLiteral("0000-00-00 00:00"));
    QCOMPARE(lines.at(0), QStringLiteral("Type         Size  Changed           By     Name"));
    QCOMPARE(lines.at(1), QStringLiteral("Folder             0000-00-00 00:00  local  D/"));
    QCOMPARE(lines.at(2), QStringLiteral("Drawings  1.5 KiB  0000-00-00 00:00  local  图.dwg"));
}

void TestVelldocLists::recursiveListGoesThroughTheFolders()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("-p"), QStringLiteral("/A/B")});
    world.succeed(
        {QStringLiteral("put"), world.write(QStringLiteral("f"), "1"), QStringLiteral("/A/B")});
    const VelldocRun run =
        world.succeed({QStringLiteral("ls"), QStringLiteral("-R"), QStringLiteral("/A")});
    QCOMPARE(run.out, QStringLiteral("/A:\nB/\n\n/A/B:\nf\n"));
}

void TestVelldocLists::listIsSorted_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("names");
    const QString sort = QStringLiteral("--sort");
    const QStringList abc{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
    const QStringList cba{QStringLiteral("c"), QStringLiteral("b"), QStringLiteral("a")};
    const QStringList bca{QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("a")};
    QTest::newRow("by name") << QStringList{sort, QStringLiteral("name")} << abc;
    QTest::newRow("by name, reversed")
        << QStringList{sort, QStringLiteral("name"), QStringLiteral("-r")} << cba;
    QTest::newRow("largest first") << QStringList{sort, QStringLiteral("size")} << bca;
    QTest::newRow("newest first") << QStringList{sort, QStringLiteral("created")} << cba;
}

void TestVelldocLists::listIsSorted()
{
    VelldocWorld world;
    world.succeed(
        {QStringLiteral("put"), world.write(QStringLiteral("a"), "1"), QStringLiteral("/")});
    world.succeed(
        {QStringLiteral("put"), world.write(QStringLiteral("b"), "333"), QStringLiteral("/")});
    world.succeed(
        {QStringLiteral("put"), world.write(QStringLiteral("c"), "22"), QStringLiteral("/")});
    QFETCH(QStringList, options);
    const QStringList command{QStringLiteral("ls"), QStringLiteral("--json")};
    QTEST(namesIn(world.succeed(command + options)), "names");
}

void TestVelldocLists::pageSaysWhereItStands()
{
    VelldocWorld world;
    for (const char *const name : {"a", "b", "c"})
        world.succeed({QStringLiteral("mkdir"), QString::fromLatin1(name)});
    const VelldocRun run =
        world.succeed({QStringLiteral("ls"), QStringLiteral("--sort"), QStringLiteral("name"),
                       QStringLiteral("--limit"), QStringLiteral("2"), QStringLiteral("--skip"),
                       QStringLiteral("1")});
    QCOMPARE(run.out, QStringLiteral("b/\nc/\n"));
    QCOMPARE(run.error, QStringLiteral("2 to 3 of 3.\n"));
}

void TestVelldocLists::largeFolderIsListedOnce()
{
    VelldocWorld world;
    const QStringList names = makeLargeFolder(world);
    const QStringList ls{QStringLiteral("ls"), QStringLiteral("--sort"), QStringLiteral("name")};
    QCOMPARE(world.succeed(ls).lines(), names);
    QCOMPARE(world.succeed(ls + QStringList(QStringLiteral("-R"))).lines().mid(1, names.size()),
             names);
}

void TestVelldocLists::firstNamesDoNotWaitForTheRest()
{
    VelldocWorld world;
    const QStringList names = makeLargeFolder(world);
    FaultRule refuse;
    refuse.kind = FaultRule::Kind::Status;
    refuse.value = 503;
    refuse.pathPrefix = QStringLiteral("/document-service/projects");
    refuse.nth = 2;
    world.service().addFault(refuse);
    const VelldocRun run =
        world.run({QStringLiteral("ls"), QStringLiteral("--sort"), QStringLiteral("name")});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.lines(), names.mid(0, 200));
}

void TestVelldocLists::jsonIsOneDocument()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("put"), world.write(QStringLiteral("a.txt"), "12345"),
                   QStringLiteral("/")});
    const VelldocRun run =
        world.succeed({QStringLiteral("--json"), QStringLiteral("ls"), QStringLiteral("/")});
    QCOMPARE(run.error, QString());
    QCOMPARE(run.lines().size(), 1);
    const QJsonObject json = run.json();
    QCOMPARE(json.value(QLatin1String("command")).toString(), QStringLiteral("ls"));
    QCOMPARE(json.value(QLatin1String("ok")).toBool(), true);
    const QJsonObject folder =
        run.result().value(QLatin1String("folders")).toArray().at(0).toObject();
    QCOMPARE(folder.value(QLatin1String("path")).toString(), QStringLiteral("/"));
    QCOMPARE(folder.value(QLatin1String("total")).toInt(), 1);
    const QJsonObject entry = folder.value(QLatin1String("entries")).toArray().at(0).toObject();
    QCOMPARE(entry.value(QLatin1String("name")).toString(), QStringLiteral("a.txt"));
    QCOMPARE(entry.value(QLatin1String("type")).toString(), QStringLiteral("file"));
    QCOMPARE(entry.value(QLatin1String("kind")).toString(), QStringLiteral("office"));
    QCOMPARE(entry.value(QLatin1String("size")).toInt(), 5);
    QVERIFY(entry.value(QLatin1String("parentId")).isNull());
    QVERIFY(!entry.value(QLatin1String("id")).toString().isEmpty());
}

void TestVelldocLists::emptyFolderIsCalledEmpty()
{
    VelldocWorld world;
    const VelldocRun run = world.succeed({QStringLiteral("ls"), QStringLiteral("-l")});
    QCOMPARE(run.out, QString());
    QCOMPARE(run.error, QStringLiteral("/ is empty.\n"));
}

void TestVelldocLists::infoTellsEverything()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/D")});
    world.succeed({QStringLiteral("put"), world.write(QStringLiteral("a.pdf"), "12345"),
                   QStringLiteral("/D")});
    const VelldocRun run = world.succeed({QStringLiteral("info"), QStringLiteral("/D/a.pdf")});
    QVERIFY2(run.out.contains(QLatin1String("Path:       /D/a.pdf\n")), qPrintable(run.out));
    QVERIFY2(run.out.contains(QLatin1String("Type:       Documents\n")), qPrintable(run.out));
    QVERIFY2(run.out.contains(QLatin1String("Size:       5 B (5 bytes)\n")), qPrintable(run.out));
}

void TestVelldocLists::ownUserHasAName()
{
    VelldocWorld world;
    QVERIFY(world.service().addProject(QStringLiteral("p"), QStringLiteral("P")));
    const QString token = world.service().addUser(QStringLiteral("vera"));
    QVERIFY(world.service().setRole(QStringLiteral("p"), QStringLiteral("vera"),
                                    QStringLiteral("owner")));
    world.environment.insert(QStringLiteral("VELLDOC_TOKEN"), token);
    world.environment.insert(QStringLiteral("VELLDOC_PROJECT"), QStringLiteral("p"));
    const QString local = world.write(QStringLiteral("x"), "1");
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    const QString x = QStringLiteral("/x");
    QVERIFY(world.succeed({QStringLiteral("ls"), QStringLiteral("-l")})
                .lines()
                .at(1)
                .endsWith(QLatin1String("  vera  x")));
    QVERIFY(world.succeed({QStringLiteral("info"), x})
                .out.contains(QLatin1String("Changed by: vera\n")));
    QVERIFY(world.succeed({QStringLiteral("history"), x})
                .lines()
                .at(1)
                .endsWith(QLatin1String("  vera")));
    QCOMPARE(
        world.succeed({QStringLiteral("find"), QStringLiteral("--by"), QStringLiteral("vera")}).out,
        QStringLiteral("/x\n"));
}

void TestVelldocLists::anyNameIsFound_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names{
        QStringLiteral("R&D 100% #1 + 图纸.dwg"),
        QStringLiteral("50%25.txt"),
        QStringLiteral("50%.txt"),
        QStringLiteral("a+b=c?d.txt"),
        QStringLiteral("it's \"so\".txt"),
        QStringLiteral("{x}[y].txt"),
        QStringLiteral("  blanks  "),
        QStringLiteral("-dash"),
        QStringLiteral("--help"),
        QStringLiteral(".hidden"),
        QStringLiteral("%1 %2"),
        QStringLiteral("é é"),
        QStringLiteral("😀.txt"),
        QStringLiteral("a:b*c|d<e>"),
        QString(251, QLatin1Char('x')),
    };
    for (const QString &name : names)
        QTest::newRow(qPrintable(name.left(30))) << name;
}

void TestVelldocLists::anyNameIsFound()
{
    QFETCH(QString, name);
    VelldocWorld world;
    // Not every system has local files of these names.
    const QString local = world.write(QStringLiteral("local"), name.toUtf8());
    const QString remote = QStringLiteral("/") + name;
    world.succeed({QStringLiteral("put"), QStringLiteral("--"), local, remote});
    QCOMPARE(namesIn(world.succeed({QStringLiteral("ls"), QStringLiteral("--json"), remote})),
             QStringList(name));
    world.succeed({QStringLiteral("get"), QStringLiteral("--"), remote.mid(1),
                   world.path(QStringLiteral("down"))});
    QCOMPARE(VelldocWorld::read(world.path(QStringLiteral("down"))), name.toUtf8());
}

void TestVelldocLists::identifierNamesADocument()
{
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("a"), "1");
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/b")});
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/b")});
    const QJsonObject folder =
        world.succeed({QStringLiteral("info"), QStringLiteral("--json"), QStringLiteral("/b/a")})
            .result()
            .value(QLatin1String("documents"))
            .toArray()
            .at(0)
            .toObject();
    const QString id = QStringLiteral("id:") + folder.value(QLatin1String("id")).toString();
    const VelldocRun byId = world.succeed({QStringLiteral("info"), id});
    QVERIFY2(byId.out.contains(QLatin1String("/b/a\n")), qPrintable(byId.out));
}

QTEST_GUILESS_MAIN(TestVelldocLists)
#include "tst_velldoc_lists.moc"
