#include "RequestTable.h"

#include <document_service/VellDocService.h>
#include <support/ScriptedServer.h>

#include <VellNetwork/VellBaseApi.h>

#include <QTest>

using namespace VellDocService;

namespace {

VellDocument folder(const QString &parentId)
{
    VellDocument doc;
    doc._id = "old";
    doc.parentId = parentId;
    doc.name = "Level 1";
    doc.category = "doc";
    return doc;
}

VellDocument linkedDocument(const QList<VellDocumentChange> &codes)
{
    VellDocument doc;
    doc._id = "d 1";
    doc.codeList = codes;
    doc.entity.insert("room", {"r1", "r2"});
    doc.entity.insert("axis", {"A"});
    return doc;
}

RequestRow createRow(const char *name, const QString &parentId, const QByteArray &body)
{
    return {name,
            [parentId] {
                VellDocument doc = folder(parentId);
                const bool ok = createDocFolder(doc);
                return doc._id + QLatin1Char('|') + doc.name + QLatin1String(", ") + word(ok);
            },
            "POST",
            "document-service/projects/p 1/documents",
            body,
            Judged::ByBoth,
            R"({"_id":"f1","name":"Level 1, new"})",
            "f1|Level 1, new",
            "|"};
}

RequestRow updateRow(const char *name, const QList<VellDocumentChange> &codes,
                     const QByteArray &body)
{
    return {name,
            [codes] {
                VellDocument doc = linkedDocument(codes);
                const bool ok = updateDoc(doc);
                return doc._id + QLatin1Char('|') + doc.name + QLatin1String(", ") + word(ok);
            },
            "PUT",
            "document-service/documents/d 1?expand=true",
            body,
            Judged::ByBoth,
            R"({"_id":"d 1","name":"plan"})",
            "d 1|plan",
            "|"};
}

RequestRow statusRow(const char *name, const char *verb, const QString &path,
                     const QByteArray &body, const std::function<bool()> &call)
{
    return {name,
            [call] { return word(call()); },
            verb,
            QString("document-service/") + path,
            body,
            Judged::ByStatus,
            R"({"anything":1})",
            QString(),
            QString()};
}

VellDocumentChange code(int number)
{
    return static_cast<VellDocumentChange>(number);
}

} // namespace

class TestDocumentChanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyChangeSendsItsRequest_data();
    void everyChangeSendsItsRequest();
    void anUpdateWithoutChangesSendsNothing();
    void restoringTellsOnlyAJsonTrue_data();
    void restoringTellsOnlyAJsonTrue();
};

void TestDocumentChanges::everyChangeSendsItsRequest_data()
{
    const QByteArray links =
        R"({"links":[{"ids":["A"],"kind":"axis"},{"ids":["r1","r2"],"kind":"room"}]})";

    addRequestRows({
        createRow("createDocFolder", "f 0",
                  R"({"category":"doc","name":"Level 1","parentId":"f 0","type":"dir"})"),
        createRow("createDocFolder at the top level", QString(),
                  R"({"category":"doc","name":"Level 1","parentId":null,"type":"dir"})"),

        statusRow("changeDocOrder", "PUT", "documents",
                  R"([{"_id":"a","order":2},{"_id":"b","order":1}])",
                  [] {
                      return changeDocOrder({{"b", 1}, {"a", 2}});
                  }),
        statusRow("changeDocOrder of nothing", "PUT", "documents", "[]",
                  [] { return changeDocOrder({}); }),

        statusRow("moveToFolder", "PUT", "documents",
                  R"({"documentIds":["d2","d1"],"parentId":"f1"})",
                  [] {
                      return moveToFolder({"d2", "d1"}, "f1");
                  }),
        statusRow("moveToFolder to the top level", "PUT", "documents",
                  R"({"documentIds":["d1"],"parentId":null})",
                  [] { return moveToFolder({"d1"}, QString()); }),
        statusRow("moveToFolder of nothing", "PUT", "documents",
                  R"({"documentIds":[],"parentId":"f1"})", [] { return moveToFolder({}, "f1"); }),

        statusRow("deleteDoc", "DELETE", "documents/d 1", "",
                  [] {
                      bool ok = false;
                      deleteDoc("d 1", ok);
                      return ok;
                  }),
        statusRow("deleteDoc overwrites the caller's result", "DELETE", "documents/d 1", "",
                  [] {
                      bool ok = true;
                      deleteDoc("d 1", ok);
                      return ok;
                  }),

        statusRow("emptyRecycled", "DELETE", "documents?hostId=p 1&category=doc", "",
                  [] { return emptyRecycled("doc"); }),
        statusRow("emptyRecycled without a category", "DELETE",
                  "documents?hostId=p 1&category=", "", [] { return emptyRecycled(QString()); }),

        {"uploadRecycleDoc", [] { return word(uploadRecycleDoc("d 1")); }, "GET",
         "document-service/documents/d 1/restore", "", Judged::ByContent, R"({"hasSameDoc":true})",
         "true", "false"},

        updateRow("updateDoc", {code(0)}, links),
        updateRow("updateDoc with other codes around", {code(1), code(0), code(7), code(0)}, links),
        updateRow("updateDoc with other codes only", {code(1)}, "{}"),
    });
}

void TestDocumentChanges::everyChangeSendsItsRequest()
{
    checkRequestRow();
}

void TestDocumentChanges::anUpdateWithoutChangesSendsNothing()
{
    ScriptedServer server;
    VellBaseApi::GetInstance().setBaseApi(server.baseApi());
    VellDocument doc = linkedDocument({});
    QVERIFY(!updateDoc(doc));
    QCOMPARE(server.requests().size(), 0);
    QCOMPARE(doc._id, QString("d 1"));
    QCOMPARE(doc.entity.size(), 2);
}

void TestDocumentChanges::restoringTellsOnlyAJsonTrue_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<bool>("hasSameDoc");
    QTest::newRow("true") << QByteArray(R"({"hasSameDoc":true})") << true;
    QTest::newRow("false") << QByteArray(R"({"hasSameDoc":false})") << false;
    QTest::newRow("the word true") << QByteArray(R"({"hasSameDoc":"true"})") << false;
    QTest::newRow("1") << QByteArray(R"({"hasSameDoc":1})") << false;
}

void TestDocumentChanges::restoringTellsOnlyAJsonTrue()
{
    QFETCH(QByteArray, reply);
    QFETCH(bool, hasSameDoc);
    ScriptedServer server;
    server.enqueue(ScriptedReply::json(reply));
    VellBaseApi::GetInstance().setBaseApi(server.baseApi());
    QCOMPARE(uploadRecycleDoc("d1"), hasSameDoc);
}

QTEST_GUILESS_MAIN(TestDocumentChanges)
#include "tst_document_changes.moc"
