#include "VelldocWorld.h"

#include <QProcess>
#include <QTest>

class TestVelldocPipes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fullDiskIsSaid();
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

void TestVelldocPipes::readerWhoHasEnoughIsNoFailure()
{
    VelldocWorld world;
    QProcess shell;
    shell.setProcessEnvironment(world.environment);
    const QString script =
        QStringLiteral("mkfifo \"$1\"; { read go < \"$1\"; \"$0\" help; echo $? >&2; } | "
                       "{ exec 0<&-; echo go > \"$1\"; }");
    shell.start(QStringLiteral("sh"),
                {QStringLiteral("-c"), script, VelldocWorld::program(),
                 world.path(QStringLiteral("fifo"))});
    QVERIFY(shell.waitForFinished());
    QCOMPARE(shell.readAllStandardError(), QByteArray("0\n"));
}

QTEST_GUILESS_MAIN(TestVelldocPipes)
#include "tst_velldoc_pipes.moc"
