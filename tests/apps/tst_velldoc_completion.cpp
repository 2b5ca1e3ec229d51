#include "PtyProcess.h"
#include "VelldocWorld.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QProcess>
#include <QTest>

class TestVelldocCompletion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wordsAreCompleted_data();
    void wordsAreCompleted();
    void nothingIsSaidWithoutAService();
    void scriptIsPrinted();
    void fishCompletes_data();
    void fishCompletes();
    void zshCompletes_data();
    void zshCompletes();
    void lineInAShellNamesTheFolder_data();
    void lineInAShellNamesTheFolder();

private:
    static QProcessEnvironment environment(const VelldocWorld &world);
    static QStringList complete(VelldocWorld &world, const QStringList &words);
};

//! In which a shell finds velldoc.
QProcessEnvironment TestVelldocCompletion::environment(const VelldocWorld &world)
{
    QProcessEnvironment environment = world.environment;
    environment.insert(QStringLiteral("PATH"),
                       QFileInfo(VelldocWorld::program()).path() + QLatin1Char(':')
                           + environment.value(QStringLiteral("PATH")));
    return environment;
}

//! What bash would offer for the last of \a words.
QStringList TestVelldocCompletion::complete(VelldocWorld &world, const QStringList &words)
{
    const QString script =
        QStringLiteral("source \"$0\"; COMP_WORDS=(velldoc \"$@\"); COMP_CWORD=$#; "
                       "COMP_LINE=\"velldoc $*\"; _velldoc; printf '%s\\n' \"${COMPREPLY[@]}\"");
    QProcess bash;
    bash.setProcessEnvironment(environment(world));
    bash.start(QStringLiteral("bash"),
               QStringList{QStringLiteral("-c"), script, QStringLiteral(VELLDOC_COMPLETION)}
                   + words);
    bash.waitForFinished();
    return QString::fromUtf8(bash.readAllStandardOutput())
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void TestVelldocCompletion::wordsAreCompleted_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QStringList>("offers");
    QTest::newRow("commands") << QStringList{QStringLiteral("mk")}
                              << QStringList{QStringLiteral("mkdir")};
    QTest::newRow("options") << QStringList{QStringLiteral("ls"), QStringLiteral("--rev")}
                             << QStringList{QStringLiteral("--reverse")};
    QTest::newRow("top level") << QStringList{QStringLiteral("ls"), QStringLiteral("/D")}
                               << QStringList{QStringLiteral("/Drawings/")};
    QTest::newRow("without the slash") << QStringList{QStringLiteral("ls"), QStringLiteral("Dra")}
                                       << QStringList{QStringLiteral("Drawings/")};
    QTest::newRow("not what folders contain") << VelldocWorld::words("ls /Drawings/")
                                              << QStringList{QStringLiteral("/Drawings/Level 1/")};
    QTest::newRow("blank") << QStringList{QStringLiteral("ls"),
                                          QStringLiteral("/Drawings/Level\\ 1/")}
                           << QStringList{QStringLiteral("/Drawings/Level 1/图 纸.dwg")};
    QTest::newRow("quoted") << QStringList{QStringLiteral("ls"),
                                           QStringLiteral("'/Drawings/Level 1/图")}
                            << QStringList{QStringLiteral("/Drawings/Level 1/图 纸.dwg")};
    QTest::newRow("actions") << QStringList{QStringLiteral("trash"), QStringLiteral("re")}
                             << QStringList{QStringLiteral("restore")};
    QTest::newRow("values") << VelldocWorld::words("find --kind im")
                            << QStringList{QStringLiteral("image")};
    QTest::newRow("values behind a sign")
        << VelldocWorld::words("find --kind=im") << QStringList{QStringLiteral("image")};
    QTest::newRow("conflicts") << VelldocWorld::words("put --on-conflict re")
                               << VelldocWorld::words("replace rename");
    QTest::newRow("rights") << VelldocWorld::words("can / up")
                            << QStringList{QStringLiteral("upload")};
    QTest::newRow("recycle bin") << VelldocWorld::words("trash restore go")
                                 << QStringList{QStringLiteral("gone")};
    QTest::newRow("recycle bin, for good")
        << VelldocWorld::words("trash purge go") << QStringList{QStringLiteral("gone")};
    QTest::newRow("directions") << VelldocWorld::words("sync d")
                                << QStringList{QStringLiteral("down")};
    QTest::newRow("path behind a direction")
        << VelldocWorld::words("sync down /D") << QStringList{QStringLiteral("/Drawings/")};
    QTest::newRow("path behind an action")
        << VelldocWorld::words("fav add /D") << QStringList{QStringLiteral("/Drawings/")};
    QTest::newRow("setting") << VelldocWorld::words("config set proj")
                             << QStringList{QStringLiteral("project")};
    QTest::newRow("shells") << VelldocWorld::words("completion z")
                            << QStringList{QStringLiteral("zsh")};
    QTest::newRow("no paths for a number") << VelldocWorld::words("ls --limit /D") << QStringList();
    QTest::newRow("local files") << VelldocWorld::words("put /etc/hostn")
                                 << QStringList{QStringLiteral("/etc/hostname")};
    QTest::newRow("help") << QStringList{QStringLiteral("help"), QStringLiteral("hist")}
                          << QStringList{QStringLiteral("history")};
    QTest::newRow("nothing fits") << QStringList{QStringLiteral("ls"), QStringLiteral("/nothing/x")}
                                  << QStringList();
}

