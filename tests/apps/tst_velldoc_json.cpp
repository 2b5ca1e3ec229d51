#include "VelldocWorld.h"

#include <QDir>
#include <QJsonArray>
#include <QTest>

//! The stable form of --json, for every command.
class TestVelldocJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCommandHasItsResult_data();
    void everyCommandHasItsResult();
    void everyCommandIsTriedHere();
    void documentHasItsKeys();
    void errorIsJsonToo_data();
    void errorIsJsonToo();

private:
    static void fill(VelldocWorld &world);
};

namespace {

struct Row
{
    const char *name;
    const char *arguments; //!< one blank between two
    const char *keys; //!< of the result, sorted
};

//! On a project with the file /D/x of two versions and "gone" in the bin.
constexpr Row Rows[] = {
    {"ls", "ls /D", "folders"},
    {"ls, long and recursive", "ls -lR", "folders"},
    {"tree", "tree", "children path"},
    {"find", "find x", "documents"},
    {"info", "info /D/x", "documents"},
    {"put", "put x /", "failed skipped stored unchanged"},
    {"get", "get /D/x back", "failed fetched skipped unchanged"},
    {"put, dry run", "put --dry-run x /", "planned"},
    {"get, dry run", "get --dry-run /D/x back", "planned"},
    {"sync", "sync up none /S", "actions failed"},
    {"check", "check none /empty", "differences isEqual"},
    {"du", "du", "folders"},
    {"cp", "cp /D/x /y", "documents"},
    {"projects", "projects", "projects"},
    {"whoami", "whoami", "id name project role url"},
    {"config", "config", "settings"},
    {"config get", "config get project", "value"},
    {"config profiles", "config profiles", "profiles"},
    {"history, make current", "history --make-current 1 /D/x", "document"},
    {"history, delete", "history --delete 1 -y /D/x", "deleted"},
    {"mkdir", "mkdir /new", "folders"},
    {"mv", "mv /D/x /", "documents"},
    {"rename", "rename /D/x y", "document"},
    {"order", "order /D/x", "order"},
    {"rm", "rm /D/x", "deleted"},
    {"trash", "trash", "documents"},
    {"trash restore", "trash restore gone", "restored"},
    {"trash purge", "trash purge -y gone", "deleted"},
    {"trash empty", "trash empty -y", "deleted"},
    {"fav", "fav", "documents"},
    {"fav add", "fav add /D/x", "documents marked"},
    {"fav check", "fav check /D/x", "favorite"},
    {"frequent", "frequent list", "documents"},
    {"frequent remove", "frequent remove /D/x", "documents marked"},
    {"recent", "recent", "documents"},
    {"recent add", "recent add /D/x", "documents marked"},
    {"share", "share /D", "address allowDownload code expiresAt"},
    {"share, list", "share --list", "shares"},
    {"history", "history /D/x", "versions"},
    {"remark", "remark /D/x text", "id remark"},
    {"can", "can /D/x", "rights"},
    {"can, one right", "can /D/x edit", "rights"},
    {"links", "links /D/x", "document"},
    {"links to", "links --to 7", "documents"},
    {"pwd", "pwd /D/x", "password"},
    {"types", "types", "kinds"},
    {"types of files", "types a.dwg", "files"},
    {"login", "login", "project url user userName"},
    {"logout", "logout", "forgotten"},
    {"help", "help", "commands options"},
    {"help of a command", "help put", "arguments description examples name options summary"},
    {"option help", "ls --help", "arguments description examples name options summary"},
    {"version", "--version", "version"},
};

} // namespace

void TestVelldocJson::fill(VelldocWorld &world)
{
    const QString x = world.write(QStringLiteral("x"), "1");
    QVERIFY(QDir().mkpath(world.path(QStringLiteral("none"))));
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/D"), QStringLiteral("/gone"),
                   QStringLiteral("/empty")});
    world.succeed({QStringLiteral("put"), x, QStringLiteral("/D")});
    world.write(QStringLiteral("x"), "22");
    world.succeed({QStringLiteral("put"), QStringLiteral("-u"), x, QStringLiteral("/D")});
    world.succeed({QStringLiteral("rm"), QStringLiteral("-r"), QStringLiteral("/gone")});
}

