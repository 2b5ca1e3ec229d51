#include "RunningVelldoc.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTest>

namespace {

void slowDown(VelldocWorld &world, const char *path, int milliseconds)
{
    FaultRule slow;
    slow.kind = FaultRule::Kind::Slow;
    slow.value = milliseconds;
    slow.pathPrefix = QString::fromLatin1(path);
    slow.times = 0;
    world.service().addFault(slow);
}

qint64 partBytes(const QString &folder)
{
    QDirIterator it(folder, {QStringLiteral(".vell-*.part")}, QDir::Files | QDir::Hidden);
    return it.hasNext() ? QFileInfo(it.next()).size() : 0;
}

} // namespace

//! The same command typed again.
class TestVelldocAgain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storedFolderIsNotNested();
    void storedFolderGoesOnAfterAKill();
    void folderThatSomebodyElseHasMadeIsGoneInto();
    void fetchedFolderGoesOnAfterAKill();
    void unchangedFileMakesNoVersion();
    void renamedFileIsNotStoredTwice();
    void equalFileIsNoConflict();
    void largeDownloadGoesOnWithinTheFile();
    void partOfAnotherFileIsNotTaken();
};

void TestVelldocAgain::storedFolderIsNotNested()
{
    VelldocWorld world;
    world.write(QStringLiteral("site/a"), "1");
    world.write(QStringLiteral("site/below/b"), "2");
    world.succeedLine("put site /new");
    const VelldocRun again = world.succeedLine("put site /new");
    QVERIFY2(again.error.contains(QLatin1String("2 files already existed.")),
             qPrintable(again.error));
    QCOMPARE(world.succeedLine("ls /new --sort name").out, QStringLiteral("a\nbelow/\n"));
    world.succeedLine("put site /new/");
    QCOMPARE(world.succeedLine("ls /new/site --sort name").out, QStringLiteral("a\nbelow/\n"));
}

void TestVelldocAgain::storedFolderGoesOnAfterAKill()
{
    VelldocWorld world;
    for (int i = 0; i < 60; ++i)
        world.write(QStringLiteral("site/%1").arg(i), QByteArray::number(i));
    slowDown(world, "/base-service/files", 500);
    {
        RunningVelldoc put(world, "put site /new");
        QTRY_VERIFY_WITH_TIMEOUT(world.runLine("ls /new").lines().size() > 5, 20000);
    }
    world.service().clearFaults();
    QVERIFY(world.runLine("ls /new").lines().size() < 60);
    const VelldocRun again = world.succeedLine("put site /new");
    QVERIFY2(again.error.contains(QLatin1String("already existed.")), qPrintable(again.error));
    world.succeedLine("get -r /new back");
    QCOMPARE(VelldocWorld::tree(world.path(QStringLiteral("back"))),
             VelldocWorld::tree(world.path(QStringLiteral("site"))));
}

void TestVelldocAgain::folderThatSomebodyElseHasMadeIsGoneInto()
{
    VelldocWorld world;
    world.write(QStringLiteral("site/a"), "1");
    world.succeedLine("put site /new");
    world.succeedLine("rm -r /new");
    world.succeedLine("mkdir /new");
    world.succeedLine("put site /new");
    QCOMPARE(world.succeedLine("ls /new").out, QStringLiteral("site/\n"));
}

void TestVelldocAgain::fetchedFolderGoesOnAfterAKill()
{
    VelldocWorld world;
    for (int i = 0; i < 60; ++i)
        world.write(QStringLiteral("site/%1").arg(i), QByteArray::number(i));
    world.succeedLine("put site /");
    slowDown(world, "/base-service/files", 50);
    const QDir back(world.path(QStringLiteral("back")));
    {
        RunningVelldoc get(world, "get -r /site back");
        QTRY_VERIFY_WITH_TIMEOUT(back.entryList(QDir::Files).size() > 5, 20000);
    }
    world.service().clearFaults();
    const VelldocRun again = world.succeedLine("get -r /site back");
    QVERIFY2(again.error.contains(QLatin1String("already existed.")), qPrintable(again.error));
    QCOMPARE(back.entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 60);
}

