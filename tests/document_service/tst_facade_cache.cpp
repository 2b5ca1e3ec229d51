#include "FacadeCacheTest.h"

#include <QTest>

// What lists and fetches store, replace and leave alone.
class TestFacadeCache : public FacadeCacheTest
{
    Q_OBJECT

private Q_SLOTS:
    void aCachedDocumentIsAnsweredWithoutARequest();
    void aCachedCopyDoesNotFollowTheCallersRecord();
    void aFetchStoresWhatWasMissing();
    void aFetchPastTheCacheRefreshesOnlyTheCaller();
    void aFetchOfTheCallersOwnRecordStoresUnderTheRepliesId();
    void aFailedFetchStoresNothing();
    void theNameIsEmptyForWhatIsNotCached();
    void addingStoresAlsoUnderTheEmptyId();
    void clearForgetsEverything();

    void aListStoresItsDocuments();
    void aListIsStoredInWhateverOrderItComes();
    void aReducedListStoresNothing_data();
    void aReducedListStoresNothing();
    void aPageStoresItsDocumentsWhateverItSelects_data();
    void aPageStoresItsDocumentsWhateverItSelects();
    void listsThatAreNotStored();
    void onlyWhatThisRequestBroughtIsStored();

    void copiesAreIndependent();
};

void TestFacadeCache::aCachedDocumentIsAnsweredWithoutARequest()
{
    m_data->addDocToCache(document("d1", "plan"));
    VellDocument doc;
    m_data->getDoc("d1", doc, true);
    QCOMPARE(doc.name, QString("plan"));
    QCOMPARE(requests(), 0);
}

void TestFacadeCache::aCachedCopyDoesNotFollowTheCallersRecord()
{
    VellDocument doc = document("d1", "plan");
    m_data->addDocToCache(doc);
    doc.name = "changed";
    QCOMPARE(name("d1"), QString("plan"));
    m_data->addDocToCache(doc);
    QCOMPARE(name("d1"), QString("changed"));
}

void TestFacadeCache::aFetchStoresWhatWasMissing()
{
    answer(R"({"_id":"d1","name":"plan"})");
    VellDocument doc;
    m_data->getDoc("d1", doc, true);
    QCOMPARE(requests(), 1);
    QCOMPARE(doc.name, QString("plan"));
    QCOMPARE(cached("d1").name, QString("plan"));
    QCOMPARE(requests(), 1);
}

void TestFacadeCache::aFetchPastTheCacheRefreshesOnlyTheCaller()
{
    m_data->addDocToCache(document("d1", "old"));
    answer(R"({"_id":"d1","name":"new"})");
    VellDocument doc;
    m_data->getDoc("d1", doc, false);
    QCOMPARE(requests(), 1);
    QCOMPARE(doc.name, QString("new"));
    QCOMPARE(name("d1"), QString("old"));
}

void TestFacadeCache::aFetchOfTheCallersOwnRecordStoresUnderTheRepliesId()
{
    m_data->addDocToCache(document("d1", "old"));
    VellDocument doc = document("d1", "mine");
    // The identifier that is asked for is part of the record that the reply overwrites.
    answer(R"({"_id":"d2","name":"other"})");
    m_data->getDoc(doc._id, doc, false);
    QCOMPARE(doc._id, QString("d2"));
    QVERIFY(!isCached("d2")); // d1 was asked for and is cached
    QCOMPARE(name("d1"), QString("old"));

    answer(R"({"_id":"d4","name":"moved"})");
    m_data->getDoc("d3", doc, false);
    QCOMPARE(name("d4"), QString("moved"));
    QCOMPARE(name("d3"), QString());
}

void TestFacadeCache::aFailedFetchStoresNothing()
{
    answer(R"({"error":"no such document"})", 404);
    VellDocument doc = document("old", "old");
    m_data->getDoc("d1", doc, false);
    QCOMPARE(doc._id, QString());
    QCOMPARE(doc.type, QString());
    QVERIFY(!isCached("d1"));
    QVERIFY(!isCached(""));
}

void TestFacadeCache::theNameIsEmptyForWhatIsNotCached()
{
    QCOMPARE(name("d1"), QString());
    QVERIFY(!isCached("d1")); // and asking for the name has stored nothing
    QCOMPARE(requests(), 1);
}

void TestFacadeCache::addingStoresAlsoUnderTheEmptyId()
{
    m_data->addDocToCache(document("", "nameless"));
    QVERIFY(isCached(""));
    QCOMPARE(name(""), QString("nameless"));
}

void TestFacadeCache::clearForgetsEverything()
{
    m_data->addDocToCache(document("d1", "plan"));
    m_data->addDocToCache(document("d2", "plan"));
    m_data->clear();
    QCOMPARE(name("d1"), QString());
    QVERIFY(!isCached("d1"));
    QVERIFY(!isCached("d2"));
}

