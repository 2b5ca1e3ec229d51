#include <async_ops/VellUploadLimits.h>
#include <document_model/VellRecordType.h>
#include <service/records/LargeFiles.h>
#include <service/records/Marks.h>
#include <transfer/JournalFormat.h>
#include <transfer/LocalNames.h>
#include <transfer/NameClaims.h>
#include <transfer/SpeedShare.h>
#include <transfer/TransferList.h>
#include <transfer/UploadWatch.h>

#include <QObject>
#include <QTest>

using State = VellTransferState;

namespace {

TransferRecord makeRecord(qint64 id)
{
    TransferRecord record;
    record.id = id;
    record.order = id;
    record.localFolder = QStringLiteral("/folder");
    record.localName = QStringLiteral("name%1").arg(id);
    record.name = record.localName;
    record.sizeBytes = 100;
    return record;
}

} // namespace

class TestTransferParts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theServiceHasTheSameLimits();
    void namesOfDocuments_data();
    void namesOfDocuments();
    void numberedNames_data();
    void numberedNames();
    void partsHaveShortNames();
    void namesAreClaimedOnce();
    void limitsAreShared();
    void repeatedChunksEndAnUpload();
    void totalsFollowTheList();
    void aRecordComesBackFromTheJournal();
    void changesComeBackFromTheJournal();
    void anyCutOfAJournalCanBeRead();
};

void TestTransferParts::theServiceHasTheSameLimits()
{
    QCOMPARE(VellUploadLimits::ChunkBytes, service::LargeFile::ChunkBytes);
    QCOMPARE(VellUploadLimits::WholeFileLimit, qint64(10) * 1024 * 1024);
    QCOMPARE(VellRecordType::Frequent, int(service::Marks::Frequent));
}

void TestTransferParts::namesOfDocuments_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("usual") << QStringLiteral("R&D 100% #1.dwg") << true;
    QTest::newRow("255 bytes") << QString(255, QLatin1Char('a')) << true;
    QTest::newRow("256 bytes") << QString(256, QLatin1Char('a')) << false;
    QTest::newRow("258 bytes") << QString(86, QChar(0x56fe)) << false;
    QTest::newRow("hidden") << QStringLiteral(".git") << true;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("step") << QStringLiteral("..") << false;
    QTest::newRow("slash") << QStringLiteral("a/b") << false;
    QTest::newRow("backslash") << QStringLiteral("a\\b") << false;
    QTest::newRow("line end") << QStringLiteral("a\nb") << false;
}

void TestTransferParts::namesOfDocuments()
{
    QFETCH(const QString, name);
    QTEST(local_names::isRemoteName(name), "isTaken");
}

void TestTransferParts::numberedNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("second");
    QTest::newRow("suffix") << QStringLiteral("a.b.dwg") << QStringLiteral("a.b(2).dwg");
    QTest::newRow("none") << QStringLiteral("a") << QStringLiteral("a(2)");
    QTest::newRow("hidden") << QStringLiteral(".git") << QStringLiteral(".git(2)");
    QTest::newRow("long") << QString(251, QLatin1Char('a')) + QStringLiteral(".dwg")
                          << QString(248, QLatin1Char('a')) + QStringLiteral("(2).dwg");
}

void TestTransferParts::numberedNames()
{
    QFETCH(const QString, name);
    QTEST(local_names::numbered(name, 2), "second");
}

void TestTransferParts::partsHaveShortNames()
{
    TransferRecord record = makeRecord(1);
    record.localName = QString(255, QLatin1Char('a'));
    const QString part = local_names::partPath(record);
    QVERIFY(part.startsWith(QStringLiteral("/folder/.vell-")));
    QVERIFY(part.size() < 50);
    record.documentId = QStringLiteral("other");
    QVERIFY(local_names::partPath(record) != part);
}

