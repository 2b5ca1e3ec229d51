#include "UploadTest.h"

#include <async_ops/AsyncGetDocInfo.h>
#include <async_ops/AsyncGetRecent.h>
#include <async_ops/AsyncRenameDoc.h>

#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QTest>

// Where the jobs send their requests: address, project and user as they are at the moment of each request, and
// identifiers with placeholders in them.
class TestJobAddresses : public UploadTest
{
    Q_OBJECT

private Q_SLOTS:
    void theDocumentGoesToTheProjectThatIsOpenByThen();
    void theDocumentGoesToTheAddressThatIsSetByThen();
    void eachChunkGoesToTheAddressThatIsSetByThen();
    void smallJobsReadAddressProjectAndUserAnew();

    void placeholdersInTheProjectOfADocument_data();
    void placeholdersInTheProjectOfADocument();
    void placeholdersInTheIdentifierOfAVersion_data() { addPlaceholders(); }
    void placeholdersInTheIdentifierOfAVersion();
    void placeholdersInTheIdentifiersOfSmallJobs_data() { addPlaceholders(); }
    void placeholdersInTheIdentifiersOfSmallJobs();
    void placeholdersAreFilledOneAfterTheOther_data();
    void placeholdersAreFilledOneAfterTheOther();

private:
    static void addPlaceholders();
    QString line(int request) const { return m_world->requestLines().value(request); }
    void waitForRequests(int count) const
    {
        QTRY_COMPARE_WITH_TIMEOUT(m_world->server.requests().size(), count, WaitMs);
    }
};

void TestJobAddresses::addPlaceholders()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"a%1b", "a%2b", "a%3b"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void TestJobAddresses::theDocumentGoesToTheProjectThatIsOpenByThen()
{
    m_slow = {0};
    whenRequested(0, [] { GetSoftCache()->setCurrentProjectId("p2"); });
    start(smallFile());
    waitForRequests(2);
    QCOMPARE(line(1), QString("POST /document-service/projects/p2/documents"));
}

void TestJobAddresses::theDocumentGoesToTheAddressThatIsSetByThen()
{
    ScriptedServer other;
    m_slow = {0};
    whenRequested(0, [&] { VellBaseApi::GetInstance().setBaseApi(other.baseApi()); });
    start(smallFile(), false);
    QTRY_COMPARE_WITH_TIMEOUT(other.requests().size(), 1, WaitMs);
    QCOMPARE(other.requests()[0].target, QByteArray("/document-service/documents/"));
    QCOMPARE(m_world->requestWords(), QString("file"));
}

void TestJobAddresses::eachChunkGoesToTheAddressThatIsSetByThen()
{
    ScriptedServer other;
    other.setHandler([this](const ScriptedRequest &request) { return m_store.answer(request); });
    m_slow = {1};
    whenRequested(1, [&] { VellBaseApi::GetInstance().setBaseApi(other.baseApi()); });
    start(largeFile());
    QTRY_COMPARE_WITH_TIMEOUT(m_spies->finished.size(), 1, WaitMs);
    QCOMPARE(m_world->requestWords(), QString("record chunk0"));
    QCOMPARE(m_store.sentChunks, QList<int>({0, 1, 2}));
    QCOMPARE(other.requests().size(), 3);
}

void TestJobAddresses::smallJobsReadAddressProjectAndUserAnew()
{
    ScriptedServer other;
    AsyncGetRecent recent;
    AsyncGetDocInfo info;
    AsyncRenameDoc rename;
    const auto askAll = [&] {
        recent.getRecentDocs(QString(), "doc");
        info.getDocInfo("d1");
        rename.renameDoc("d1", "plan");
    };
    GetSoftCache()->setCurrentUserId("u1");
    askAll();
    waitForRequests(3);
    GetSoftCache()->setCurrentProjectId("p2");
    GetSoftCache()->setCurrentUserId("u2");
    VellBaseApi::GetInstance().setBaseApi(other.baseApi());
    askAll();
    QTRY_COMPARE_WITH_TIMEOUT(other.requests().size(), 3, WaitMs);
    QCOMPARE(m_world->server.requests().size(), 3);

    QStringList targets = m_world->requestLines() + QStringList();
    for (const ScriptedRequest &request : other.requests())
        targets.append(request.decodedTarget());
    const QString asked = "/projects/%1/documents?where={\"type\":\"file\",\"createdBy\":\"%2\"}";
    QCOMPARE(targets.filter(asked.arg("p1", "u1")).size(), 1);
    QCOMPARE(targets.filter(asked.arg("p2", "u2")).size(), 1);
}

