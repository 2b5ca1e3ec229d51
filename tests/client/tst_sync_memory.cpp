#include "ClientWorld.h"

#include <sync/VellPathFilter.h>
#include <sync/VellSyncMemory.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

// What is known of two folders from one comparison to the next, and which paths count.
class TestSyncMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void whatWasNotedIsTheSame();
    void aChangedFileIsDoubtful_data();
    void aChangedFileIsDoubtful();
    void withoutAMemoryTheTimesDecide();
    void aDamagedFileIsEmpty();
    void contentsAreTold();
    void pathsAreLeftOut_data();
    void pathsAreLeftOut();

private:
    VellSyncPlan plan(VellSyncDirection direction)
    {
        VellSyncOptions options;
        options.direction = direction;
        return await(VellSyncPlan::make(&m_world->session, m_local->path(), m_rootId, options));
    }
    QString write(const QString &name, const QByteArray &content, const QDateTime &time) const;
    QString memoryPath() const { return m_state->filePath(QStringLiteral("new/memory")); }

    std::unique_ptr<ClientWorld> m_world;
    std::unique_ptr<QTemporaryDir> m_local;
    std::unique_ptr<QTemporaryDir> m_state;
    QString m_rootId;
};

void TestSyncMemory::init()
{
    m_world = std::make_unique<ClientWorld>();
    m_local = std::make_unique<QTemporaryDir>();
    m_state = std::make_unique<QTemporaryDir>();
    m_rootId = await(m_world->documents.createFolder(QString(), QStringLiteral("root")))._id;
}

QString TestSyncMemory::write(const QString &name, const QByteArray &content,
                              const QDateTime &time) const
{
    QString path = m_local->filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush()
        || !file.setFileTime(time, QFileDevice::FileModificationTime))
        qFatal("%s cannot be written", qPrintable(path));
    return path;
}

void TestSyncMemory::whatWasNotedIsTheSame()
{
    const QDateTime later = QDateTime::currentDateTime().addDays(1);
    const QString local = write(QStringLiteral("a"), "1", later);
    const VellDocument stored = m_world->store(QStringLiteral("a"), "1", m_rootId);
    VellSyncPlan first = plan(VellSyncDirection::Up);
    QCOMPARE(first.count(VellSyncStep::Action::Replace), 1); // by its time
    VellSyncMemory memory(memoryPath());
    QCOMPARE(memory.settleKnown(first), QStringList{local});
    memory.settle(first, await(VellSyncPlan::contentIds(&m_world->session, QStringList{local})));
    QVERIFY(!first.hasChanges());
    QCOMPARE(first.bytesToTransfer(), Q_INT64_C(0));
    memory.noteSame(first);
    QVERIFY(memory.save());

    VellSyncPlan second = plan(VellSyncDirection::Up);
    QCOMPARE(VellSyncMemory(memoryPath()).settleKnown(second), QStringList());
    QVERIFY(!second.hasChanges());
    QCOMPARE(second.steps.first().document._id, stored._id);
}

void TestSyncMemory::aChangedFileIsDoubtful_data()
{
    QTest::addColumn<bool>("isLocal");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isReplaced");
    QTest::newRow("local, other content") << true << QByteArray("2") << true;
    QTest::newRow("local, the same content") << true << QByteArray("1") << false;
    QTest::newRow("on the service") << false << QByteArray("2") << true;
}

