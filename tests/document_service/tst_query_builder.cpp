#include <document_service/VellDocService.h>

#include <QJsonDocument>
#include <QTest>

using namespace VellDocService;

class TestQueryBuilder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshConditionAsksForTheTopLevel();
    void aFreshSortIsTheDefaultOrder();
    void everyConditionHasItsText_data();
    void everyConditionHasItsText();
    void theWhereBuilderHoldsSpanAndPattern_data();
    void theWhereBuilderHoldsSpanAndPattern();
    void aListBecomesAnIn_data();
    void aListBecomesAnIn();
};

namespace {

const QString wholeSelect = "&select=-entities&linkedEntity=true";
const QString topLevel = "{\"parentId\":null}";

QDateTime utc(int year, int month, int day)
{
    return {QDate(year, month, day), QTime(0, 0), Qt::UTC};
}

} // namespace

void TestQueryBuilder::aFreshConditionAsksForTheTopLevel()
{
    const VellDocumentConditon condition;
    QVERIFY(condition.isAllTime && condition.isAllUser && condition.hasParentId);
    QVERIFY(!condition.isFrequent && !condition.isDeep && !condition.noSelect
            && !condition.selectName && !condition.selectTree && !condition.reservedFlag);
    QVERIFY(condition.startTime.isNull() && condition.endTime.isNull());
    QCOMPARE(condition.recordType, 0);
    QCOMPARE(conditionToQuery(condition), topLevel + wholeSelect);
}

void TestQueryBuilder::aFreshSortIsTheDefaultOrder()
{
    const VellDocumentSort sort;
    QCOMPARE(sort.sortField, QString("updatedAt"));
    QVERIFY(!sort.isAsc);
    QVERIFY(sort.isDefault);
}

void TestQueryBuilder::everyConditionHasItsText_data()
{
    QTest::addColumn<VellDocumentConditon>("condition");
    QTest::addColumn<QString>("query");

    using Fill = void (*)(VellDocumentConditon &);
    const auto row = [](const char *name, Fill fill, const QString &query) {
        VellDocumentConditon condition;
        fill(condition);
        QTest::newRow(name) << condition << query;
    };
    const auto text = [](const char *utf8) { return QString::fromUtf8(utf8); };

    row(
        "default", [](auto &) {}, topLevel + wholeSelect);
    row(
        "parent", [](auto &c) { c.parentId = QString("f1"); },
        text(R"({"parentId":"f1"})") + wholeSelect);
    row(
        "no parent", [](auto &c) { c.hasParentId = false; }, QString("{}") + wholeSelect);
    row(
        "no parent, though one is named",
        [](auto &c) {
            c.hasParentId = false;
            c.parentId = "f1";
        },
        QString("{}") + wholeSelect);
    row(
        "span of time",
        [](auto &c) {
            c.isAllTime = false;
            c.startTime = utc(2020, 5, 1);
            c.endTime = utc(2020, 5, 31);
        },
        text(R"({"parentId":null,"updatedAt":{"$gte":"2020-05-01T00:00:00.000Z",)"
             R"("$lt":"2020-06-01T00:00:00.000Z"}})")
            + wholeSelect);
    row(
        "span of time without its ends", [](auto &c) { c.isAllTime = false; },
        text(R"({"parentId":null,"updatedAt":{"$gte":"","$lt":""}})") + wholeSelect);
    row(
        "a span that is not asked for",
        [](auto &c) {
            c.startTime = utc(2020, 5, 1);
            c.endTime = utc(2020, 5, 31);
        },
        topLevel + wholeSelect);
    row(
        "pattern", [](auto &c) { c.searchName = QString("^plan.*\\.dwg$"); },
        text(R"({"name":{"$options":"i","$regex":"^plan.*\\.dwg$"},"parentId":null})")
            + wholeSelect);
    row(
        "name", [](auto &c) { c.name = QString("plan.dwg"); },
        text(R"({"name":"plan.dwg","parentId":null}&words=true)") + wholeSelect);
    row(
        "the name beats the pattern",
        [](auto &c) {
            c.name = "plan.dwg";
            c.searchName = "^x";
        },
        text(R"({"name":"plan.dwg","parentId":null}&words=true)") + wholeSelect);
    row(
        "quotes and braces in a name", [](auto &c) { c.name = QString("a\"{}b"); },
        text(R"({"name":"a\"{}b","parentId":null}&words=true)") + wholeSelect);
    row(
        "document", [](auto &c) { c.documentId = QString("d1"); },
        text(R"({"documentId":"d1","parentId":null})") + wholeSelect);
    row(
        "type", [](auto &c) { c.type = QString("file"); },
        text(R"({"parentId":null,"type":"file"})") + wholeSelect);
    row(
        "users, an empty one as null",
        [](auto &c) {
            c.isAllUser = false;
            c.userIds = QStringList{"u1", QString()};
        },
        text(R"({"parentId":null,"updatedBy":{"$in":["u1",null]}})") + wholeSelect);
    row(
        "no user at all", [](auto &c) { c.isAllUser = false; },
        text(R"({"parentId":null,"updatedBy":{"$in":[]}})") + wholeSelect);
    row(
        "users that are not asked for", [](auto &c) { c.userIds = QStringList{"u1"}; },
        topLevel + wholeSelect);
    row(
        "category", [](auto &c) { c.category = QString("recycle"); },
        topLevel + QString("&category=recycle") + wholeSelect);
    row(
        "record type", [](auto &c) { c.recordType = 3; },
        topLevel + QString("&recordType=3") + wholeSelect);
    row(
        "record type 0", [](auto &c) { c.recordType = 0; }, topLevel + wholeSelect);
    row(
        "record type -1", [](auto &c) { c.recordType = -1; }, topLevel + wholeSelect);
    row(
        "frequent", [](auto &c) { c.isFrequent = true; },
        topLevel + QString("&frequent=true") + wholeSelect);
    row(
        "deep", [](auto &c) { c.isDeep = true; }, topLevel + QString("&deep=true") + wholeSelect);
    row(
        "every field", [](auto &c) { c.noSelect = true; }, topLevel);
    row(
        "names only", [](auto &c) { c.selectName = true; }, topLevel + "&select=name");
    const QString tree =
        "&select=parentId name type suffix fileType fileSize fileId updatedAt&deep=true";
    row(
        "tree", [](auto &c) { c.selectTree = true; }, topLevel + tree);
    row(
        "a deep tree says so twice", [](auto &c) { c.isDeep = c.selectTree = true; },
        topLevel + QString("&deep=true") + tree);
    row(
        "names beat the tree", [](auto &c) { c.selectName = c.selectTree = true; },
        topLevel + "&select=name");
    row(
        "every field beats both", [](auto &c) { c.noSelect = c.selectName = c.selectTree = true; },
        topLevel);
    row(
        "the reserved flag and the project say nothing",
        [](auto &c) {
            c.reservedFlag = true;
            c.projectId = "p2";
        },
        topLevel + wholeSelect);
    row(
        "everything, in order",
        [](auto &c) {
            c.isAllTime = c.isAllUser = false;
            c.startTime = utc(2020, 1, 1);
            c.endTime = utc(2020, 12, 31);
            c.userIds = QStringList{"u1"};
            c.parentId = "f1";
            c.name = "图纸";
            c.documentId = "d1";
            c.type = "file";
            c.category = "doc";
            c.recordType = 2;
            c.isFrequent = c.isDeep = true;
        },
        text(R"({"documentId":"d1","name":"图纸","parentId":"f1","type":"file",)"
             R"("updatedAt":{"$gte":"2020-01-01T00:00:00.000Z","$lt":"2021-01-01T00:00:00.000Z"},)"
             R"("updatedBy":{"$in":["u1"]}})"
             "&category=doc&recordType=2&words=true&frequent=true&deep=true")
            + wholeSelect);
}

