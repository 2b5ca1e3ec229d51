#include "VelldocWorld.h"

#include <QDir>
#include <QJsonDocument>
#include <QProcess>
#include <QTest>

class TestVelldocEmbedded : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void embeddedServiceWorksWithNothingSetUp();
    void serveIsUsedByOthers();
    void serveTellsItsAddressAsJson();
    void lockedFolderIsSaid();
};

void TestVelldocEmbedded::embeddedServiceWorksWithNothingSetUp()
{
    VelldocWorld world;
    const VelldocRun made = world.runBare({QStringLiteral("mkdir"), QStringLiteral("/a")});
    QVERIFY2(made.exitCode == 0, qPrintable(made.error));
    QCOMPARE(world.runBare({QStringLiteral("ls")}).out, QStringLiteral("a/\n"));
    QVERIFY(QDir(world.path(QStringLiteral("home/.local/share/velldoc"))).exists());
}

void TestVelldocEmbedded::serveIsUsedByOthers()
{
    VelldocWorld world;
    QCOMPARE(world.runBare({QStringLiteral("mkdir"), QStringLiteral("/before")}).exitCode, 0);
    QProcess serve;
    serve.setProcessEnvironment(world.environment);
    serve.start(VelldocWorld::program(), {QStringLiteral("serve")});
    QTRY_VERIFY_WITH_TIMEOUT(serve.canReadLine(), 20'000);
    const QString address = QString::fromLatin1(serve.readLine()).trimmed();
    QCOMPARE(world.runBare({QStringLiteral("--url"), address, QStringLiteral("ls")}).out,
             QStringLiteral("before/\n"));
    // On the same data folder no address is needed.
    QCOMPARE(world.runBare({QStringLiteral("mkdir"), QStringLiteral("/after")}).exitCode, 0);
    serve.terminate();
    QVERIFY(serve.waitForFinished(20'000));
    QCOMPARE(serve.exitStatus(), QProcess::NormalExit);
    QCOMPARE(serve.exitCode(), 0);
    QCOMPARE(world.runBare({QStringLiteral("ls")}).lines().size(), 2);
    QCOMPARE(
        world.runBare({QStringLiteral("serve"), QStringLiteral("--listen"), QStringLiteral("x")})
            .exitCode,
        2);
}

void TestVelldocEmbedded::serveTellsItsAddressAsJson()
{
    VelldocWorld world;
    QProcess serve;
    serve.setProcessEnvironment(world.environment);
    serve.start(VelldocWorld::program(), {QStringLiteral("serve"), QStringLiteral("--json")});
    QTRY_VERIFY_WITH_TIMEOUT(serve.canReadLine(), 20'000);
    const QJsonObject json = QJsonDocument::fromJson(serve.readLine()).object();
    QCOMPARE(json.value(QLatin1String("ok")), QJsonValue(true));
    const QJsonObject result = json.value(QLatin1String("result")).toObject();
    QCOMPARE(result.value(QLatin1String("data")).toString(),
             world.path(QStringLiteral("home/.local/share/velldoc")));
    const QString address = result.value(QLatin1String("address")).toString();
    QCOMPARE(world.runBare({QStringLiteral("--url"), address, QStringLiteral("ls")}).exitCode, 0);
    serve.terminate();
    QVERIFY(serve.waitForFinished(20'000));
    QCOMPARE(serve.exitCode(), 0);
    QCOMPARE(serve.readAllStandardOutput(), QByteArray());
    QCOMPARE(serve.readAllStandardError(), QByteArray());
}

void TestVelldocEmbedded::lockedFolderIsSaid()
{
    VelldocWorld world;
    world.environment.insert(QStringLiteral("VELLDOC_DATA"), world.path(QStringLiteral("service")));
    const VelldocRun run = world.runBare({QStringLiteral("ls")});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.error.contains(QLatin1String("Another velldoc is using")), qPrintable(run.error));
}

QTEST_GUILESS_MAIN(TestVelldocEmbedded)
#include "tst_velldoc_embedded.moc"
