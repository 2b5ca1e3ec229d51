#include <service/ChunkSender.h>
#include <service/ServiceFixture.h>
#include <support/ServiceProcess.h>

#include <QDir>
#include <QtTest>

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
    void helpTellsAboutFaults();
    void faultsAreTaken();
    void theSweepRemovesWhatNobodyNeeds();
    void theSweepWorksBesideARunningService();
    void aCommandMakesNoDataFolderByMistake_data();
    void aCommandMakesNoDataFolderByMistake();

private:
    int run(const QStringList &arguments)
    {
        return ServiceProcess::run(arguments + QStringList{QStringLiteral("--data"), m_data},
                                   &m_output);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_data;
    QString m_output;
};

void TestServiceCommandLine::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_data = m_folder->filePath(QStringLiteral("data"));
}

void TestServiceCommandLine::itSaysWhereItListensAndEndsCleanly()
{
    ServiceProcess process(m_data);
    QVERIFY(process.start());
    QVERIFY(process.baseApi().startsWith(QStringLiteral("http://127.0.0.1:")));
    HttpClient client(process.baseApi());
    QCOMPARE(client.get(QStringLiteral("base-service/me")).status, 200);
    QCOMPARE(process.terminate(), 0);
}

void TestServiceCommandLine::linesThatCannotBeRead_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("unknown command") << QStringLiteral("explode");
    QTest::newRow("unknown option") << QStringLiteral("--explode");
    QTest::newRow("no port") << QStringLiteral("--listen 127.0.0.1");
    QTest::newRow("port that is none") << QStringLiteral("--listen 127.0.0.1:99999");
    QTest::newRow("unknown fault") << QStringLiteral("--fault explode");
    QTest::newRow("quota that is none") << QStringLiteral("--quota much");
    QTest::newRow("user without a name") << QStringLiteral("user add");
    QTest::newRow("unknown user command") << QStringLiteral("user explode x");
    QTest::newRow("project without an id") << QStringLiteral("project add");
    QTest::newRow("role without a role") << QStringLiteral("role set p1 anna");
    QTest::newRow("sweep with a word") << QStringLiteral("sweep everything");
    QTest::newRow("sweep with no hours") << QStringLiteral("sweep --older-than long");
}

void TestServiceCommandLine::linesThatCannotBeRead()
{
    QFETCH(QString, line);
    QCOMPARE(run(line.split(QLatin1Char(' '))), 2);
    QVERIFY2(m_output.startsWith(QStringLiteral("vell-service: ")), qUtf8Printable(m_output));
    QCOMPARE(m_output.count(QLatin1Char('\n')), 1);
}

void TestServiceCommandLine::aSecondServiceIsRefused()
{
    ServiceProcess process(m_data);
    QVERIFY(process.start());
    QCOMPARE(run({}), 1);
    QVERIFY2(m_output.contains(QStringLiteral("Another service")), qUtf8Printable(m_output));
    m_data += QStringLiteral("2");
    QCOMPARE(run({QStringLiteral("--listen"), QStringLiteral("0.0.0.0:0")}), 1);
    QVERIFY2(m_output.contains(QStringLiteral("add a user first")), qUtf8Printable(m_output));
}

void TestServiceCommandLine::usersProjectsAndRoles()
{
    ServiceProcess process(m_data);
    QVERIFY(process.start()); // the commands work beside a running service
    QCOMPARE(run({QStringLiteral("user"), QStringLiteral("add"), QStringLiteral("anna")}), 0);
    const QString token = m_output.trimmed();
    QCOMPARE(token.size(), 64);
    QCOMPARE(run({QStringLiteral("user"), QStringLiteral("add"), QStringLiteral("anna")}), 1);
    QCOMPARE(run({QStringLiteral("user"), QStringLiteral("list")}), 0);
    QVERIFY(m_output.trimmed().endsWith(QStringLiteral(" anna")));
    QCOMPARE(run({QStringLiteral("project"), QStringLiteral("add"), QStringLiteral("p1"),
                  QStringLiteral("--name"), QStringLiteral("First project")}),
             0);
    QCOMPARE(run({QStringLiteral("role"), QStringLiteral("set"), QStringLiteral("p1"),
                  QStringLiteral("anna"), QStringLiteral("editor")}),
             0);
    QCOMPARE(run({QStringLiteral("role"), QStringLiteral("set"), QStringLiteral("p2"),
                  QStringLiteral("anna"), QStringLiteral("editor")}),
             1);

    HttpClient client(process.baseApi());
    QCOMPARE(client.get(QStringLiteral("base-service/me")).status, 401);
    client.setToken(token);
    const QJsonObject me = client.get(QStringLiteral("base-service/me")).object();
    const QJsonObject project = me.value(QStringLiteral("projects")).toArray().at(0).toObject();
    QCOMPARE(project.value(QStringLiteral("name")).toString(), QStringLiteral("First project"));
    QCOMPARE(project.value(QStringLiteral("role")).toString(), QStringLiteral("editor"));
}