void TestQueryBuilder::everyConditionHasItsText()
{
    QFETCH(VellDocumentConditon, condition);
    QFETCH(QString, query);
    QCOMPARE(conditionToQuery(condition), query);
}

void TestQueryBuilder::theWhereBuilderHoldsSpanAndPattern_data()
{
    QTest::addColumn<bool>("isAllTime");
    QTest::addColumn<QString>("searchName");
    QTest::addColumn<QByteArray>("where");

    QTest::newRow("neither") << true << QString() << QByteArray("{}");
    QTest::newRow("pattern") << true << "a"
                             << QByteArray(R"({"name":{"$options":"i","$regex":"a"}})");
    QTest::newRow("span") << false << QString()
                          << QByteArray(R"({"updatedAt":{"$gte":"2020-05-30T00:00:00.000Z",)"
                                        R"("$lt":"2020-06-01T00:00:00.000Z"}})");
}

void TestQueryBuilder::theWhereBuilderHoldsSpanAndPattern()
{
    QFETCH(bool, isAllTime);
    QFETCH(QString, searchName);
    QFETCH(QByteArray, where);
    VellDocumentConditon condition;
    condition.isAllTime = isAllTime;
    condition.startTime = utc(2020, 5, 30);
    condition.endTime = utc(2020, 5, 31);
    condition.searchName = searchName;
    condition.name = "not here";
    condition.parentId = "not here";
    QCOMPARE(QJsonDocument(conditionToWhere(condition)).toJson(QJsonDocument::Compact), where);
}

void TestQueryBuilder::aListBecomesAnIn_data()
{
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<QByteArray>("json");

    QTest::newRow("empty") << QStringList() << QByteArray(R"({"$in":[]})");
    QTest::newRow("in order") << QStringList{"b", "a"} << QByteArray(R"({"$in":["b","a"]})");
    QTest::newRow("empty text") << QStringList{"a", QString()}
                                << QByteArray(R"({"$in":["a",null]})");
}

void TestQueryBuilder::aListBecomesAnIn()
{
    QFETCH(QStringList, list);
    QFETCH(QByteArray, json);
    QCOMPARE(QJsonDocument(stringListToIn(list)).toJson(QJsonDocument::Compact), json);
}

QTEST_GUILESS_MAIN(TestQueryBuilder)
#include "tst_query_builder.moc"
