#include <service/ChunkSender.h>
#include <service/ServiceWorld.h>
#include <support/ServiceProcess.h>

#include <QDir>
#include <QFile>
#include <QIODevice>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

//! The program: its output, exit codes and commands.
class TestServiceCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void itSaysWhereItListensAndEndsCleanly();
    void linesThatCannotBeRead_data();
    void linesThatCannotBeRead();
    void aSecondServiceIsRefused();
    void usersProjectsAndRoles();
    void tokensAreRenewedAndRevoked();
    void sharesAreListedAndRevoked();
    void helpTellsAboutFaults();
    void faultsAreTaken();
    void theSweepRemovesWhatNobodyNeeds();
    void theSweepWorksBesideARunningService();
    void aCommandMakesNoDataFolderByMistake_data();
    void aCommandMakesNoDataFolderByMistake();

private:
    int run(const QStringList &arguments)
    {
        return ServiceProcess::run(arguments + QStringList{"--data", m_data}, &m_output);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_data;
    QString m_output;
};

void TestServiceCommandLine::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_data = m_folder->filePath("data");
}

void TestServiceCommandLine::itSaysWhereItListensAndEndsCleanly()
{
    ServiceProcess process(m_data);
    QVERIFY(process.start());
    QVERIFY(process.baseApi().startsWith("http://127.0.0.1:"));
    HttpClient client(process.baseApi());
    QCOMPARE(client.get("base-service/me").status, 200);
    QCOMPARE(process.terminate(), 0);
}

void TestServiceCommandLine::linesThatCannotBeRead_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("unknown command") << "explode";
    QTest::newRow("unknown option") << "--explode";
    QTest::newRow("no port") << "--listen 127.0.0.1";
    QTest::newRow("port that is none") << "--listen 127.0.0.1:99999";
    QTest::newRow("unknown fault") << "--fault explode";
    QTest::newRow("quota that is none") << "--quota much";
    QTest::newRow("user without a name") << "user add";
    QTest::newRow("unknown user command") << "user explode x";
    QTest::newRow("project without an id") << "project add";
    QTest::newRow("role without a role") << "role set p1 anna";
    QTest::newRow("share without an id") << "share revoke";
    QTest::newRow("proxy that is none") << "--trusted-proxy somebody";
    QTest::newRow("prefix without a slash") << "--path-prefix documents";
    QTest::newRow("no connections") << "--database-connections 0";
    QTest::newRow("drain that is no time") << "--drain soon";
    QTest::newRow("backup without a folder") << "backup";
    QTest::newRow("restore of two folders") << "restore a b";
    QTest::newRow("check with a word") << "check everything";
    QTest::newRow("accept with a word") << "accept it";
    QTest::newRow("copy without a target") << "copy";
    QTest::newRow("sweep with a word") << "sweep everything";
    QTest::newRow("sweep with no hours") << "sweep --older-than long";
}

void TestServiceCommandLine::linesThatCannotBeRead()
{
    QFETCH(QString, line);
    QCOMPARE(run(line.split(QLatin1Char(' '))), 2);
    QVERIFY2(m_output.startsWith("vell-service: "), qUtf8Printable(m_output));
    QCOMPARE(m_output.count(QLatin1Char('\n')), 1);
}

void TestServiceCommandLine::aSecondServiceIsRefused()
{
    ServiceProcess process(m_data);
    QVERIFY(process.start());
    QCOMPARE(run({}), 1);
    QVERIFY2(m_output.contains("Another service"), qUtf8Printable(m_output));
    m_data += "2";
    QCOMPARE(run({"--listen", "0.0.0.0:0"}), 1);
    QVERIFY2(m_output.contains("add a user first"), qUtf8Printable(m_output));
}

void TestServiceCommandLine::usersProjectsAndRoles()
{
    ServiceProcess process(m_data);
    QVERIFY(process.start()); // the commands work beside a running service
    QCOMPARE(run({"user", "add", "anna"}), 0);
    const QString token = m_output.trimmed();
    QCOMPARE(token.size(), 64);
    QCOMPARE(run({"user", "add", "anna"}), 1);
    QCOMPARE(run({"user", "list"}), 0);
    QVERIFY(m_output.trimmed().endsWith(" anna"));
    QCOMPARE(run({"project", "add", "p1", "--name", "First project"}), 0);
    QCOMPARE(run({"role", "set", "p1", "anna", "editor"}), 0);
    QCOMPARE(run({"role", "set", "p2", "anna", "editor"}), 1);

    HttpClient client(process.baseApi());
    QCOMPARE(client.get("base-service/me").status, 401);
    client.setToken(token);
    const QJsonObject me = client.get("base-service/me").object();
    const QJsonObject project = me.value("projects").toArray().at(0).toObject();
    QCOMPARE(project.value("name").toString(), QString("First project"));
    QCOMPARE(project.value("role").toString(), QString("editor"));
}

void TestServiceCommandLine::tokensAreRenewedAndRevoked()
{
    ServiceProcess process(m_data);
    QVERIFY(process.start());
    QCOMPARE(run({"user", "add", "anna"}), 0);
    const QString first = m_output.trimmed();
    QCOMPARE(run({"user", "token", "anna"}), 0);
    const QString second = m_output.trimmed();
    QVERIFY(second != first);
    HttpClient client(process.baseApi());
    const auto status = [&client](const QString &token) {
        client.setToken(token);
        return client.get("base-service/me").status;
    };
    QCOMPARE(status(first), 401);
    QCOMPARE(status(second), 200);
    QCOMPARE(run({"user", "revoke", "anna"}), 0);
    QCOMPARE(status(second), 401);
    QCOMPARE(run({"user", "token", "anna"}), 0); // the user is still there
    QCOMPARE(run({"user", "remove", "anna"}), 0);
    QCOMPARE(status(m_output.trimmed()), 401);
    QCOMPARE(run({"user", "token", "anna"}), 1);
    QCOMPARE(run({"user", "list"}), 0);
    QCOMPARE(m_output, QString());
}

