#include <document_service/VellDocumentData.h>
#include <support/ScriptedServer.h>

#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QRegularExpression>
#include <QTest>

#include <functional>
#include <vector>

namespace {

//! What a client passes, any of which may hold a placeholder of a path template.
struct Words
{
    QString project;
    QString category;
    QString id;

    //! The condition of parent \a id in \a category, as it goes into an address.
    QString query() const
    {
        return QString("{\"parentId\":\"") + id + QString("\"}&category=") + category
            + "&select=-entities&linkedEntity=true";
    }
    QString nameQuery() const
    {
        return QString("{\"name\":\"") + id + QString("\",\"parentId\":\"") + id
            + QString("\"}&category=") + category + "&words=true&select=name";
    }
    VellDocumentConditon condition() const
    {
        VellDocumentConditon condition;
        condition.parentId = id;
        condition.category = category;
        return condition;
    }
};

//! One method of the facade and its address: a template, what fills it, and what follows.
struct Row
{
    const char *name;
    std::function<void(VellDocumentData &, const Words &)> call;
    QString pathTemplate;
    std::function<QStringList(const Words &)> values;
    QString tail;
};

//! Puts each value in turn in the place of the lowest placeholder, whichever value brought that placeholder.
QString filled(QString text, const QStringList &values)
{
    static const QRegularExpression placeholder("%([1-9])");
    for (const QString &value : values) {
        QChar lowest(u'9' + 1);
        for (auto it = placeholder.globalMatch(text); it.hasNext();)
            lowest = qMin(lowest, it.next().captured(1).at(0));
        text.replace(QLatin1Char('%') + QString(lowest), value);
    }
    return text;
}

using OnResource = bool (VellDocumentData::*)(const QString &, const QString &);
using OnSelf = bool (VellDocumentData::*)(const QString &);

Row onResource(const char *name, OnResource method, const QString &key)
{
    return {name, [=](auto &data, const auto &words) { (data.*method)(words.id, words.category); },
            QString("projects/%1/auth?key=") + key + "&category=%2&rId=%3",
            [](const Words &words) {
                return QStringList{words.project, words.category, words.id};
            },
            QString()};
}

Row onSelf(const char *name, OnSelf method, const QString &key)
{
    return {name, [=](auto &data, const auto &words) { (data.*method)(words.category); },
            QString("projects/%1/auth?key=") + key + "&category=%2",
            [](const Words &words) {
                return QStringList{words.project, words.category};
            },
            QString()};
}

Row onId(const char *name, const std::function<void(VellDocumentData &, const QString &)> &call,
         const char *pathTemplate)
{
    return {name, [=](auto &data, const auto &words) { call(data, words.id); },
            QString::fromLatin1(pathTemplate),
            [](const Words &words) { return QStringList{words.id}; }, QString()};
}

Row onQuery(const char *name,
            const std::function<void(VellDocumentData &, VellDocumentConditon &)> &call,
            const char *rest, const char *tail, const QStringList &more = {})
{
    return {name,
            [=](auto &data, const auto &words) {
                VellDocumentConditon condition = words.condition();
                call(data, condition);
            },
            QString("projects/%1/documents?where=%2") + QString::fromLatin1(rest),
            [=](const Words &words) {
                return QStringList{words.project, words.query()} + more;
            },
            QString::fromLatin1(tail)};
}

std::vector<Row> permissionRows()
{
    return {
        onResource("canDeleteDocFolder", &VellDocumentData::canDeleteDocFolder, "delete"),
        onResource("canDownloadDocFolder", &VellDocumentData::canDownloadDocFolder, "download"),
        onResource("canEditDocFolder", &VellDocumentData::canEditDocFolder, "edit"),
        onResource("canUploadDocFolder", &VellDocumentData::canUploadDocFolder, "upload"),
        onSelf("canDeleteSelf", &VellDocumentData::canDeleteSelf, "delete-self"),
        onSelf("canEditSelf", &VellDocumentData::canEditSelf, "edit-self"),
    };
}

std::vector<Row> queryRows()
{
    static const VellDocumentSort byName{"name", true, false};
    static QList<VellDocument> list;
    return {
        onQuery(
            "getDocuments", [](auto &data, auto &condition) { data.getDocuments(condition, list); },
            "", ""),
        onQuery(
            "getDocumentsRange",
            [](auto &data, auto &condition) {
                data.getDocumentsRange(list, 20, 10, condition, byName);
            },
            "&expand=true", "&limit=10&skip=20&order=name"),
        onQuery(
            "getDocumentsRangeCount",
            [](auto &data, auto &condition) { data.getDocumentsRangeCount(condition); },
            "&only_count=true", ""),
        onQuery(
            "getDocumentsRecycledRangeCount",
            [](auto &data, auto &condition) { data.getDocumentsRecycledRangeCount(condition); },
            "&only_count=true", ""),
        onQuery(
            "getFavorDocs",
            [](auto &data, auto &condition) { data.getFavorDocs(list, condition, byName); }, "",
            "&order=name"),
        onQuery("getRecycledDocumentsRange",
                [](auto &data, auto &condition) {
                    data.getRecycledDocumentsRange(list, 20, 10, condition, byName);
                },
                "&limit=%3&skip=%4", "&order=name", {"10", "20"}),
        {"isDocNameExist",
         [](auto &data, const auto &words) {
             data.isDocNameExist(words.id, words.id, words.category);
         },
         "projects/%1/documents?where=%2",
         [](const Words &words) {
             return QStringList{words.project, words.nameQuery()};
         },
         QString()},
        {"getEntityDocByGuid",
         [](auto &data, const auto &words) {
             QList<VellDocumentLite> found;
             data.getEntityDocByGuid(words.id, found);
         },
         "projects/%1/entities/%2/documents",
         [](const Words &words) {
             return QStringList{words.project, words.id};
         },
         QString()},
    };
}

std::vector<Row> documentRows()
{
    static QString text;
    static VellDocument document;
    return {
        onId(
            "getDoc", [](auto &data, const QString &id) { data.getDoc(id, document, false); },
            "documents/%1?expand=true"),
        onId(
            "getDocHistory",
            [](auto &data, const QString &id) {
                QList<VellDocument> versions;
                data.getDocHistory(id, versions);
            },
            "documents/%1/histories?order=-createdAt"),
        onId(
            "getDocPwd", [](auto &data, const QString &id) { data.getDocPwd(id, text); },
            "documents/%1?pwd=true"),
        onId(
            "getFavorDoc",
            [](auto &data, const QString &id) {
                int type = 0;
                data.getFavorDoc(type, id);
            },
            R"(documents/records?where={"documentId":"%1","type":3})"),
        onId(
            "deleteDoc", [](auto &data, const QString &id) { data.deleteDoc(id); }, "documents/%1"),
        onId(
            "uploadRecycleDoc", [](auto &data, const QString &id) { data.uploadRecycleDoc(id); },
            "documents/%1/restore"),
        onId(
            "updateDoc",
            [](auto &data, const QString &id) {
                VellDocument doc;
                doc._id = id;
                doc.codeList = {VellDocumentChange::EntityLinks};
                data.updateDoc(doc);
            },
            "documents/%1?expand=true"),
        onId(
            "updateDocRemake",
            [](auto &data, const QString &id) { data.updateDocRemake(false, id, QString()); },
            "documents/%1"),
        onId(
            "updateDocRemake of a version",
            [](auto &data, const QString &id) { data.updateDocRemake(true, id, QString()); },
            "documents/histories/%1"),
        onId(
            "restoreFile",
            [](auto &data, const QString &id) { data.restoreFile(id, {}, 4, true, text); },
            "documents/%1/records"),
        onId(
            "setFrequentDocument",
            [](auto &data, const QString &id) { data.setFrequentDocument(id, true); },
            "documents/%1/records"),
        onId(
            "setRectentDocument",
            [](auto &data, const QString &id) { data.setRectentDocument(id, true); },
            "documents/%1/records"),
        {"createDocFolder",
         [](auto &data, const auto &words) {
             VellDocument folder;
             folder.category = words.category;
             data.createDocFolder(folder);
         },
         "projects/%1/documents", [](const Words &words) { return QStringList{words.project}; },
         QString()},
        {"emptyRecycled", [](auto &data, const auto &words) { data.emptyRecycled(words.category); },
         "documents?hostId=%1&category=%2",
         [](const Words &words) {
             return QStringList{words.project, words.category};
         },
         QString()},
    };
}

void addRows(const std::vector<Row> &rows)
{
    for (const Row &row : rows) {
        for (const QLatin1String marker :
             {QLatin1String("%1"), QLatin1String("%2"), QLatin1String("%3")}) {
            const std::pair<const char *, Words> cases[] = {
                {"project", {QLatin1Char('p') + marker, "c", "d"}},
                {"category", {"p", QLatin1Char('c') + marker, "d"}},
                {"identifier", {"p", "c", QLatin1Char('d') + marker}},
            };
            for (const auto &[where, words] : cases)
                QTest::addRow("%s: %s in the %s", row.name, marker.data(), where) << row << words;
        }
    }
}

} // namespace
Q_DECLARE_METATYPE(Row)
Q_DECLARE_METATYPE(Words)

