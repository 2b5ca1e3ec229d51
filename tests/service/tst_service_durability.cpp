#include <service/ServiceWorld.h>
#include <support/ServiceProcess.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QIODevice>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

//! What survives damage, mistakes and full disks.
class TestServiceDurability : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void contentThatIsNotThereIsNotPromised_data();
    void contentThatIsNotThereIsNotPromised();
    void aCheckTellsWhatIsDamaged();
    void anEmptyDatabaseBesideContentsIsRefused();
    void anOldDatabaseBesideNewContentsIsRefused();
    void whoWasToldOfAContentFindsIt();
    void downloadsDoNotNeedTheDatabaseToBeWritten();
    void aBusyDatabaseIsSaidToBeBusy();
    void aBackupIsRestored();
    void aBackupBelongsElsewhere();
    void aDamagedDatabaseIsRefused();
    void theLastPositionIsNoOverflow();
    void aLockLeftBehindNeedsNobody();
    void aFullDiskIsTheReasonThatIsGiven();
    void aFileSizeLimitIsNoRoom();
    void nobodyElseReadsTheFolder();

private:
    int run(const QString &line, const QString &data = {})
    {
        return ServiceProcess::run(
            line.split(QLatin1Char(' '))
                + QStringList{"--data", data.isEmpty() ? m_world->dataDir() : data},
            &m_output);
    }
    QString contentFile() const
    {
        QDirIterator files(m_world->dataDir() + "/content", QDir::Files,
                           QDirIterator::Subdirectories);
        return files.hasNext() ? files.next() : QString();
    }
    QString refusedStart(const QString &dataDir) const;
    HttpAnswer download(const QString &fileId)
    {
        return m_world->client.get(QString("base-service/files/") + fileId);
    }
    QString fileIdOf(const QString &document)
    {
        return m_world->document(document).value("fileId").toString();
    }
    static void write(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(bytes), qint64(bytes.size()));
    }

    std::unique_ptr<ServiceWorld> m_world;
    QString m_output;
};

namespace {

//! A second connection that keeps others from writing while it lives.
class WriteLock
{
public:
    explicit WriteLock(const QString &dataDir)
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", name());
        database.setDatabaseName(dataDir + "/records.sqlite");
        isHeld = database.open() && QSqlQuery(database).exec("BEGIN IMMEDIATE");
    }
    ~WriteLock()
    {
        QSqlDatabase::database(name(), false).close();
        QSqlDatabase::removeDatabase(name());
    }
    bool isHeld = false;

private:
    static QString name() { return "WriteLock"; }
};

//! Files cannot grow beyond a size while it lives, in this process and those that it starts.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before = {};
};

} // namespace

void TestServiceDurability::init()
{
    m_world = std::make_unique<ServiceWorld>();
}

QString TestServiceDurability::refusedStart(const QString &dataDir) const
{
    ServiceOptions options;
    options.dataDir = dataDir;
    ReferenceService service(options);
    QString error;
    return service.start(&error) ? QString() : error;
}

void TestServiceDurability::contentThatIsNotThereIsNotPromised_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("gone") << QByteArray();
    QTest::newRow("cut") << QByteArray("hel");
}

void TestServiceDurability::contentThatIsNotThereIsNotPromised()
{
    QFETCH(QByteArray, bytes);
    const QByteArray content = "hello\n";
    const QString document = m_world->makeFile("a.txt", {}, content);
    const QString fileId = fileIdOf(document);
    if (bytes.isEmpty())
        QVERIFY(QFile::remove(contentFile()));
    else
        write(contentFile(), bytes);

    const QString md5 = "b1946ac92492d2347c6235b4d2611184";
    QCOMPARE(m_world->client.get(QString("base-service/md5/%1/info").arg(md5)).status, 404);
    QCOMPARE(m_world->client.get(QString("base-service/largefiles/md5/") + md5).status, 404);
    QCOMPARE(download(fileId).status, 410);
    QVERIFY(download(fileId).errorText().contains("no longer"));
    QCOMPARE(m_world->client.put(ServiceWorld::documentPath(document), {{"file", fileId}}).status,
             410);
    // A new upload mends it.
    QCOMPARE(m_world->upload(content), fileId);
    QCOMPARE(download(fileId).body, content);
}

