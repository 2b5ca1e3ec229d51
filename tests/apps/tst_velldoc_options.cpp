#include "RunningVelldoc.h"

#include <support/FaultyProxy.h>

#include <QElapsedTimer>
#include <QTest>

//! The options of all commands that move contents or print rows.
class TestVelldocOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void soManySmallFilesAreSentAtOnce();
    void limitHoldsBackWhatIsTransferred_data();
    void limitHoldsBackWhatIsTransferred();
    void columnThatIsNotThereIsNamed_data();
    void columnThatIsNotThereIsNamed();
    void columnThatNoRowFillsIsEmpty();
};

void TestVelldocOptions::soManySmallFilesAreSentAtOnce()
{
    VelldocWorld world;
    FaultRule stall;
    stall.kind = FaultRule::Kind::Stall;
    stall.times = 0;
    stall.pathPrefix = "/base-service/files";
    world.service().addFault(stall);
    for (int i = 0; i < 12; ++i)
        world.write(QString("site/%1").arg(i), QByteArray::number(i));
    FaultyProxy proxy(world.service().port());
    int uploads = 0;
    connect(&proxy, &FaultyProxy::requestStarted, this, [&](const ProxiedRequest &request) {
        uploads += request.target.startsWith("/base-service/files") ? 1 : 0;
    });
    const QByteArray line = "put --url " + proxy.baseApi().toLatin1() + " --transfers 7 site /";
    const RunningVelldoc put(world, line.constData());
    QTRY_COMPARE_WITH_TIMEOUT(uploads, 7, 20000);
    QTest::qWait(200);
    QCOMPARE(uploads, 7);
}

void TestVelldocOptions::limitHoldsBackWhatIsTransferred_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("put") << QByteArray("put --bwlimit 1M big /2");
    QTest::newRow("get") << QByteArray("get --bwlimit 1M /big back");
}

void TestVelldocOptions::limitHoldsBackWhatIsTransferred()
{
    QFETCH(const QByteArray, line);
    VelldocWorld world;
    world.writeUnequalBlocks("big", 10'000'000);
    world.succeedLine("put big /big");
    QElapsedTimer clock;
    clock.start();
    world.succeedLine(line.constData());
    // The first seconds are not exact.
    constexpr int LeastMs = 3000;
    QVERIFY2(clock.elapsed() > LeastMs, qPrintable(QString::number(clock.elapsed())));
}

void TestVelldocOptions::columnThatIsNotThereIsNamed_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("message");
    QTest::newRow("list") << QByteArray("ls --output csv --columns size,nme / --sort name")
                          << "The result has no column \"nme\". Did you mean name?";
    QTest::newRow("not a list") << QByteArray("can --output tsv --columns right / upload")
                                << "The result has no column \"right\". Did you mean rights?";
    QTest::newRow("unlike all") << QByteArray("ls --output table --columns wxyz /")
                                << "The result has no column \"wxyz\".";
}

void TestVelldocOptions::columnThatIsNotThereIsNamed()
{
    QFETCH(const QByteArray, line);
    QFETCH(const QString, message);
    VelldocWorld world;
    world.write("a", "1");
    world.succeedLine("put a /");
    const VelldocRun run = world.runLine(line.constData());
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.out, QString());
    QVERIFY2(run.error.contains(message), qPrintable(run.error));
}

void TestVelldocOptions::columnThatNoRowFillsIsEmpty()
{
    VelldocWorld world;
    world.succeedLine("mkdir /d");
    QCOMPARE(world.succeedLine("ls --output csv --columns name,size /").out,
             QString("name,size\nd,\n"));
    QCOMPARE(world.succeedLine("ls --output csv --columns name,nme /d").out, QString("name,nme\n"));
}

QTEST_GUILESS_MAIN(TestVelldocOptions)
#include "tst_velldoc_options.moc"
