#include <service/ReadOnlyDisk.h>
#include <service/ServiceFixture.h>

#include <QtTest>

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
    ServiceFixture m_fixture;
    QString m_document;
    QString m_fileId;
};

void TestServiceReadOnly::initTestCase()
{
    m_document = m_fixture.makeFile(QStringLiteral("a.txt"), {}, "hello\n");
    m_fileId = m_fixture.document(m_document).value(QStringLiteral("fileId")).toString();
    QVERIFY(!m_fileId.isEmpty());
    QVERIFY(makeDiskReadOnly());
}

//! On several connections at once, so that threads take part that have not read the records yet.
void TestServiceReadOnly::contentsAreGiven()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("vell-service: ")));
    std::vector<std::unique_ptr<HttpClient>> clients;
    for (int i = 0; i < 40; ++i) {
        clients.push_back(std::make_unique<HttpClient>(m_fixture.service->baseApi()));
        const HttpAnswer answer =
            clients.back()->get(QStringLiteral("base-service/files/") + m_fileId);
        QCOMPARE(answer.status, 200);
        QCOMPARE(answer.body, QByteArray("hello\n"));
    }
}

void TestServiceReadOnly::listsAreAnswered()
{
    QCOMPARE(m_fixture.names({}), QStringList{QStringLiteral("a.txt")});
}

void TestServiceReadOnly::changesAreRefused_data()
{
    QTest::addColumn<QByteArray>("verb");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("a new folder") << QByteArray("POST")
                                  << ServiceFixture::projectPath(QStringLiteral("documents"))
                                  << QByteArray(R"({"name":"x","type":"dir"})");
    QTest::newRow("a new name") << QByteArray("PUT") << ServiceFixture::documentPath(m_document)
                                << QByteArray(R"({"name":"b.txt"})");
    QTest::newRow("a deletion") << QByteArray("DELETE") << ServiceFixture::documentPath(m_document)
                                << QByteArray();
}

void TestServiceReadOnly::changesAreRefused()
{
    QFETCH(QByteArray, verb);
    QFETCH(QString, path);
    QFETCH(QByteArray, body);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("vell-service: ")));
    const HttpAnswer answer = m_fixture.client.send(verb, path, body);
    QCOMPARE(answer.status, 507);
    QVERIFY2(answer.errorText().contains(QStringLiteral("read-only")), answer.body.constData());
}

void TestServiceReadOnly::anUploadIsRefusedAndLeavesNothing()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("vell-service: ")));
    QCOMPARE(m_fixture.client
                 .postForm(QStringLiteral("base-service/files"), {{QStringLiteral("file/b"), "b"}})
                 .status,
             507);
    QCOMPARE(m_fixture.names({}), QStringList{QStringLiteral("a.txt")});
}

QTEST_GUILESS_MAIN(TestServiceReadOnly)
#include "tst_service_read_only.moc"