void TestServiceDurability::aCheckTellsWhatIsDamaged()
{
    const QByteArray content = "hello\n";
    const QString folder = m_world->makeFolder("Drawings");
    const QString id = m_world->makeFile("a.txt", folder, content);
    const QString fileId = fileIdOf(id);
    QCOMPARE(run("check"), 0); // beside the running service
    QCOMPARE(m_output, QString("1 contents checked, 0 damaged\n"));
    write(contentFile(), "HELLO\n"); // of the same length: nobody sees that at a glance
    QCOMPARE(download(fileId).body, QByteArray("HELLO\n"));
    QCOMPARE(run("check"), 1);
    QVERIFY2(m_output.contains("the bytes have changed"), qUtf8Printable(m_output));
    QVERIFY2(m_output.contains(QString("p1/Drawings/a.txt (%1)").arg(id)),
             qUtf8Printable(m_output));
    QCOMPARE(download(fileId).status, 410);
    QCOMPARE(m_world->upload(content), fileId);
    QCOMPARE(download(fileId).body, content);
    QCOMPARE(run("check"), 0);
}

void TestServiceDurability::anEmptyDatabaseBesideContentsIsRefused()
{
    QVERIFY(!m_world->makeFile("a.txt").isEmpty());
    m_world->service->stop();
    const QString content = contentFile();
    QVERIFY(QFile::remove(m_world->dataDir() + "/records.sqlite"));
    const QString error = refusedStart(m_world->dataDir());
    QVERIFY2(error.contains("older than the contents"), qUtf8Printable(error));
    QVERIFY2(error.contains("vell-service accept"), qUtf8Printable(error));
    QVERIFY(QFile::exists(content));

    QCOMPARE(run("accept"), 0);
    QCOMPARE(refusedStart(m_world->dataDir()), QString());
    QCOMPARE(run("sweep --older-than 0"), 0);
    QVERIFY(!QFile::exists(content));
    const QStringList aside = QDir(m_world->dataDir() + "/aside").entryList(QDir::Files);
    QCOMPARE(aside.size(), 1);
    QVERIFY(aside.first().startsWith(QFileInfo(content).fileName()));
}

void TestServiceDurability::anOldDatabaseBesideNewContentsIsRefused()
{
    const QString records = m_world->dataDir() + "/records.sqlite";
    const QString copy = m_world->folder.path() + "/copy.sqlite";
    QVERIFY(!m_world->makeFile("a.txt", {}, "a").isEmpty());
    m_world->service->stop();
    QVERIFY(QFile::copy(records, copy));
    QVERIFY(m_world->restart());
    QVERIFY(!m_world->makeFile("b.txt", {}, "b").isEmpty());
    m_world->service->stop();
    QVERIFY(QFile::remove(records));
    QVERIFY(QFile::copy(copy, records));
    const QString error = refusedStart(m_world->dataDir());
    QVERIFY2(error.contains("older than the contents"), qUtf8Printable(error));
}

void TestServiceDurability::whoWasToldOfAContentFindsIt()
{
    const QString fileId = m_world->upload("hello\n");
    QVERIFY(m_world->runSql("UPDATE file SET promised_at = 1, created_at = 1"));
    QCOMPARE(m_world->client.get("base-service/md5/b1946ac92492d2347c6235b4d2611184/info").status,
             200);
    QCOMPARE(run("sweep"), 0);
    QCOMPARE(download(fileId).status, 200);
    QVERIFY(m_world->runSql("UPDATE file SET promised_at = 1"));
    QCOMPARE(run("sweep"), 0);
    QCOMPARE(download(fileId).status, 404);
}

