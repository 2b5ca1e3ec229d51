#include <document_service/VellDocumentData.h>
#include <support/ScriptedServer.h>

#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QTest>

#include <memory>

// What each method stores, replaces, removes and leaves alone. Everything is looked at through getDoc(…,
// true) and getFolderName(), which make no request for what is cached.
namespace {

VellDocument document(const char *id, const char *name)
{
    VellDocument doc;
    doc._id = QString::fromUtf8(id);
    doc.name = QString::fromUtf8(name);
    return doc;
}

} // namespace

class TestFacadeCache : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

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
    void aReducedListStoresNothing_data();
    void aReducedListStoresNothing();
    void aPageStoresItsDocumentsWhateverItSelects_data();
    void aPageStoresItsDocumentsWhateverItSelects();
    void listsThatAreNotStored();
    void onlyWhatThisRequestBroughtIsStored();

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
    void copiesAreIndependent();

private:
    void answer(const QByteArray &body, int status = 200)
    {
        m_server->enqueue(ScriptedReply::json(body, status));
    }
    int requests() const { return m_server->requests().size(); }
    bool isCached(const char *id)
    {
        const int before = requests();
        VellDocument doc;
        m_data->getDoc(QString::fromUtf8(id), doc, true);
        return requests() == before;
    }
    VellDocument cached(const char *id)
    {
        VellDocument doc;
        m_data->getDoc(QString::fromUtf8(id), doc, true);
        return doc;
    }
    QString name(const char *id) { return m_data->getFolderName(QString::fromUtf8(id)); }

    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<VellDocumentData> m_data;
};

void TestFacadeCache::init()
{
    m_server = std::make_unique<ScriptedServer>();
    m_data = std::make_unique<VellDocumentData>();
    VellBaseApi::GetInstance().setBaseApi(m_server->baseApi());
    GetSoftCache()->setCurrentProjectId(QStringLiteral("p1"));
}

void TestFacadeCache::aCachedDocumentIsAnsweredWithoutARequest()
{
    m_data->addDocToCache(document("d1", "plan"));
    VellDocument doc;
    m_data->getDoc(QStringLiteral("d1"), doc, true);
    QCOMPARE(doc.name, QStringLiteral("plan"));
    QCOMPARE(requests(), 0);
}

void TestFacadeCache::aCachedCopyDoesNotFollowTheCallersRecord()
{
    VellDocument doc = document("d1", "plan");
    m_data->addDocToCache(doc);
    doc.name = QStringLiteral("changed");
    QCOMPARE(name("d1"), QStringLiteral("plan"));
    m_data->addDocToCache(doc);
    QCOMPARE(name("d1"), QStringLiteral("changed"));
}

void TestFacadeCache::aFetchStoresWhatWasMissing()
{
    answer(R"({"_id":"d1","name":"plan"})");
    VellDocument doc;
    m_data->getDoc(QStringLiteral("d1"), doc, true);
    QCOMPARE(requests(), 1);
    QCOMPARE(doc.name, QStringLiteral("plan"));
    QCOMPARE(cached("d1").name, QStringLiteral("plan"));
    QCOMPARE(requests(), 1);
}

void TestFacadeCache::aFetchPastTheCacheRefreshesOnlyTheCaller()
{
    m_data->addDocToCache(document("d1", "old"));
    answer(R"({"_id":"d1","name":"new"})");
    VellDocument doc;
    m_data->getDoc(QStringLiteral("d1"), doc, false);
    QCOMPARE(requests(), 1);
    QCOMPARE(doc.name, QStringLiteral("new"));
    QCOMPARE(name("d1"), QStringLiteral("old"));
}

void TestFacadeCache::aFetchOfTheCallersOwnRecordStoresUnderTheRepliesId()
{
    m_data->addDocToCache(document("d1", "old"));
    VellDocument doc = document("d1", "mine");
    // The identifier that is asked for is part of the record that the reply overwrites.
    answer(R"({"_id":"d2","name":"other"})");
    m_data->getDoc(doc._id, doc, false);
    QCOMPARE(doc._id, QStringLiteral("d2"));
    QVERIFY(!isCached("d2")); // d1 was asked for and is cached
    QCOMPARE(name("d1"), QStringLiteral("old"));

    answer(R"({"_id":"d4","name":"moved"})");
    m_data->getDoc(QStringLiteral("d3"), doc, false);
    QCOMPARE(name("d4"), QStringLiteral("moved"));
    QCOMPARE(name("d3"), QString());
}

void TestFacadeCache::aFailedFetchStoresNothing()
{
    answer(R"({"error":"no such document"})", 404);
    VellDocument doc = document("old", "old");
    m_data->getDoc(QStringLiteral("d1"), doc, false);
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
    QCOMPARE(name(""), QStringLiteral("nameless"));
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
    QCOMPARE(name("d1"), QStringLiteral("new"));
    QCOMPARE(name("d2"), QStringLiteral("b"));
    QCOMPARE(name(""), QStringLiteral("nameless"));
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
    QCOMPARE(name("d1"), QStringLiteral("a"));
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
    m_data->getDocHistory(QStringLiteral("d0"), list);
    m_data->getEntityDocByGuid(QStringLiteral("e1"), lite);
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
    QCOMPARE(name("d2"), QStringLiteral("b"));
    QCOMPARE(name("d1"), QString());
}