void TestServiceCommandLine::helpTellsAboutFaults()
{
    QCOMPARE(ServiceProcess::run({QStringLiteral("--help")}, &m_output), 0);
    for (const char *word : {"--data", "--listen", "--fault", "--access-log", "lose-reply",
                             "drop-after", "forget-chunk", "no-room"})
        QVERIFY2(m_output.contains(QLatin1String(word)), word);
}

void TestServiceCommandLine::faultsAreTaken()
{
    ServiceProcess process(m_data);
    QVERIFY(process.start({QStringLiteral("--fault"), QStringLiteral("status=503,times=1"),
                           QStringLiteral("--fault"), QStringLiteral("status=500,nth=1,path=/x")}));
    HttpClient client(process.baseApi());
    QCOMPARE(client.get(QStringLiteral("base-service/me")).status, 503);
    QCOMPARE(client.get(QStringLiteral("base-service/me")).status, 200);
    QCOMPARE(client.get(QStringLiteral("x")).status, 500);
}

void TestServiceCommandLine::theSweepRemovesWhatNobodyNeeds()
{
    ServiceFixture fixture;
    m_data = fixture.folder.path() + QStringLiteral("/data");
    const QString kept = fixture.makeFile(QStringLiteral("kept"), {}, "kept");
    fixture.upload("unused");
    const ChunkSender abandoned(2 * ChunkSender::ChunkBytes);
    QCOMPARE(abandoned.send(fixture.client, 0).status, 200);
    fixture.service->stop();
    QFile stray(m_data + QStringLiteral("/content/stray"));
    QVERIFY(stray.open(QIODevice::WriteOnly));
    stray.write("stray");
    stray.close();

    const QStringList sweep{QStringLiteral("sweep"), QStringLiteral("--older-than")};
    QCOMPARE(run(sweep + QStringList{QStringLiteral("1")}), 0);
    QVERIFY2(
        m_output.startsWith(QStringLiteral("removed 0 abandoned uploads and 0 unused contents")),
        qUtf8Printable(m_output));
    QCOMPARE(run(sweep + QStringList{QStringLiteral("0"), QStringLiteral("--dry-run")}), 0);
    QCOMPARE(m_output,
             QStringLiteral("would remove 1 abandoned uploads and 1 unused contents, move aside 1 "
                            "unknown files: 4194315 bytes\n"));
    QVERIFY(stray.exists());
    QCOMPARE(run(sweep + QStringList{QStringLiteral("0")}), 0);
    QCOMPARE(m_output,
             QStringLiteral("removed 1 abandoned uploads and 1 unused contents, moved aside 1 "
                            "unknown files: 4194315 bytes\n"));
    QVERIFY(!stray.exists());
    QCOMPARE(QDir(m_data + QStringLiteral("/aside")).entryList(QDir::Files).size(), 1);

    QVERIFY(fixture.restart());
    QCOMPARE(abandoned.record(fixture.client).status, 404);
    const QString fileId = fixture.document(kept).value(QStringLiteral("fileId")).toString();
    QCOMPARE(fixture.client.get(QStringLiteral("base-service/files/") + fileId).body,
             QByteArray("kept"));
}

void TestServiceCommandLine::theSweepWorksBesideARunningService()
{
    ServiceProcess process(m_data);
    QVERIFY(process.start());
    HttpClient client(process.baseApi());
    const ChunkSender going(2 * ChunkSender::ChunkBytes);
    QCOMPARE(going.send(client, 0).status, 200);
    const auto upload = [&client](const QByteArray &content) {
        return client.postForm(QStringLiteral("base-service/files"),
                               {{QStringLiteral("file/f"), content}});
    };
    QVERIFY(upload("unused").isSuccess());
    QCOMPARE(run({QStringLiteral("sweep")}), 0);
    QVERIFY2(m_output.startsWith(QStringLiteral("removed 0")), qUtf8Printable(m_output));
    QCOMPARE(run({QStringLiteral("sweep"), QStringLiteral("--older-than"), QStringLiteral("0")}),
             0);
    QVERIFY2(
        m_output.startsWith(QStringLiteral("removed 1 abandoned uploads and 1 unused contents")),
        qUtf8Printable(m_output));
    // The service goes on with what is left.
    QCOMPARE(counters(going.sendAll(client)), QStringLiteral("2/2"));
    QVERIFY(upload("unused").isSuccess());
}

void TestServiceCommandLine::aCommandMakesNoDataFolderByMistake_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("user list") << QStringLiteral("user list");
    QTest::newRow("role set") << QStringLiteral("role set p1 anna viewer");
    QTest::newRow("sweep") << QStringLiteral("sweep");
}

void TestServiceCommandLine::aCommandMakesNoDataFolderByMistake()
{
    QFETCH(QString, line);
    QCOMPARE(run(line.split(QLatin1Char(' '))), 1);
    QVERIFY2(m_output.contains(QStringLiteral("is no data folder")), qUtf8Printable(m_output));
    QVERIFY(!QFile::exists(m_data));
}

QTEST_GUILESS_MAIN(TestServiceCommandLine)
#include "tst_service_command_line.moc"