void TestServiceDurability::downloadsDoNotNeedTheDatabaseToBeWritten()
{
    const QString fileId = m_world->upload("hello\n");
    QVERIFY(!m_world->makeFile("a.txt", {}, "hello\n").isEmpty());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("vell-service: "));
    // No file may grow any more, as on a full disk.
    const FileSizeLimit limit(1);
    const HttpAnswer answer = download(fileId);
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.body, QByteArray("hello\n"));
}

void TestServiceDurability::aBusyDatabaseIsSaidToBeBusy()
{
    ServiceOptions options;
    options.busyTimeoutMs = 50;
    m_world = std::make_unique<ServiceWorld>(options);
    QVERIFY(!m_world->makeFolder("first").isEmpty());
    const WriteLock lock(m_world->dataDir());
    QVERIFY(lock.isHeld);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("locked"));
    const HttpAnswer answer = m_world->client.post(ServiceWorld::projectPath("documents"),
                                                   {{"name", "second"}, {"type", "dir"}});
    QCOMPARE(answer.status, 503);
    QVERIFY(answer.headers.value("retry-after").toInt() > 0);
    QVERIFY(!answer.errorText().isEmpty());
    QCOMPARE(m_world->names({}), QStringList{"first"}); // readers do not wait
}

void TestServiceDurability::aBackupIsRestored()
{
    const QString backup = m_world->folder.path() + "/backup";
    const QString first = m_world->makeFile("a.txt", {}, "a");
    QCOMPARE(run(QString("backup ") + backup), 0); // while the service runs
    QCOMPARE(m_output, QString("1 contents, 1 of them copied: 1 bytes\n"));
    QVERIFY(!m_world->makeFile("b.txt", {}, "bb").isEmpty());
    QCOMPARE(run(QString("backup ") + backup), 0);
    QCOMPARE(m_output, QString("2 contents, 1 of them copied: 2 bytes\n"));
    QVERIFY(!m_world->makeFile("later.txt", {}, "c").isEmpty());
    m_world->service->stop();

    const QString restored = m_world->folder.path() + "/restored";
    QCOMPARE(run(QString("restore ") + backup, restored), 0);
    {
        ServiceOptions options;
        options.dataDir = restored;
        ReferenceService service(options);
        QString error;
        QVERIFY2(service.start(&error), qUtf8Printable(error));
        HttpClient client(service.baseApi());
        const HttpAnswer list = client.get(ServiceWorld::projectPath("documents"));
        QCOMPARE(list.array().size(), 2);
        const QString fileId =
            client.get(ServiceWorld::documentPath(first)).object().value("fileId").toString();
        QCOMPARE(client.get(QString("base-service/files/") + fileId).body, QByteArray("a"));
    }
    // Nothing is overwritten, and records of the backup beside newer contents are noticed.
    QCOMPARE(run(QString("restore ") + backup), 1);
    QVERIFY2(m_output.contains("has records"), qUtf8Printable(m_output));
    const QString records = m_world->dataDir() + "/records.sqlite";
    QVERIFY(QFile::remove(records));
    QVERIFY(QFile::copy(backup + "/records.sqlite", records));
    QVERIFY(refusedStart(m_world->dataDir()).contains("older than the contents"));
}

void TestServiceDurability::aBackupBelongsElsewhere()
{
    QCOMPARE(run(QString("backup ") + m_world->dataDir()), 1);
    QVERIFY2(m_output.contains("another folder"), qUtf8Printable(m_output));
    const QString none = m_world->folder.path() + "/none";
    QCOMPARE(run(QString("restore ") + none, none + QLatin1Char('2')), 1);
    QVERIFY2(m_output.contains("is no backup"), qUtf8Printable(m_output));
    QVERIFY(!QFile::exists(none));
}