void TestServiceCommandLine::sharesAreListedAndRevoked()
{
    ServiceWorld world;
    m_data = world.dataDir();
    const QString id = world.makeFile("plan.dwg");
    const QString code =
        world.client
            .post("document-service/documents/shares",
                  {{"hostId", "p1"}, {"documentIds", QJsonArray{id}}, {"allowDownload", false}})
            .object()
            .value("code")
            .toString();
    QVERIFY(!code.isEmpty());
    QCOMPARE(run({"share", "list", "--project", "p2"}), 0);
    QCOMPARE(m_output, QString());
    QCOMPARE(run({"share", "list"}), 0);
    QVERIFY2(m_output.endsWith("  p1  ends never  plan.dwg\n"), qUtf8Printable(m_output));
    QVERIFY2(!m_output.contains(code), "the list must not open the share");
    QCOMPARE(run({"share", "revoke", m_output.section(QLatin1Char(' '), 0, 0)}), 0);
    QCOMPARE(world.client.get("share/" + code).status, 404);
    QCOMPARE(run({"share", "revoke", "none"}), 1);
}

void TestServiceCommandLine::helpTellsAboutFaults()
{
    QCOMPARE(ServiceProcess::run({"--help"}, &m_output), 0);
    for (const char *word : {"--data", "--listen", "--fault", "--access-log", "lose-reply",
                             "drop-after", "forget-chunk", "no-room"})
        QVERIFY2(m_output.contains(QLatin1String(word)), word);
}

void TestServiceCommandLine::faultsAreTaken()
{
    ServiceProcess process(m_data);
    QVERIFY(
        process.start({"--fault", "status=503,times=1", "--fault", "status=500,nth=1,path=/x"}));
    HttpClient client(process.baseApi());
    QCOMPARE(client.get("base-service/me").status, 503);
    QCOMPARE(client.get("base-service/me").status, 200);
    QCOMPARE(client.get("x").status, 500);
}

void TestServiceCommandLine::theSweepRemovesWhatNobodyNeeds()
{
    ServiceWorld world;
    m_data = world.folder.path() + "/data";
    const QString kept = world.makeFile("kept", {}, "kept");
    world.upload("unused");
    const ChunkSender abandoned(2 * ChunkSender::ChunkBytes);
    QCOMPARE(abandoned.send(world.client, 0).status, 200);
    world.service->stop();
    QFile stray(m_data + "/content/stray");
    QVERIFY(stray.open(QIODevice::WriteOnly));
    stray.write("stray");
    stray.close();

    const QStringList sweep{"sweep", "--older-than"};
    QCOMPARE(run(sweep + QStringList{"1"}), 0);
    QVERIFY2(m_output.startsWith("removed 0 abandoned uploads and 0 unused contents"),
             qUtf8Printable(m_output));
    QCOMPARE(run(sweep + QStringList{"0", "--dry-run"}), 0);
    QCOMPARE(m_output,
             QString("would remove 1 abandoned uploads and 1 unused contents, move aside 1 "
                     "unknown files: 4194315 bytes\n"));
    QVERIFY(stray.exists());
    QCOMPARE(run(sweep + QStringList{"0"}), 0);
    QCOMPARE(m_output,
             QString("removed 1 abandoned uploads and 1 unused contents, moved aside 1 "
                     "unknown files: 4194315 bytes\n"));
    QVERIFY(!stray.exists());
    QCOMPARE(QDir(m_data + "/aside").entryList(QDir::Files).size(), 1);

    QVERIFY(world.restart());
    QCOMPARE(abandoned.record(world.client).status, 404);
    const QString fileId = world.document(kept).value("fileId").toString();
    QCOMPARE(world.client.get(QString("base-service/files/") + fileId).body, QByteArray("kept"));
}

void TestServiceCommandLine::theSweepWorksBesideARunningService()
{
    ServiceProcess process(m_data);
    QVERIFY(process.start());
    HttpClient client(process.baseApi());
    const ChunkSender going(2 * ChunkSender::ChunkBytes);
    QCOMPARE(going.send(client, 0).status, 200);
    const auto upload = [&client](const QByteArray &content) {
        return client.postForm("base-service/files", {{"file/f", content}});
    };
    QVERIFY(upload("unused").isSuccess());
    QCOMPARE(run({"sweep"}), 0);
    QVERIFY2(m_output.startsWith("removed 0"), qUtf8Printable(m_output));
    QCOMPARE(run({"sweep", "--older-than", "0"}), 0);
    QVERIFY2(m_output.startsWith("removed 1 abandoned uploads and 1 unused contents"),
             qUtf8Printable(m_output));
    // The service goes on with what is left.
    QCOMPARE(counters(going.sendAll(client)), QString("2/2"));
    QVERIFY(upload("unused").isSuccess());
}

void TestServiceCommandLine::aCommandMakesNoDataFolderByMistake_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("user list") << "user list";
    QTest::newRow("role set") << "role set p1 anna viewer";
    QTest::newRow("sweep") << "sweep";
}

void TestServiceCommandLine::aCommandMakesNoDataFolderByMistake()
{
    QFETCH(QString, line);
    QCOMPARE(run(line.split(QLatin1Char(' '))), 1);
    QVERIFY2(m_output.contains("is no data folder"), qUtf8Printable(m_output));
    QVERIFY(!QFile::exists(m_data));
}

QTEST_GUILESS_MAIN(TestServiceCommandLine)
#include "tst_service_command_line.moc"
