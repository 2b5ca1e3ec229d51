#include <document_service/VellDocumentData.h>
#include <support/ScriptedServer.h>

#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <QUrl>
#include <QUrlQuery>

#include <memory>

namespace {

const QString folderId = "f1";
const QString categoryWord = "doc";

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

VellDocument file(const QString &id, const QString &name)
{
    VellDocument doc;
    doc._id = id;
    doc.name = name;
    doc.parentId = folderId;
    doc.category = categoryWord;
    doc.type = "file";
    return doc;
}

} // namespace

class TestNameChecks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void takenNamesCountUp_data();
    void takenNamesCountUp();
    void theCheckAsksForAFileOfThatName();
    void aReservedNameIsNotAskedFor();
    void aReservedNameGivesNoIdentifier();
    void reservedNamesAreCaseSensitive();
    void aCachedFileIsNotAskedFor();
    void onlyACachedFileOfThisPlaceCounts_data();
    void onlyACachedFileOfThisPlaceCounts();
    void ofSeveralCachedFilesTheFirstKeyCounts();
    void theFirstConflictWithADocumentGivesTheIdentifier();
    void anIdentifierOfTheCallerStays();
    void aFailedRequestCountsAsFree();
    void nothingIsCached();

    void existenceAsksForAnyType();
    void existenceOfNothing_data();
    void existenceOfNothing();
    void existenceDoesNotLookIntoTheCache();
    void theFirstListedDocumentGivesItsIdentifier();
    void noDocumentLeavesTheIdentifier();

private:
    //! The service has files of these names, with the identifier "id of NAME", and nothing else.
    void serviceHas(const QStringList &names);

    QString validName(const QString &name, const QStringList &reserved = {})
    {
        return m_data->getValidDocName(folderId, name, m_existingId, categoryWord, reserved);
    }

    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<VellDocumentData> m_data;
    QString m_existingId;
};

void TestNameChecks::init()
{
    m_server = std::make_unique<ScriptedServer>();
    m_data = std::make_unique<VellDocumentData>();
    m_existingId.clear();
    VellBaseApi::GetInstance().setBaseApi(m_server->baseApi());
    GetSoftCache()->setCurrentProjectId("p1");
    serviceHas({});
}

void TestNameChecks::serviceHas(const QStringList &names)
{
    m_server->setHandler([names](const ScriptedRequest &request) {
        const QUrlQuery query(QUrl::fromEncoded(request.target));
        const QByteArray where = query.queryItemValue("where", QUrl::FullyDecoded).toUtf8();
        const QString name =
            QJsonDocument::fromJson(where).object().value(QLatin1String("name")).toString();
        QJsonArray found;
        if (names.contains(name))
            found.append(QJsonObject{{"_id", QString("id of ") + name}});
        return ScriptedReply::json(QJsonDocument(found).toJson(QJsonDocument::Compact));
    });
}

