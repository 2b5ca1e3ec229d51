#include "VelldocWorld.h"

#include <QFileInfo>
#include <QProcess>
#include <QTest>

class TestVelldocCompletion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wordsAreCompleted_data();
    void wordsAreCompleted();
    void nothingIsSaidWithoutAService();

private:
    static QStringList complete(VelldocWorld &world, const QStringList &words);
};

//! What bash would offer for the last of \a words.
QStringList TestVelldocCompletion::complete(VelldocWorld &world, const QStringList &words)
{
    const QString script =
        QStringLiteral("source \"$0\"; COMP_WORDS=(velldoc \"$@\"); COMP_CWORD=$#; _velldoc; "
                       "printf '%s\\n' \"${COMPREPLY[@]}\"");
    QProcess bash;
    QProcessEnvironment environment = world.environment;
    environment.insert(QStringLiteral("PATH"),
                       QFileInfo(VelldocWorld::program()).path() + QLatin1Char(':')
                           + environment.value(QStringLiteral("PATH")));
    bash.setProcessEnvironment(environment);
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

QTEST_GUILESS_MAIN(TestVelldocCompletion)
#include "tst_velldoc_completion.moc"
