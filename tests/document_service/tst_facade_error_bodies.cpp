#include "FacadeCacheTest.h"

#include <VellNetwork/NetworkSettings.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QTest>

#include <functional>

using Call = std::function<QString(VellDocumentData &)>;
Q_DECLARE_METATYPE(Call)

// An error status whose body has the shape of an answer: what each method makes of it, and what it does to the cache.
class TestFacadeErrorBodies : public FacadeCacheTest
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsJudgedByItsContent_data();
    void whatIsJudgedByItsContent();
    void whatIsJudgedByItsStatusToo_data();
    void whatIsJudgedByItsStatusToo();

    void aFetchedDocumentIsStored();
    void aFetchedDocumentReplacesNoOther();
    void aListIsStored_data();
    void aListIsStored();
    void aListOfNamesIsNotStored();
    void aChangeThatFailedStoresNothing();

    void theCacheOutlivesAChangeOfTheProject();
    void theTokenGoesWithoutTheLineBreakAfterIt_data();
    void theTokenGoesWithoutTheLineBreakAfterIt();
};

namespace {

const QByteArray granted = R"({"value":"true"})";
const QByteArray counted = R"({"count":7})";
const QByteArray listed = R"([{"_id":"d1","name":"a"}])";
const QByteArray single = R"({"_id":"d1","name":"a","hasSameDoc":true,"pwd":"x"})";

QString word(bool value)
{
    return value ? QString("true") : QString("false");
}

QString ids(const QList<VellDocument> &documents)
{
    QStringList list;
    for (const VellDocument &document : documents)
        list.append(document._id);
    return list.join(QLatin1Char(','));
}

void row(const char *name, const QByteArray &body, const QString &result, const Call &call)
{
    for (const int status : {403, 404, 500})
        QTest::addRow("%s, %d", name, status) << body << status << result << call;
}

void addColumns()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("result");
    QTest::addColumn<Call>("call");
}

} // namespace

void TestFacadeErrorBodies::whatIsJudgedByItsContent_data()
{
    addColumns();
    const QString a = "a";
    const QString yes = "true";
    const VellDocumentConditon all;
    row("canDeleteDocFolder", granted, yes,
        [=](auto &data) { return word(data.canDeleteDocFolder(a, a)); });
    row("canDownloadDocFolder", granted, yes,
        [=](auto &data) { return word(data.canDownloadDocFolder(a, a)); });
    row("canEditDocFolder", granted, yes,
        [=](auto &data) { return word(data.canEditDocFolder(a, a)); });
    row("canUploadDocFolder", granted, yes,
        [=](auto &data) { return word(data.canUploadDocFolder(a, a)); });
    row("canDeleteSelf", granted, yes, [=](auto &data) { return word(data.canDeleteSelf(a)); });
    row("canEditSelf", granted, yes, [=](auto &data) { return word(data.canEditSelf(a)); });
    row("getDocumentsRangeCount", counted, "7",
        [=](auto &data) { return QString::number(data.getDocumentsRangeCount(all)); });
    row("getDocumentsRecycledRangeCount", counted, "7",
        [=](auto &data) { return QString::number(data.getDocumentsRecycledRangeCount(all)); });
    row("uploadRecycleDoc", single, yes,
        [=](auto &data) { return word(data.uploadRecycleDoc(a)); });
    row("isDocNameExist", listed, yes,
        [=](auto &data) { return word(data.isDocNameExist(a, a, a)); });
    row("getDocumentIdByName", listed, "d1true", [=](auto &data) {
        VellDocumentConditon condition;
        QString id;
        const bool found = data.getDocumentIdByName(condition, id);
        return id + word(found);
    });
    row("getDocPwd", single, "x", [=](auto &data) {
        QString pwd;
        data.getDocPwd(a, pwd);
        return pwd;
    });
    row("getRecycledDocumentsRange", listed, "d1", [=](auto &data) {
        QList<VellDocument> list;
        data.getRecycledDocumentsRange(list, 0, 10, all, VellDocumentSort());
        return ids(list);
    });
}

void TestFacadeErrorBodies::whatIsJudgedByItsContent()
{
    QFETCH(QByteArray, body);
    QFETCH(int, status);
    QFETCH(QString, result);
    QFETCH(Call, call);
    answer(body, status);
    QCOMPARE(call(*m_data), result);
    QCOMPARE(requests(), 1);
    QVERIFY(!isCached("d1"));
}

void TestFacadeErrorBodies::whatIsJudgedByItsStatusToo_data()
{
    addColumns();
    const QString a = "a";
    row("getFavorDocs", listed, "d1false", [=](auto &data) {
        QList<VellDocument> list;
        VellDocumentConditon condition;
        const bool ok = data.getFavorDocs(list, condition, VellDocumentSort());
        return ids(list) + word(ok);
    });
    row("getDocHistory", listed, "d1false", [=](auto &data) {
        QList<VellDocument> list;
        const bool ok = data.getDocHistory(a, list);
        return ids(list) + word(ok);
    });
    row("createDocFolder", single, "d1false", [](auto &data) {
        VellDocument folder;
        const bool ok = data.createDocFolder(folder);
        return folder._id + word(ok);
    });
    row("updateDoc", single, "d1false", [](auto &data) {
        VellDocument doc;
        doc.codeList = {VellDocumentChange::EntityLinks};
        const bool ok = data.updateDoc(doc);
        return doc._id + word(ok);
    });
    row("moveToFolder", single, "false",
        [=](auto &data) { return word(data.moveToFolder({a}, a)); });
}

