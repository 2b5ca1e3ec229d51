#include "RequestTable.h"

#include <document_service/VellDocService.h>
#include <support/ScriptedServer.h>

#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QTest>

using namespace VellDocService;

class TestPermissionChecks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCheckAsksItsQuestion_data();
    void everyCheckAsksItsQuestion();
    void onlyTheWordTrueGrants_data();
    void onlyTheWordTrueGrants();
    void wordsGoOutAsTheyAre_data();
    void wordsGoOutAsTheyAre();
};

void TestPermissionChecks::everyCheckAsksItsQuestion_data()
{
    using OnResource = bool (*)(const QString &, const QString &);
    using OnSelf = bool (*)(const QString &);
    const auto onResource = [](const char *name, OnResource function, const QString &key) {
        return RequestRow{
            name,
            [function] { return word(function(QStringLiteral("r 1"), QStringLiteral("doc"))); },
            "GET",
            QStringLiteral("document-service/projects/p 1/auth?key=%1&category=doc&rId=r 1")
                .arg(key),
            "",
            Judged::ByContent,
            R"({"value":"true"})",
            QStringLiteral("true"),
            QStringLiteral("false"),
        };
    };
    const auto onSelf = [](const char *name, OnSelf function, const QString &key) {
        return RequestRow{
            name,
            [function] { return word(function(QStringLiteral("doc"))); },
            "GET",
            QStringLiteral("document-service/projects/p 1/auth?key=%1&category=doc").arg(key),
            "",
            Judged::ByContent,
            R"({"value":"true"})",
            QStringLiteral("true"),
            QStringLiteral("false"),
        };
    };
    addRequestRows({
        onResource("canDeleteDocFolder", canDeleteDocFolder, QStringLiteral("delete")),
        onSelf("canDeleteSelf", canDeleteSelf, QStringLiteral("delete-self")),
        onResource("canDownloadDocFolder", canDownloadDocFolder, QStringLiteral("download")),
        onResource("canEditDocFolder", canEditDocFolder, QStringLiteral("edit")),
        onSelf("canEditSelf", canEditSelf, QStringLiteral("edit-self")),
        onResource("canUploadDocFolder", canUploadDocFolder, QStringLiteral("upload")),
    });
}

void TestPermissionChecks::everyCheckAsksItsQuestion()
{
    checkRequestRow();
}

void TestPermissionChecks::onlyTheWordTrueGrants_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<bool>("isGranted");

    QTest::newRow("the word true") << QByteArray(R"({"value":"true"})") << true;
    QTest::newRow("beside other keys") << QByteArray(R"({"key":"x","value":"true"})") << true;
    QTest::newRow("capitalised") << QByteArray(R"({"value":"True"})") << false;
    QTest::newRow("with a blank") << QByteArray(R"({"value":"true "})") << false;
    QTest::newRow("a JSON boolean") << QByteArray(R"({"value":true})") << false;
    QTest::newRow("a number") << QByteArray(R"({"value":1})") << false;
    QTest::newRow("null") << QByteArray(R"({"value":null})") << false;
    QTest::newRow("false") << QByteArray(R"({"value":"false"})") << false;
    QTest::newRow("no value") << QByteArray(R"({"val":"true"})") << false;
}

void TestPermissionChecks::onlyTheWordTrueGrants()
{
    QFETCH(QByteArray, reply);
    QFETCH(bool, isGranted);
    ScriptedServer server;
    server.setHandler([&](const ScriptedRequest &) { return ScriptedReply::json(reply); });
    VellBaseApi::GetInstance().setBaseApi(server.baseApi());
    const QString id = QStringLiteral("r1");
    const QString category = QStringLiteral("doc");

    QCOMPARE(canDeleteDocFolder(id, category), isGranted);
    QCOMPARE(canDeleteSelf(category), isGranted);
    QCOMPARE(canDownloadDocFolder(id, category), isGranted);
    QCOMPARE(canEditDocFolder(id, category), isGranted);
    QCOMPARE(canEditSelf(category), isGranted);
    QCOMPARE(canUploadDocFolder(id, category), isGranted);
}

void TestPermissionChecks::wordsGoOutAsTheyAre_data()
{
    QTest::addColumn<QString>("rId");
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("query");

    QTest::newRow("empty identifier")
        << QString() << QStringLiteral("doc") << QStringLiteral("key=edit&category=doc&rId=");
    QTest::newRow("an ampersand splits the query")
        << QStringLiteral("r1") << QStringLiteral("a&b")
        << QStringLiteral("key=edit&category=a&b&rId=r1");
    QTest::newRow("a percent sign is data") << QStringLiteral("50%25") << QStringLiteral("doc")
                                            << QStringLiteral("key=edit&category=doc&rId=50%25");
}

void TestPermissionChecks::wordsGoOutAsTheyAre()
{
    QFETCH(QString, rId);
    QFETCH(QString, category);
    QFETCH(QString, query);
    ScriptedServer server;
    server.enqueue(ScriptedReply::json("{}"));
    VellBaseApi::GetInstance().setBaseApi(server.baseApi());
    GetSoftCache()->setCurrentProjectId(QStringLiteral("p1"));

    canEditDocFolder(rId, category);
    QCOMPARE(server.requests().size(), 1);
    QCOMPARE(server.requests().first().decodedTarget(),
             QStringLiteral("/document-service/projects/p1/auth?") + query);
}

QTEST_GUILESS_MAIN(TestPermissionChecks)
#include "tst_permission_checks.moc"