// Values go into path templates one after the other, so one that holds a placeholder is hit by the values after it.
class TestPlaceholders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLowestPlaceholderIsFilled();
    void everyTemplateIsFilledInTurn_data();
    void everyTemplateIsFilledInTurn();
};

void TestPlaceholders::theLowestPlaceholderIsFilled()
{
    const QString text = "%1/%2/%3";
    QCOMPARE(filled(text, {"a", "b", "c"}), QString("a/b/c"));
    QCOMPARE(filled(text, {"%3", "b", "c"}), QString("c/b/c"));
    QCOMPARE(filled(text, {"%1", "b", "c"}), QString("b/c/%3"));
}

void TestPlaceholders::everyTemplateIsFilledInTurn_data()
{
    QTest::addColumn<Row>("row");
    QTest::addColumn<Words>("words");
    addRows(permissionRows());
    addRows(queryRows());
    addRows(documentRows());
}

void TestPlaceholders::everyTemplateIsFilledInTurn()
{
    QFETCH(Row, row);
    QFETCH(Words, words);
    ScriptedServer server;
    VellBaseApi::GetInstance().setBaseApi(server.baseApi());
    GetSoftCache()->setCurrentProjectId(words.project);
    VellDocumentData data;
    row.call(data, words);
    QCOMPARE(server.requests().size(), 1);
    QCOMPARE(server.requests().first().decodedTarget(),
             QString("/document-service/") + filled(row.pathTemplate, row.values(words))
                 + row.tail);
}

QTEST_GUILESS_MAIN(TestPlaceholders)
#include "tst_placeholders.moc"