void TestTransferParts::namesAreClaimedOnce()
{
    const QString folder = NameClaims::remoteFolder(QStringLiteral("f"));
    const QString name = QStringLiteral("a");
    NameClaims claims;
    QVERIFY(claims.claim(1, folder, name));
    QVERIFY(claims.claim(1, folder, name));
    QVERIFY(!claims.claim(2, folder, name));
    QVERIFY(claims.claim(2, QStringLiteral("/f"), name));
    QCOMPARE(claims.namesIn(folder), QStringList{name});
    QCOMPARE(claims.release(1), QStringList{NameClaims::key(folder, name)});
    QVERIFY(claims.claim(2, folder, name));
    QCOMPARE(claims.release(2).size(), 2);
    QVERIFY(claims.namesIn(folder).isEmpty());
}

void TestTransferParts::limitsAreShared()
{
    SpeedShare speeds;
    QCOMPARE(speeds.share(VellTransferDirection::Upload), qint64(0));
    speeds.setLimits(1000, 90);
    QCOMPARE(speeds.share(VellTransferDirection::Upload), qint64(1000));
    speeds.setRunning(VellTransferDirection::Upload, 5);
    QCOMPARE(speeds.share(VellTransferDirection::Upload), qint64(200));
    QCOMPARE(speeds.share(VellTransferDirection::Download), qint64(90));
    speeds.setRunning(VellTransferDirection::Download, 1000);
    QCOMPARE(speeds.share(VellTransferDirection::Download), qint64(1));
}

void TestTransferParts::repeatedChunksEndAnUpload()
{
    using VellUploadLimits::ChunkBytes;
    constexpr int Frame = 700; // of a request
    int ends = 0;
    UploadWatch watch([&ends] { ++ends; });
    for (int chunk = 0; chunk < 100; ++chunk) {
        for (const qint64 bytes : {qint64(100), ChunkBytes / 2, ChunkBytes + Frame})
            watch.noteBytes(chunk * ChunkBytes + bytes);
    }
    QCOMPARE(ends, 0);
    for (int i = 0; i < 8; ++i)
        watch.noteBytes(100 * ChunkBytes + Frame);
    QCOMPARE(ends, 0);
    for (int i = 0; i < 2; ++i)
        watch.noteBytes(100 * ChunkBytes + Frame);
    QVERIFY(ends > 0);
}

void TestTransferParts::totalsFollowTheList()
{
    TransferList list;
    TransferItem &item = list.add(makeRecord(1));
    list.add(makeRecord(2));
    QCOMPARE(list.totals().totalBytes, qint64(200));
    QCOMPARE(list.totals().openCount(), 2);
    list.setBytes(item, 30, 120);
    QCOMPARE(list.totals().totalBytes, qint64(220));
    QCOMPARE(list.totals().doneBytes, qint64(30));
    list.setState(item, State::Failed);
    QCOMPARE(list.totals().totalBytes, qint64(100));
    QCOMPARE(list.totals().doneBytes, qint64(0));
    QCOMPARE(list.totals().count(State::Failed), 1);
    QCOMPARE(list.totals().openCount(), 1);
    list.remove(1);
    list.remove(2);
    QCOMPARE(list.totals().totalBytes, qint64(0));
    QCOMPARE(list.totals().count(State::Failed), 0);
}

void TestTransferParts::aRecordComesBackFromTheJournal()
{
    JournalContent content;
    content.places.insert(0,
                          {QStringLiteral("http://a/"), QStringLiteral("p"), QStringLiteral("u")});
    content.batches.insert(0, {VellConflictPolicy::NewerOnly, QStringLiteral("drawings")});
    TransferRecord record = makeRecord(1);
    record.direction = VellTransferDirection::Download;
    record.state = State::Failed;
    record.folderId = QStringLiteral("folder");
    record.documentId = QStringLiteral("document");
    record.error = VellError::of(VellError::Kind::NoRoom, QStringLiteral("text"));
    record.decision = VellConflictPolicy::Replace;
    record.base = {QStringLiteral("id"), QStringLiteral("name"), QStringLiteral("parent"),
                   QStringLiteral("file"), QDateTime::currentDateTimeUtc()};
    record.trace = {QStringLiteral("sent"), record.base};
    record.entityTag = "\"tag\"";
    content.records = {record, makeRecord(2)};
    const auto back = journal_format::read(journal_format::compact(content));
    QVERIFY(back.has_value());
    QVERIFY(!back->isDamaged);
    QCOMPARE(back->places.value(0).projectId, QStringLiteral("p"));
    QCOMPARE(back->batches.value(0).policy, VellConflictPolicy::NewerOnly);
    QCOMPARE(int(back->records.size()), 2);
    QCOMPARE(journal_format::record(back->records.at(0)), journal_format::record(record));
    QCOMPARE(journal_format::record(back->records.at(1)), journal_format::record(makeRecord(2)));
    QVERIFY(back->records.at(0).base == record.base);
    QCOMPARE(*back->records.at(0).decision, VellConflictPolicy::Replace);
}