void TestVelldocCompletion::wordsAreCompleted()
{
    VelldocWorld world;
    world.succeed(
        {QStringLiteral("mkdir"), QStringLiteral("-p"), QStringLiteral("/Drawings/Level 1")});
    world.succeed({QStringLiteral("put"), world.write(QStringLiteral("图 纸.dwg"), "1"),
                   QStringLiteral("/Drawings/Level 1")});
    world.succeedLine("mkdir /gone");
    world.succeedLine("rm -r /gone");
    QFETCH(QStringList, words);
    QTEST(complete(world, QStringList{QStringLiteral("--url"), world.baseApi()} + words), "offers");
}

void TestVelldocCompletion::nothingIsSaidWithoutAService()
{
    VelldocWorld world;
    QCOMPARE(complete(world,
                      {QStringLiteral("--url"), QStringLiteral("http://127.0.0.1:1"),
                       QStringLiteral("ls"), QStringLiteral("/")}),
             QStringList());
}

void TestVelldocCompletion::scriptIsPrinted()
{
    VelldocWorld world;
    QCOMPARE(world.succeedLine("completion bash").bytes,
             VelldocWorld::read(QStringLiteral(VELLDOC_COMPLETION)));
    QCOMPARE(world.runLine("completion cmd").exitCode, 2);
}

void TestVelldocCompletion::fishCompletes_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("offers");
    QTest::newRow("command") << QStringLiteral("velldoc mkd")
                             << QStringLiteral("mkdir\tcreate folders\n");
    QTest::newRow("value") << QStringLiteral("velldoc find --kind im") << QStringLiteral("image\n");
    QTest::newRow("path") << QStringLiteral("velldoc ls /Lev") << QStringLiteral("/Level 1/\n");
}

void TestVelldocCompletion::fishCompletes()
{
    QFETCH(QString, line);
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/Level 1")});
    QProcessEnvironment variables = environment(world);
    variables.insert(QStringLiteral("VELLDOC_URL"), world.baseApi());
    QProcess fish;
    fish.setProcessEnvironment(variables);
    fish.start(QStringLiteral("fish"),
               {QStringLiteral("-c"),
                QStringLiteral("velldoc completion fish | source; complete -C \"$argv[1]\""),
                line});
    QVERIFY(fish.waitForFinished());
    QTEST(QString::fromUtf8(fish.readAllStandardOutput()), "offers");
}

