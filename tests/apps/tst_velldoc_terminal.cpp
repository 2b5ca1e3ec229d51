#include "PtyProcess.h"
#include "VelldocWorld.h"

#include <velldoc/output/DisplayWidth.h>

#include <QFileInfo>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

class TestVelldocTerminal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void conflictIsAskedAbout_data();
    void conflictIsAskedAbout();
    void wrongAnswerIsExplained();
    void capitalLetterAnswersForAllTheFollowing();
    void endOfInputIsCancel();
    void interruptedQuestionSendsNothing();
    void interruptedDownloadSaysHowToGoOn();
    void progressStaysWithinTheLineAndEndsWithAll_data();
    void progressStaysWithinTheLineAndEndsWithAll();
    void interruptedUploadSaysHowToGoOnAndGoesOn();
    void tableFitsTheTerminal_data();
    void tableFitsTheTerminal();
    void colourIsForTerminalsOnly_data();
    void colourIsForTerminalsOnly();
    void textsAreWrappedBetweenWords_data();
    void textsAreWrappedBetweenWords();
    void emptyingTheBinIsAskedAbout();
    void emptyBinIsNotAskedAbout();
    void tokenIsNotShown();
    void tokenIsNotShownAfterAStop();

private:
    static void start(PtyProcess &process, VelldocWorld &world, const QStringList &arguments);
};

void TestVelldocTerminal::start(PtyProcess &process, VelldocWorld &world,
                                const QStringList &arguments)
{
    QProcessEnvironment environment = world.environment;
    environment.insert(QStringLiteral("TERM"), QStringLiteral("xterm"));
    environment.remove(QStringLiteral("COLUMNS"));
    process.setProcessEnvironment(environment);
    process.start(VelldocWorld::program(),
                  QStringList{QStringLiteral("--url"), world.baseApi()} + arguments);
}

void TestVelldocTerminal::conflictIsAskedAbout_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("names");
    QTest::addColumn<QString>("content");
    const QString one = QStringLiteral("a.txt\n");
    QTest::newRow("replace") << QByteArray("r\n") << 0 << one << QStringLiteral("new");
    QTest::newRow("rename") << QByteArray("n\n") << 0 << QStringLiteral("a(2).txt\na.txt\n")
                            << QStringLiteral("old");
    QTest::newRow("skip") << QByteArray("s\n") << 0 << one << QStringLiteral("old");
    QTest::newRow("cancel") << QByteArray("c\n") << 1 << one << QStringLiteral("old");
    QTest::newRow("nonsense is asked again")
        << QByteArray("x\n\nyes\nr\n") << 0 << one << QStringLiteral("new");
}

void TestVelldocTerminal::conflictIsAskedAbout()
{
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("a.txt"), "old");
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    world.write(QStringLiteral("a.txt"), "new");
    PtyProcess process;
    start(process, world, {QStringLiteral("put"), local, QStringLiteral("/")});
    QVERIFY2(process.waitForText("store the file as a(2).txt"), process.output().constData());
    QFETCH(QByteArray, keys);
    process.press(keys);
    QTEST(process.waitForEnd(), "exitCode");
    QTEST(
        world.succeed({QStringLiteral("ls"), QStringLiteral("--sort"), QStringLiteral("name")}).out,
        "names");
    QTEST(world.succeed({QStringLiteral("get"), QStringLiteral("/a.txt"), QStringLiteral("-")}).out,
          "content");
}

void TestVelldocTerminal::wrongAnswerIsExplained()
{
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("a.txt"), "old");
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    world.write(QStringLiteral("a.txt"), "new");
    PtyProcess process(40);
    start(process, world, {QStringLiteral("put"), local, QStringLiteral("/")});
    process.press("x\n");
    QVERIFY2(process.waitForText("Press one of r, n, s, c, then Enter: "),
             process.output().constData());
    process.press("s\n");
    QCOMPARE(process.waitForEnd(), 0);
    QCOMPARE(process.output().count("already exists."), 1);
    QVERIFY2(!process.output().contains('%'), process.output().constData());
    QVERIFY2(
        process.output().contains("  r  replace it: store the file as\r\n     a new version\r\n"),
        process.output().constData());
}