void TestVelldocAgain::unchangedFileMakesNoVersion()
{
    VelldocWorld world;
    world.write(QStringLiteral("a"), "1");
    world.succeedLine("put a /");
    const VelldocRun run = world.succeedLine("put -u a /");
    QVERIFY2(run.error.contains(QLatin1String("0 files stored")), qPrintable(run.error));
    const QJsonObject history = world.succeedLine("history --json /a").result();
    QCOMPARE(history.value(QLatin1String("versions")).toArray().size(), 1);
}

void TestVelldocAgain::renamedFileIsNotStoredTwice()
{
    VelldocWorld world;
    world.write(QStringLiteral("a.txt"), "1");
    world.succeedLine("put a.txt /");
    world.write(QStringLiteral("a.txt"), "2");
    world.succeedLine("put --on-conflict rename a.txt /");
    world.succeedLine("put --on-conflict rename a.txt /");
    QCOMPARE(world.succeedLine("ls --sort name").out, QStringLiteral("a(2).txt\na.txt\n"));
}

void TestVelldocAgain::equalFileIsNoConflict()
{
    VelldocWorld world;
    world.write(QStringLiteral("a"), "1");
    world.write(QStringLiteral("empty"), "");
    world.succeedLine("put a empty /");
    world.succeedLine("put a empty /");
    world.succeedLine("get /a /empty .");
    world.write(QStringLiteral("a"), "2");
    QCOMPARE(world.runLine("put a empty /").exitCode, 1);
    QCOMPARE(world.runLine("get /a .").exitCode, 1);
}

void TestVelldocAgain::largeDownloadGoesOnWithinTheFile()
{
    constexpr qint64 Bytes = 40000000;
    VelldocWorld world;
    const QString local = world.writeUnequalBlocks(QStringLiteral("big"), Bytes);
    world.succeedLine("put big /");
    QVERIFY(QFile::remove(local));
    {
        RunningVelldoc get(world, "get --bwlimit 8M /big");
        QTRY_VERIFY_WITH_TIMEOUT(partBytes(world.path(QString())) > Bytes / 4, 20000);
    }
    const qint64 held = partBytes(world.path(QString()));
    QVERIFY(held > 0 && held < Bytes);
    world.succeedLine("get --log-file log /big");
    const QString log = QString::fromUtf8(VelldocWorld::read(world.path(QStringLiteral("log"))));
    const QRegularExpression form(
        QStringLiteral("/files/\\S+ (\\d+), \\d+ bytes sent, (\\d+) rec"));
    const QRegularExpressionMatch match = form.match(log);
    QVERIFY2(match.hasMatch(), qPrintable(log));
    QCOMPARE(match.captured(1), QStringLiteral("206"));
    QCOMPARE(match.captured(2).toLongLong(), Bytes - held);
    QCOMPARE(partBytes(world.path(QString())), Q_INT64_C(0));
    const QString copy = world.writeUnequalBlocks(QStringLiteral("copy"), Bytes);
    QVERIFY(VelldocWorld::read(local) == VelldocWorld::read(copy));
}

void TestVelldocAgain::partOfAnotherFileIsNotTaken()
{
    constexpr qint64 Bytes = 40000000;
    VelldocWorld world;
    const QString local = world.writeUnequalBlocks(QStringLiteral("big"), Bytes);
    world.succeedLine("put big /");
    {
        RunningVelldoc get(world, "get --bwlimit 8M /big back");
        QTRY_VERIFY_WITH_TIMEOUT(partBytes(world.path(QString())) > Bytes / 4, 20000);
    }
    QFile file(local);
    QVERIFY(file.open(QIODevice::ReadWrite));
    file.write("another beginning");
    file.close();
    world.succeedLine("put -u big /");
    world.succeedLine("get /big back");
    QVERIFY(VelldocWorld::read(world.path(QStringLiteral("back"))) == VelldocWorld::read(local));
}

QTEST_GUILESS_MAIN(TestVelldocAgain)
#include "tst_velldoc_again.moc"