void TestFacadeCache::aListStoresItsDocuments()
{
    m_data->addDocToCache(document("d1", "old"));
    answer(R"([{"_id":"d1","name":"new"},{"_id":"d2","name":"b"},{"name":"nameless"}])");
    QList<VellDocument> list;
    m_data->getDocuments(VellDocumentConditon(), list);
    QCOMPARE(name("d1"), QString("new"));
    QCOMPARE(name("d2"), QString("b"));
    QCOMPARE(name(""), QString("nameless"));
}

void TestFacadeCache::aListIsStoredInWhateverOrderItComes()
{
    m_data->addDocToCache(document("d2", "old"));
    m_data->addDocToCache(document("d9", "kept"));
    answer(R"([{"_id":"d3","name":"c"},{"_id":"d1","name":"a"},{"_id":"d2","name":"b"},)"
           R"({"_id":"d5","name":"e"},{"_id":"d4","name":"d"},{"_id":"d1","name":"later"}])");
    QList<VellDocument> list;
    m_data->getDocuments(VellDocumentConditon(), list);
    const std::pair<const char *, const char *> names[] = {
        {"d1", "later"}, {"d2", "b"}, {"d3", "c"}, {"d4", "d"}, {"d5", "e"}, {"d9", "kept"},
    };
    for (const auto &[id, expected] : names)
        QCOMPARE(name(id), QString::fromLatin1(expected));
}

void TestFacadeCache::aReducedListStoresNothing_data()
{
    QTest::addColumn<bool>("selectName");
    QTest::addColumn<bool>("selectTree");
    QTest::addColumn<bool>("noSelect");
    QTest::newRow("names") << true << false << false;
    QTest::newRow("tree") << false << true << false;
    // The flags decide, not what is sent: with noSelect the service gives every field.
    QTest::newRow("names, though every field is asked for") << true << false << true;
}

void TestFacadeCache::aReducedListStoresNothing()
{
    QFETCH(bool, selectName);
    QFETCH(bool, selectTree);
    QFETCH(bool, noSelect);
    VellDocumentConditon condition;
    condition.selectName = selectName;
    condition.selectTree = selectTree;
    condition.noSelect = noSelect;
    answer(R"([{"_id":"d1","name":"a"}])");
    QList<VellDocument> list;
    m_data->getDocuments(condition, list);
    QCOMPARE(list.size(), 1);
    QVERIFY(!isCached("d1"));
}

void TestFacadeCache::aPageStoresItsDocumentsWhateverItSelects_data()
{
    QTest::addColumn<bool>("selectName");
    QTest::addColumn<bool>("selectTree");
    QTest::newRow("whole") << false << false;
    QTest::newRow("names") << true << false;
    QTest::newRow("tree") << false << true;
}

void TestFacadeCache::aPageStoresItsDocumentsWhateverItSelects()
{
    QFETCH(bool, selectName);
    QFETCH(bool, selectTree);
    VellDocumentConditon condition;
    condition.selectName = selectName;
    condition.selectTree = selectTree;
    answer(R"([{"_id":"d1","name":"a"}])");
    QList<VellDocument> list;
    m_data->getDocumentsRange(list, 0, 10, condition, VellDocumentSort());
    QCOMPARE(name("d1"), QString("a"));
}

void TestFacadeCache::listsThatAreNotStored()
{
    m_server->setHandler([](const ScriptedRequest &request) {
        return request.target.contains("/documents/d1?")
            ? ScriptedReply::json("{}", 404)
            : ScriptedReply::json(R"([{"_id":"d1","name":"a"}])");
    });
    QList<VellDocument> list;
    QList<VellDocumentLite> lite;
    VellDocumentConditon condition;
    m_data->getRecycledDocumentsRange(list, 0, 10, condition, VellDocumentSort());
    m_data->getFavorDocs(list, condition, VellDocumentSort());
    m_data->getDocHistory("d0", list);
    m_data->getEntityDocByGuid("e1", lite);
    QCOMPARE(list.size(), 3);
    QCOMPARE(lite.size(), 1);
    QVERIFY(!isCached("d1"));
}

void TestFacadeCache::onlyWhatThisRequestBroughtIsStored()
{
    answer(R"([{"_id":"d2","name":"b"}])");
    QList<VellDocument> list{document("d1", "the caller's own")};
    m_data->getDocuments(VellDocumentConditon(), list);
    QCOMPARE(list.size(), 2);
    QCOMPARE(name("d2"), QString("b"));
    QCOMPARE(name("d1"), QString());
}

void TestFacadeCache::copiesAreIndependent()
{
    m_data->addDocToCache(document("d1", "plan"));
    VellDocumentData copy = *m_data;
    VellDocumentData assigned;
    assigned = *m_data;
    copy.addDocToCache(document("d1", "copy"));
    m_data->clear();
    QCOMPARE(m_data->getFolderName("d1"), QString());
    QCOMPARE(copy.getFolderName("d1"), QString("copy"));
    QCOMPARE(assigned.getFolderName("d1"), QString("plan"));
}

QTEST_GUILESS_MAIN(TestFacadeCache)
#include "tst_facade_cache.moc"
