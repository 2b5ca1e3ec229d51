#include "VelldocWorld.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

//! What concerns velldoc as a whole: its settings, its help, its language.
class TestVelldocProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loginRemembersAndLogoutForgets();
    void settingsHaveAnOrder();
    void helpKnowsEveryCommand();
    void chineseSpeaksChinese();
};

void TestVelldocProgram::loginRemembersAndLogoutForgets()
{
    VelldocWorld world;
    const QString token = world.service().addUser(QStringLiteral("vera"));
    QVERIFY(world.service().addProject(QStringLiteral("p"), QStringLiteral("P")));
    QVERIFY(world.service().setRole(QStringLiteral("p"), QStringLiteral("vera"),
                                    QStringLiteral("owner")));
    QCOMPARE(world.runBare({QStringLiteral("login"), world.baseApi()}, "wrong\n").exitCode, 4);
    const QString file = world.configPath();
    QVERIFY(!QFileInfo::exists(file));
    QCOMPARE(world
                 .runBare({QStringLiteral("login"), QStringLiteral("--project"),
                           QStringLiteral("nowhere"), world.baseApi()},
                          token.toLatin1() + '\n')
                 .exitCode,
             3);
    QVERIFY(!QFileInfo::exists(file));

    const VelldocRun login = world.runBare({QStringLiteral("login"), QStringLiteral("--project"),
                                            QStringLiteral("p"), world.baseApi()},
                                           token.toLatin1() + '\n');
    QVERIFY2(login.exitCode == 0, qPrintable(login.error));
    QVERIFY(!login.error.contains(token));
    QVERIFY(QFileInfo::exists(file));
#ifndef Q_OS_WIN // where the folder of the settings is the user's own
    QCOMPARE(QFile::permissions(file),
             QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
#endif
    QCOMPARE(world.runBare({QStringLiteral("mkdir"), QStringLiteral("/A")}).exitCode, 0);
    QCOMPARE(world.runBare({QStringLiteral("ls")}).out, QStringLiteral("A/\n"));

    world.runBare({QStringLiteral("logout")});
    QVERIFY(!VelldocWorld::read(file).contains(token.toLatin1()));
    QCOMPARE(world.runBare({QStringLiteral("ls")}).out, QString());

    world.environment.insert(QStringLiteral("VELLDOC_TOKEN"), token);
    QCOMPARE(world
                 .runBare({QStringLiteral("login"), QStringLiteral("--project"),
                           QStringLiteral("p"), world.baseApi()},
                          "wrong\n")
                 .exitCode,
             0);
}

void TestVelldocProgram::settingsHaveAnOrder()
{
    VelldocWorld world;
    world.write(QStringLiteral("settings.ini"), "url=http://127.0.0.1:1/\nproject=file\n");
    world.environment.insert(QStringLiteral("VELLDOC_CONFIG"),
                             world.path(QStringLiteral("settings.ini")));
    QCOMPARE(world.runBare({QStringLiteral("ls")}).exitCode, 5);
    world.environment.insert(QStringLiteral("VELLDOC_URL"), world.baseApi());
    world.environment.insert(QStringLiteral("VELLDOC_PROJECT"), QStringLiteral("variable"));
    QCOMPARE(world.runBare({QStringLiteral("mkdir"), QStringLiteral("/A")}).exitCode, 0);
    QCOMPARE(
        world.runBare({QStringLiteral("--project"), QStringLiteral("file"), QStringLiteral("ls")})
            .out,
        QString());
    QCOMPARE(world.runBare({QStringLiteral("ls"), QStringLiteral("--project=variable")}).out,
             QStringLiteral("A/\n"));
    QCOMPARE(world
                 .runBare({QStringLiteral("--url"), QStringLiteral("http://127.0.0.1:1"),
                           QStringLiteral("ls")})
                 .exitCode,
             5);
}

void TestVelldocProgram::helpKnowsEveryCommand()
{
    VelldocWorld world;
    const QStringList lines = world.succeed({QStringLiteral("help")}).lines();
    QStringList names;
    for (const QString &line : lines) {
        const auto match = QRegularExpression(QStringLiteral("^  ([a-z]+)  ")).match(line);
        if (match.hasMatch())
            names.append(match.captured(1));
    }
    QVERIFY2(names.size() > 30, qPrintable(names.join(QLatin1Char(' '))));
    const QString manual = QString::fromUtf8(VelldocWorld::read(QStringLiteral(VELLDOC_MANUAL)));
    const QRegularExpression option(QStringLiteral("--([a-z-]+)"));
    for (const QString &name : qAsConst(names)) {
        const QString help = world.succeed({QStringLiteral("help"), name}).out;
        QVERIFY2(help.startsWith(QStringLiteral("velldoc ") + name), qPrintable(help));
        QCOMPARE(world.succeed({name, QStringLiteral("--help")}).out, help);
        QVERIFY2(manual.contains(QStringLiteral("\n.SS ") + name), qPrintable(name));
        for (auto it = option.globalMatch(help); it.hasNext();) {
            const QString word =
                it.next().captured(1).replace(QLatin1Char('-'), QLatin1String("\\-"));
            QVERIFY2(manual.contains(QStringLiteral("\\-\\-") + word), qPrintable(word));
        }
    }
    QVERIFY(world.succeed({QStringLiteral("--version")}).out.startsWith(QLatin1String("velldoc ")));
}

void TestVelldocProgram::chineseSpeaksChinese()
{
    VelldocWorld world;
    world.environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("zh_CN.UTF-8"));
    world.succeed(
        {QStringLiteral("put"), world.write(QStringLiteral("a.dwg"), "1"), QStringLiteral("/")});
    const QString list = world.succeed({QStringLiteral("ls"), QStringLiteral("-l")}).out;
    QVERIFY2(list.startsWith(QStringLiteral("类型  大小  修改时间")), qPrintable(list));
    QVERIFY2(list.contains(QStringLiteral("图纸")), qPrintable(list));
    const VelldocRun missing = world.run({QStringLiteral("info"), QStringLiteral("/x")});
    QCOMPARE(missing.error,
             QStringLiteral("velldoc: 项目中没有 /x：用“velldoc ls /”查看已有的内容。\n"));
    FaultRule full;
    full.kind = FaultRule::Kind::NoRoom;
    full.verb = "POST";
    full.times = 0;
    world.service().addFault(full);
    world.write(QStringLiteral("b"), "2");
    QCOMPARE(
        world.runLine("put b /").error,
        QStringLiteral(
            "velldoc: 服务端空间已满：请先在服务端腾出空间。再次运行同一命令会从这里继续。\n"));
}

QTEST_GUILESS_MAIN(TestVelldocProgram)
#include "tst_velldoc_program.moc"