void TestJobAddresses::placeholdersInTheProjectOfADocument_data()
{
    addPlaceholders();
}

void TestJobAddresses::placeholdersInTheProjectOfADocument()
{
    QFETCH(QString, text);
    GetSoftCache()->setCurrentProjectId(text);
    start(smallFile());
    waitForRequests(2);
    QCOMPARE(line(1), QString("POST /document-service/projects/") + text + QString("/documents"));
}

void TestJobAddresses::placeholdersInTheIdentifierOfAVersion()
{
    QFETCH(QString, text);
    VellDocument doc = smallFile();
    doc._id = text;
    start(doc, false);
    waitForRequests(2);
    QCOMPARE(line(1), QString("PUT /document-service/documents/") + text);
}

void TestJobAddresses::placeholdersInTheIdentifiersOfSmallJobs()
{
    QFETCH(QString, text);
    AsyncGetDocInfo info;
    info.getDocInfo(text);
    waitForRequests(1);
    QCOMPARE(line(0), QString("GET /documents/") + text + QString("?info=true&pwd=true"));
    AsyncRenameDoc rename;
    rename.renameDoc(text, text);
    waitForRequests(2);
    QCOMPARE(line(1), QString("PUT /document-service/documents/") + text);
    QCOMPARE(body(1), "{\"name\":\"" + text.toUtf8() + "\"}");
}

void TestJobAddresses::placeholdersAreFilledOneAfterTheOther_data()
{
    QTest::addColumn<QString>("project");
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("target");

    const auto row = [](const char *project, const char *user, const char *category,
                        const char *target) {
        QTest::addRow("%s, %s, %s", project, user, category)
            << QString::fromLatin1(project) << QString::fromLatin1(user)
            << QString::fromLatin1(category) << QString::fromLatin1(target);
    };
    // Each value takes the lowest placeholder that is there by then, also one that came with a value.
    row("p%1", "u", "c", R"(pu/documents?where={"type":"file","createdBy":"c"}&category=%3)");
    row("p%2", "u", "c", R"(pu/documents?where={"type":"file","createdBy":"u"}&category=c)");
    row("p%3", "u", "c", R"(pc/documents?where={"type":"file","createdBy":"u"}&category=c)");
    row("p", "u%1", "c", R"(p/documents?where={"type":"file","createdBy":"uc"}&category=%3)");
    row("p", "u%2", "c", R"(p/documents?where={"type":"file","createdBy":"uc"}&category=%3)");
    row("p", "u%3", "c", R"(p/documents?where={"type":"file","createdBy":"uc"}&category=c)");
    row("p", "u", "c%1", R"(p/documents?where={"type":"file","createdBy":"u"}&category=c%1)");
    row("p", "u", "c%2", R"(p/documents?where={"type":"file","createdBy":"u"}&category=c%2)");
    row("p", "u", "c%3", R"(p/documents?where={"type":"file","createdBy":"u"}&category=c%3)");
}

void TestJobAddresses::placeholdersAreFilledOneAfterTheOther()
{
    QFETCH(QString, project);
    QFETCH(QString, user);
    QFETCH(QString, category);
    QFETCH(QString, target);
    GetSoftCache()->setCurrentProjectId(project);
    GetSoftCache()->setCurrentUserId(user);
    AsyncGetRecent job;
    job.getRecentDocs(QString(), category);
    waitForRequests(1);
    QCOMPARE(line(0),
             QString("GET /document-service/projects/") + target
                 + QString("&order=-createdAt&limit=50&linkedEntity=true"));
}

QTEST_GUILESS_MAIN(TestJobAddresses)
#include "tst_job_addresses.moc"
