#include <document_service/VellDocumentData.h>
#include <support/ScriptedServer.h>

#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSettings.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QTest>

#include <functional>
#include <thread>

// What goes through the facade to the service and back; what it does to the cache is in
// tst_facade_cache.
namespace {

using Call = std::function<QString(VellDocumentData &)>;

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

} // namespace
Q_DECLARE_METATYPE(Call)

class TestFacade : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void thereIsOneObject();
    void everyMethodForwardsItsRequest_data();
    void everyMethodForwardsItsRequest();
    void countsStartAtZero();
    void listsAreAppendedTo();
    void thePdfFolderIsTheSettings();

private:
    QString target(int index = 0) const { return m_server->requests()[index].decodedTarget(); }

    std::unique_ptr<ScriptedServer> m_server;
};

void TestFacade::init()
{
    m_server = std::make_unique<ScriptedServer>();
    VellBaseApi::GetInstance().setBaseApi(m_server->baseApi());
    GetSoftCache()->setCurrentProjectId("p1");
}

// Several threads ask first at the same moment.
void TestFacade::thereIsOneObject()
{
    std::vector<VellDocumentData *> seen(8);
    std::vector<std::thread> threads;
    threads.reserve(seen.size());
    for (VellDocumentData *&slot : seen)
        threads.emplace_back([&slot] { slot = VellDocumentData::instance(); });
    for (std::thread &thread : threads)
        thread.join();
    for (const VellDocumentData *data : seen)
        QCOMPARE(data, VellDocumentData::instance());
}

void TestFacade::everyMethodForwardsItsRequest_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QByteArray>("verb");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("result");

    const auto row = [](const char *name, const Call &call, const QByteArray &reply,
                        const QByteArray &verb, const QString &target, const QByteArray &body,
                        const QString &result) {
        QTest::newRow(name) << call << reply << verb << QString("/document-service/") + target
                            << body << result;
    };
    const QString a = "a";
    const QString b = "b";
    const QString yes = "true";
    const QString everything = "where={\"parentId\":null}&select=-entities&linkedEntity=true";
    const QString documents = QString("projects/p1/documents?") + everything;
    const QByteArray granted = R"({"value":"true"})";
    const QByteArray list = R"([{"_id":"d1"},{"_id":"d2"}])";
    const QString listed = "d1,d2";
    const VellDocumentConditon all;
    const VellDocumentSort byName{"name", true, false};

    using OnResource = bool (VellDocumentData::*)(const QString &, const QString &);
    using OnSelf = bool (VellDocumentData::*)(const QString &);
    const auto onResource = [&](const char *name, OnResource method, const QString &key) {
        row(
            name, [=](VellDocumentData &data) { return word((data.*method)(a, b)); }, granted,
            "GET", QString("projects/p1/auth?key=%1&category=b&rId=a").arg(key), "", yes);
    };
    const auto onSelf = [&](const char *name, OnSelf method, const QString &key) {
        row(
            name, [=](VellDocumentData &data) { return word((data.*method)(b)); }, granted, "GET",
            QString("projects/p1/auth?key=%1&category=b").arg(key), "", yes);
    };
    onResource("canDeleteDocFolder", &VellDocumentData::canDeleteDocFolder, "delete");
    onResource("canDownloadDocFolder", &VellDocumentData::canDownloadDocFolder, "download");
    onResource("canEditDocFolder", &VellDocumentData::canEditDocFolder, "edit");
    onResource("canUploadDocFolder", &VellDocumentData::canUploadDocFolder, "upload");
    onSelf("canDeleteSelf", &VellDocumentData::canDeleteSelf, "delete-self");
    onSelf("canEditSelf", &VellDocumentData::canEditSelf, "edit-self");

    row(
        "changeDocOrder",
        [=](VellDocumentData &data) {
            return word(data.changeDocOrder({{a, 3}}));
        },
        "", "PUT", "documents", R"([{"_id":"a","order":3}])", yes);
    row(
        "emptyRecycled", [=](VellDocumentData &data) { return word(data.emptyRecycled(b)); }, "",
        "DELETE", "documents?hostId=p1&category=b", "", yes);
    row(
        "getDocHistory",
        [=](VellDocumentData &data) {
            QList<VellDocument> versions;
            const bool ok = data.getDocHistory(a, versions);
            return ids(versions) + word(ok);
        },
        list, "GET", "documents/a/histories?order=-createdAt", "", "d1,d2true");
    row(
        "getDocPwd",
        [=](VellDocumentData &data) {
            QString pwd;
            data.getDocPwd(a, pwd);
            return pwd;
        },
        R"({"pwd":"x"})", "GET", "documents/a?pwd=true", "", "x");
    row(
        "getDocumentsRange passes limit and skip on",
        [=](VellDocumentData &data) {
            QList<VellDocument> page;
            data.getDocumentsRange(page, 20, 10, all, byName);
            return ids(page);
        },
        list, "GET", documents + "&expand=true&limit=10&skip=20&order=name", "", listed);
    row(
        "getRecycledDocumentsRange passes limit and skip on",
        [=](VellDocumentData &data) {
            QList<VellDocument> page;
            data.getRecycledDocumentsRange(page, 20, 10, all, byName);
            return ids(page);
        },
        list, "GET", documents + "&limit=10&skip=20&order=name", "", listed);
    row(
        "getDocumentsRangeCount",
        [=](VellDocumentData &data) { return QString::number(data.getDocumentsRangeCount(all)); },
        R"({"count":7})", "GET", documents + "&only_count=true", "", "7");
    row(
        "getDocumentsRecycledRangeCount",
        [=](VellDocumentData &data) {
            return QString::number(data.getDocumentsRecycledRangeCount(all));
        },
        R"({"count":7})", "GET", documents + "&only_count=true", "", "7");
    row(
        "getEntityDocByGuid",
        [=](VellDocumentData &data) {
            QList<VellDocumentLite> found;
            const bool ok = data.getEntityDocByGuid(a, found);
            return QString::number(found.size()) + word(ok);
        },
        list, "GET", "projects/p1/entities/a/documents", "", "2true");
    row(
        "getFavorDoc",
        [=](VellDocumentData &data) {
            int type = 0;
            const bool ok = data.getFavorDoc(type, a);
            return QString::number(type) + word(ok);
        },
        R"([{"type":3}])", "GET", "documents/records?where={\"documentId\":\"a\",\"type\":3}", "",
        "3true");
    row(
        "getFavorDocs",
        [=](VellDocumentData &data) {
            QList<VellDocument> favourites;
            VellDocumentConditon condition;
            const bool ok = data.getFavorDocs(favourites, condition, byName);
            return ids(favourites) + condition.projectId + word(ok);
        },
        list, "GET", documents + "&order=name", "", "d1,d2p1true");
    row(
        "setRectentDocument",
        [=](VellDocumentData &data) { return word(data.setRectentDocument(a, true)); }, "", "PUT",
        "documents/a/records", R"({"type":2,"value":true})", yes);
    row(
        "restoreFile leaves its last argument alone",
        [=](VellDocumentData &data) {
            QString out = b;
            const bool ok = data.restoreFile(a, {b}, 4, true, out);
            return out + word(ok);
        },
        "", "PUT", "documents/a/records", R"({"type":4,"value":true})", "btrue");
    row(
        "shareDocument",
        [=](VellDocumentData &data) {
            QString code;
            const bool ok = data.shareDocument({a}, QDateTime(), code, true);
            return code + word(ok);
        },
        R"({"code":"c"})", "POST", "documents/shares",
        R"({"allowDownload":true,"documentIds":["a"],"hostId":"p1"})", "ctrue");
    row(
        "uploadRecycleDoc", [=](VellDocumentData &data) { return word(data.uploadRecycleDoc(a)); },
        R"({"hasSameDoc":true})", "GET", "documents/a/restore", "", yes);
}

