#include <service/ServiceFixture.h>

#include <QFile>
#include <QProcess>
#include <QtTest>

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
    ServiceFixture fixture;
    QVERIFY(fixture.isStarted);
    QVERIFY(fixture.service->port() != 0);
    QCOMPARE(fixture.service->baseApi(),
             QStringLiteral("http://127.0.0.1:%1/").arg(fixture.service->port()));
    const HttpAnswer answer = fixture.client.get(QStringLiteral("base-service/me"));
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.object().value(QStringLiteral("name")).toString(), QStringLiteral("local"));
    fixture.service->stop();
    QCOMPARE(fixture.service->baseApi(), QString());
    QCOMPARE(fixture.client.get(QStringLiteral("base-service/me")).status, 0);
}

void TestServiceStart::severalInstancesRunInOneProcess()
{
    ServiceFixture first;
    ServiceFixture second;
    QVERIFY(first.isStarted && second.isStarted);
    QVERIFY(!first.makeFolder(QStringLiteral("only here")).isEmpty());
    QCOMPARE(first.names({}), QStringList{QStringLiteral("only here")});
    QCOMPARE(second.names({}), QStringList());
}

void TestServiceStart::aDataFolderIsNeverShared()
{
    ServiceFixture fixture;
    ServiceOptions options;
    options.dataDir = fixture.folder.path() + QStringLiteral("/data");
    ReferenceService second(options);
    QString error;
    QVERIFY(!second.start(&error));
    QVERIFY2(error.contains(QStringLiteral("Another service")), qUtf8Printable(error));
    fixture.service->stop();
    QVERIFY2(second.start(&error), qUtf8Printable(error));
}

void TestServiceStart::whatWasStoredIsThereAfterARestart()
{
    ServiceFixture fixture;
    const QString id = fixture.makeFile(QStringLiteral("kept.txt"), {}, "kept content");
    QVERIFY(!id.isEmpty());
    QVERIFY(fixture.restart());
    const QString fileId = fixture.document(id).value(QStringLiteral("fileId")).toString();
    QCOMPARE(fixture.client.get(QStringLiteral("base-service/files/") + fileId).body,
             QByteArray("kept content"));
}

void TestServiceStart::aTakenPortIsRefused()
{
    ServiceFixture first;
    ServiceOptions options;
    options.port = first.service->port();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be listened on")));
    const ServiceFixture second(options);
    QVERIFY(!second.isStarted);
}

void TestServiceStart::otherAddressesNeedUsers()
{
    QTemporaryDir folder;
    ServiceOptions options;
    options.dataDir = folder.path();
    options.listenAddress = QStringLiteral("0.0.0.0");
    ReferenceService open(options);
    QString error;
    QVERIFY(!open.start(&error));
    QVERIFY2(error.contains(QStringLiteral("add a user first")), qUtf8Printable(error));

    options.listenAddress = QStringLiteral("127.0.0.1");
    {
        ReferenceService local(options);
        QVERIFY2(local.start(&error), qUtf8Printable(error));
        QVERIFY(!local.addUser(QStringLiteral("anna")).isEmpty());
    }
    options.listenAddress = QStringLiteral("0.0.0.0");
    ReferenceService guarded(options);
    QVERIFY2(guarded.start(&error), qUtf8Printable(error));
}

void TestServiceStart::stopEndsIdleConnectionsAtOnce()
{
    ServiceFixture fixture;
    QCOMPARE(fixture.client.get(QStringLiteral("base-service/me")).status, 200);
    QElapsedTimer clock;
    clock.start();
    fixture.service->stop();
    QVERIFY2(clock.elapsed() < 2000, qPrintable(QString::number(clock.elapsed())));
}

void TestServiceStart::anUnwritableFolderIsRefused()
{
    QTemporaryDir folder;
    QFile file(folder.path() + QStringLiteral("/plain file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    ServiceOptions options;
    options.dataDir = file.fileName() + QStringLiteral("/below");
    ReferenceService service(options);
    QString error;
    QVERIFY(!service.start(&error));
    QVERIFY2(error.contains(QStringLiteral("cannot be used")), qUtf8Printable(error));
}

void TestServiceStart::theAccessLogTellsNoSecrets()
{
    QTemporaryDir folder;
    ServiceOptions options;
    options.accessLog = folder.path() + QStringLiteral("/access.log");
    ServiceFixture fixture(options);
    const QString token = fixture.service->addUser(QStringLiteral("anna"));
    fixture.client.setToken(token);
    QCOMPARE(fixture.client.get(QStringLiteral("base-service/me")).status, 200);
    fixture.client.get(QStringLiteral("share/secret-code"));
    fixture.client.get(QStringLiteral("base-service/files/two%0Alines"));
    fixture.service->stop();

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
    const QString path = folder.filePath(QStringLiteral("access.log"));
    const QString rotated = folder.filePath(QStringLiteral("access.log.1"));
    const auto linesOf = [](const QString &name) {
        QFile log(name);
        return log.open(QIODevice::ReadOnly) ? log.readAll().count('\n') : -1;
    };
    QProcess service;
    service.start(QStringLiteral(VELL_SERVICE_PROGRAM),
                  {QStringLiteral("--data"), folder.filePath(QStringLiteral("data")),
                   QStringLiteral("--access-log"), path});
    QVERIFY(service.waitForReadyRead(20000));
    const QString line = QString::fromUtf8(service.readLine()).trimmed();
    HttpClient client(line.section(QLatin1Char(' '), -1));
    QCOMPARE(client.get(QStringLiteral("base-service/me")).status, 200);
    QVERIFY(QFile::rename(path, rotated));
    QCOMPARE(client.get(QStringLiteral("base-service/me")).status, 200);
    QCOMPARE(linesOf(rotated), 2);
    QCOMPARE(::kill(static_cast<pid_t>(service.processId()), SIGHUP), 0);
    QTRY_VERIFY(QFile::exists(path));
    QCOMPARE(client.get(QStringLiteral("base-service/me")).status, 200);
    QCOMPARE(linesOf(path), 1);
    QCOMPARE(linesOf(rotated), 2);
    service.terminate();
    QVERIFY(service.waitForFinished(20000));
    QCOMPARE(service.exitCode(), 0);
}

QTEST_GUILESS_MAIN(TestServiceStart)
#include "tst_service_start.moc"