void TestVelldocJson::everyCommandHasItsResult_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("keys");
    for (const Row &row : Rows)
        QTest::newRow(row.name) << QString::fromLatin1(row.arguments)
                                << QString::fromLatin1(row.keys);
}

void TestVelldocJson::everyCommandHasItsResult()
{
    QFETCH(QString, arguments);
    VelldocWorld world;
    fill(world);
    const VelldocRun run =
        world.succeed(QStringList{QStringLiteral("--json")} + arguments.split(QLatin1Char(' ')));
    QCOMPARE(run.error, QString());
    QCOMPARE(run.out.count(QLatin1Char('\n')), 1);
    const QStringList envelope{QStringLiteral("command"), QStringLiteral("ok"),
                               QStringLiteral("result")};
    QCOMPARE(run.json().keys(), envelope);
    QCOMPARE(run.json().value(QLatin1String("ok")), QJsonValue(true));
    QTEST(run.result().keys().join(QLatin1Char(' ')), "keys");
}

void TestVelldocJson::everyCommandIsTriedHere()
{
    VelldocWorld world;
    const QJsonArray commands = world.succeed({QStringLiteral("help"), QStringLiteral("--json")})
                                    .result()
                                    .value(QLatin1String("commands"))
                                    .toArray();
    QVERIFY(commands.size() > 30);
    // In tests of their own.
    QStringList tried{QStringLiteral("serve"), QStringLiteral("watch"), QStringLiteral("open"),
                      QStringLiteral("cat"), QStringLiteral("completion")};
    for (const Row &row : Rows)
        tried.append(QString::fromLatin1(row.arguments).section(QLatin1Char(' '), 0, 0));
    for (const QJsonValue &command : commands) {
        const QString name = command.toObject().value(QLatin1String("name")).toString();
        QVERIFY2(tried.contains(name), qPrintable(name));
    }
}

void TestVelldocJson::documentHasItsKeys()
{
    VelldocWorld world;
    fill(world);
    const QJsonObject document =
        world.succeed({QStringLiteral("info"), QStringLiteral("--json"), QStringLiteral("/D/x")})
            .result()
            .value(QLatin1String("documents"))
            .toArray()
            .at(0)
            .toObject();
    const QString keys = QStringLiteral(
        "category createdAt createdBy favorite fileId id kind links name order parentId path "
        "recycled remark rights size suffix type updatedAt updatedBy");
    QCOMPARE(document.keys().join(QLatin1Char(' ')), keys);
    QCOMPARE(document.value(QLatin1String("path")).toString(), QStringLiteral("/D/x"));
    QCOMPARE(document.value(QLatin1String("size")).toInt(), 2);
}

void TestVelldocJson::errorIsJsonToo_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("unknown command") << QStringLiteral("--json fly") << 2;
    QTest::newRow("unknown option") << QStringLiteral("ls --json --fly") << 2;
    QTest::newRow("unknown option without a command") << QStringLiteral("--json --fly") << 2;
    QTest::newRow("option without its value") << QStringLiteral("ls --json --sort") << 2;
    QTest::newRow("option with a value too much") << QStringLiteral("ls --json --long=1") << 2;
    QTest::newRow("not found") << QStringLiteral("info --json /nothing") << 3;
    QTest::newRow("no connection") << QStringLiteral("--json --url http://127.0.0.1:1/ ls") << 5;
    QTest::newRow("serve") << QStringLiteral("serve --json --listen x") << 2;
}

void TestVelldocJson::errorIsJsonToo()
{
    QFETCH(QString, arguments);
    QFETCH(int, exitCode);
    VelldocWorld world;
    const VelldocRun run = world.run(arguments.split(QLatin1Char(' ')));
    QCOMPARE(run.exitCode, exitCode);
    QCOMPARE(run.out.count(QLatin1Char('\n')), 1);
    QCOMPARE(run.json().value(QLatin1String("ok")), QJsonValue(false));
    const QJsonObject error = run.json().value(QLatin1String("error")).toObject();
    QCOMPARE(error.value(QLatin1String("exitCode")).toInt(), exitCode);
    const QString message = error.value(QLatin1String("message")).toString();
    QCOMPARE(run.error, QStringLiteral("velldoc: %1\n").arg(message));
}

QTEST_GUILESS_MAIN(TestVelldocJson)
#include "tst_velldoc_json.moc"
