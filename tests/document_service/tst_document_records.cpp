#include "RequestTable.h"

#include <document_service/VellDocService.h>
#include <support/ScriptedServer.h>

#include <VellNetwork/VellBaseApi.h>
#include <VellPublicFun/VellPub.h>

#include <QTest>

using namespace VellDocService;

namespace {

RequestRow recordRow(const char *name, const QByteArray &body, const std::function<bool()> &call)
{
    return {name,
            [call] { return word(call()); },
            "PUT",
            "document-service/documents/d 1/records",
            body,
            Judged::ByStatus,
            R"({"anything":1})",
            QString(),
            QString()};
}

RequestRow shareRow(const char *name, const QDateTime &expiredAt, bool allowDownload,
                    const QByteArray &body)
{
    return {name,
            [=] {
                QString code = "old";
                const bool ok = shareDocument({"d2", "d1"}, expiredAt, code, allowDownload);
                return code + QLatin1String(", ") + word(ok);
            },
            "POST",
            "document-service/documents/shares",
            body,
            Judged::ByBoth,
            R"({"code":"Xy7"})",
            "Xy7",
            QString()};
}

RequestRow remarkRow(const char *name, bool history, const QString &path)
{
    return {name,
            [history] { return word(updateDocRemake(history, "d 1", "checked \"twice\"")); },
            "PUT",
            QString("document-service/") + path,
            "{\"remark\":\"checked \\\"twice\\\"\"}",
            Judged::ByStatus,
            R"({"anything":1})",
            QString(),
            QString()};
}

} // namespace

class TestDocumentRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFunctionSendsItsRequest_data();
    void everyFunctionSendsItsRequest();
    void anEmptyListOfRecordsLeavesTheTypeAlone();
    void aRecordWithoutATypeReadsAsZero();
    void aShareWithoutACodeIsStillASuccess();
    void versionsAreReadAsHistoryEntries();
};

void TestDocumentRecords::everyFunctionSendsItsRequest_data()
{
    const QDateTime expiry(QDate(2030, 1, 2), QTime(3, 4, 5, 678), Qt::UTC);
    addRequestRows({
        recordRow("restoreFile", R"({"type":5,"value":true})",
                  [] {
                      QString out = "kept";
                      const bool ok = restoreFile("d 1", {"not sent"}, 5, true, out);
                      return ok && out == QLatin1String("kept");
                  }),
        recordRow("setFrequentDocument on", R"({"type":1,"value":true})",
                  [] {
                      bool ok = false;
                      setFrequentDocument("d 1", true, ok);
                      return ok;
                  }),
        recordRow("setFrequentDocument off", R"({"type":1,"value":false})",
                  [] {
                      bool ok = true;
                      setFrequentDocument("d 1", false, ok);
                      return ok;
                  }),
        recordRow("setRectentDocument on", R"({"type":2,"value":true})",
                  [] { return setRectentDocument("d 1", true); }),
        recordRow("setRectentDocument off", R"({"type":2,"value":false})",
                  [] { return setRectentDocument("d 1", false); }),

        {"getFavorDoc",
         [] {
             int type = 77;
             const bool ok = getFavorDoc(type, "d 1");
             return QString::number(type) + QLatin1String(", ") + word(ok);
         },
         "GET",
         "document-service/documents/records?where="
         "{\"documentId\":\"d 1\",\"type\":3}",
         "", Judged::ByBoth, R"([{"type":3},{"type":4}])", "3", "77"},

        shareRow("shareDocument", expiry, true,
                 R"({"allowDownload":true,"documentIds":["d2","d1"],)"
                 R"("expiredAt":"2030-01-02T03:04:05.678Z","hostId":"p 1"})"),
        shareRow("shareDocument without an end", QDateTime(), false,
                 R"({"allowDownload":false,"documentIds":["d2","d1"],"hostId":"p 1"})"),

        {"getDocHistory",
         [] {
             VellDocument old;
             old._id = "old";
             QList<VellDocument> versions{old};
             const bool ok = getDocHistory("d 1", versions);
             QString ids;
             for (const VellDocument &version : qAsConst(versions))
                 ids += version._id + QLatin1Char(' ');
             return ids + QLatin1String(", ") + word(ok);
         },
         "GET", "document-service/documents/d 1/histories?order=-createdAt", "", Judged::ByBoth,
         R"([{"_id":"v2"},{"_id":"v1"}])", "old v2 v1 ", "old "},

        remarkRow("updateDocRemake of a document", false, "documents/d 1"),
        remarkRow("updateDocRemake of a version", true, "documents/histories/d 1"),

        {"getDocPwd",
         [] {
             QString pwd = "old";
             getDocPwd("d 1", pwd);
             return pwd;
         },
         "GET", "document-service/documents/d 1?pwd=true", "", Judged::ByContent,
         R"({"pwd":"s3cret"})", "s3cret", QString()},
    });
}

void TestDocumentRecords::everyFunctionSendsItsRequest()
{
    checkRequestRow();
}

void TestDocumentRecords::anEmptyListOfRecordsLeavesTheTypeAlone()
{
    ScriptedServer server;
    server.enqueue(ScriptedReply::json("[]"));
    VellBaseApi::GetInstance().setBaseApi(server.baseApi());
    int type = 77;
    QVERIFY(getFavorDoc(type, "d1"));
    QCOMPARE(type, 77);
}

void TestDocumentRecords::aRecordWithoutATypeReadsAsZero()
{
    ScriptedServer server;
    server.enqueue(ScriptedReply::json(R"([{"documentId":"d1"}])"));
    VellBaseApi::GetInstance().setBaseApi(server.baseApi());
    int type = 77;
    QVERIFY(getFavorDoc(type, "d1"));
    QCOMPARE(type, 0);
}

void TestDocumentRecords::aShareWithoutACodeIsStillASuccess()
{
    ScriptedServer server;
    server.enqueue(ScriptedReply::json("{}"));
    VellBaseApi::GetInstance().setBaseApi(server.baseApi());
    QString code = "old";
    QVERIFY(shareDocument({}, QDateTime(), code, true));
    QCOMPARE(code, QString());
}

void TestDocumentRecords::versionsAreReadAsHistoryEntries()
{
    ScriptedServer server;
    server.enqueue(
        ScriptedReply::json(R"([{"_id":"v1","suffix":"dwg","updatedAt":"2020-01-02T03:04:05.000Z",)"
                            R"("file":{"fileId":"c1","fileSize":5000000000}}])"));
    VellBaseApi::GetInstance().setBaseApi(server.baseApi());
    QList<VellDocument> versions;
    QVERIFY(getDocHistory("d1", versions));
    QCOMPARE(versions.size(), 1);
    QCOMPARE(versions[0].type, QString("dir")); // a fresh record's, not read from the entry
    QCOMPARE(versions[0].suffix, QString());
    QCOMPARE(versions[0].fileSize, Q_INT64_C(0));
    QCOMPARE(versions[0].fileId, QString("c1"));
    QCOMPARE(VellPub::getQStringByDateTime(versions[0].historyUpdatedAt),
             QString("2020-01-02T03:04:05.000Z"));
    QVERIFY(!versions[0].updatedAt.isValid());
}

QTEST_GUILESS_MAIN(TestDocumentRecords)
#include "tst_document_records.moc"
