#include "ClientWorld.h"

#include <transfer/VellContentReader.h>

#include <QObject>

using Kind = VellError::Kind;

namespace {

//! What a reader has brought, and how it ended.
class Reading
{
public:
    Reading(const ClientWorld &world, const QString &fileId, qint64 sizeBytes = -1)
        : reader(std::make_unique<VellContentReader>(&world.session, fileId, sizeBytes))
    {
        QObject::connect(reader.get(), &VellContentReader::received, reader.get(),
                         [this](const QByteArray &data) { content += data; });
        QObject::connect(reader.get(), &VellContentReader::finished, reader.get(),
                         [this] { ++ends; });
        QObject::connect(reader.get(), &VellContentReader::failed, reader.get(),
                         [this](const VellError &reason) {
                             ++ends;
                             error = reason;
                         });
    }

    bool waitForEnd() const
    {
        return QTest::qWaitFor([this] { return ends > 0; }, WaitMs);
    }

    std::unique_ptr<VellContentReader> reader;
    QByteArray content;
    VellError error;
    int ends = 0;
};

FaultRule filesFault(FaultRule::Kind kind, qint64 value, int times)
{
    FaultRule rule;
    rule.kind = kind;
    rule.value = value;
    rule.times = times;
    rule.verb = "GET";
    rule.pathPrefix = QStringLiteral("/base-service/files");
    return rule;
}

QByteArray manyBytes(int count)
{
    QByteArray bytes;
    for (int i = 0; bytes.size() < count; ++i)
        bytes += QByteArray::number(i) + '\n';
    return bytes;
}

} // namespace

class TestContentReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void contentArrives_data();
    void contentArrives();
    void aLostConnectionIsContinued();
    void whatIsNotThereFails();
    void aServiceThatAlwaysFailsEndsIt();
    void anotherSizeIsAnError();
    void nothingComesAfterItIsDeleted();
};

void TestContentReader::contentArrives_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("small") << QByteArray("content");
    QTest::newRow("large") << manyBytes(5'000'000);
}

void TestContentReader::contentArrives()
{
    QFETCH(const QByteArray, content);
    ClientWorld world;
    const VellDocument document =
        await(world.documents.document(world.store(QStringLiteral("a"), content)._id));
    const Reading reading(world, document.fileId, document.fileSize);
    QVERIFY(reading.waitForEnd());
    QCOMPARE(reading.error.text, QString());
    QVERIFY(reading.content == content);
}

void TestContentReader::aLostConnectionIsContinued()
{
    ClientWorld world;
    const QByteArray content = manyBytes(3'000'000);
    const VellDocument document =
        await(world.documents.document(world.store(QStringLiteral("a"), content)._id));
    world.service.addFault(filesFault(FaultRule::Kind::CutReply, 1'000'000, 2));
    const Reading reading(world, document.fileId, document.fileSize);
    QVERIFY(reading.waitForEnd());
    QCOMPARE(reading.error.text, QString());
    QVERIFY(reading.content == content);
    QCOMPARE(reading.ends, 1);
}

void TestContentReader::whatIsNotThereFails()
{
    ClientWorld world;
    const Reading reading(world, QStringLiteral("unknown"));
    QVERIFY(reading.waitForEnd());
    QCOMPARE(reading.error.kind, Kind::NotFound);
    QVERIFY(reading.content.isEmpty()); // the message is no content
}

void TestContentReader::aServiceThatAlwaysFailsEndsIt()
{
    ClientWorld world;
    const VellDocument document =
        await(world.documents.document(world.store(QStringLiteral("a"))._id));
    world.service.addFault(filesFault(FaultRule::Kind::Status, 503, 0));
    const Reading reading(world, document.fileId);
    QVERIFY(reading.waitForEnd());
    QCOMPARE(reading.error.kind, Kind::Busy);
}

void TestContentReader::anotherSizeIsAnError()
{
    ClientWorld world;
    const VellDocument document =
        await(world.documents.document(world.store(QStringLiteral("a"))._id));
    const Reading reading(world, document.fileId, document.fileSize + 1);
    QVERIFY(reading.waitForEnd());
    QCOMPARE(reading.error.kind, Kind::ServiceFailed);
}

void TestContentReader::nothingComesAfterItIsDeleted()
{
    ClientWorld world;
    const VellDocument document =
        await(world.documents.document(world.store(QStringLiteral("a"), manyBytes(9'000'000))._id));
    Reading reading(world, document.fileId);
    QVERIFY(QTest::qWaitFor([&] { return !reading.content.isEmpty(); }, WaitMs));
    reading.reader.reset();
    const int bytes = reading.content.size();
    await(world.documents.document(document._id)); // time for more to come
    QCOMPARE(reading.content.size(), bytes);
    QCOMPARE(reading.ends, 0);
}

QTEST_GUILESS_MAIN(TestContentReader)
#include "tst_content_reader.moc"
