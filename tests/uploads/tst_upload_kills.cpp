#include "ProxyWorld.h"

#include <support/TestDatabase.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>
#include <QTimer>

#include <algorithm>

namespace {

constexpr qint64 MiB = qint64(1024) * 1024;
constexpr int Kills = 20;
constexpr int LongestDelayMs = 45; // about what the service needs for a chunk

} // namespace

//! Service and client are killed in the middle of uploads; what was acknowledged is never sent again.
class TestUploadKills : public QObject
{
    Q_OBJECT

public:
    enum class Victim { Service, Client };
    Q_ENUM(Victim)

private Q_SLOTS:
    void initTestCase();
    void anUploadSurvivesTwentyKills_data();
    void anUploadSurvivesTwentyKills();
    void theLastChunkMayBeInterruptedAnywhere_data();
    void theLastChunkMayBeInterruptedAnywhere();
    void whatACrashLeftIsTakenUp_data();
    void whatACrashLeftIsTakenUp();

private:
    bool runSql(const QString &statement) const;
    QList<qint64> killPoints(qint64 end);
    void killOnceAt(qint64 point, Victim victim);

    QRandomGenerator m_random;
    std::unique_ptr<ProxyWorld> m_world;
    std::unique_ptr<ClientRun> m_client;
};

void TestUploadKills::initTestCase()
{
    bool isGiven = false;
    quint32 seed = qEnvironmentVariable("VELL_SEED").toUInt(&isGiven);
    if (!isGiven)
        seed = QRandomGenerator::global()->generate();
    qInfo("The kill points are those of VELL_SEED=%u", seed);
    m_random.seed(seed);
}

QList<qint64> TestUploadKills::killPoints(qint64 end)
{
    QList<qint64> points;
    for (int i = 0; i < Kills; ++i)
        points.append(m_random.bounded(static_cast<int>(end)));
    std::sort(points.begin(), points.end());
    return points;
}

//! Kills a moment after the first byte behind \a point of the file was on its way.
void TestUploadKills::killOnceAt(qint64 point, Victim victim)
{
    auto *armed = new QObject(m_world->proxy.get());
    const int delay = m_random.bounded(LongestDelayMs);
    connect(m_world->proxy.get(), &FaultyProxy::chunkPassed, armed,
            [this, armed, point, delay, victim](int chunk, qint64 bytes) {
                if (chunk * LocalFile::ChunkBytes + bytes < point)
                    return;
                armed->disconnect();
                delete armed;
                QTimer::singleShot(delay, this, [this, victim] {
                    if (victim == Victim::Service)
                        m_world->service.kill();
                    else
                        m_client->kill();
                });
            });
}

void TestUploadKills::anUploadSurvivesTwentyKills_data()
{
    QTest::addColumn<Victim>("victim");
    QTest::newRow("of the service") << Victim::Service;
    QTest::newRow("of the client") << Victim::Client;
}

void TestUploadKills::anUploadSurvivesTwentyKills()
{
    QFETCH(Victim, victim);
    m_world = std::make_unique<ProxyWorld>();
    QVERIFY(m_world->isStarted());
    const LocalFile file = m_world->makeFile(60 * MiB, m_random.generate());
    // Not in the last chunks, or the upload might be done before the kill.
    const QList<qint64> points = killPoints(file.size() - 3 * LocalFile::ChunkBytes);
    for (const qint64 point : points) {
        killOnceAt(point, victim);
        m_client = m_world->upload(file);
        QVERIFY(m_client->wait());
        QVERIFY2(!m_client->isDone(), "it was done before the kill");
        if (victim == Victim::Service) {
            QCOMPARE(m_client->outcome(), QString("error 2")); // RemoteHostClosedError
            QVERIFY(m_world->service.start());
        } else {
            QCOMPARE(m_client->outcome(), QString());
        }
    }
    m_client = m_world->upload(file);
    QVERIFY(m_client->wait());
    QVERIFY2(m_client->isDone(), qPrintable(m_client->log()));
    QVERIFY(m_world->download(m_client->fileId()) == file.content());
    QCOMPARE(m_world->proxy->resentChunks(), QList<int>());
    QCOMPARE(m_world->documentCount(), 1);
}

void TestUploadKills::theLastChunkMayBeInterruptedAnywhere_data()
{
    QTest::addColumn<int>("delayMs");
    for (const int delayMs : {0, 10, 20, 30, 45, 60})
        QTest::addRow("%d ms after its last byte", delayMs) << delayMs;
}

