#include "TransferSite.h"
#include "TransferWorld.h"

#include <QDir>
#include <QObject>
#include <QRandomGenerator>

// VELL_TRANSFER_SOAK=FILES,KILLS makes it longer: 2000,200 for example, with QTEST_FUNCTION_TIMEOUT in milliseconds.

class TestTransferSoak : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFileArrivesOnce();

private:
    void runWithKills(TransferSite &site, const QStringList &arguments, int kills);

    QRandomGenerator m_random{20'261'122};
};

//! Starts the client with \a arguments, kills it and the service again and again, and lets it come to its end.
void TestTransferSoak::runWithKills(TransferSite &site, const QStringList &arguments, int kills)
{
    // So slow that it does not end before.
    const QStringList limit{QStringLiteral("--limit"), QStringLiteral("4000000")};
    site.startClient(arguments + limit);
    // Before that nothing may be in the file of the queue.
    QVERIFY(site.waitForLine("ended"));
    int done = 0;
    for (; done < kills && site.isClientRunning(); ++done) {
        constexpr int LongestMs = 250;
        QTest::qWait(m_random.bounded(LongestMs));
        if (m_random.bounded(2) == 0) {
            site.service.kill();
            QVERIFY(site.service.start());
        } else {
            site.killClient();
            site.startClient(limit);
        }
    }
    qInfo("%d kills", done);
    site.killClient();
    site.startClient();
    QCOMPARE(site.waitForClient(), 0);
    const QByteArrayList lines = site.lines();
    for (const QByteArray &line : lines) {
        QVERIFY2(!line.startsWith("twice"), line.constData());
        QVERIFY2(!line.startsWith("ended") || line.startsWith("ended 7"), line.constData());
    }
}

void TestTransferSoak::everyFileArrivesOnce()
{
    const QStringList sizes = qEnvironmentVariable("VELL_TRANSFER_SOAK", QStringLiteral("300,20"))
                                  .split(QLatin1Char(','));
    const int fileCount = sizes.value(0).toInt();
    const int kills = sizes.value(1).toInt();
    const TransferWorld files;
    TransferSite site;
    constexpr int LargeOneIn = 100;
    constexpr int FolderCount = 7;
    for (int i = 0; i < fileCount; ++i) {
        const QString folder = QStringLiteral("top/%1/sub").arg(i % FolderCount);
        QDir().mkpath(files.path(folder));
        const qint64 bytes =
            i % LargeOneIn == 0 ? LargeBytes + i : m_random.bounded(2 * int(SmallBytes));
        files.makeFile(QStringLiteral("%1/%2").arg(folder).arg(i), bytes, i);
    }
    const QString top = files.path(QStringLiteral("top"));

    runWithKills(site, {QStringLiteral("--add"), top}, kills / 2);
    if (QTest::currentTestFailed())
        return;
    const QMultiMap<QString, QString> stored = site.documentsBelow({});
    const QStringList paths = TransferSite::filesBelow(top);
    QCOMPARE(paths.size(), fileCount);
    for (const QString &path : paths) {
        const QStringList contents = stored.values(QStringLiteral("top/") + path);
        QVERIFY2(contents.size() == 1, qPrintable(path));
        QVERIFY2(site.content(contents.first())
                     == TransferWorld::contentOf(top + QLatin1Char('/') + path),
                 qPrintable(path));
    }
    QCOMPARE(stored.size(), fileCount + 1 + 2 * FolderCount);

    runWithKills(site,
                 {QStringLiteral("--fetch"), stored.value(QStringLiteral("top/")),
                  QStringLiteral("--into"), site.path(QStringLiteral("into"))},
                 kills - kills / 2);
    if (QTest::currentTestFailed())
        return;
    const QString fetched = site.path(QStringLiteral("into/fetched"));
    QCOMPARE(TransferSite::filesBelow(fetched), paths);
    for (const QString &path : paths)
        QVERIFY2(TransferWorld::contentOf(fetched + QLatin1Char('/') + path)
                     == TransferWorld::contentOf(top + QLatin1Char('/') + path),
                 qPrintable(path));
}

QTEST_GUILESS_MAIN(TestTransferSoak)
#include "tst_transfer_soak.moc"