void TestFacadeCache::aNewFolderIsStoredOnSuccessOnly()
{
    VellDocument doc = document("", "Level 1");
    answer(R"({"_id":"f1","name":"Level 1"})", 403);
    QVERIFY(!m_data->createDocFolder(doc));
    QVERIFY(!isCached("f1"));

    doc = document("", "Level 1");
    answer(R"({"_id":"f1","name":"Level 1"})");
    QVERIFY(m_data->createDocFolder(doc));
    QCOMPARE(doc._id, QStringLiteral("f1"));
    QCOMPARE(name("f1"), QStringLiteral("Level 1"));
}

void TestFacadeCache::aNewFolderWithoutAnIdIsStoredUnderTheEmptyId()
{
    VellDocument doc = document("", "Level 1");
    answer(R"({"name":"odd"})");
    QVERIFY(m_data->createDocFolder(doc));
    QCOMPARE(name(""), QStringLiteral("odd"));
}

void TestFacadeCache::anUpdateIsStoredOnSuccessOnly()
{
    m_data->addDocToCache(document("d1", "old"));
    VellDocument doc = document("d1", "mine");
    doc.codeList = {VellDocumentChange::EntityLinks};
    answer(R"({"_id":"d1","name":"new"})", 500);
    QVERIFY(!m_data->updateDoc(doc));
    QCOMPARE(name("d1"), QStringLiteral("old"));

    answer(R"({"_id":"d1","name":"new"})");
    QVERIFY(m_data->updateDoc(doc));
    QCOMPARE(name("d1"), QStringLiteral("new"));
    QCOMPARE(requests(), 2);

    doc.codeList.clear();
    QVERIFY(!m_data->updateDoc(doc));
    QCOMPARE(requests(), 2);
}

void TestFacadeCache::aDeletedDocumentLeavesOnSuccessOnly()
{
    m_data->addDocToCache(document("d1", "plan"));
    answer("", 403);
    QVERIFY(!m_data->deleteDoc(QStringLiteral("d1")));
    QVERIFY(isCached("d1"));
    answer("");
    QVERIFY(m_data->deleteDoc(QStringLiteral("d1")));
    QVERIFY(!isCached("d1"));
}

void TestFacadeCache::deletingSeveralGoesOnAfterAFailure()
{
    for (const char *id : {"d1", "d2", "d3"})
        m_data->addDocToCache(document(id, id));
    answer("");
    answer("", 403);
    answer("");
    const QStringList ids{QStringLiteral("d1"), QStringLiteral("d2"), QStringLiteral("d3")};
    QVERIFY(!m_data->deleteDoc(ids));
    QCOMPARE(requests(), 3);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(m_server->requests()[i].verb, QByteArray("DELETE"));
        QCOMPARE(m_server->requests()[i].decodedTarget(),
                 QStringLiteral("/document-service/documents/") + ids[i]);
    }
    QVERIFY(isCached("d2"));
    QVERIFY(!isCached("d1"));
    QVERIFY(!isCached("d3"));
}

void TestFacadeCache::deletingNoneAsksForNothing()
{
    QVERIFY(m_data->deleteDoc(QStringList()));
    QCOMPARE(requests(), 0);
}

void TestFacadeCache::aMoveFetchesAndStoresEachDocument()
{
    m_data->addDocToCache(document("d1", "old"));
    answer("");
    answer(R"({"_id":"d1","name":"new","parentId":"f1"})");
    answer(R"({"_id":"d2","name":"b","parentId":"f1"})");
    QVERIFY(
        m_data->moveToFolder({QStringLiteral("d1"), QStringLiteral("d2")}, QStringLiteral("f1")));
    QCOMPARE(requests(), 3);
    QCOMPARE(m_server->requests()[0].body,
             QByteArray(R"({"documentIds":["d1","d2"],"parentId":"f1"})"));
    QCOMPARE(m_server->requests()[1].decodedTarget(),
             QStringLiteral("/document-service/documents/d1?expand=true"));
    QCOMPARE(cached("d1").name, QStringLiteral("new"));
    QCOMPARE(cached("d2").parentId, QStringLiteral("f1"));
    QCOMPARE(requests(), 3);
}

void TestFacadeCache::aMoveWhoseFetchFailsStoresAnEmptyRecord()
{
    m_data->addDocToCache(document("d1", "old"));
    answer("");
    answer("", 500);
    QVERIFY(m_data->moveToFolder({QStringLiteral("d1")}, QString()));
    QCOMPARE(name("d1"), QStringLiteral("old"));
    QVERIFY(isCached(""));
    QCOMPARE(cached("").type, QString());
}

void TestFacadeCache::aFailedMoveFetchesNothing()
{
    answer("", 403);
    QVERIFY(!m_data->moveToFolder({QStringLiteral("d1")}, QString()));
    QCOMPARE(requests(), 1);
    QVERIFY(!isCached(""));
}

