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
    QTest::newRow("blank") << QStringList{QStringLiteral("ls"),
                                          QStringLiteral("/Drawings/Level\\ 1/")}
                           << QStringList{QStringLiteral("/Drawings/Level 1/图 纸.dwg")};
    QTest::newRow("quoted") << QStringList{QStringLiteral("ls"),
                                           QStringLiteral("'/Drawings/Level 1/图")}
                            << QStringList{QStringLiteral("/Drawings/Level 1/图 纸.dwg")};
    QTest::newRow("actions") << QStringList{QStringLiteral("trash"), QStringLiteral("re")}
                             << QStringList{QStringLiteral("restore")};
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