void TestNameChecks::takenNamesCountUp_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("taken");
    QTest::addColumn<QString>("valid");

    const auto row = [](const char *rowName, const char *name,
                        const std::vector<const char *> &taken, const char *valid) {
        QStringList names;
        for (const char *other : taken)
            names.append(text(other));
        QTest::newRow(rowName) << text(name) << names << text(valid);
    };
    row("free", "report.pdf", {}, "report.pdf");
    row("free, though a variant is taken", "report.pdf", {"report(2).pdf"}, "report.pdf");
    row("free in another case", "report.pdf", {"Report.pdf", "REPORT.PDF"}, "report.pdf");
    row("taken once", "report.pdf", {"report.pdf"}, "report(2).pdf");
    row("taken twice", "report.pdf", {"report.pdf", "report(2).pdf"}, "report(3).pdf");
    row("a gap is filled", "report.pdf", {"report.pdf", "report(3).pdf"}, "report(2).pdf");
    row("nine to ten", "a.b",
        {"a.b", "a(2).b", "a(3).b", "a(4).b", "a(5).b", "a(6).b", "a(7).b", "a(8).b", "a(9).b"},
        "a(10).b");
    row("the number restarts at 2", "plan(5).dwg", {"plan(5).dwg"}, "plan(2).dwg");
    row("and counts up from there", "plan(5).dwg", {"plan(5).dwg", "plan(2).dwg"}, "plan(3).dwg");
    row("its own number is passed", "plan(3).dwg", {"plan(3).dwg", "plan(2).dwg"}, "plan(4).dwg");
    row("long number", "plan(20260131).dwg", {"plan(20260131).dwg"}, "plan(2).dwg");
    row("leading zeros", "plan(007).dwg", {"plan(007).dwg"}, "plan(2).dwg");
    row("no dot", "notes", {"notes"}, "notes(2)");
    row("no dot, taken twice", "notes", {"notes", "notes(2)"}, "notes(3)");
    row("no dot, with a group", "notes(7)", {"notes(7)"}, "notes(2)");
    row("several dots", "archive.tar.gz", {"archive.tar.gz"}, "archive.tar(2).gz");
    row("several dots, taken twice", "archive.tar.gz", {"archive.tar.gz", "archive.tar(2).gz"},
        "archive.tar(3).gz");
    row("dot first", ".bashrc", {".bashrc"}, "(2).bashrc");
    row("dot first, taken twice", ".bashrc", {".bashrc", "(2).bashrc"}, "(3).bashrc");
    row("dot last", "name.", {"name."}, "name(2).");
    row("dots only", "...", {"..."}, "..(2).");
    row("one dot", ".", {"."}, "(2).");
    row("empty", "", {""}, "(2)");
    row("blank", " ", {" "}, " (2)");
    row("blank before the dot", "a .txt", {"a .txt"}, "a (2).txt");
    row("group only", "(1)", {"(1)"}, "(2)");
    row("group only, with a suffix", "(1).txt", {"(1).txt"}, "(2).txt");
    row("empty group", "x().txt", {"x().txt"}, "x(2).txt");
    row("group in the middle", "a(1)b.txt", {"a(1)b.txt"}, "a(2)b.txt");
    row("group first", "(1)b.txt", {"(1)b.txt"}, "(2)b.txt");
    row("several groups", "a(1)(2)(3).txt", {"a(1)(2)(3).txt"}, "a(1)(2)(2).txt");
    row("the first try may be the name itself", "a(1)b(2)c.txt", {"a(1)b(2)c.txt"},
        "a(1)b(3)c.txt");
    row("several groups, the last in the middle", "a(1)b(7)c.txt", {"a(1)b(7)c.txt"},
        "a(1)b(2)c.txt");
    row("letters are no group", "a(x).txt", {"a(x).txt"}, "a(x)(2).txt");
    row("letters and digits are no group", "a(1x).txt", {"a(1x).txt"}, "a(1x)(2).txt");
    row("a blank in the group", "a( 1).txt", {"a( 1).txt"}, "a( 1)(2).txt");
    row("nested", "a((1)).txt", {"a((1)).txt"}, "a((2)).txt");
    row("left open", "a(1.txt", {"a(1.txt"}, "a(1(2).txt");
    row("group in the suffix", "a.t(1)", {"a.t(1)"}, "a(2).t(1)");
    row("other digits are no group", "a(١).txt", {"a(١).txt"}, "a(١)(2).txt");
    row("full-width parentheses are no group", "a（1）.txt", {"a（1）.txt"}, "a（1）(2).txt");
    row("Chinese", "图纸.dwg", {"图纸.dwg"}, "图纸(2).dwg");
    row("Chinese, with a group", "图纸(4)最终.dwg", {"图纸(4)最终.dwg"}, "图纸(2)最终.dwg");
    row("marks of a regular expression", "a[0-9]*+?^$|\\.txt", {"a[0-9]*+?^$|\\.txt"},
        "a[0-9]*+?^$|\\(2).txt");
    row("hard for an address", "R&D 100% #1 + 图纸.dwg", {"R&D 100% #1 + 图纸.dwg"},
        "R&D 100% #1 + 图纸(2).dwg");
    row("quotes", "a\"b\"{}.txt", {"a\"b\"{}.txt"}, "a\"b\"{}(2).txt");
    const QString longName(250, QLatin1Char('x'));
    QTest::newRow("very long") << longName + text(".txt") << QStringList{longName + text(".txt")}
                               << longName + text("(2).txt");
}

