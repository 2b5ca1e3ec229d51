#include "VelldocWorld.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <windows.h>

namespace {

//! Keeps a file as a program does that lets nobody else have it.
class ExclusiveFile
{
public:
    explicit ExclusiveFile(const QString &path)
        : m_handle(
            CreateFileW(reinterpret_cast<const wchar_t *>(QDir::toNativeSeparators(path).utf16()),
                        GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr))
    {
        if (m_handle == INVALID_HANDLE_VALUE)
            qFatal("%s cannot be kept", qPrintable(path));
    }
    ~ExclusiveFile() { CloseHandle(m_handle); }
    Q_DISABLE_COPY(ExclusiveFile)

private:
    HANDLE m_handle;
};

} // namespace

class TestVelldocWindows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutAServiceItSaysHowToStartOne_data();
    void withoutAServiceItSaysHowToStartOne();
    void localPathsAreThoseOfWindows_data();
    void localPathsAreThoseOfWindows();
    void longPathsGoUpAndComeBack();
    void fileThatIsOpenElsewhereIsNamed();
    void fileThatIsOpenElsewhereIsNotReplaced();
    void shortcutIsStoredAsItIs();
    void shortcutToAFolderIsNotFollowed();
    void namesThatWindowsCannotHaveAreRefused_data();
    void namesThatWindowsCannotHaveAreRefused();
    void namesThatDifferInCaseAreOneFile();
};

void TestVelldocWindows::withoutAServiceItSaysHowToStartOne_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("ls") << QStringLiteral("ls");
    QTest::newRow("serve") << QStringLiteral("serve");
}

void TestVelldocWindows::withoutAServiceItSaysHowToStartOne()
{
    QFETCH(QString, command);
    VelldocWorld world;
    const VelldocRun run = world.runBare({command});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.out, QString());
    QVERIFY2(run.error.contains(QLatin1String("pass the address of one with --url"))
                 && run.error.contains(QLatin1String("\"vell-service --data DIR\"")),
             qPrintable(run.error));
}

void TestVelldocWindows::localPathsAreThoseOfWindows_data()
{
    QTest::addColumn<QString>("path"); // %1 stands for the folder with its drive
    QTest::newRow("drive and backslashes") << QStringLiteral("%1\\up\\图纸 1.dwg");
    QTest::newRow("drive and slashes") << QStringLiteral("%1/up/图纸 1.dwg");
    QTest::newRow("relative") << QStringLiteral("up\\图纸 1.dwg");
    QTest::newRow("up and down") << QStringLiteral(".\\up\\..\\up\\图纸 1.dwg");
    QTest::newRow("in another case") << QStringLiteral("UP\\图纸 1.DWG");
}

void TestVelldocWindows::localPathsAreThoseOfWindows()
{
    QFETCH(QString, path);
    VelldocWorld world;
    world.write(QStringLiteral("up/图纸 1.dwg"), "content");
    const QString folder = QDir::toNativeSeparators(QDir(world.path(QString())).absolutePath());
    const QString local = path.contains(QLatin1String("%1")) ? path.arg(folder) : path;
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    const QString name = QFileInfo(local).fileName();
    QCOMPARE(world.succeed({QStringLiteral("ls")}).out, name + QLatin1Char('\n'));
    world.succeed(
        {QStringLiteral("get"), QLatin1Char('/') + name, folder + QLatin1String("\\down")});
    QCOMPARE(VelldocWorld::read(world.path(QStringLiteral("down"))), QByteArray("content"));
}

void TestVelldocWindows::longPathsGoUpAndComeBack()
{
    VelldocWorld world;
    QString folder = QStringLiteral("up");
    for (int depth = 0; depth < 4; ++depth)
        folder += QLatin1Char('/') + QString(100, QLatin1Char('d'));
    const QString local = world.write(folder + QStringLiteral("/图.dwg"), "content");
    QVERIFY(local.size() > MAX_PATH);
    world.succeed({QStringLiteral("put"), QStringLiteral("up"), QStringLiteral("/")});
    world.succeed({QStringLiteral("get"), QStringLiteral("-r"), QStringLiteral("/up"),
                   world.path(QStringLiteral("down"))});
    QCOMPARE(VelldocWorld::read(world.path(QString(folder).replace(0, 2, QStringLiteral("down"))
                                           + QStringLiteral("/图.dwg"))),
             QByteArray("content"));
}

