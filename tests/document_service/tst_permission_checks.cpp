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
            [function] { return word(function("r 1", "doc")); },
            "GET",
            QString("document-service/projects/p 1/auth?key=%1&category=doc&rId=r 1").arg(key),
            "",
            Judged::ByContent,
            R"({"value":"true"})",
            "true",
            "false",
        };
    };
    const auto onSelf = [](const char *name, OnSelf function, const QString &key) {
        return RequestRow{
            name,
            [function] { return word(function("doc")); },
            "GET",
            QString("document-service/projects/p 1/auth?key=%1&category=doc").arg(key),
            "",
            Judged::ByContent,
            R"({"value":"true"})",
            "true",
            "false",
        };
    };
    addRequestRows({
        onResource("canDeleteDocFolder", canDeleteDocFolder, "delete"),
        onSelf("canDeleteSelf", canDeleteSelf, "delete-self"),
        onResource("canDownloadDocFolder", canDownloadDocFolder, "download"),
        onResource("canEditDocFolder", canEditDocFolder, "edit"),
        onSelf("canEditSelf", canEditSelf, "edit-self"),
        onResource("canUploadDocFolder", canUploadDocFolder, "upload"),
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
    const QString id = "r1";
    const QString category = "doc";

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

    QTest::newRow("empty identifier") << QString() << "doc"
                                      << "key=edit&category=doc&rId=";
    QTest::newRow("an ampersand splits the query") << "r1"
                                                   << "a&b"
                                                   << "key=edit&category=a&b&rId=r1";
    QTest::newRow("a percent sign is data") << "50%25"
                                            << "doc"
                                            << "key=edit&category=doc&rId=50%25";
}

void TestPermissionChecks::wordsGoOutAsTheyAre()
{
    QFETCH(QString, rId);
    QFETCH(QString, category);
    QFETCH(QString, query);
    ScriptedServer server;
    server.enqueue(ScriptedReply::json("{}"));
    VellBaseApi::GetInstance().setBaseApi(server.baseApi());
    GetSoftCache()->setCurrentProjectId("p1");

    canEditDocFolder(rId, category);
    QCOMPARE(server.requests().size(), 1);
    QCOMPARE(server.requests().first().decodedTarget(),
             QString("/document-service/projects/p1/auth?") + query);
}

QTEST_GUILESS_MAIN(TestPermissionChecks)
#include "tst_permission_checks.moc"