void TestNameChecks::takenNamesCountUp()
{
    QFETCH(QString, name);
    QFETCH(QStringList, taken);
    QFETCH(QString, valid);
    if (taken.contains(QString())) {
        // An empty name is no condition, so the service cannot be asked for it: it is reserved here.
        QCOMPARE(validName(name, taken), valid);
        return;
    }
    serviceHas(taken);
    const QString result = validName(name);
    QCOMPARE(result, valid);
    QCOMPARE(m_existingId, result == name ? QString() : text("id of ") + name);
}

void TestNameChecks::theCheckAsksForAFileOfThatName()
{
    validName(text("plan.dwg"));
    QCOMPARE(m_server->requests().size(), 1);
    QCOMPARE(m_server->requests()[0].verb, QByteArray("GET"));
    QCOMPARE(m_server->requests()[0].decodedTarget(),
             text(R"(/document-service/projects/p1/documents?where=)"
                  R"({"name":"plan.dwg","parentId":"f1","type":"file"})"
                  "&category=doc&words=true&select=name"));
}

void TestNameChecks::aReservedNameIsNotAskedFor()
{
    QCOMPARE(validName(text("a.txt"), {text("a.txt"), text("a(2).txt")}), text("a(3).txt"));
    QCOMPARE(m_server->requests().size(), 1); // for a(3).txt
}

void TestNameChecks::aReservedNameGivesNoIdentifier()
{
    QCOMPARE(validName(text("a.txt"), {text("a.txt")}), text("a(2).txt"));
    QCOMPARE(m_existingId, QString());
}

void TestNameChecks::reservedNamesAreCaseSensitive()
{
    QCOMPARE(validName(text("a.txt"), {text("A.txt")}), text("a.txt"));
}

void TestNameChecks::aCachedFileIsNotAskedFor()
{
    m_data->addDocToCache(file(text("d1"), text("a.txt")));
    QCOMPARE(validName(text("a.txt")), text("a(2).txt"));
    QCOMPARE(m_existingId, text("d1"));
    QCOMPARE(m_server->requests().size(), 1); // for a(2).txt
}

void TestNameChecks::onlyACachedFileOfThisPlaceCounts_data()
{
    QTest::addColumn<VellDocument>("cached");
    const auto row = [](const char *name, QString VellDocument::*field, const QString &value) {
        VellDocument doc = file(text("d1"), text("a.txt"));
        doc.*field = value;
        QTest::newRow(name) << doc;
    };
    row("a folder", &VellDocument::type, text("dir"));
    row("another type", &VellDocument::type, text("File"));
    row("another folder", &VellDocument::parentId, text("f2"));
    row("the top level", &VellDocument::parentId, QString());
    row("another category", &VellDocument::category, text("Doc"));
    row("another case", &VellDocument::name, text("A.txt"));
}

void TestNameChecks::onlyACachedFileOfThisPlaceCounts()
{
    QFETCH(VellDocument, cached);
    m_data->addDocToCache(cached);
    QCOMPARE(validName(text("a.txt")), text("a.txt"));
    QCOMPARE(m_existingId, QString());
}

void TestNameChecks::ofSeveralCachedFilesTheFirstKeyCounts()
{
    m_data->addDocToCache(file(text("d2"), text("a.txt")));
    m_data->addDocToCache(file(text("d1"), text("a.txt")));
    validName(text("a.txt"));
    QCOMPARE(m_existingId, text("d1"));
}

