#include "FacadeCacheTest.h"

#include <QTest>

// What changes store, replace, remove and leave alone.
class TestFacadeCacheChanges : public FacadeCacheTest
{
    Q_OBJECT

private Q_SLOTS:
    void aNewFolderIsStoredOnSuccessOnly();
    void anUpdateIsStoredOnSuccessOnly();
    void aNewFolderWithoutAnIdIsStoredUnderTheEmptyId();
    void aDeletedDocumentLeavesOnSuccessOnly();
    void deletingSeveralGoesOnAfterAFailure();
    void deletingNoneAsksForNothing();
    void aMoveFetchesAndStoresEachDocument();
    void aMoveWhoseFetchFailsStoresAnEmptyRecord();
    void aFailedMoveFetchesNothing();
    void theFrequentMarkChangesTheCachedRecord();
    void theFrequentMarkOfAnUncachedDocumentStoresAnEmptyRecord();
    void aFailedFrequentMarkStoresNothing();
    void aRemarkChangesTheCachedRecord();
    void aRemarkOfAnUncachedVersionStoresAnEmptyRecord();
    void aFailedRemarkStoresNothing();
    void aRecordRemovesTheDocumentBeforeItsRequest();
    void otherChangesLeaveTheCacheAlone();
};

void TestFacadeCacheChanges::aNewFolderIsStoredOnSuccessOnly()
{
    VellDocument doc = document("", "Level 1");
    answer(R"({"_id":"f1","name":"Level 1"})", 403);
    QVERIFY(!m_data->createDocFolder(doc));
    QVERIFY(!isCached("f1"));

    doc = document("", "Level 1");
    answer(R"({"_id":"f1","name":"Level 1"})");
    QVERIFY(m_data->createDocFolder(doc));
    QCOMPARE(doc._id, QString("f1"));
    QCOMPARE(name("f1"), QString("Level 1"));
}

void TestFacadeCacheChanges::aNewFolderWithoutAnIdIsStoredUnderTheEmptyId()
{
    VellDocument doc = document("", "Level 1");
    answer(R"({"name":"odd"})");
    QVERIFY(m_data->createDocFolder(doc));
    QCOMPARE(name(""), QString("odd"));
}

void TestFacadeCacheChanges::anUpdateIsStoredOnSuccessOnly()
{
    m_data->addDocToCache(document("d1", "old"));
    VellDocument doc = document("d1", "mine");
    doc.codeList = {VellDocumentChange::EntityLinks};
    answer(R"({"_id":"d1","name":"new"})", 500);
    QVERIFY(!m_data->updateDoc(doc));
    QCOMPARE(name("d1"), QString("old"));

    answer(R"({"_id":"d1","name":"new"})");
    QVERIFY(m_data->updateDoc(doc));
    QCOMPARE(name("d1"), QString("new"));
    QCOMPARE(requests(), 2);

    doc.codeList.clear();
    QVERIFY(!m_data->updateDoc(doc));
    QCOMPARE(requests(), 2);
}

void TestFacadeCacheChanges::aDeletedDocumentLeavesOnSuccessOnly()
{
    m_data->addDocToCache(document("d1", "plan"));
    answer("", 403);
    QVERIFY(!m_data->deleteDoc("d1"));
    QVERIFY(isCached("d1"));
    answer("");
    QVERIFY(m_data->deleteDoc("d1"));
    QVERIFY(!isCached("d1"));
}

void TestFacadeCacheChanges::deletingSeveralGoesOnAfterAFailure()
{
    for (const char *id : {"d1", "d2", "d3"})
        m_data->addDocToCache(document(id, id));
    answer("");
    answer("", 403);
    answer("");
    const QStringList ids{"d1", "d2", "d3"};
    QVERIFY(!m_data->deleteDoc(ids));
    QCOMPARE(requests(), 3);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(m_server->requests()[i].verb, QByteArray("DELETE"));
        QCOMPARE(m_server->requests()[i].decodedTarget(),
                 QString("/document-service/documents/") + ids[i]);
    }
    QVERIFY(isCached("d2"));
    QVERIFY(!isCached("d1"));
    QVERIFY(!isCached("d3"));
}

void TestFacadeCacheChanges::deletingNoneAsksForNothing()
{
    QVERIFY(m_data->deleteDoc(QStringList()));
    QCOMPARE(requests(), 0);
}

void TestFacadeCacheChanges::aMoveFetchesAndStoresEachDocument()
{
    m_data->addDocToCache(document("d1", "old"));
    answer("");
    answer(R"({"_id":"d1","name":"new","parentId":"f1"})");
    answer(R"({"_id":"d2","name":"b","parentId":"f1"})");
    QVERIFY(m_data->moveToFolder({"d1", "d2"}, "f1"));
    QCOMPARE(requests(), 3);
    QCOMPARE(m_server->requests()[0].body,
             QByteArray(R"({"documentIds":["d1","d2"],"parentId":"f1"})"));
    QCOMPARE(m_server->requests()[1].decodedTarget(),
             QString("/document-service/documents/d1?expand=true"));
    QCOMPARE(cached("d1").name, QString("new"));
    QCOMPARE(cached("d2").parentId, QString("f1"));
    QCOMPARE(requests(), 3);
}