void TestVelldocTerminal::capitalLetterAnswersForAllTheFollowing()
{
    VelldocWorld world;
    QStringList put{QStringLiteral("put")};
    for (const char *const name : {"a", "b", "c"})
        put.append(world.write(QString::fromLatin1(name), "old"));
    put.append(QStringLiteral("/"));
    world.succeed(put);
    for (const char *const name : {"a", "b", "c"})
        world.write(QString::fromLatin1(name), "new");
    PtyProcess process;
    start(process, world, put);
    QVERIFY(process.waitForText("A capital letter"));
    process.press("s\n");
    QVERIFY(process.waitForText("/b already exists"));
    process.press("N\n");
    QCOMPARE(process.waitForEnd(), 0);
    QVERIFY(!process.output().contains("/c already exists"));
    QCOMPARE(
        world.succeed({QStringLiteral("ls"), QStringLiteral("--sort"), QStringLiteral("name")}).out,
        QStringLiteral("a\nb\nb(2)\nc\nc(2)\n"));
}

void TestVelldocTerminal::endOfInputIsCancel()
{
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("a"), "old");
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    world.write(QStringLiteral("a"), "new");
    PtyProcess process;
    start(process, world, {QStringLiteral("put"), local, QStringLiteral("/")});
    QVERIFY(process.waitForText("A capital letter"));
    process.press("\x04");
    QCOMPARE(process.waitForEnd(), 1);
}

void TestVelldocTerminal::interruptedQuestionSendsNothing()
{
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("a"), "old");
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    world.write(QStringLiteral("a"), "new");
    PtyProcess process;
    start(process, world, {QStringLiteral("put"), local, QStringLiteral("/")});
    QVERIFY(process.waitForText("A capital letter"));
    process.press("\x03");
    QCOMPARE(process.waitForEnd(), 130);
    QVERIFY2(process.output().contains("Interrupted. No file was sent; the same command starts"),
             process.output().constData());
}

void TestVelldocTerminal::interruptedDownloadSaysHowToGoOn()
{
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("a"), "1");
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    FaultRule stall;
    stall.kind = FaultRule::Kind::Stall;
    stall.pathPrefix = QStringLiteral("/base-service/files");
    world.service().addFault(stall);
    PtyProcess process;
    const QString back = world.path(QStringLiteral("back"));
    start(process, world, {QStringLiteral("get"), QStringLiteral("/a"), back});
    QVERIFY2(process.waitForText("0 % 0 B of 1 B"), process.output().constData());
    process.press("\x03");
    QCOMPARE(process.waitForEnd(), 130);
    QVERIFY2(process.output().contains("The same command continues from here."),
             process.output().constData());
    QVERIFY(!QFileInfo::exists(back));
}

void TestVelldocTerminal::progressStaysWithinTheLineAndEndsWithAll_data()
{
    QTest::addColumn<int>("columns");
    for (const int columns : {40, 60, 80})
        QTest::newRow(qPrintable(QString::number(columns))) << columns;
}

void TestVelldocTerminal::progressStaysWithinTheLineAndEndsWithAll()
{
    QFETCH(int, columns);
    VelldocWorld world;
    const QString local =
        world.writeUnequalBlocks(QStringLiteral("图纸 a long name for a drawing.dwg"), 60'000'000);
    PtyProcess process(columns);
    start(process, world, {QStringLiteral("put"), local, QStringLiteral("/")});
    QCOMPARE(process.waitForEnd(), 0);
    const QString output = QString::fromUtf8(process.output()).remove(QStringLiteral("\x1b[K"));
    QVERIFY2(output.contains(QLatin1String("Checking ")), qPrintable(output));
    const QStringList lines = output.split(QRegularExpression(QStringLiteral("[\r\n]+")));
    const QRegularExpression percent(QStringLiteral("(\\d+) % (\\S+ \\S+) of"));
    int last = 0;
    for (const QString &line : lines) {
        // Ctrl-C is shown after it as "^C" and must not begin a new line.
        if (line.contains(QLatin1String(" % ")))
            QVERIFY2(velldoc::displayWidth(line) <= columns - 3, qPrintable(line));
        QVERIFY2(!line.endsWith(QChar(0x2026)), qPrintable(line));
        const QRegularExpressionMatch match = percent.match(line);
        if (!match.hasMatch())
            continue;
        last = match.captured(1).toInt();
        QVERIFY2(last <= 100, qPrintable(line));
    }
    QCOMPARE(last, 100);
    QVERIFY(output.contains(QLatin1String("1 file stored, 57 MiB.")));
}

