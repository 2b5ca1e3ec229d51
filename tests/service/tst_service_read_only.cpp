#include <service/ReadOnlyDisk.h>
#include <service/ServiceWorld.h>

#include <QRegularExpression>
#include <QTest>

#include <memory>
#include <vector>

//! A disk that can only be read since something went wrong: what is held is given, and changes are refused.
class TestServiceReadOnly : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void contentsAreGiven();
    void listsAreAnswered();
    void changesAreRefused_data();
    void changesAreRefused();
    void anUploadIsRefusedAndLeavesNothing();

private:
    ServiceWorld m_world;
    QString m_document;
    QString m_fileId;
};

void TestServiceReadOnly::initTestCase()
{
    m_document = m_world.makeFile("a.txt", {}, "hello\n");
    m_fileId = m_world.document(m_document).value("fileId").toString();
    QVERIFY(!m_fileId.isEmpty());
    QVERIFY(makeDiskReadOnly());
}

//! On several connections at once, so that threads take part that have not read the records yet.
void TestServiceReadOnly::contentsAreGiven()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("vell-service: "));
    std::vector<std::unique_ptr<HttpClient>> clients;
    for (int i = 0; i < 40; ++i) {
        clients.push_back(std::make_unique<HttpClient>(m_world.service->baseApi()));
        const HttpAnswer answer = clients.back()->get(QString("base-service/files/") + m_fileId);
        QCOMPARE(answer.status, 200);
        QCOMPARE(answer.body, QByteArray("hello\n"));
    }
}

void TestServiceReadOnly::listsAreAnswered()
{
    QCOMPARE(m_world.names({}), QStringList{"a.txt"});
}

void TestServiceReadOnly::changesAreRefused_data()
{
    QTest::addColumn<QByteArray>("verb");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("a new folder") << QByteArray("POST") << ServiceWorld::projectPath("documents")
                                  << QByteArray(R"({"name":"x","type":"dir"})");
    QTest::newRow("a new name") << QByteArray("PUT") << ServiceWorld::documentPath(m_document)
                                << QByteArray(R"({"name":"b.txt"})");
    QTest::newRow("a deletion") << QByteArray("DELETE") << ServiceWorld::documentPath(m_document)
                                << QByteArray();
}

void TestServiceReadOnly::changesAreRefused()
{
    QFETCH(QByteArray, verb);
    QFETCH(QString, path);
    QFETCH(QByteArray, body);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("vell-service: "));
    const HttpAnswer answer = m_world.client.send(verb, path, body);
    QCOMPARE(answer.status, 507);
    QVERIFY2(answer.errorText().contains("read-only"), answer.body.constData());
}

void TestServiceReadOnly::anUploadIsRefusedAndLeavesNothing()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("vell-service: "));
    QCOMPARE(m_world.client.postForm("base-service/files", {{"file/b", "b"}}).status, 507);
    QCOMPARE(m_world.names({}), QStringList{"a.txt"});
}

QTEST_GUILESS_MAIN(TestServiceReadOnly)
#include "tst_service_read_only.moc"