void TestUploadKills::theLastChunkMayBeInterruptedAnywhere()
{
    QFETCH(int, delayMs);
    m_world = std::make_unique<ProxyWorld>();
    QVERIFY(m_world->isStarted());
    const LocalFile file = m_world->makeFile(12 * MiB, m_random.generate());
    bool isKilled = false;
    connect(m_world->proxy.get(), &FaultyProxy::chunkPassed, this, [&](int chunk, qint64 bytes) {
        if (chunk != 2 || bytes < LocalFile::ChunkBytes || std::exchange(isKilled, true))
            return;
        QTimer::singleShot(delayMs, Qt::PreciseTimer, this, [this] { m_world->service.kill(); });
    });
    m_client = m_world->upload(file);
    QVERIFY(m_client->wait());
    QVERIFY(isKilled);
    m_world->service.kill();

    QVERIFY(m_world->service.start());
    m_client = m_world->upload(file);
    QVERIFY(m_client->wait());
    QVERIFY2(m_client->isDone(), qPrintable(m_client->log()));
    QVERIFY(m_world->download(m_client->fileId()) == file.content());
    QCOMPARE(m_world->proxy->resentChunks(), QList<int>());
    QCOMPARE(m_world->wrongContents(), QStringList());
}

void TestUploadKills::whatACrashLeftIsTakenUp_data()
{
    QTest::addColumn<qint64>("partBytes"); // of the part file; -1 when it already stands as content
    QTest::addColumn<QList<int>>("chunks"); // what is sent from then on
    QTest::newRow("a chunk written but not counted") << 12 * MiB << QList<int>{2};
    QTest::newRow("a chunk half written") << 10 * MiB << QList<int>{2};
    QTest::newRow("all written and named") << qint64(-1) << QList<int>();
    QTest::newRow("a disk that lost a chunk") << 4 * MiB << QList<int>{0, 1, 2};
}

void TestUploadKills::whatACrashLeftIsTakenUp()
{
    QFETCH(qint64, partBytes);
    QFETCH(QList<int>, chunks);
    m_world = std::make_unique<ProxyWorld>();
    QVERIFY(m_world->isStarted());
    const LocalFile file = m_world->makeFile(12 * MiB, m_random.generate());
    m_world->proxy->strikeChunk(2, {ProxyFault::Kind::Drop, ProxyFault::Point::BeforeRequest});
    QVERIFY(m_world->upload(file)->wait());
    m_world->service.kill();

    const QString md5 = QString::fromLatin1(file.md5());
    const QDir parts(m_world->service.dataDir() + "/parts");
    QCOMPARE(parts.entryList(QDir::Files).size(), 1);
    const QString part = parts.filePath(parts.entryList(QDir::Files).first());
    if (partBytes < 0) {
        // The record says so before the content gets its name.
        QVERIFY(runSql("UPDATE large_file SET saved_chunk = total_chunk"));
        const QDir contents(m_world->service.dataDir() + "/content");
        const QString name =
            md5.left(2) + QLatin1Char('/') + md5.mid(2, 2) + QLatin1Char('/') + md5;
        QVERIFY(contents.mkpath(QFileInfo(name).path()));
        QVERIFY(QFile::remove(part) && QFile::copy(file.path(), contents.filePath(name)));
    } else {
        QVERIFY(QFile::resize(part, partBytes)); // zeros where the chunk did not reach the disk
    }

    m_world->renewProxy();
    QVERIFY(m_world->service.start());
    m_client = m_world->upload(file);
    QVERIFY(m_client->wait());
    QVERIFY2(m_client->isDone(), qPrintable(m_client->log()));
    QCOMPARE(m_world->proxy->sentChunks(), chunks);
    QVERIFY(m_world->download(m_client->fileId()) == file.content());
    QCOMPARE(m_world->wrongContents(), QStringList());
}

bool TestUploadKills::runSql(const QString &statement) const
{
    const QString name = "TestUploadKills";
    bool isDone = false;
    if (TestDatabase::isPostgres()) {
        TestDatabase::run(m_world->service.dataDir(), statement, &isDone);
        return isDone;
    }
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", name);
        database.setDatabaseName(m_world->service.dataDir() + "/records.sqlite");
        isDone = database.open() && QSqlQuery(database).exec(statement);
    }
    QSqlDatabase::removeDatabase(name);
    return isDone;
}

QTEST_GUILESS_MAIN(TestUploadKills)
#include "tst_upload_kills.moc"
