#include <service/ServiceWorld.h>

#include <QElapsedTimer>
#include <QFile>
#include <QIODevice>
#include <QProcess>
#include <QRegularExpression>
#include <QStringLiteral>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

//! Starting, stopping, and what the service refuses to start on.
class TestServiceStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void servesOnAFreeLoopbackPort();
    void severalInstancesRunInOneProcess();
    void aDataFolderIsNeverShared();
    void whatWasStoredIsThereAfterARestart();
    void aTakenPortIsRefused();
    void otherAddressesNeedUsers();
    void stopEndsIdleConnectionsAtOnce();
    void anUnwritableFolderIsRefused();
    void theAccessLogTellsNoSecrets();
    void aRotatedAccessLogIsReopened();
};

void TestServiceStart::servesOnAFreeLoopbackPort()
{
    ServiceWorld world;
    QVERIFY(world.isStarted);
    QVERIFY(world.service->port() != 0);
    QCOMPARE(world.service->baseApi(), QString("http://127.0.0.1:%1/").arg(world.service->port()));
    const HttpAnswer answer = world.client.get("base-service/me");
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.object().value("name").toString(), QString("local"));
    world.service->stop();
    QCOMPARE(world.service->baseApi(), QString());
    QCOMPARE(world.client.get("base-service/me").status, 0);
}

void TestServiceStart::severalInstancesRunInOneProcess()
{
    ServiceWorld first;
    ServiceWorld second;
    QVERIFY(first.isStarted && second.isStarted);
    QVERIFY(!first.makeFolder("only here").isEmpty());
    QCOMPARE(first.names({}), QStringList{"only here"});
    QCOMPARE(second.names({}), QStringList());
}

void TestServiceStart::aDataFolderIsNeverShared()
{
    ServiceWorld world;
    ServiceOptions options;
    options.dataDir = world.folder.path() + "/data";
    ReferenceService second(options);
    QString error;
    QVERIFY(!second.start(&error));
    QVERIFY2(error.contains("Another service"), qUtf8Printable(error));
    world.service->stop();
    QVERIFY2(second.start(&error), qUtf8Printable(error));
}

void TestServiceStart::whatWasStoredIsThereAfterARestart()
{
    ServiceWorld world;
    const QString id = world.makeFile("kept.txt", {}, "kept content");
    QVERIFY(!id.isEmpty());
    QVERIFY(world.restart());
    const QString fileId = world.document(id).value("fileId").toString();
    QCOMPARE(world.client.get(QString("base-service/files/") + fileId).body,
             QByteArray("kept content"));
}

void TestServiceStart::aTakenPortIsRefused()
{
    ServiceWorld first;
    ServiceOptions options;
    options.port = first.service->port();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot be listened on"));
    const ServiceWorld second(options);
    QVERIFY(!second.isStarted);
}

void TestServiceStart::otherAddressesNeedUsers()
{
    QTemporaryDir folder;
    ServiceOptions options;
    options.dataDir = folder.path();
    options.listenAddress = "0.0.0.0";
    ReferenceService open(options);
    QString error;
    QVERIFY(!open.start(&error));
    QVERIFY2(error.contains("add a user first"), qUtf8Printable(error));

    options.listenAddress = "127.0.0.1";
    {
        ReferenceService local(options);
        QVERIFY2(local.start(&error), qUtf8Printable(error));
        QVERIFY(!local.addUser("anna").isEmpty());
    }
    options.listenAddress = "0.0.0.0";
    ReferenceService guarded(options);
    QVERIFY2(guarded.start(&error), qUtf8Printable(error));
}

void TestServiceStart::stopEndsIdleConnectionsAtOnce()
{
    ServiceWorld world;
    QCOMPARE(world.client.get("base-service/me").status, 200);
    QElapsedTimer clock;
    clock.start();
    world.service->stop();
    QVERIFY2(clock.elapsed() < 2000, qPrintable(QString::number(clock.elapsed())));
}

void TestServiceStart::anUnwritableFolderIsRefused()
{
    QTemporaryDir folder;
    QFile file(folder.path() + "/plain file");
    QVERIFY(file.open(QIODevice::WriteOnly));
    ServiceOptions options;
    options.dataDir = file.fileName() + "/below";
    ReferenceService service(options);
    QString error;
    QVERIFY(!service.start(&error));
    QVERIFY2(error.contains("cannot be used"), qUtf8Printable(error));
}

void TestServiceStart::theAccessLogTellsNoSecrets()
{
    QTemporaryDir folder;
    ServiceOptions options;
    options.accessLog = folder.path() + "/access.log";
    ServiceWorld world(options);
    const QString token = world.service->addUser("anna");
    world.client.setToken(token);
    QCOMPARE(world.client.get("base-service/me").status, 200);
    world.client.get("share/secret-code");
    world.client.get("base-service/files/two%0Alines");
    world.service->stop();

    QFile log(options.accessLog);
    QVERIFY(log.open(QIODevice::ReadOnly));
    const QByteArray text = log.readAll();
    const QList<QByteArray> lines = text.trimmed().split('\n');
    QCOMPARE(lines.size(), 3);
    QVERIFY2(lines.first().contains(" anna GET /base-service/me 200 "), lines.first().constData());
    QVERIFY(!text.contains(token.toUtf8()));
    QVERIFY(!text.contains("secret-code"));
}

void TestServiceStart::aRotatedAccessLogIsReopened()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("access.log");
    const QString rotated = folder.filePath("access.log.1");
    const auto linesOf = [](const QString &name) {
        QFile log(name);
        return log.open(QIODevice::ReadOnly) ? log.readAll().count('\n') : -1;
    };
    QProcess service;
    service.start(QStringLiteral(VELL_SERVICE_PROGRAM),
                  {"--data", folder.filePath("data"), "--access-log", path});
    QVERIFY(service.waitForReadyRead(20000));
    const QString line = QString::fromUtf8(service.readLine()).trimmed();
    HttpClient client(line.section(QLatin1Char(' '), -1));
    QCOMPARE(client.get("base-service/me").status, 200);
    QVERIFY(QFile::rename(path, rotated));
    QCOMPARE(client.get("base-service/me").status, 200);
    QCOMPARE(linesOf(rotated), 2);
    QCOMPARE(::kill(static_cast<pid_t>(service.processId()), SIGHUP), 0);
    QTRY_VERIFY(QFile::exists(path));
    QCOMPARE(client.get("base-service/me").status, 200);
    QCOMPARE(linesOf(path), 1);
    QCOMPARE(linesOf(rotated), 2);
    service.terminate();
    QVERIFY(service.waitForFinished(20000));
    QCOMPARE(service.exitCode(), 0);
}

QTEST_GUILESS_MAIN(TestServiceStart)
#include "tst_service_start.moc"