void TestNameChecks::theFirstConflictWithADocumentGivesTheIdentifier()
{
    serviceHas({text("a(2).txt"), text("a(3).txt")});
    QCOMPARE(validName(text("a.txt"), {text("a.txt")}), text("a(4).txt"));
    QCOMPARE(m_existingId, text("id of a(2).txt"));
}

void TestNameChecks::anIdentifierOfTheCallerStays()
{
    serviceHas({text("a.txt")});
    m_existingId = text("mine");
    QCOMPARE(validName(text("a.txt")), text("a(2).txt"));
    QCOMPARE(m_existingId, text("mine"));
}

void TestNameChecks::aFailedRequestCountsAsFree()
{
    m_server->setHandler([](const ScriptedRequest &) { return ScriptedReply::json("", 500); });
    QCOMPARE(validName(text("a.txt")), text("a.txt"));
    QVERIFY(!m_data->isDocNameExist(folderId, text("a.txt"), categoryWord));
}

void TestNameChecks::nothingIsCached()
{
    serviceHas({text("a.txt")});
    validName(text("a.txt"));
    m_data->isDocNameExist(folderId, text("a.txt"), categoryWord);
    m_server->setHandler({});
    VellDocument doc;
    m_data->getDoc(text("id of a.txt"), doc, true);
    QCOMPARE(doc._id, QString());
}

void TestNameChecks::existenceAsksForAnyType()
{
    serviceHas({text("a.txt")});
    QVERIFY(m_data->isDocNameExist(folderId, text("a.txt"), categoryWord));
    QCOMPARE(m_server->requests().size(), 1);
    QCOMPARE(m_server->requests()[0].decodedTarget(),
             text(R"(/document-service/projects/p1/documents?where=)"
                  R"({"name":"a.txt","parentId":"f1"}&category=doc&words=true&select=name)"));
}

void TestNameChecks::existenceOfNothing_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<int>("status");
    QTest::newRow("no document") << QByteArray("[]") << 200;
    QTest::newRow("failure") << QByteArray() << 500;
    QTest::newRow("no list") << QByteArray(R"({"_id":"d1"})") << 200;
}

void TestNameChecks::existenceOfNothing()
{
    QFETCH(QByteArray, reply);
    QFETCH(int, status);
    m_server->enqueue(ScriptedReply::json(reply, status));
    QVERIFY(!m_data->isDocNameExist(QString(), text("a.txt"), QString()));
}

void TestNameChecks::existenceDoesNotLookIntoTheCache()
{
    m_data->addDocToCache(file(text("d1"), text("a.txt")));
    QVERIFY(!m_data->isDocNameExist(folderId, text("a.txt"), categoryWord));
}

void TestNameChecks::theFirstListedDocumentGivesItsIdentifier()
{
    m_server->enqueue(ScriptedReply::json(R"([{"_id":"d2"},{"_id":"d1"}])"));
    VellDocumentConditon condition;
    condition.name = text("a.txt");
    condition.projectId = text("another");
    QString id = text("old");
    QVERIFY(m_data->getDocumentIdByName(condition, id));
    QCOMPARE(id, text("d2"));
    QCOMPARE(condition.projectId, text("p1"));
    QVERIFY(condition.selectName);
    QVERIFY(m_server->requests()[0].target.endsWith("&select=name"));
    QCOMPARE(m_data->getFolderName(text("d2")), QString());
}

void TestNameChecks::noDocumentLeavesTheIdentifier()
{
    VellDocumentConditon condition;
    QString id = text("old");
    QVERIFY(!m_data->getDocumentIdByName(condition, id));
    QCOMPARE(id, text("old"));
}

QTEST_GUILESS_MAIN(TestNameChecks)
#include "tst_name_checks.moc"
