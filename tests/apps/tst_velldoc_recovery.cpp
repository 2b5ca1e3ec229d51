#include "VelldocWorld.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QProcess>
#include <QTest>

namespace {

//! Whether the service has a file of at least \a bytes, whole or not.
bool isHeld(const VelldocWorld &world, qint64 bytes)
{
    QDirIterator it(world.path(QStringLiteral("service")), QDir::Files,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        if (it.fileInfo().size() >= bytes)
            return true;
    }
    return false;
}

} // namespace

class TestVelldocRecovery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void uploadSurvivesFaults_data();
    void uploadSurvivesFaults();
    void updateWhoseReplyIsLostIsMadeOnce();
    void uploadGivesUpAndSaysWhy_data();
    void uploadGivesUpAndSaysWhy();
    void attemptsAreThoseOfTheOption();
    void chunkThatIsNeverKeptEndsTheUpload();
    void fileThatChangesMeanwhileIsSentAgain_data();
    void fileThatChangesMeanwhileIsSentAgain();
#ifndef Q_OS_WIN // where a file that is open stays
    void fileThatVanishesMeanwhileIsNamed();
#endif
    void manySmallFilesComeBack();
    void largeFolderComesBack();

private:
    static FaultRule fault(const char *specification);
};

FaultRule TestVelldocRecovery::fault(const char *specification)
{
    FaultRule rule;
    QString error;
    if (!FaultRule::parse(QString::fromLatin1(specification), &rule, &error))
        qFatal("%s", qPrintable(error));
    return rule;
}

void TestVelldocRecovery::uploadSurvivesFaults_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QByteArray>("specification");
    const qint64 small = 100'000;
    const qint64 large = 20'000'000;
    QTest::newRow("small: reply to the file lost")
        << small << QByteArray("lose-reply,verb=POST,path=/base-service/files");
    QTest::newRow("small: reply to the document lost")
        << small << QByteArray("lose-reply,verb=POST,path=/document-service/projects");
    QTest::newRow("small: connection lost on the way")
        << small << QByteArray("drop-after=5000,verb=POST,times=2");
    QTest::newRow("small: not available") << small << QByteArray("status=503,verb=POST,times=3");
    QTest::newRow("small: reply cut short")
        << small << QByteArray("cut-reply=5,verb=POST,path=/document-service");
    QTest::newRow("large: reply to a chunk lost")
        << large << QByteArray("lose-reply,verb=POST,path=/base-service/largefiles,nth=2");
    QTest::newRow("large: connection lost on the way")
        << large
        << QByteArray("drop-after=100000,verb=POST,path=/base-service/largefiles,nth=3,times=2");
    QTest::newRow("large: chunks forgotten")
        << large
        << QByteArray("forget-chunk,verb=POST,path=/base-service/largefiles,nth=2,times=3");
    QTest::newRow("large: reply to the last chunk lost")
        << large << QByteArray("lose-reply,verb=POST,path=/base-service/largefiles,nth=5");
    QTest::newRow("large: reply to the document lost")
        << large << QByteArray("lose-reply,verb=POST,path=/document-service/projects");
}

void TestVelldocRecovery::uploadSurvivesFaults()
{
    QFETCH(qint64, bytes);
    QFETCH(QByteArray, specification);
    VelldocWorld world;
    const QString local = world.writeUnequalBlocks(QStringLiteral("f"), bytes);
    world.service().addFault(fault(specification.constData()));
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    world.service().clearFaults();
    // Once, and whole.
    QCOMPARE(world.succeed({QStringLiteral("ls")}).out, QStringLiteral("f\n"));
    world.succeed({QStringLiteral("get"), QStringLiteral("/f"), QStringLiteral("back")});
    QVERIFY(VelldocWorld::read(world.path(QStringLiteral("back"))) == VelldocWorld::read(local));
}