void TestFacade::everyMethodForwardsItsRequest()
{
    QFETCH(Call, call);
    QFETCH(QByteArray, reply);
    QFETCH(QByteArray, verb);
    QFETCH(QString, target);
    QFETCH(QByteArray, body);
    QFETCH(QString, result);

    m_server->enqueue(ScriptedReply::json(reply));
    VellDocumentData data;
    QCOMPARE(call(data), result);
    QCOMPARE(m_server->requests().size(), 1);
    QCOMPARE(m_server->requests()[0].verb, verb);
    QCOMPARE(this->target(), target);
    QCOMPARE(m_server->requests()[0].body, body);
}

void TestFacade::countsStartAtZero()
{
    VellDocumentData data;
    m_server->enqueue(ScriptedReply::endingAs(ScriptedReply::Ending::Truncated));
    m_server->enqueue(ScriptedReply::json("", 500));
    QCOMPARE(data.getDocumentsRangeCount(VellDocumentConditon()), 0);
    QCOMPARE(data.getDocumentsRecycledRangeCount(VellDocumentConditon()), 0);
}

void TestFacade::listsAreAppendedTo()
{
    m_server->setHandler([](const ScriptedRequest &) {
        return ScriptedReply::json(R"([{"_id":"d1"},{"_id":"d2"}])");
    });
    VellDocumentData data;
    QList<VellDocument> list;
    data.getDocuments(VellDocumentConditon(), list);
    data.getDocuments(VellDocumentConditon(), list);
    data.getDocumentsRange(list, 0, 2, VellDocumentConditon(), VellDocumentSort());
    QCOMPARE(ids(list), QString("d1,d2,d1,d2,d1,d2"));
}

void TestFacade::thePdfFolderIsTheSettings()
{
    GetSettings()->setPdfFileTempPath("some/where else");
    QCOMPARE(VellDocumentData::instance()->getPdfFileTempPath(), QString("some/where else"));
    QCOMPARE(m_server->requests().size(), 0);
}

QTEST_GUILESS_MAIN(TestFacade)
#include "tst_facade.moc"