void TestVelldocTerminal::interruptedUploadSaysHowToGoOnAndGoesOn()
{
    VelldocWorld world;
    const QString local = world.writeUnequalBlocks(QStringLiteral("big"), 100'000'000);
    world.slowDownChunks(50);
    PtyProcess process;
    start(process, world, {QStringLiteral("put"), local, QStringLiteral("/")});
    const QRegularExpression isSending(QStringLiteral("\rbig \\[[#.]+\\] +[2-6]\\d %"));
    QTRY_VERIFY_WITH_TIMEOUT(isSending.match(QString::fromUtf8(process.output())).hasMatch(),
                             20'000);
    process.press("\x03");
    QCOMPARE(process.waitForEnd(), 130);
    QVERIFY2(process.output().contains("The same command continues from here."),
             process.output().constData());
    QCOMPARE(world.succeed({QStringLiteral("ls")}).out, QString());
    world.service().clearFaults();

    // All chunks but those that are missing would be refused.
    FaultRule refuse;
    refuse.kind = FaultRule::Kind::Status;
    refuse.value = 400;
    refuse.verb = "POST";
    refuse.pathPrefix = QStringLiteral("/base-service/largefiles");
    refuse.nth = 23;
    world.service().addFault(refuse);
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    world.succeed({QStringLiteral("get"), QStringLiteral("/big"), QStringLiteral("back")});
    QVERIFY(VelldocWorld::read(world.path(QStringLiteral("back"))) == VelldocWorld::read(local));
}

void TestVelldocTerminal::tableFitsTheTerminal_data()
{
    QTest::addColumn<int>("columns");
    for (const int columns : {30, 40, 50, 100})
        QTest::newRow(qPrintable(QString::number(columns))) << columns;
}

void TestVelldocTerminal::tableFitsTheTerminal()
{
    QFETCH(int, columns);
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/") + QString(60, QChar(0x56FE))});
    PtyProcess process(columns);
    start(process, world, {QStringLiteral("ls"), QStringLiteral("-l")});
    QCOMPARE(process.waitForEnd(), 0);
    const QString output = QString::fromUtf8(process.output())
                               .remove(QRegularExpression(QStringLiteral("\x1b\\[[0-9;]*[mK]")));
    const QStringList lines = output.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 2);
    for (const QString &line : lines)
        QVERIFY2(velldoc::displayWidth(line) <= columns, qPrintable(line));
    QVERIFY(lines.at(1).endsWith(QChar(0x2026)));
}

void TestVelldocTerminal::colourIsForTerminalsOnly_data()
{
    QTest::addColumn<QString>("noColor");
    QTest::addColumn<bool>("isColoured");
    QTest::newRow("terminal") << QString() << true;
    QTest::newRow("NO_COLOR is set") << QStringLiteral("1") << false;
}

void TestVelldocTerminal::colourIsForTerminalsOnly()
{
    VelldocWorld world;
    QFETCH(QString, noColor);
    if (noColor.isEmpty())
        world.environment.remove(QStringLiteral("NO_COLOR"));
    else
        world.environment.insert(QStringLiteral("NO_COLOR"), noColor);
    PtyProcess process;
    start(process, world, {QStringLiteral("help")});
    QCOMPARE(process.waitForEnd(), 0);
    QTEST(process.output().contains('\x1b'), "isColoured");
    QVERIFY(!world.succeed({QStringLiteral("help")}).out.contains(QLatin1Char('\x1b')));
}

void TestVelldocTerminal::textsAreWrappedBetweenWords_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QByteArray>("shown");
    QTest::newRow("error") << QStringLiteral("ls /nothing")
                           << QByteArray("There is no /nothing in the\r\nproject: ");
    QTest::newRow("note") << QStringLiteral("find word")
                          << QByteArray("Nothing was found. The whole name must\r\nmatch: ");
    QTest::newRow("option") << QStringLiteral(
        "help put") << QByteArray("  --transfers N\r\n      Number of small files that are\r\n");
    QTest::newRow("field") << QStringLiteral("info /a")
                           << QByteArray("delete-self,\r\n            download");
}