void TestVelldocRecovery::updateWhoseReplyIsLostIsMadeOnce()
{
    VelldocWorld world;
    const QString local = world.write(QStringLiteral("f"), "one");
    world.succeed({QStringLiteral("put"), local, QStringLiteral("/")});
    world.write(QStringLiteral("f"), "two");
    world.service().addFault(fault("lose-reply,verb=PUT,path=/document-service/documents"));
    world.succeed({QStringLiteral("put"), QStringLiteral("-u"), local, QStringLiteral("/")});
    const VelldocRun run =
        world.succeed({QStringLiteral("history"), QStringLiteral("--json"), QStringLiteral("/f")});
    QCOMPARE(run.result().value(QLatin1String("versions")).toArray().size(), 2);
}

void TestVelldocRecovery::uploadGivesUpAndSaysWhy_data()
{
    QTest::addColumn<QByteArray>("specification");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("no room") << QByteArray("no-room,verb=POST,times=0") << 1
                             << QStringLiteral(": free some space there");
    QTest::newRow("refused") << QByteArray("status=400,verb=POST,times=0") << 1
                             << QStringLiteral("told to refuse this request");
    QTest::newRow("not allowed") << QByteArray("status=403,verb=POST,times=0") << 4
                                 << QStringLiteral("told to refuse this request");
}

void TestVelldocRecovery::uploadGivesUpAndSaysWhy()
{
    QFETCH(QByteArray, specification);
    QFETCH(QString, sentence);
    VelldocWorld world;
    world.service().addFault(fault(specification.constData()));
    QElapsedTimer clock;
    clock.start();
    const VelldocRun run = world.run(
        {QStringLiteral("put"), world.write(QStringLiteral("f"), "1"), QStringLiteral("/")});
    QTEST(run.exitCode, "exitCode");
    QVERIFY2(run.error.contains(sentence), qPrintable(run.error));
    QVERIFY2(clock.elapsed() < 5000, "it was tried again although that could not help");
}

void TestVelldocRecovery::attemptsAreThoseOfTheOption()
{
    VelldocWorld world;
    FaultRule busy;
    busy.kind = FaultRule::Kind::Status;
    busy.value = 503;
    busy.verb = "POST";
    busy.times = 0;
    world.service().addFault(busy);
    world.write(QStringLiteral("a"), "1");
    const VelldocRun once = world.runLine("put --retries 1 a /");
    QCOMPARE(once.exitCode, 1);
    QCOMPARE(once.error.count(QLatin1String("Trying again.")), 0);
    QVERIFY(world.runLine("put --retries 3 a /").error.contains(QLatin1String("Trying again.")));
}

void TestVelldocRecovery::chunkThatIsNeverKeptEndsTheUpload()
{
    VelldocWorld world;
    const QString local = world.writeUnequalBlocks(QStringLiteral("f"), 12'000'000);
    world.service().addFault(
        fault("forget-chunk,verb=POST,path=/base-service/largefiles,nth=2,times=0"));
    const VelldocRun run = world.run({QStringLiteral("put"), local, QStringLiteral("/")});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.error.contains(QLatin1String("ended without a result")), qPrintable(run.error));
}

void TestVelldocRecovery::fileThatChangesMeanwhileIsSentAgain_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<qint64>("heldBytes"); // by the service when the file changes
    QTest::addColumn<QByteArray>("specification");
    QTest::newRow("small") << Q_INT64_C(5'000'000) << Q_INT64_C(5'000'000)
                           << QByteArray("slow=500,verb=POST,path=/base-service/files");
    QTest::newRow("large") << Q_INT64_C(40'000'000) << Q_INT64_C(4'194'304)
                           << QByteArray(
                                  "slow=200,verb=POST,path=/base-service/largefiles,times=4");
}