void TestFacadeCacheChanges::aMoveWhoseFetchFailsStoresAnEmptyRecord()
{
    m_data->addDocToCache(document("d1", "old"));
    answer("");
    answer("", 500);
    QVERIFY(m_data->moveToFolder({"d1"}, QString()));
    QCOMPARE(name("d1"), QString("old"));
    QVERIFY(isCached(""));
    QCOMPARE(cached("").type, QString());
}

void TestFacadeCacheChanges::aFailedMoveFetchesNothing()
{
    answer("", 403);
    QVERIFY(!m_data->moveToFolder({"d1"}, QString()));
    QCOMPARE(requests(), 1);
    QVERIFY(!isCached(""));
}

void TestFacadeCacheChanges::theFrequentMarkChangesTheCachedRecord()
{
    m_data->addDocToCache(document("d1", "plan"));
    answer("");
    QVERIFY(m_data->setFrequentDocument("d1", true));
    QCOMPARE(cached("d1").favorite, true);
    QCOMPARE(cached("d1").name, QString("plan"));
    answer("");
    QVERIFY(m_data->setFrequentDocument("d1", false));
    QCOMPARE(cached("d1").favorite, false);
}

void TestFacadeCacheChanges::theFrequentMarkOfAnUncachedDocumentStoresAnEmptyRecord()
{
    answer("");
    QVERIFY(m_data->setFrequentDocument("d1", true));
    QVERIFY(isCached("d1"));
    QCOMPARE(cached("d1").favorite, true);
    QCOMPARE(cached("d1")._id, QString());
    QCOMPARE(name("d1"), QString());
}

void TestFacadeCacheChanges::aFailedFrequentMarkStoresNothing()
{
    answer("", 500);
    QVERIFY(!m_data->setFrequentDocument("d1", true));
    QVERIFY(!isCached("d1"));
}

void TestFacadeCacheChanges::aRemarkChangesTheCachedRecord()
{
    m_data->addDocToCache(document("d1", "plan"));
    answer("");
    QVERIFY(m_data->updateDocRemake(false, "d1", "checked"));
    QCOMPARE(cached("d1").remark, QString("checked"));
    QCOMPARE(cached("d1").name, QString("plan"));
}

void TestFacadeCacheChanges::aRemarkOfAnUncachedVersionStoresAnEmptyRecord()
{
    answer("");
    QVERIFY(m_data->updateDocRemake(true, "v1", "checked"));
    QVERIFY(isCached("v1"));
    QCOMPARE(cached("v1").remark, QString("checked"));
    QCOMPARE(cached("v1")._id, QString());
}

void TestFacadeCacheChanges::aFailedRemarkStoresNothing()
{
    answer("", 500);
    QVERIFY(!m_data->updateDocRemake(false, "d1", "checked"));
    QVERIFY(!isCached("d1"));
}

void TestFacadeCacheChanges::aRecordRemovesTheDocumentBeforeItsRequest()
{
    m_data->addDocToCache(document("d1", "plan"));
    QString out;
    bool wasCachedMeanwhile = true;
    connect(m_server.get(), &ScriptedServer::requestReceived, this,
            [&] { wasCachedMeanwhile = !m_data->getFolderName("d1").isEmpty(); });
    answer("", 500);
    QVERIFY(!m_data->restoreFile("d1", {}, 3, true, out));
    QVERIFY(!wasCachedMeanwhile);
    QVERIFY(!isCached("d1"));
}

void TestFacadeCacheChanges::otherChangesLeaveTheCacheAlone()
{
    VellDocument doc = document("d1", "plan");
    doc.order = 5;
    m_data->addDocToCache(doc);
    const QString id = "d1";
    m_server->setHandler([](const ScriptedRequest &) {
        return ScriptedReply::json(R"({"_id":"d9","name":"x","value":"true","code":"c"})");
    });
    QString text;
    int number = 0;
    QVERIFY(m_data->changeDocOrder({{id, 9}}));
    QVERIFY(m_data->setRectentDocument(id, true));
    QVERIFY(m_data->emptyRecycled("doc"));
    QVERIFY(!m_data->uploadRecycleDoc(id));
    QVERIFY(m_data->shareDocument({id}, QDateTime(), text, true));
    QVERIFY(m_data->getFavorDoc(number, id));
    m_data->getDocPwd(id, text);
    QVERIFY(m_data->canEditDocFolder(id, "doc"));
    m_data->getDocumentsRangeCount(VellDocumentConditon());

    const int before = requests();
    QCOMPARE(cached("d1").order, 5);
    QCOMPARE(cached("d1").name, QString("plan"));
    QCOMPARE(requests(), before);
    QVERIFY(!isCached("d9"));
}

QTEST_GUILESS_MAIN(TestFacadeCacheChanges)
#include "tst_facade_cache_changes.moc"