void TestFacadeErrorBodies::whatIsJudgedByItsStatusToo()
{
    whatIsJudgedByItsContent();
}

void TestFacadeErrorBodies::aFetchedDocumentIsStored()
{
    answer(single, 403);
    VellDocument doc;
    m_data->getDoc("d1", doc, true);
    QCOMPARE(doc.name, QString("a"));
    QVERIFY(isCached("d1"));
    QCOMPARE(name("d1"), QString("a"));
}

void TestFacadeErrorBodies::aFetchedDocumentReplacesNoOther()
{
    m_data->addDocToCache(document("d1", "old"));
    answer(single, 403);
    VellDocument doc;
    m_data->getDoc("d1", doc, false);
    QCOMPARE(doc.name, QString("a"));
    QCOMPARE(name("d1"), QString("old"));
}

void TestFacadeErrorBodies::aListIsStored_data()
{
    QTest::addColumn<bool>("isPage");
    QTest::newRow("getDocuments") << false;
    QTest::newRow("getDocumentsRange") << true;
}

void TestFacadeErrorBodies::aListIsStored()
{
    QFETCH(bool, isPage);
    m_data->addDocToCache(document("d1", "old"));
    answer(listed, 500);
    QList<VellDocument> list;
    if (isPage)
        m_data->getDocumentsRange(list, 0, 10, VellDocumentConditon(), VellDocumentSort());
    else
        m_data->getDocuments(VellDocumentConditon(), list);
    QCOMPARE(ids(list), QString("d1"));
    QCOMPARE(name("d1"), QString("a"));
}

void TestFacadeErrorBodies::aListOfNamesIsNotStored()
{
    answer(listed, 500);
    VellDocumentConditon condition;
    condition.selectName = true;
    QList<VellDocument> list;
    m_data->getDocuments(condition, list);
    QCOMPARE(ids(list), QString("d1"));
    QVERIFY(!isCached("d1"));
}

void TestFacadeErrorBodies::aChangeThatFailedStoresNothing()
{
    m_data->addDocToCache(document("d1", "old"));
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json(single, 409); });
    const QString id = "d1";
    VellDocument folder;
    VellDocument doc = document("d1", "new");
    doc.codeList = {VellDocumentChange::EntityLinks};
    QVERIFY(!m_data->createDocFolder(folder));
    QVERIFY(!m_data->updateDoc(doc));
    QVERIFY(!m_data->updateDocRemake(false, id, "remark"));
    QVERIFY(!m_data->setFrequentDocument(id, true));
    QVERIFY(!m_data->moveToFolder({id}, QString()));
    QVERIFY(!m_data->deleteDoc(id));
    QCOMPARE(name("d1"), QString("old"));
    QCOMPARE(cached("d1").remark, QString());
    QVERIFY(!cached("d1").favorite);
}

void TestFacadeErrorBodies::theCacheOutlivesAChangeOfTheProject()
{
    m_data->addDocToCache(document("d1", "plan"));
    GetSoftCache()->setCurrentProjectId("p2");
    QVERIFY(isCached("d1"));
    QCOMPARE(name("d1"), QString("plan"));

    answer(R"([{"_id":"d2","name":"other"}])");
    QList<VellDocument> list;
    m_data->getDocuments(VellDocumentConditon(), list);
    QVERIFY(m_server->requests().last().target.startsWith("/document-service/projects/p2/"));
    GetSoftCache()->setCurrentProjectId("p1");
    QCOMPARE(name("d1"), QString("plan"));
    QCOMPARE(name("d2"), QString("other"));
}

void TestFacadeErrorBodies::theTokenGoesWithoutTheLineBreakAfterIt_data()
{
    QTest::addColumn<QString>("token");
    QTest::newRow("line feed") << "t0k3n\n";
    QTest::newRow("carriage return and line feed") << "t0k3n\r\n";
    QTest::newRow("blanks") << " t0k3n \t";
}

// Compared as it stood on the wire: the header field ends with its own line break.
void TestFacadeErrorBodies::theTokenGoesWithoutTheLineBreakAfterIt()
{
    QFETCH(QString, token);
    NetworkSettings::instance().setAccessToken(token);
    answer("[]");
    QList<VellDocument> list;
    m_data->getDocuments(VellDocumentConditon(), list);
    NetworkSettings::instance().setAccessToken(QString());
    QCOMPARE(requests(), 1);
    const QByteArray head = m_server->requests()[0].head + "\r\n";
    QVERIFY2(head.contains("\r\nAuthorization: Bearer t0k3n\r\n"), head.constData());
    QVERIFY2(head.count("\n") == head.count("\r\n"), head.constData());
    QVERIFY2(!head.contains("\r\n\r\n"), head.constData());
}

QTEST_GUILESS_MAIN(TestFacadeErrorBodies)
#include "tst_facade_error_bodies.moc"