void TestTransferParts::changesComeBackFromTheJournal()
{
    TransferRecord folder = makeRecord(5);
    folder.state = State::Done;
    folder.documentId = QStringLiteral("made");
    FolderEntry good;
    good.localName = good.name = QStringLiteral("good");
    good.sizeBytes = 7;
    FolderEntry bad = good;
    bad.error = VellError::of(VellError::Kind::BadName);
    const UploadTrace trace{QStringLiteral("sent"), {}};
    QByteArray bytes = journal_format::header();
    for (const QByteArray &payload :
         {journal_format::record(makeRecord(5)), journal_format::record(makeRecord(6)),
          journal_format::record(makeRecord(7)), journal_format::folder(folder, 100, {good, bad}),
          journal_format::removal(6), journal_format::state(7, State::Paused),
          journal_format::tag(7, "tag"), journal_format::trace(7, trace),
          journal_format::state(6, State::Done)})
        bytes += journal_format::framed(payload);
    auto back = journal_format::read(bytes);
    QVERIFY(back.has_value());
    QVERIFY(!back->isDamaged);
    journal_format::renumber(*back);
    QCOMPARE(int(back->records.size()), 4);
    QCOMPARE(back->records.at(0).state, State::Done);
    QCOMPARE(back->records.at(1).state, State::Paused);
    QCOMPARE(back->records.at(1).entityTag, QByteArray("tag"));
    QCOMPARE(back->records.at(1).trace.name, QStringLiteral("sent"));
    QCOMPARE(back->records.at(2).localFolder, QStringLiteral("/folder/name5"));
    QCOMPARE(back->records.at(2).folderId, QStringLiteral("made"));
    QCOMPARE(back->records.at(2).folderTransferId, qint64(1));
    QCOMPARE(back->records.at(2).state, State::Waiting);
    QCOMPARE(back->records.at(3).state, State::Failed);
    // What a folder held comes in the place of the folder.
    QVERIFY(back->records.at(2).order < back->records.at(1).order);
}

void TestTransferParts::anyCutOfAJournalCanBeRead()
{
    QByteArray bytes = journal_format::header();
    QList<int> ends{int(bytes.size())};
    for (int i = 1; i <= 3; ++i) {
        bytes += journal_format::framed(journal_format::record(makeRecord(i)));
        ends.append(int(bytes.size()));
    }
    for (int size = 0; size <= bytes.size(); ++size) {
        const auto back = journal_format::read(bytes.left(size));
        QVERIFY(back.has_value());
        const auto whole =
            std::count_if(ends.begin(), ends.end(), [size](int end) { return end <= size; }) - 1;
        QCOMPARE(int(back->records.size()), std::max(int(whole), 0));
        QCOMPARE(back->isDamaged,
                 size > 0 && size > journal_format::header().size() - 1 && !ends.contains(size));
    }
    for (int at = journal_format::header().size(); at < bytes.size(); ++at) {
        QByteArray damaged = bytes;
        damaged[at] = char(~damaged.at(at));
        const auto back = journal_format::read(damaged);
        QVERIFY(back.has_value());
        QVERIFY(back->isDamaged);
        QVERIFY(back->records.size() < 3);
    }
    QVERIFY(!journal_format::read("something else").has_value());
}

QTEST_GUILESS_MAIN(TestTransferParts)
#include "tst_transfer_parts.moc"
