#include "VelldocWorld.h"

#include <QProcess>
#include <QTest>

class TestVelldocPipes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fullDiskIsSaid();
    void readerWhoHasEnoughIsNoFailure_data();
    void readerWhoHasEnoughIsNoFailure();
};

void TestVelldocPipes::fullDiskIsSaid()
{
    VelldocWorld world;
    QProcess shell;
    shell.setProcessEnvironment(world.environment);
    shell.start(
        QStringLiteral("sh"),
        {QStringLiteral("-c"), QStringLiteral("\"$0\" help > /dev/full"), VelldocWorld::program()});
    QVERIFY(shell.waitForFinished());
    QCOMPARE(shell.exitCode(), 1);
    QCOMPARE(shell.readAllStandardError(),
             QByteArray("velldoc: The output could not be written.\n"));
}

void TestVelldocPipes::readerWhoHasEnoughIsNoFailure_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("text") << "help";
    QTest::newRow("content") << "cat /big /big";
    QTest::newRow("content of get") << "get /big -";
}

void TestVelldocPipes::readerWhoHasEnoughIsNoFailure()
{
    QFETCH(const QString, command);
    VelldocWorld world;
    world.writeUnequalBlocks("big", 3'000'000);
    world.succeedLine("put big /");
    QProcess shell;
    shell.setProcessEnvironment(world.environment);
    const QString script =
        QString("mkfifo \"$1\"; { read go < \"$1\"; \"$0\" --url \"$2\" %1; echo $? >&2; } | "
                "{ exec 0<&-; echo go > \"$1\"; }")
            .arg(command);
    shell.start("sh", {"-c", script, VelldocWorld::program(), world.path("fifo"), world.baseApi()});
    QVERIFY(shell.waitForFinished());
    QCOMPARE(shell.readAllStandardError(), QByteArray("0\n"));
}

QTEST_GUILESS_MAIN(TestVelldocPipes)
#include "tst_velldoc_pipes.moc"
