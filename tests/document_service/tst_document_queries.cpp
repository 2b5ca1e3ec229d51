#include "RequestTable.h"

#include <document_service/VellDocService.h>
#include <support/ScriptedServer.h>

#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QTest>
#include <QTimer>

using namespace VellDocService;

namespace {

const QByteArray twoDocuments = R"([{"_id":"d1","name":"a"},7,{"_id":"d2","name":"b"}])";
const QString twoIds = "old,d1,d2";
const QString nothing = "old";
const QString everything = "where={\"parentId\":null}&select=-entities&linkedEntity=true";

QString documentsPath(const QString &query)
{
    return QString("document-service/projects/p 1/documents?") + query;
}

//! A list that holds a record already: results are appended.
template <typename Document>
QList<Document> startedList()
{
    Document old;
    old._id = "old";
    return {old};
}

template <typename Document>
QString ids(const QList<Document> &documents)
{
    QStringList list;
    for (const Document &document : documents)
        list.append(document._id);
    return list.join(QLatin1Char(','));
}

RequestRow listRow(const char *name, const QString &target, Judged judged,
                   const std::function<QString()> &call)
{
    return {name, call, "GET", target, "", judged, twoDocuments, twoIds, nothing};
}

RequestRow pageRow(const char *name, int limit, int skip, const VellDocumentSort &sort,
                   const QString &tail)
{
    return listRow(name, documentsPath(everything + QLatin1String("&expand=true") + tail),
                   Judged::ByContent, [=] {
                       auto list = startedList<VellDocument>();
                       getDocumentsRange(limit, skip, VellDocumentConditon(), sort, list);
                       return ids(list);
                   });
}

RequestRow recycledRow(const char *name, int limit, int skip, const VellDocumentSort &sort,
                       const QString &tail)
{
    return listRow(name, documentsPath(everything + tail), Judged::ByContent, [=] {
        auto list = startedList<VellDocument>();
        getRecycledDocumentsRange(limit, skip, VellDocumentConditon(), sort, list);
        return ids(list);
    });
}

RequestRow favouritesRow(const char *name, const VellDocumentSort &sort, const QString &tail)
{
    return listRow(name, documentsPath(everything + tail), Judged::ByBoth, [=] {
        auto list = startedList<VellDocument>();
        VellDocumentConditon condition;
        condition.projectId = "another";
        const bool ok = getFavorDocs(list, condition, sort);
        if (condition.projectId != QLatin1String("p 1"))
            return QString("the condition's project was not set");
        return ids(list) + QLatin1String(", ") + word(ok);
    });
}

using Count = void (*)(const VellDocumentConditon &, const VellDocumentSort &, int &);

RequestRow countRow(const char *name, Count count)
{
    return {name,
            [count] {
                int result = 77;
                count(VellDocumentConditon(), VellDocumentSort(), result);
                return QString::number(result);
            },
            "GET",
            documentsPath(everything + QLatin1String("&only_count=true")),
            "",
            Judged::ByContent,
            R"({"count":50000})",
            "50000",
            "0"};
}

} // namespace

class TestDocumentQueries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyQueryAsksItsQuestion_data();
    void everyQueryAsksItsQuestion();
    void aPlaceholderInThePatternIsHit();
    void placeholdersInIdentifiersStay_data();
    void placeholdersInIdentifiersStay();
    void neighboursShareWhatTheyHaveInCommon();
    void everyRequestReadsAddressAndProjectAnew();
    void requestsNest();
    void countsThatAreNoNumbersReadAsZero_data();
    void countsThatAreNoNumbersReadAsZero();
};