void TestFacadeCache::theFrequentMarkChangesTheCachedRecord()
{
    m_data->addDocToCache(document("d1", "plan"));
    answer("");
    QVERIFY(m_data->setFrequentDocument(QStringLiteral("d1"), true));
    QCOMPARE(cached("d1").favorite, true);
    QCOMPARE(cached("d1").name, QStringLiteral("plan"));
    answer("");
    QVERIFY(m_data->setFrequentDocument(QStringLiteral("d1"), false));
    QCOMPARE(cached("d1").favorite, false);
}

void TestFacadeCache::theFrequentMarkOfAnUncachedDocumentStoresAnEmptyRecord()
{
    answer("");
    QVERIFY(m_data->setFrequentDocument(QStringLiteral("d1"), true));
    QVERIFY(isCached("d1"));
    QCOMPARE(cached("d1").favorite, true);
    QCOMPARE(cached("d1")._id, QString());
    QCOMPARE(name("d1"), QString());
}

void TestFacadeCache::aFailedFrequentMarkStoresNothing()
{
    answer("", 500);
    QVERIFY(!m_data->setFrequentDocument(QStringLiteral("d1"), true));
    QVERIFY(!isCached("d1"));
}

void TestFacadeCache::aRemarkChangesTheCachedRecord()
{
    m_data->addDocToCache(document("d1", "plan"));
    answer("");
    QVERIFY(m_data->updateDocRemake(false, QStringLiteral("d1"), QStringLiteral("checked")));
    QCOMPARE(cached("d1").remark, QStringLiteral("checked"));
    QCOMPARE(cached("d1").name, QStringLiteral("plan"));
}

void TestFacadeCache::aRemarkOfAnUncachedVersionStoresAnEmptyRecord()
{
    answer("");
    QVERIFY(m_data->updateDocRemake(true, QStringLiteral("v1"), QStringLiteral("checked")));
    QVERIFY(isCached("v1"));
    QCOMPARE(cached("v1").remark, QStringLiteral("checked"));
    QCOMPARE(cached("v1")._id, QString());
}

void TestFacadeCache::aFailedRemarkStoresNothing()
{
    answer("", 500);
    QVERIFY(!m_data->updateDocRemake(false, QStringLiteral("d1"), QStringLiteral("checked")));
    QVERIFY(!isCached("d1"));
}

void TestFacadeCache::aRecordRemovesTheDocumentBeforeItsRequest()
{
    m_data->addDocToCache(document("d1", "plan"));
    QString out;
    bool wasCachedMeanwhile = true;
    connect(m_server.get(), &ScriptedServer::requestReceived, this,
            [&] { wasCachedMeanwhile = !m_data->getFolderName(QStringLiteral("d1")).isEmpty(); });
    answer("", 500);
    QVERIFY(!m_data->restoreFile(QStringLiteral("d1"), {}, 3, true, out));
    QVERIFY(!wasCachedMeanwhile);
    QVERIFY(!isCached("d1"));
}

void TestFacadeCache::otherChangesLeaveTheCacheAlone()
{
    VellDocument doc = document("d1", "plan");
    doc.order = 5;
    m_data->addDocToCache(doc);
    const QString id = QStringLiteral("d1");
    m_server->setHandler([](const ScriptedRequest &) {
        return ScriptedReply::json(R"({"_id":"d9","name":"x","value":"true","code":"c"})");
    });
    QString text;
    int number = 0;
    QVERIFY(m_data->changeDocOrder({{id, 9}}));
    QVERIFY(m_data->setRectentDocument(id, true));
    QVERIFY(m_data->emptyRecycled(QStringLiteral("doc")));
    QVERIFY(!m_data->uploadRecycleDoc(id));
    QVERIFY(m_data->shareDocument({id}, QDateTime(), text, true));
    QVERIFY(m_data->getFavorDoc(number, id));
    m_data->getDocPwd(id, text);
    QVERIFY(m_data->canEditDocFolder(id, QStringLiteral("doc")));
    m_data->getDocumentsRangeCount(VellDocumentConditon());

    const int before = requests();
    QCOMPARE(cached("d1").order, 5);
    QCOMPARE(cached("d1").name, QStringLiteral("plan"));
    QCOMPARE(requests(), before);
    QVERIFY(!isCached("d9"));
}

void TestFacadeCache::copiesAreIndependent()
{
    m_data->addDocToCache(document("d1", "plan"));
    VellDocumentData copy = *m_data;
    VellDocumentData assigned;
    assigned = *m_data;
    copy.addDocToCache(document("d1", "copy"));
    m_data->clear();
    QCOMPARE(m_data->getFolderName(QStringLiteral("d1")), QString());
    QCOMPARE(copy.getFolderName(QStringLiteral("d1")), QStringLiteral("copy"));
    QCOMPARE(assigned.getFolderName(QStringLiteral("d1")), QStringLiteral("plan"));
}

QTEST_GUILESS_MAIN(TestFacadeCache)
#include "tst_facade_cache.moc"