void TestSyncMemory::aChangedFileIsDoubtful()
{
    QFETCH(const bool, isLocal);
    QFETCH(const QByteArray, content);
    const QDateTime longAgo = QDateTime::currentDateTime().addYears(-1);
    const QString local = write(QStringLiteral("a"), "1", longAgo);
    const VellDocument stored = m_world->store(QStringLiteral("a"), "1", m_rootId);
    VellSyncMemory memory(memoryPath());
    VellSyncPlan first = plan(VellSyncDirection::Up);
    memory.noteSame(first);
    QVERIFY(memory.save());
    // Neither the size nor the time tells the change.
    if (isLocal) {
        write(QStringLiteral("a"), content, longAgo.addDays(-1));
    } else {
        const VellDocument other = m_world->store(QStringLiteral("other"), content);
        await(m_world->documents.makeCurrent(stored._id,
                                             await(m_world->documents.document(other._id)).fileId));
    }
    VellSyncPlan second = plan(VellSyncDirection::Up);
    VellSyncMemory later(memoryPath());
    const QStringList doubtful = later.settleKnown(second);
    QCOMPARE(doubtful, QStringList{local});
    later.settle(second, await(VellSyncPlan::contentIds(&m_world->session, doubtful)));
    QCOMPARE(second.count(VellSyncStep::Action::Replace), isLocal && content == "1" ? 0 : 1);
    QTEST(second.hasChanges(), "isReplaced");
}

void TestSyncMemory::withoutAMemoryTheTimesDecide()
{
    write(QStringLiteral("a"), "1", QDateTime::currentDateTime().addYears(-1));
    m_world->store(QStringLiteral("a"), "2", m_rootId);
    VellSyncPlan plan = this->plan(VellSyncDirection::Up);
    QCOMPARE(VellSyncMemory(memoryPath()).settleKnown(plan), QStringList());
    QVERIFY(!plan.hasChanges());
}

void TestSyncMemory::aDamagedFileIsEmpty()
{
    QFile file(m_state->filePath(QStringLiteral("damaged")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("VSM1 and then something else");
    file.close();
    const QString local = write(QStringLiteral("a"), "1", QDateTime::currentDateTime().addDays(1));
    m_world->store(QStringLiteral("a"), "1", m_rootId);
    VellSyncPlan plan = this->plan(VellSyncDirection::Up);
    QCOMPARE(VellSyncMemory(file.fileName()).settleKnown(plan), QStringList{local});
}

void TestSyncMemory::contentsAreTold()
{
    const QDateTime now = QDateTime::currentDateTime();
    const QString known = write(QStringLiteral("known"), "content", now);
    const QString unknown = write(QStringLiteral("unknown"), "other", now);
    const QString missing = m_local->filePath(QStringLiteral("missing"));
    const VellDocument stored =
        await(m_world->documents.document(m_world->store(QStringLiteral("a"))._id));
    const QHash<QString, QString> ids =
        await(VellSyncPlan::contentIds(&m_world->session, QStringList{known, unknown, missing}));
    QCOMPARE(ids.value(known), stored.fileId);
    QVERIFY(ids.contains(unknown) && ids.value(unknown).isEmpty());
    QVERIFY(!ids.contains(missing));
}

void TestSyncMemory::pathsAreLeftOut_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isFolder");
    QTest::addColumn<bool>("isLeftOut");
    QTest::newRow("included") << QStringLiteral("d/a.txt") << false << false;
    QTest::newRow("not included") << QStringLiteral("d/a.bin") << false << true;
    QTest::newRow("excluded") << QStringLiteral("d/old.txt") << false << true;
    QTest::newRow("folder on the way") << QStringLiteral("d") << true << false;
    QTest::newRow("excluded folder") << QStringLiteral("tmp") << true << true;
}

void TestSyncMemory::pathsAreLeftOut()
{
    QFETCH(const QString, path);
    QFETCH(const bool, isFolder);
    QFile file(m_state->filePath(QStringLiteral("ignore")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("# comment\ntmp/\n");
    file.close();
    VellError error;
    QStringList exclude = VellPathFilter::ignorePatterns(file.fileName(), &error);
    QVERIFY(!error);
    exclude.append(QStringLiteral("old.*"));
    const VellPathFilter filter({QStringLiteral("*.txt")}, exclude);
    QTEST(filter.leavesOut(path, isFolder), "isLeftOut");
    QCOMPARE(VellPathFilter::ignorePatterns(m_state->filePath(QStringLiteral("none")), &error),
             QStringList());
    QVERIFY(!error);
}

QTEST_GUILESS_MAIN(TestSyncMemory)
#include "tst_sync_memory.moc"
