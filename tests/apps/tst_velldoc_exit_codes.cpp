#include "VelldocWorld.h"

#include <support/ScriptedServer.h>

#include <QDir>
#include <QProcess>
#include <QTest>

namespace {

//! velldoc beside a server on this thread, whose events must run.
class PatientProcess : public QProcess
{
public:
    PatientProcess(const VelldocWorld &world, const QStringList &arguments)
    {
        setProcessEnvironment(world.environment);
        setWorkingDirectory(world.path(QString()));
        start(VelldocWorld::program(), arguments);
    }
};

} // namespace

class TestVelldocExitCodes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wrongLineIsAUsageError_data();
    void wrongLineIsAUsageError();
    void missingThingsAreNotFound_data();
    void missingThingsAreNotFound();
    void missingThingsAreSoughtInTheirFolder();
    void misspelledPathIsNoticed_data();
    void misspelledPathIsNoticed();
    void unknownLoginIsNotTheEmbeddedService();
    void dashIsExplained();
    void viewerIsNotAllowed();
    void missingTokenIsNotAllowed();
    void noConnectionIsSaid();
    void wrongAddressIsExplained_data();
    void wrongAddressIsExplained();
    void bytesThatAreNoTextAreRefused();
    void otherServerIsNoDocumentService();
    void namesCannotLeadElsewhere_data();
    void namesCannotLeadElsewhere();
    void failureIsNotAnEmptyFolder();
    void failureIsInTheJson();
};

void TestVelldocExitCodes::wrongLineIsAUsageError_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("unknown command") << QStringList{QStringLiteral("fly")};
    QTest::newRow("unknown option") << QStringList{QStringLiteral("ls"), QStringLiteral("--fly")};
    QTest::newRow("option without its value")
        << QStringList{QStringLiteral("ls"), QStringLiteral("--sort")};
    QTest::newRow("wrong sort") << QStringList{QStringLiteral("ls"), QStringLiteral("--sort"),
                                               QStringLiteral("x")};
    QTest::newRow("no number") << QStringList{QStringLiteral("ls"), QStringLiteral("--limit"),
                                              QStringLiteral("x")};
    QTest::newRow("nothing to make") << QStringList{QStringLiteral("mkdir")};
    QTest::newRow("nothing to store") << QStringList{QStringLiteral("put"), QStringLiteral("/")};
    QTest::newRow("nothing to mark") << QStringList{QStringLiteral("fav"), QStringLiteral("add")};
    QTest::newRow("wrong depth") << QStringList{QStringLiteral("tree"), QStringLiteral("--depth"),
                                                QStringLiteral("x")};
    for (const char *const command : {"whoami", "projects", "logout"})
        QTest::newRow(command) << QStringList{QString::fromLatin1(command), QStringLiteral("x")};
    QTest::newRow("shares") << QStringList{QStringLiteral("share"), QStringLiteral("--list"),
                                           QStringLiteral("x")};
    QTest::newRow("wrong conflict")
        << QStringList{QStringLiteral("put"), QStringLiteral("a"), QStringLiteral("/"),
                       QStringLiteral("--on-conflict"), QStringLiteral("x")};
}

void TestVelldocExitCodes::wrongLineIsAUsageError()
{
    QFETCH(QStringList, arguments);
    VelldocWorld world;
    const VelldocRun run = world.run(arguments);
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.out, QString());
    QVERIFY(run.error.startsWith(QLatin1String("velldoc: ")));
    QVERIFY2(run.error.contains(QLatin1String("velldoc help")), qPrintable(run.error));
    QCOMPARE(run.error.count(QLatin1Char('\n')), 1);
}