void TestVelldocCompletion::zshCompletes_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::newRow("path") << QByteArray("velldoc ls /Lev\t");
    QTest::newRow("command and path") << QByteArray("velldoc t"
                                                    "re\t /Lev\t");
    QTest::newRow("option") << QByteArray("velldoc ls --recurs\t /Lev\t");
}

void TestVelldocCompletion::zshCompletes()
{
    QFETCH(QByteArray, typed);
    VelldocWorld world;
    world.succeed(
        {QStringLiteral("mkdir"), QStringLiteral("-p"), QStringLiteral("/Level 1/found")});
    QProcessEnvironment variables = environment(world);
    variables.insert(QStringLiteral("VELLDOC_URL"), world.baseApi());
    variables.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    PtyProcess zsh(200);
    zsh.setProcessEnvironment(variables);
    zsh.start(QStringLiteral("zsh"), {QStringLiteral("-f"), QStringLiteral("-i")});
    zsh.press("autoload -Uz compinit; compinit -D -u; source <(velldoc completion zsh) && echo "
              "read''y\n");
    QVERIFY2(zsh.waitForText("ready"), zsh.output().constData());
    zsh.press(typed);
    zsh.press("\n");
    QVERIFY2(zsh.waitForText("found/\r\n"), zsh.output().constData());
}

void TestVelldocCompletion::lineInAShellNamesTheFolder_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::newRow("blank") << QByteArray("/Lev");
    QTest::newRow("blank in quotes") << QByteArray("\"/Level");
    QTest::newRow("blank, escaped") << QByteArray("/Level\\ ");
    QTest::newRow("apostrophe") << QByteArray("/It");
    QTest::newRow("apostrophe in apostrophes") << QByteArray("'/It");
    QTest::newRow("quotes") << QByteArray("/Say");
    QTest::newRow("quotes in quotes") << QByteArray("'/Say");
    QTest::newRow("Chinese") << QByteArray("/图");
    QTest::newRow("Chinese in quotes") << QByteArray("\"/图");
    QTest::newRow("colon to come") << QByteArray("/x");
    QTest::newRow("colon") << QByteArray("/x:y");
    QTest::newRow("signs of the shell") << QByteArray("/R");
    QTest::newRow("identifier") << QByteArray("id:%1/Low");
}

void TestVelldocCompletion::lineInAShellNamesTheFolder()
{
    QFETCH(QByteArray, typed);
    VelldocWorld world;
    const QStringList names{QStringLiteral("Level 1"),    QStringLiteral("It's"),
                            QStringLiteral("Say \"so\""), QStringLiteral("图 纸"),
                            QStringLiteral("x:y=z"),      QStringLiteral("R&D; #1 100% (+)")};
    for (const QString &name : names)
        world.succeed({QStringLiteral("mkdir"), QStringLiteral("-p"),
                       name + QLatin1String("/Low er/found"), name + QLatin1String("/found")});
    const QString id =
        world.succeed({QStringLiteral("info"), QStringLiteral("--json"), QStringLiteral("/It's")})
            .result()
            .value(QLatin1String("documents"))
            .toArray()
            .at(0)
            .toObject()
            .value(QLatin1String("id"))
            .toString();
    typed.replace("%1", id.toLatin1());

    QProcessEnvironment variables = environment(world);
    variables.insert(QStringLiteral("VELLDOC_URL"), world.baseApi());
    variables.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    PtyProcess bash(200);
    bash.setProcessEnvironment(variables);
    bash.start(QStringLiteral("bash"),
               {QStringLiteral("--norc"), QStringLiteral("--noprofile"), QStringLiteral("-i")});
    bash.press("source '" VELLDOC_COMPLETION "' && echo read''y\n");
    QVERIFY2(bash.waitForText("ready"), bash.output().constData());
    bash.press("velldoc ls " + typed + '\t');
    bash.press("\n");
    QVERIFY2(bash.waitForText("found/\r\n"), bash.output().constData());
}

QTEST_GUILESS_MAIN(TestVelldocCompletion)
#include "tst_velldoc_completion.moc"