void TestDocumentQueries::everyQueryAsksItsQuestion_data()
{
    const VellDocumentSort byDefault;
    const VellDocumentSort byName{"name", true, false};
    const VellDocumentSort bySizeDown{"file.fileSize", false, false};
    const VellDocumentSort defaultByName{"name", true, true};

    addRequestRows({
        {"getDoc",
         [] {
             VellDocument document;
             document._id = "old";
             getDoc("d 1", document);
             return document._id + QLatin1Char('|') + document.name + QLatin1Char('|')
                 + document.type;
         },
         "GET", "document-service/documents/d 1?expand=true", "", Judged::ByContent,
         R"({"_id":"d 1","name":"plan","type":"file"})", "d 1|plan|file", "||"},

        listRow("getDocuments", documentsPath(everything), Judged::ByContent,
                [] {
                    auto list = startedList<VellDocument>();
                    getDocuments(VellDocumentConditon(), list);
                    return ids(list);
                }),

        pageRow("getDocumentsRange", 50, 100, byDefault,
                "&limit=50&skip=100&order=type order -updatedAt"),
        pageRow("getDocumentsRange of one", 1, 0, byName, "&limit=1&skip=0&order=name"),
        pageRow("getDocumentsRange without a limit", 0, 100, byDefault,
                "&order=type order -updatedAt"),
        pageRow("getDocumentsRange with a negative limit", -1, 100, byDefault,
                "&order=type order -updatedAt"),
        pageRow("getDocumentsRange by name", 50, 0, byName, "&limit=50&skip=0&order=name"),
        pageRow("getDocumentsRange by size, descending", 50, 0, bySizeDown,
                "&limit=50&skip=0&order=-file.fileSize"),
        pageRow("getDocumentsRange, default beats the field", 50, 0, defaultByName,
                "&limit=50&skip=0&order=type order -updatedAt"),

        recycledRow("getRecycledDocumentsRange", 50, 100, byName, "&limit=50&skip=100&order=name"),
        recycledRow("getRecycledDocumentsRange always sends limit and skip", 0, 3, byName,
                    "&limit=0&skip=3&order=name"),
        recycledRow("getRecycledDocumentsRange with a negative limit", -1, 0, byName,
                    "&limit=-1&skip=0&order=name"),
        recycledRow("getRecycledDocumentsRange knows no default order", 50, 0, defaultByName,
                    "&limit=50&skip=0&order=name"),

        favouritesRow("getFavorDocs", byName, "&order=name"),
        favouritesRow("getFavorDocs, descending", bySizeDown, "&order=-file.fileSize"),
        favouritesRow("getFavorDocs knows no default order", byDefault, "&order=-updatedAt"),

        countRow("getDocumentsRangeCount", getDocumentsRangeCount),
        countRow("getDocumentsRecycledRangeCount", getDocumentsRecycledRangeCount),

        listRow("getEntityDocByGuid", "document-service/projects/p 1/entities/e 1/documents",
                Judged::ByBoth,
                [] {
                    auto list = startedList<VellDocumentLite>();
                    const bool ok = getEntityDocByGuid("e 1", list);
                    return ids(list) + QLatin1String(", ") + word(ok);
                }),
    });
}

void TestDocumentQueries::everyQueryAsksItsQuestion()
{
    checkRequestRow();
}

// The recycle bin's template still holds %3 and %4 when the condition goes in.
void TestDocumentQueries::aPlaceholderInThePatternIsHit()
{
    ScriptedServer server;
    VellBaseApi::GetInstance().setBaseApi(server.baseApi());
    GetSoftCache()->setCurrentProjectId("p1");
    VellDocumentConditon condition;
    condition.searchName = "100%3";
    condition.noSelect = true;
    const QString where =
        "where={\"name\":{\"$options\":\"i\",\"$regex\":\"%1\"},\"parentId\":null}";
    QList<VellDocument> list;

    getRecycledDocumentsRange(50, 7, condition, VellDocumentSort(), list);
    getDocuments(condition, list);
    QCOMPARE(server.requests().size(), 2);
    const QString root = "/document-service/projects/p1/documents?";
    QCOMPARE(server.requests()[0].decodedTarget(),
             root + QString(where).replace(QLatin1String("%1"), QLatin1String("10050"))
                 + QLatin1String("&limit=50&skip=7&order=-updatedAt"));
    QCOMPARE(server.requests()[1].decodedTarget(),
             root + QString(where).replace(QLatin1String("%1"), QLatin1String("100%3")));
}

void TestDocumentQueries::placeholdersInIdentifiersStay_data()
{
    QTest::addColumn<QString>("id");
    QTest::newRow("%1") << "a%1b";
    QTest::newRow("%2") << "a%2b";
    QTest::newRow("%L1") << "a%L1b";
    QTest::newRow("%41") << "a%41b";
    QTest::newRow("empty") << QString();
}