void TestVelldocExitCodes::missingThingsAreNotFound_data()
{
    QTest::addColumn<QStringList>("arguments");
    const QString missing = QStringLiteral("/missing");
    QTest::newRow("ls") << QStringList{QStringLiteral("ls"), missing};
    QTest::newRow("info") << QStringList{QStringLiteral("info"), missing};
    QTest::newRow("get") << QStringList{QStringLiteral("get"), missing};
    QTest::newRow("identifier") << QStringList{QStringLiteral("info"),
                                               QStringLiteral("id:nothing")};
    QTest::newRow("mkdir below") << QStringList{QStringLiteral("mkdir"),
                                                QStringLiteral("/missing/a")};
    QTest::newRow("put, local file")
        << QStringList{QStringLiteral("put"), QStringLiteral("nothing"), QStringLiteral("/")};
    QTest::newRow("put, target") << QStringList{QStringLiteral("put"), QStringLiteral("home"),
                                                QStringLiteral("/missing/x/")};
}

void TestVelldocExitCodes::missingThingsAreNotFound()
{
    QFETCH(QStringList, arguments);
    VelldocWorld world;
    QDir().mkpath(world.path(QStringLiteral("home")));
    const VelldocRun run = world.run(arguments);
    QVERIFY2(run.exitCode == 3, qPrintable(run.error));
    QCOMPARE(run.out, QString());
}

void TestVelldocExitCodes::missingThingsAreSoughtInTheirFolder()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/It's here")});
    QCOMPARE(world.run({QStringLiteral("info"), QStringLiteral("/It's here/x")}).error,
             QStringLiteral("velldoc: There is no /It's here/x in the project: \"velldoc ls "
                            "'/It'\\''s here'\" lists the existing entries.\n"));
}

void TestVelldocExitCodes::misspelledPathIsNoticed_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("end");
    const QString other = QStringLiteral("lists the existing entries.\n");
    QTest::newRow("shortened") << QStringLiteral("/Photo")
                               << QStringLiteral("Did you mean /Photos?\n");
    QTest::newRow("case") << QStringLiteral("/PHOTOS") << QStringLiteral("Did you mean /Photos?\n");
    QTest::newRow("below") << QStringLiteral("/Photos/noth/x")
                           << QStringLiteral("Did you mean /Photos/north?\n");
    QTest::newRow("another word") << QStringLiteral("/xyz") << other;
    QTest::newRow("no folder") << QStringLiteral("/xyz/Photos") << other;
}

void TestVelldocExitCodes::misspelledPathIsNoticed()
{
    VelldocWorld world;
    world.succeedLine("mkdir -p /Photos/north");
    QFETCH(QString, path);
    QFETCH(QString, end);
    const VelldocRun run = world.run({QStringLiteral("ls"), path});
    QCOMPARE(run.exitCode, 3);
    QVERIFY2(run.error.endsWith(end), qPrintable(run.error));
}

void TestVelldocExitCodes::unknownLoginIsNotTheEmbeddedService()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("login"), QStringLiteral("--profile"), QStringLiteral("work")});
    const VelldocRun run = world.runBare(VelldocWorld::words("ls --profile wrok"));
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.error.startsWith(QLatin1String("velldoc: There is no login \"wrok\": "))
                 && run.error.contains(QLatin1String("Did you mean work?")),
             qPrintable(run.error));
    QCOMPARE(world.runBare(VelldocWorld::words("ls --profile work")).exitCode, 0);
    world.succeed(VelldocWorld::words("ls --profile wrok"));
}

void TestVelldocExitCodes::dashIsExplained()
{
    VelldocWorld world;
    const VelldocRun run =
        world.run({QStringLiteral("put"), QStringLiteral("-x"), QStringLiteral("/")});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.error,
             QStringLiteral("velldoc: There is no option -x; write -- before names that begin with "
                            "a dash. See \"velldoc help put\".\n"));
}

