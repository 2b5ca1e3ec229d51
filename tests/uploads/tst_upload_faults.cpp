#include "ProxyWorld.h"

#include <QTest>

namespace {

constexpr qint64 FileBytes = qint64(11) * 1024 * 1024;
constexpr int Chunks = 3;

using Kind = ProxyFault::Kind;
using Point = ProxyFault::Point;

struct PointRow
{
    const char *text;
    Point point;
    bool isStored; // the service has the chunk by then
};
const PointRow pointRows[] = {
    {"before", Point::BeforeRequest, false},
    {"in the middle of", Point::MidRequest, false},
    {"before the answer to", Point::BeforeAnswer, true},
    {"in the middle of the answer to", Point::MidAnswer, true},
};

struct KindRow
{
    Kind kind;
    const char *text;
    const char *outcome; // nothing for a job that gets through
};
const KindRow kindRows[] = {
    {Kind::Drop, "closed", "error 2"}, // RemoteHostClosedError
    {Kind::Stall, "stalled", "error 4"}, // TimeoutError
    {Kind::Delay, "delayed", ""},
};

} // namespace

Q_DECLARE_METATYPE(ProxyFault)

//! The connection between client and service fails at every place of an upload; a new job finishes it.
class TestUploadFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void aNewJobContinuesBehindTheFault_data();
    void aNewJobContinuesBehindTheFault();
    void aLostRecordCostsNoMoreThanOneChunk_data();
    void aLostRecordCostsNoMoreThanOneChunk();
    void aLostDocumentAnswerCostsNoChunk_data();
    void aLostDocumentAnswerCostsNoChunk();

private:
    std::unique_ptr<ClientRun> upload(const ProxyFault &fault) const;
    void finishUpload();

    std::unique_ptr<ProxyWorld> m_world;
    std::unique_ptr<LocalFile> m_file;
    quint32 m_salt = 0;
};

void TestUploadFaults::initTestCase()
{
    m_world = std::make_unique<ProxyWorld>();
    QVERIFY(m_world->isStarted());
}

void TestUploadFaults::init()
{
    m_world->renewProxy();
    ++m_salt;
    // Of documents with the same name there may be only one.
    const QString name = QString("%1.bin").arg(m_salt);
    m_file = std::make_unique<LocalFile>(m_world->makeFile(FileBytes, m_salt, name));
}

std::unique_ptr<ClientRun> TestUploadFaults::upload(const ProxyFault &fault) const
{
    QStringList arguments;
    if (fault.kind == Kind::Stall)
        arguments << "--stall-ms"
                  << "3000";
    if (fault.kind == Kind::HalfAnswer)
        arguments << "--quiet-ms"
                  << "2500";
    return m_world->upload(*m_file, arguments);
}

void TestUploadFaults::finishUpload()
{
    const auto client = m_world->upload(*m_file);
    QVERIFY(client->wait());
    QVERIFY2(client->isDone(), qPrintable(client->log()));
    QVERIFY(m_world->download(client->fileId()) == m_file->content());
}

void TestUploadFaults::aNewJobContinuesBehindTheFault_data()
{
    QTest::addColumn<int>("chunk");
    QTest::addColumn<ProxyFault>("fault");
    QTest::addColumn<QString>("outcome");
    QTest::addColumn<bool>("isStored");
    for (int chunk = 0; chunk < Chunks; ++chunk) {
        for (const KindRow &kind : kindRows) {
            for (const PointRow &point : pointRows) {
                QTest::addRow("%s %s chunk %d", kind.text, point.text, chunk)
                    << chunk << ProxyFault{kind.kind, point.point}
                    << QString::fromLatin1(kind.outcome) << point.isStored;
            }
        }
        QTest::addRow("half an answer to chunk %d", chunk)
            << chunk << ProxyFault{Kind::HalfAnswer, Point::BeforeAnswer} << "silence" << true;
    }
}

void TestUploadFaults::aNewJobContinuesBehindTheFault()
{
    QFETCH(int, chunk);
    QFETCH(ProxyFault, fault);
    QFETCH(QString, outcome);
    QFETCH(bool, isStored);
    m_world->proxy->strikeChunk(chunk, fault);
    const auto client = upload(fault);
    QVERIFY(client->wait());
    const QList<int> sentBefore = m_world->proxy->sentChunks();
    if (outcome.isEmpty()) {
        QVERIFY2(client->isDone(), qPrintable(client->log()));
    } else {
        QCOMPARE(client->outcome(), outcome);
        QCOMPARE(m_world->savedChunks(m_file->md5()), isStored ? chunk + 1 : chunk);
        QCOMPARE(sentBefore.last(), chunk);
    }

    finishUpload();
    QList<int> expected = {0, 1, 2};
    if (!outcome.isEmpty() && !isStored)
        expected.insert(chunk, chunk);
    QCOMPARE(m_world->proxy->sentChunks(), expected);
}

void TestUploadFaults::aLostRecordCostsNoMoreThanOneChunk_data()
{
    QTest::addColumn<ProxyFault>("fault");
    QTest::newRow("stalled") << ProxyFault{Kind::Stall, Point::BeforeRequest};
    QTest::newRow("half an answer") << ProxyFault{Kind::HalfAnswer, Point::BeforeAnswer};
}

void TestUploadFaults::aLostRecordCostsNoMoreThanOneChunk()
{
    QFETCH(ProxyFault, fault);
    m_world->proxy->strikeChunk(2, {Kind::Drop, Point::BeforeRequest});
    const auto first = m_world->upload(*m_file);
    QVERIFY(first->wait());
    QCOMPARE(first->outcome(), QString("error 2"));

    m_world->proxy->strikeTarget("/base-service/largefiles/md5/", fault);
    const auto second = upload(fault);
    QVERIFY(second->wait());
    QVERIFY2(second->isDone(), qPrintable(second->log()));
    // Without the record it begins at the first chunk, and the answer to that one names the next.
    QCOMPARE(m_world->proxy->sentChunks(), (QList<int>{0, 1, 2, 0, 2}));
    QVERIFY(m_world->download(second->fileId()) == m_file->content());
}

void TestUploadFaults::aLostDocumentAnswerCostsNoChunk_data()
{
    QTest::addColumn<ProxyFault>("fault");
    QTest::addColumn<QString>("outcome");
    QTest::newRow("closed before the request")
        << ProxyFault{Kind::Drop, Point::BeforeRequest} << "error 2";
    QTest::newRow("closed before the answer")
        << ProxyFault{Kind::Drop, Point::BeforeAnswer} << "error 2";
    QTest::newRow("stalled before the answer")
        << ProxyFault{Kind::Stall, Point::BeforeAnswer} << "error 4";
    QTest::newRow("half an answer")
        << ProxyFault{Kind::HalfAnswer, Point::BeforeAnswer} << "document";
}

void TestUploadFaults::aLostDocumentAnswerCostsNoChunk()
{
    QFETCH(ProxyFault, fault);
    QFETCH(QString, outcome);
    m_world->proxy->strikeTarget("/document-service/projects/p1/documents", fault);
    const auto client = upload(fault);
    QVERIFY(client->wait());
    QVERIFY2(!client->isDone(), qPrintable(client->log()));
    QCOMPARE(client->outcome().trimmed(), outcome);

    finishUpload();
    QCOMPARE(m_world->proxy->sentChunks(), (QList<int>{0, 1, 2}));
}

QTEST_GUILESS_MAIN(TestUploadFaults)
#include "tst_upload_faults.moc"