void TestVelldocRecovery::fileThatChangesMeanwhileIsSentAgain()
{
    QFETCH(qint64, bytes);
    QFETCH(qint64, heldBytes);
    QFETCH(QByteArray, specification);
    VelldocWorld world;
    const QString local = world.writeUnequalBlocks(QStringLiteral("f"), bytes);
    world.service().addFault(fault(specification.constData()));
    QProcess process;
    process.setProcessEnvironment(world.environment);
    process.start(VelldocWorld::program(),
                  {QStringLiteral("--url"), world.baseApi(), QStringLiteral("put"), local,
                   QStringLiteral("/")});
    QTRY_VERIFY_WITH_TIMEOUT(isHeld(world, heldBytes), 20'000);
    QFile file(local);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.seek(bytes - 1000));
    file.write("something else");
    file.close();
    QVERIFY(process.waitForFinished(60'000));
    QVERIFY2(process.exitCode() == 0, process.readAllStandardError().constData());
    QCOMPARE(world.succeed({QStringLiteral("ls")}).out, QStringLiteral("f\n"));
    world.succeed({QStringLiteral("get"), QStringLiteral("/f"), QStringLiteral("back")});
    QVERIFY(VelldocWorld::read(world.path(QStringLiteral("back"))) == VelldocWorld::read(local));
}

#ifndef Q_OS_WIN
void TestVelldocRecovery::fileThatVanishesMeanwhileIsNamed()
{
    VelldocWorld world;
    const QString first = world.writeUnequalBlocks(QStringLiteral("first"), 20'000'000);
    const QString second = world.writeUnequalBlocks(QStringLiteral("second"), 20'000'001);
    world.service().addFault(fault("slow=300,verb=POST,path=/base-service/largefiles,times=3"));
    QProcess process;
    process.setProcessEnvironment(world.environment);
    process.start(VelldocWorld::program(),
                  {QStringLiteral("--url"), world.baseApi(), QStringLiteral("put"), first, second,
                   QStringLiteral("/")});
    QTRY_VERIFY_WITH_TIMEOUT(isHeld(world, 4'194'304), 20'000);
    QVERIFY(QFile::remove(second));
    QVERIFY(process.waitForFinished(20'000));
    QCOMPARE(process.exitCode(), 1);
    const QByteArray error = process.readAllStandardError();
    QVERIFY2(error.contains("second was not stored: The file no longer exists.\n"),
             error.constData());
    QCOMPARE(world.succeed({QStringLiteral("ls")}).out, QStringLiteral("first\n"));
}
#endif

void TestVelldocRecovery::manySmallFilesComeBack()
{
    VelldocWorld world;
    for (int i = 0; i < 2000; ++i)
        world.write(QStringLiteral("many/%1/f%2").arg(i % 10).arg(i), QByteArray::number(i));
    world.succeed({QStringLiteral("put"), QStringLiteral("many"), QStringLiteral("/")});
    world.succeed({QStringLiteral("get"), QStringLiteral("-r"), QStringLiteral("/many"),
                   QStringLiteral("back")});
    const QMap<QString, QByteArray> back = VelldocWorld::tree(world.path(QStringLiteral("back")));
    QCOMPARE(back.size(), 2010);
    QVERIFY(back == VelldocWorld::tree(world.path(QStringLiteral("many"))));
}

void TestVelldocRecovery::largeFolderComesBack()
{
    constexpr qint64 MiB = 1'048'576;
    VelldocWorld world;
    QStringList names{QStringLiteral("one large"), QStringLiteral("below/another")};
    world.writeUnequalBlocks(QStringLiteral("big/") + names.at(0), 180 * MiB + 12'345);
    world.writeUnequalBlocks(QStringLiteral("big/") + names.at(1), 70 * MiB);
    for (int i = 0; i < 10; ++i) {
        names.append(QStringLiteral("below/small %1").arg(i));
        world.writeUnequalBlocks(QStringLiteral("big/") + names.constLast(), 5 * MiB + i);
    }
    world.succeed({QStringLiteral("put"), QStringLiteral("big"), QStringLiteral("/")});
    world.succeed({QStringLiteral("get"), QStringLiteral("-r"), QStringLiteral("/big"),
                   QStringLiteral("back")});
    qint64 bytes = 0;
    for (const QString &name : qAsConst(names)) {
        QFile one(world.path(QStringLiteral("big/") + name));
        QFile two(world.path(QStringLiteral("back/") + name));
        QVERIFY(one.open(QIODevice::ReadOnly) && two.open(QIODevice::ReadOnly));
        QCOMPARE(two.size(), one.size());
        bytes += one.size();
        while (!one.atEnd())
            QVERIFY(one.read(4'000'000) == two.read(4'000'000));
    }
    QVERIFY(bytes >= 300 * MiB);
}

QTEST_GUILESS_MAIN(TestVelldocRecovery)
#include "tst_velldoc_recovery.moc"