void TestVelldocWindows::fileThatIsOpenElsewhereIsNamed()
{
    VelldocWorld world;
    world.write(QStringLiteral("d/free.dwg"), "1");
    const ExclusiveFile kept(world.write(QStringLiteral("d/kept.dwg"), "2"));
    const VelldocRun run =
        world.run({QStringLiteral("put"), QStringLiteral("d"), QStringLiteral("/")});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.error.contains(QLatin1String("kept.dwg")), qPrintable(run.error));
    QCOMPARE(world.succeed({QStringLiteral("ls"), QStringLiteral("/d")}).out,
             QStringLiteral("free.dwg\n"));
}

void TestVelldocWindows::fileThatIsOpenElsewhereIsNotReplaced()
{
    VelldocWorld world;
    world.succeed(
        {QStringLiteral("put"), world.write(QStringLiteral("a"), "new"), QStringLiteral("/")});
    const QString target = world.write(QStringLiteral("down/a"), "old");
    {
        const ExclusiveFile kept(target);
        const VelldocRun run = world.run(
            {QStringLiteral("get"), QStringLiteral("--force"), QStringLiteral("/a"), target});
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.error.contains(QLatin1String("down/a")), qPrintable(run.error));
    }
    QCOMPARE(VelldocWorld::read(target), QByteArray("old"));
    QCOMPARE(QDir(world.path(QStringLiteral("down"))).entryList(QDir::Files).size(), 1);
}

void TestVelldocWindows::shortcutIsStoredAsItIs()
{
    VelldocWorld world;
    const QString real = world.write(QStringLiteral("real.dwg"), QByteArray(5000, 'x'));
    const QString link = world.path(QStringLiteral("to real.dwg.lnk"));
    QVERIFY(QFile::link(real, link));
    world.succeed({QStringLiteral("put"), link, QStringLiteral("/")});
    world.succeed({QStringLiteral("get"), QStringLiteral("/to real.dwg.lnk"),
                   world.path(QStringLiteral("down"))});
    const QByteArray content = VelldocWorld::read(world.path(QStringLiteral("down")));
    QVERIFY(!content.isEmpty());
    QCOMPARE(content, VelldocWorld::read(link));
}

void TestVelldocWindows::shortcutToAFolderIsNotFollowed()
{
    VelldocWorld world;
    world.write(QStringLiteral("d/a"), "1");
    QVERIFY(QFile::link(world.path(QStringLiteral("d")), world.path(QStringLiteral("d/to d.lnk"))));
    const VelldocRun run =
        world.run({QStringLiteral("put"), QStringLiteral("d"), QStringLiteral("/")});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.error.contains(QLatin1String("it is a link to a folder")), qPrintable(run.error));
    QCOMPARE(world.succeed({QStringLiteral("ls"), QStringLiteral("/d")}).out,
             QStringLiteral("a\n"));
}

void TestVelldocWindows::namesThatWindowsCannotHaveAreRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("device") << QStringLiteral("NUL.dwg");
    QTest::newRow("colon") << QStringLiteral("a:b");
    QTest::newRow("blank at the end") << QStringLiteral("a ");
}

void TestVelldocWindows::namesThatWindowsCannotHaveAreRefused()
{
    QFETCH(QString, name);
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("local"), "content");
    world.succeed({QStringLiteral("put"), local, QLatin1Char('/') + name});
    const VelldocRun run = world.run({QStringLiteral("get"), QStringLiteral("-r"),
                                      QStringLiteral("/"), world.path(QStringLiteral("down"))});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.error.contains(QLatin1String("the name is not valid for a local file")),
             qPrintable(run.error));
    QVERIFY(QDir(world.path(QStringLiteral("down"))).isEmpty());
    // Under another name it can be had.
    world.succeed(
        {QStringLiteral("get"), QLatin1Char('/') + name, world.path(QStringLiteral("other"))});
    QCOMPARE(VelldocWorld::read(world.path(QStringLiteral("other"))), QByteArray("content"));
}

void TestVelldocWindows::namesThatDifferInCaseAreOneFile()
{
    VelldocWorld world;
    for (const char *const name : {"/Plan", "/plan"}) {
        const QString local = world.write(QStringLiteral("local"), name);
        world.succeed({QStringLiteral("put"), local, QString::fromLatin1(name)});
    }
    const VelldocRun run = world.run({QStringLiteral("get"), QStringLiteral("-r"),
                                      QStringLiteral("/"), world.path(QStringLiteral("down"))});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.error.contains(QLatin1String("there are several documents with this name")),
             qPrintable(run.error));
}

QTEST_GUILESS_MAIN(TestVelldocWindows)
#include "tst_velldoc_windows.moc"