void TestVelldocTerminal::textsAreWrappedBetweenWords()
{
    QFETCH(QString, line);
    QFETCH(QByteArray, shown);
    VelldocWorld world;
    world.succeedLine("mkdir /a");
    PtyProcess process(40);
    start(process, world, line.split(QLatin1Char(' ')));
    process.waitForEnd();
    QVERIFY2(process.output().contains(shown), process.output().constData());
}

void TestVelldocTerminal::emptyBinIsNotAskedAbout()
{
    VelldocWorld world;
    PtyProcess process;
    start(process, world, {QStringLiteral("trash"), QStringLiteral("empty")});
    QVERIFY2(process.waitForText("The recycle bin is empty."), process.output().constData());
    QCOMPARE(process.waitForEnd(), 0);
}

void TestVelldocTerminal::emptyingTheBinIsAskedAbout()
{
    VelldocWorld world;
    world.succeed({QStringLiteral("mkdir"), QStringLiteral("/a")});
    world.succeed({QStringLiteral("rm"), QStringLiteral("-r"), QStringLiteral("/a")});
    PtyProcess no;
    start(no, world, {QStringLiteral("trash"), QStringLiteral("empty")});
    QVERIFY(no.waitForText("[y/N]"));
    no.press("\n");
    QCOMPARE(no.waitForEnd(), 1);
    QCOMPARE(world.succeed({QStringLiteral("trash")}).out, QStringLiteral("/a/\n"));
    PtyProcess yes;
    start(yes, world, {QStringLiteral("trash"), QStringLiteral("empty")});
    QVERIFY(yes.waitForText("[y/N]"));
    yes.press("y\n");
    QCOMPARE(yes.waitForEnd(), 0);
    QCOMPARE(world.succeed({QStringLiteral("trash")}).out, QString());
}

void TestVelldocTerminal::tokenIsNotShown()
{
    VelldocWorld world;
    const QString token = world.service().addUser(QStringLiteral("vera"));
    QVERIFY(world.service().addProject(QStringLiteral("p"), QStringLiteral("P")));
    QVERIFY(world.service().setRole(QStringLiteral("p"), QStringLiteral("vera"),
                                    QStringLiteral("viewer")));
    PtyProcess process;
    start(process, world,
          {QStringLiteral("login"), QStringLiteral("--project"), QStringLiteral("p")});
    QVERIFY(process.waitForText("Access token"));
    process.press(token.toLatin1() + '\n');
    QCOMPARE(process.waitForEnd(), 0);
    QVERIFY(!process.output().contains(token.toLatin1()));
    QVERIFY(process.output().contains("velldoc now uses"));
}

//! As after Ctrl-Z and "fg": the shell has given the terminal its own modes meanwhile.
void TestVelldocTerminal::tokenIsNotShownAfterAStop()
{
    VelldocWorld world;
    PtyProcess process;
    start(process, world, {QStringLiteral("login")});
    QVERIFY(process.waitForText("Access token"));
    const QByteArray terminal = "/proc/" + QByteArray::number(process.processId()) + "/fd/0";
    const int fd = open(terminal.constData(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    QVERIFY(fd >= 0);
    const auto closing = qScopeGuard([fd] { close(fd); });
    const pid_t pid = pid_t(process.processId());
    QCOMPARE(kill(pid, SIGSTOP), 0);
    termios modes = {};
    QCOMPARE(tcgetattr(fd, &modes), 0);
    modes.c_lflag |= tcflag_t(ECHO);
    QCOMPARE(tcsetattr(fd, TCSANOW, &modes), 0);
    QCOMPARE(kill(pid, SIGCONT), 0);
    const auto echoes = [fd] {
        termios now = {};
        return tcgetattr(fd, &now) != 0 || (now.c_lflag & tcflag_t(ECHO)) != 0;
    };
    QTRY_VERIFY(!echoes());
    process.press("secret\n");
    process.waitForEnd();
    QVERIFY(!process.output().contains("secret"));
}

QTEST_GUILESS_MAIN(TestVelldocTerminal)
#include "tst_velldoc_terminal.moc"
