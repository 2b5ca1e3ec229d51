#include "VelldocWorld.h"

#include <QFile>
#include <QJsonArray>
#include <QTest>

//! What would be done is printed, and nothing is changed.
class TestVelldocDryRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void dryRunChangesNothing_data();
    void dryRunChangesNothing();
    void dryRunEndsNoShare();
    void dryRunOfALoginStoresNothing();

private:
    QString state();

    // One for all rows, because they change nothing.
    VelldocWorld m_world;
    QString m_before;
};

void TestVelldocDryRun::initTestCase()
{
    m_world.write(QStringLiteral("a"), "1");
    m_world.write(QStringLiteral("old"), "1");
    m_world.write(QStringLiteral("site/b"), "1");
    m_world.write(QStringLiteral("d/x"), "1");
    m_world.write(QStringLiteral("d/y"), "1");
    m_world.succeedLine("put a d old /");
    m_world.succeedLine("rm /old");
    m_world.succeedLine("fav add /d");
    m_world.succeedLine("order /d/x");
    m_world.succeedLine("config set url http://localhost:1/");
    m_world.succeedLine("config set proxy none");
    m_world.write(QStringLiteral("a"), "changed");
    m_world.succeedLine("put -u old /d/x");
    m_world.succeedLine("share /a");
    m_before = state();
}

//! What commands can change.
QString TestVelldocDryRun::state()
{
    QString state;
    for (const char *const line : {"ls -lR", "trash -l", "share --list", "fav", "frequent",
                                   "recent list", "ls /d", "remark /a", "links /a", "history /d/x"})
        state += m_world.succeedLine(line).out;
    return state + QString::fromUtf8(VelldocWorld::read(m_world.configPath()));
}

void TestVelldocDryRun::dryRunChangesNothing_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("out");
    QTest::newRow("put") << QByteArray("put site /") << QStringLiteral("/site/b\n");
    QTest::newRow("put, new version") << QByteArray("put -u a /") << QStringLiteral("/a\n");
    QTest::newRow("get") << QByteArray("get -r /d back") << QStringLiteral("back/x\nback/y\n");
    QTest::newRow("rm") << QByteArray("rm -r /d") << QStringLiteral("/d\n");
    QTest::newRow("mv into") << QByteArray("mv /a /d") << QStringLiteral("/a\n");
    QTest::newRow("mv to") << QByteArray("mv /a /c") << QStringLiteral("/a\n");
    QTest::newRow("cp") << QByteArray("cp -r /d /e") << QStringLiteral("/e\n/e/x\n/e/y\n");
    QTest::newRow("rename") << QByteArray("rename /a z") << QStringLiteral("/a\n");
    QTest::newRow("mkdir") << QByteArray("mkdir -p /n/m") << QStringLiteral("/n/m\n");
    QTest::newRow("trash restore") << QByteArray("trash restore old") << QStringLiteral("old\n");
    QTest::newRow("trash purge") << QByteArray("trash purge old") << QStringLiteral("old\n");
    QTest::newRow("trash empty") << QByteArray("trash empty") << QStringLiteral("/old\n");
    QTest::newRow("share") << QByteArray("share /a") << QStringLiteral("/a\n");
    QTest::newRow("history") << QByteArray("history --make-current 1 /d/x")
                             << QStringLiteral("/d/x\n");
    QTest::newRow("fav add") << QByteArray("fav add /a") << QStringLiteral("/a\n");
    QTest::newRow("fav remove") << QByteArray("fav remove /d") << QStringLiteral("/d\n");
    QTest::newRow("frequent add") << QByteArray("frequent add /a") << QStringLiteral("/a\n");
    QTest::newRow("recent add") << QByteArray("recent add /a") << QStringLiteral("/a\n");
    QTest::newRow("order") << QByteArray("order /d/y") << QStringLiteral("y\nx\n");
    QTest::newRow("remark") << QByteArray("remark /a as-built") << QStringLiteral("/a\n");
    QTest::newRow("links") << QByteArray("links /a add room 1") << QStringLiteral("/a\n");
    QTest::newRow("watch") << QByteArray("watch site /S") << QStringLiteral("send    b\n");
    QTest::newRow("config set") << QByteArray("config set project p")
                                << QStringLiteral("project\n");
    QTest::newRow("config unset") << QByteArray("config unset proxy") << QStringLiteral("proxy\n");
    QTest::newRow("logout") << QByteArray("logout") << QStringLiteral("http://localhost:1/\n");
}

void TestVelldocDryRun::dryRunChangesNothing()
{
    QFETCH(QByteArray, line);
    const VelldocRun run = m_world.succeedLine((line + " --dry-run").constData());
    QTEST(run.out, "out");
    QVERIFY2(run.error.contains(QLatin1String("Nothing was changed")), qPrintable(run.error));
    QCOMPARE(state(), m_before);
    QVERIFY(!QFile::exists(m_world.path(QStringLiteral("back"))));
}

void TestVelldocDryRun::dryRunEndsNoShare()
{
    const QString id = m_world.succeedLine("share --list --json")
                           .result()
                           .value(QLatin1String("shares"))
                           .toArray()
                           .first()
                           .toObject()
                           .value(QLatin1String("id"))
                           .toString();
    QVERIFY(!id.isEmpty());
    const QStringList line{QStringLiteral("share"), QStringLiteral("--revoke"), id,
                           QStringLiteral("--dry-run")};
    QCOMPARE(m_world.succeed(line).out, id + QLatin1Char('\n'));
    QCOMPARE(state(), m_before);
}

void TestVelldocDryRun::dryRunOfALoginStoresNothing()
{
    VelldocWorld world;
    const VelldocRun run = world.succeedLine("login --dry-run", "\n");
    QCOMPARE(run.out, world.baseApi() + QLatin1Char('\n'));
    QVERIFY(!QFile::exists(world.configPath()));
    QCOMPARE(
        world.runBare(VelldocWorld::words("login --dry-run http://localhost:1/"), "\n").exitCode,
        5);
}

QTEST_GUILESS_MAIN(TestVelldocDryRun)
#include "tst_velldoc_dry_run.moc"