void TestServiceDurability::aDamagedDatabaseIsRefused()
{
    for (int i = 0; i < 50; ++i)
        m_world->makeFolder(QString("a folder with the number %1").arg(i));
    m_world->service->stop();
    QFile records(m_world->dataDir() + "/records.sqlite");
    QVERIFY(records.open(QIODevice::ReadWrite));
    // All but the first pages, which have the schema.
    const qint64 start = records.size() / 2;
    QVERIFY(records.seek(start));
    records.write(QByteArray(static_cast<int>(records.size() - start), 'x'));
    records.close();
    const QString error = refusedStart(m_world->dataDir());
    QVERIFY2(error.contains("damaged"), qUtf8Printable(error));
    QVERIFY2(error.contains("restore"), qUtf8Printable(error));
}

void TestServiceDurability::theLastPositionIsNoOverflow()
{
    const QString first = m_world->makeFolder("first");
    constexpr int Last = std::numeric_limits<int>::max();
    QCOMPARE(m_world->client.put(ServiceWorld::documentPath(first), {{"order", Last}}).status, 200);
    const QString second = m_world->makeFolder("second");
    QCOMPARE(m_world->document(second).value("order").toInt(), Last);
}

void TestServiceDurability::aLockLeftBehindNeedsNobody()
{
    // As a killed service of an earlier version left it in a container: process 1, on a host with another name.
    m_world->service->stop();
    write(m_world->dataDir() + "/lock", "1\nvell-service\nanother-host\n");
    QVERIFY(m_world->restart());
    // And as this version leaves it.
    ServiceProcess process(m_world->folder.path() + "/killed");
    QVERIFY(process.start());
    process.kill();
    QVERIFY(process.start());
}

void TestServiceDurability::aFullDiskIsTheReasonThatIsGiven()
{
    m_world->service->stop();
    const QString fresh = m_world->folder.path() + "/fresh";
    const FileSizeLimit limit(0);
    const QString error = refusedStart(fresh);
    QVERIFY2(!error.contains("Another service"), qUtf8Printable(error));
    QVERIFY2(error.contains("cannot be used"), qUtf8Printable(error));
}

void TestServiceDurability::aFileSizeLimitIsNoRoom()
{
    ServiceProcess process(m_world->folder.path() + "/limited");
    {
        const FileSizeLimit limit(2 * 1024 * 1024);
        std::signal(SIGXFSZ, SIG_DFL); // it would inherit that the signal is ignored
        QVERIFY(process.start());
    }
    HttpClient client(process.baseApi());
    const auto upload = [&client](int bytes) {
        return client.postForm("base-service/files", {{"file/f", QByteArray(bytes, 'x')}});
    };
    QCOMPARE(upload(3 * 1024 * 1024).status, 507);
    QVERIFY(process.isRunning());
    QCOMPARE(upload(1000).status, 200);
}

void TestServiceDurability::nobodyElseReadsTheFolder()
{
    const mode_t before = umask(0);
    const QString data = m_world->folder.path() + "/private";
    QVERIFY(QDir().mkdir(data)); // as a careless person makes it
    QCOMPARE(run("user add anna", data), 0);
    QTemporaryDir logs;
    const QString log = logs.filePath("access.log");
    ServiceProcess process(data);
    const bool isStarted = process.start({"--access-log", log});
    umask(before);
    QVERIFY(isStarted);
    HttpClient client(process.baseApi());
    QCOMPARE(client.get("base-service/me").status, 401);

    QStringList paths{log};
    QDirIterator entries(data, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext())
        paths.append(entries.next());
    QVERIFY(paths.contains(data + "/records.sqlite-wal"));
    QVERIFY(paths.contains(data + "/records.sqlite-shm"));
    for (const QString &path : qAsConst(paths)) {
        struct stat status = {};
        QCOMPARE(stat(QFile::encodeName(path).constData(), &status), 0);
        QVERIFY2((status.st_mode & (S_IRWXG | S_IRWXO)) == 0, qUtf8Printable(path));
    }
}

QTEST_GUILESS_MAIN(TestServiceDurability)
#include "tst_service_durability.moc"