void TestVelldocExitCodes::viewerIsNotAllowed()
{
    VelldocWorld world;
    QVERIFY(world.service().addProject(QStringLiteral("p"), QStringLiteral("P")));
    const QString token = world.service().addUser(QStringLiteral("vera"));
    QVERIFY(world.service().setRole(QStringLiteral("p"), QStringLiteral("vera"),
                                    QStringLiteral("viewer")));
    world.environment.insert(QStringLiteral("VELLDOC_TOKEN"), token);
    world.environment.insert(QStringLiteral("VELLDOC_PROJECT"), QStringLiteral("p"));
    world.succeed({QStringLiteral("ls")});
    const VelldocRun made = world.run({QStringLiteral("mkdir"), QStringLiteral("/a")});
    QCOMPARE(made.exitCode, 4);
    QVERIFY2(made.error.contains(QLatin1String("does not allow")), qPrintable(made.error));
    QVERIFY2(made.error.endsWith(QLatin1String(": ask an owner of the project for the right.\n")),
             qPrintable(made.error));
    const VelldocRun stored = world.run(
        {QStringLiteral("put"), world.write(QStringLiteral("a"), "1"), QStringLiteral("/")});
    QCOMPARE(stored.exitCode, 4);
    QVERIFY2(!stored.error.contains(QLatin1String("continues")), qPrintable(stored.error));
    const VelldocRun other = world.runLine("--project q ls");
    QCOMPARE(other.exitCode, 3);
    QVERIFY2(other.error.endsWith(QLatin1String(": \"velldoc projects\" lists your projects.\n")),
             qPrintable(other.error));
}

void TestVelldocExitCodes::missingTokenIsNotAllowed()
{
    VelldocWorld world;
    QVERIFY(!world.service().addUser(QStringLiteral("vera")).isEmpty());
    const VelldocRun run = world.run({QStringLiteral("ls")});
    QCOMPARE(run.exitCode, 4);
    QVERIFY2(run.error.contains(QLatin1String("velldoc login")), qPrintable(run.error));
}

void TestVelldocExitCodes::noConnectionIsSaid()
{
    VelldocWorld world;
    const QString address = world.baseApi();
    world.service().stop();
    const VelldocRun run = world.runBare({QStringLiteral("--url"), address, QStringLiteral("ls")});
    QCOMPARE(run.exitCode, 5);
    QCOMPARE(run.out, QString());
    QVERIFY2(run.error.contains(address), qPrintable(run.error));
}

void TestVelldocExitCodes::wrongAddressIsExplained_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("sentence");
    QTest::newRow("other scheme") << QByteArray("ftp://x/") << 5
                                  << QByteArray("does not begin with http:// or https://.\n");
    QTest::newRow("no scheme") << QByteArray("example:80") << 5
                               << QByteArray("write https://example:80 or http://example:80.\n");
    QTest::newRow("wrong path") << QByteArray("%1wrong/") << 3
                                << QByteArray("no such path: check the address.\n");
    QTest::newRow("https to http")
        << QByteArray("%2") << 5 << QByteArray("begins with http or https, and the port.\n");
}

void TestVelldocExitCodes::wrongAddressIsExplained()
{
    QFETCH(QByteArray, address);
    QFETCH(QByteArray, sentence);
    VelldocWorld world;
    const QByteArray base = world.baseApi().toLatin1();
    address.replace("%1", base).replace("%2", QByteArray(base).replace("http:", "https:"));
    const VelldocRun run = world.runBare(
        {QStringLiteral("--url"), QString::fromLatin1(address), QStringLiteral("ls")});
    QTEST(run.exitCode, "exitCode");
    QVERIFY2(run.error.endsWith(QString::fromLatin1(sentence)), qPrintable(run.error));
    QVERIFY2(!run.error.contains(QLatin1String(".)")), qPrintable(run.error));
}