void TestDocumentQueries::placeholdersInIdentifiersStay()
{
    QFETCH(QString, id);
    ScriptedServer server;
    VellBaseApi::GetInstance().setBaseApi(server.baseApi());
    VellDocument document;
    getDoc(id, document);
    QCOMPARE(server.requests().size(), 1);
    QCOMPARE(server.requests().first().decodedTarget(),
             QString("/document-service/documents/") + id + QString("?expand=true"));
}

void TestDocumentQueries::neighboursShareWhatTheyHaveInCommon()
{
    ScriptedServer server;
    VellBaseApi::GetInstance().setBaseApi(server.baseApi());
    server.enqueue(
        ScriptedReply::json(R"([{"_id":"d1","parentId":"f1","type":"file","createdBy":"u1"},)"
                            R"({"_id":"d2","parentId":"f1","type":"dir","createdBy":"u2"},)"
                            R"({"_id":"d3","parentId":"f2","type":"dir","createdBy":"u1"}])"));
    QList<VellDocument> list;
    getDocuments(VellDocumentConditon(), list);
    QStringList texts;
    for (const VellDocument &doc : qAsConst(list))
        texts.append(
            QStringList{doc._id, doc.parentId, doc.type, doc.createdBy}.join(QLatin1Char(' ')));
    QCOMPARE(texts, QStringList({"d1 f1 file u1", "d2 f1 dir u2", "d3 f2 dir u1"}));
    QCOMPARE(list[0].parentId.constData(), list[1].parentId.constData());
    QCOMPARE(list[1].type.constData(), list[2].type.constData());
}

void TestDocumentQueries::everyRequestReadsAddressAndProjectAnew()
{
    ScriptedServer first;
    ScriptedServer second;
    QList<VellDocument> list;
    VellBaseApi::GetInstance().setBaseApi(first.baseApi());
    GetSoftCache()->setCurrentProjectId("p1");
    getDocuments(VellDocumentConditon(), list);
    VellBaseApi::GetInstance().setBaseApi(second.baseApi());
    GetSoftCache()->setCurrentProjectId(QString());
    getDocuments(VellDocumentConditon(), list);

    QCOMPARE(first.requests().size(), 1);
    QCOMPARE(second.requests().size(), 1);
    QVERIFY(first.requests().first().target.startsWith("/document-service/projects/p1/documents?"));
    QVERIFY(second.requests().first().target.startsWith("/document-service/projects//documents?"));
}

void TestDocumentQueries::requestsNest()
{
    ScriptedServer server;
    VellBaseApi::GetInstance().setBaseApi(server.baseApi());
    server.setHandler([](const ScriptedRequest &request) {
        ScriptedReply reply = ScriptedReply::json(
            R"({"_id":")" + request.target.split('/').last().split('?').first() + R"("})");
        reply.delayMs = request.target.contains("outer") ? 100 : 10;
        return reply;
    });
    VellDocument inner;
    QMetaObject::Connection once;
    once = connect(&server, &ScriptedServer::requestReceived, this, [&] {
        disconnect(once);
        QTimer::singleShot(0, this, [&] { getDoc("inner", inner); });
    });
    VellDocument outer;
    getDoc("outer", outer);
    QCOMPARE(inner._id, QString("inner"));
    QCOMPARE(outer._id, QString("outer"));
}

void TestDocumentQueries::countsThatAreNoNumbersReadAsZero_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<int>("count");
    QTest::newRow("digits in a text") << QByteArray(R"({"count":"5"})") << 0;
    QTest::newRow("fraction") << QByteArray(R"({"count":1.5})") << 0;
    QTest::newRow("no count") << QByteArray(R"({"total":5})") << 0;
    QTest::newRow("number") << QByteArray(R"({"count":5})") << 5;
}

void TestDocumentQueries::countsThatAreNoNumbersReadAsZero()
{
    QFETCH(QByteArray, reply);
    QFETCH(int, count);
    ScriptedServer server;
    server.enqueue(ScriptedReply::json(reply));
    VellBaseApi::GetInstance().setBaseApi(server.baseApi());
    int result = 77;
    getDocumentsRangeCount(VellDocumentConditon(), VellDocumentSort(), result);
    QCOMPARE(result, count);
}

QTEST_GUILESS_MAIN(TestDocumentQueries)
#include "tst_document_queries.moc"