void TestVelldocExitCodes::bytesThatAreNoTextAreRefused()
{
#ifdef Q_OS_UNIX
    VelldocWorld world;
    QProcess shell;
    shell.setProcessEnvironment(world.environment);
    shell.start(QStringLiteral("bash"),
                {QStringLiteral("-c"), QStringLiteral("\"$0\" --url \"$1\" mkdir $'/bad\\xff'"),
                 VelldocWorld::program(), world.baseApi()});
    QVERIFY(shell.waitForFinished());
    QCOMPARE(shell.exitCode(), 2);
    QVERIFY(shell.readAllStandardError().contains("is not valid UTF-8"));
    QCOMPARE(world.succeedLine("ls").out, QString());
#endif
}

void TestVelldocExitCodes::otherServerIsNoDocumentService()
{
    ScriptedServer server;
    server.setHandler(
        [](const ScriptedRequest &) { return ScriptedReply::json("<html>Welcome</html>"); });
    VelldocWorld world;
    PatientProcess process(world,
                           {QStringLiteral("--url"), server.baseApi(), QStringLiteral("ls")});
    QTRY_COMPARE(process.state(), QProcess::NotRunning);
    QCOMPARE(process.exitCode(), 5);
    QCOMPARE(process.readAllStandardOutput(), QByteArray());
    QVERIFY(process.readAllStandardError().contains("is no document service"));
}

void TestVelldocExitCodes::namesCannotLeadElsewhere_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("up") << QByteArray("..");
    QTest::newRow("up and down") << QByteArray("../evil");
    QTest::newRow("absolute") << QByteArray("/tmp/evil");
    QTest::newRow("nothing") << QByteArray("");
}

void TestVelldocExitCodes::namesCannotLeadElsewhere()
{
    QFETCH(QByteArray, name);
    ScriptedServer server;
    server.setHandler([&](const ScriptedRequest &request) {
        if (request.target.contains("/me"))
            return ScriptedReply::json("{\"_id\":\"u\"}");
        if (request.target.contains("/files/"))
            return ScriptedReply::json("evil");
        return ScriptedReply::json(
            "[{\"_id\":\"1\",\"name\":\"" + name
            + "\",\"type\":\"file\",\"file\":{\"fileId\":\"f\",\"fileSize\":4}}]");
    });
    VelldocWorld world;
    PatientProcess process(world,
                           {QStringLiteral("--url"), server.baseApi(), QStringLiteral("get"),
                            QStringLiteral("-rf"), QStringLiteral("/"),
                            QStringLiteral("down/here")});
    QTRY_COMPARE(process.state(), QProcess::NotRunning);
    QCOMPARE(process.exitCode(), 1);
    QVERIFY(process.readAllStandardError().contains("the name is not valid for a local file"));
    QVERIFY(QDir(world.path(QStringLiteral("down/here"))).isEmpty());
    QCOMPARE(QDir(world.path(QStringLiteral("down")))
                 .entryList(QDir::AllEntries | QDir::NoDotAndDotDot)
                 .size(),
             1);
}

void TestVelldocExitCodes::failureIsNotAnEmptyFolder()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/a")});
    FaultRule fault;
    fault.kind = FaultRule::Kind::Status;
    fault.value = 503;
    fault.pathPrefix = QStringLiteral("/document-service/projects");
    world.service().addFault(fault);
    const VelldocRun run = world.run({QStringLiteral("ls")});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(
        run.error,
        QStringLiteral("velldoc: The service was told to refuse this request: try again later.\n"));
}

void TestVelldocExitCodes::failureIsInTheJson()
{
    VelldocWorld world;
    const VelldocRun run =
        world.run({QStringLiteral("info"), QStringLiteral("--json"), QStringLiteral("id:x")});
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.json().value(QLatin1String("ok")).toBool(true), false);
    const QJsonObject error = run.json().value(QLatin1String("error")).toObject();
    QCOMPARE(error.value(QLatin1String("exitCode")).toInt(), 3);
    QCOMPARE(error.value(QLatin1String("status")).toInt(), 404);
    QVERIFY(!error.value(QLatin1String("message")).toString().isEmpty());
}

QTEST_GUILESS_MAIN(TestVelldocExitCodes)
#include "tst_velldoc_exit_codes.moc"
