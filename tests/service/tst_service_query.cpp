#include <service/ServiceFixture.h>

#include <support/TestDatabase.h>

#include <QJsonDocument>
#include <QtTest>

//! The query language of lists: conditions, parameters, sorts, pages.
class TestServiceQuery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void conditionsSelect_data();
    void conditionsSelect();
    void spansOfTimeSelect();
    void sortsOrder_data();
    void sortsOrder();
    void anAddressFullOfSortKeysIsServed();
    void pagesNeitherLoseNorRepeat_data();
    void pagesNeitherLoseNorRepeat();
    void selectionsLimitTheFields();
    void whatTheLanguageDoesNotHaveIsRefused_data();
    void whatTheLanguageDoesNotHaveIsRefused();
    void anExpressionWithoutEndIsRefusedSoon();
    void expressionsFindWhatTheySay_data();
    void expressionsFindWhatTheySay();
    void ordersPutNewOnesToTheEnd();

private:
    QJsonObject where(const QByteArray &text) const;
    void makeThousand();

    std::unique_ptr<ServiceFixture> m_fixture;
    QString m_folder;
    QString m_inner;
    std::unique_ptr<ServiceFixture>
        m_thousand; //!< one folder of 1,000 with long ties in every sort
    QStringList m_ids;
};

namespace {

void waitForTheNextMillisecond()
{
    const qint64 start = QDateTime::currentMSecsSinceEpoch();
    QTRY_VERIFY(QDateTime::currentMSecsSinceEpoch() > start);
}

QStringList idsOf(const QJsonArray &documents)
{
    QStringList ids;
    for (const QJsonValue &document : documents)
        ids.append(document.toObject().value(QStringLiteral("_id")).toString());
    return ids;
}

} // namespace

//! Ten names and one content for all.
void TestServiceQuery::makeThousand()
{
    m_thousand = std::make_unique<ServiceFixture>();
    const QString fileId = m_thousand->upload("same");
    for (int i = 0; i < 1000; ++i) {
        const HttpAnswer made = m_thousand->client.post(
            ServiceFixture::projectPath(QStringLiteral("documents")),
            {{QStringLiteral("name"), QStringLiteral("name %1").arg(i % 10)},
             {QStringLiteral("type"), QStringLiteral("file")},
             {QStringLiteral("file"), fileId}});
        m_ids.append(made.object().value(QStringLiteral("_id")).toString());
    }
}

void TestServiceQuery::initTestCase()
{
    m_fixture = std::make_unique<ServiceFixture>();
    m_folder = m_fixture->makeFolder(QStringLiteral("folder"));
    m_inner = m_fixture->makeFolder(QStringLiteral("inner"), m_folder);
    m_fixture->makeFile(QStringLiteral("Alpha.txt"), {}, "1", QStringLiteral("c"));
    waitForTheNextMillisecond(); // so that newer and older can be told apart
    m_fixture->makeFile(QStringLiteral("beta.pdf"), {}, "22", QStringLiteral("d"));
    m_fixture->makeFile(QStringLiteral("below.txt"), m_folder, "333", QStringLiteral("c"));
    m_fixture->makeFile(QStringLiteral("deep.txt"), m_inner, "4444", QStringLiteral("d"));
    makeThousand();
}

QJsonObject TestServiceQuery::where(const QByteArray &text) const
{
    QByteArray filled = text;
    filled.replace("FOLDER", m_folder.toUtf8()).replace("INNER", m_inner.toUtf8());
    return QJsonDocument::fromJson(filled).object();
}

void TestServiceQuery::conditionsSelect_data()
{
    QTest::addColumn<QByteArray>("condition");
    QTest::addColumn<QString>("parameters");
    QTest::addColumn<QString>("expected"); // names in the order of the names, parted by commas

    const auto row = [](const char *name, const QByteArray &condition, const char *parameters,
                        const char *expected) {
        QTest::newRow(name) << condition << QString::fromLatin1(parameters)
                            << QString::fromLatin1(expected);
    };
    row("top level", R"({"parentId":null})", "", "Alpha.txt,beta.pdf,folder");
    row("top level as empty text", R"({"parentId":""})", "", "Alpha.txt,beta.pdf,folder");
    row("children of a folder", R"({"parentId":"FOLDER"})", "", "below.txt,inner");
    row("all without a parent", "{}", "", "Alpha.txt,below.txt,beta.pdf,deep.txt,folder,inner");
    row("all below a folder", R"({"parentId":"FOLDER"})", "deep=true", "below.txt,deep.txt,inner");
    row("all below the top level", R"({"parentId":null})", "deep=true",
        "Alpha.txt,below.txt,beta.pdf,deep.txt,folder,inner");
    row("deep without effect", R"({"parentId":"INNER"})", "deep=false", "deep.txt");
    row("unknown folder", R"({"parentId":"no such"})", "", "");
    row("exact name", R"({"parentId":null,"name":"Alpha.txt"})", "words=true", "Alpha.txt");
    row("exact name, other case", R"({"parentId":null,"name":"alpha.txt"})", "words=true", "");
    row("part of a name", R"({"parentId":null,"name":"Alpha"})", "", "");
    row("pattern without case", R"({"parentId":null,"name":{"$regex":"ALPHA","$options":"i"}})", "",
        "Alpha.txt");
    row("pattern with case", R"({"parentId":null,"name":{"$regex":"ALPHA"}})", "", "");
    row("pattern everywhere", R"({"name":{"$regex":"\\.txt$","$options":"i"}})", "",
        "Alpha.txt,below.txt,deep.txt");
    row("one document", R"({"documentId":"FOLDER"})", "", "folder");
    row("type dir", R"({"type":"dir"})", "", "folder,inner");
    row("type file", R"({"type":"file","createdBy":"local"})", "",
        "Alpha.txt,below.txt,beta.pdf,deep.txt");
    row("nobody's", R"({"createdBy":"nobody"})", "", "");
    row("users", R"({"updatedBy":{"$in":["local",null]}})", "category=d", "beta.pdf,deep.txt");
    row("no users", R"({"updatedBy":{"$in":[]}})", "", "");
    row("not these users", R"({"updatedBy":{"$nin":["nobody"]},"type":"dir"})", "", "folder,inner");
    row("category", R"({"parentId":null})", "category=c", "Alpha.txt,folder");
    row("empty category", R"({"parentId":null})", "category=", "Alpha.txt,beta.pdf,folder");
    row("size", R"({"file.fileSize":{"$gte":2,"$lt":4}})", "", "below.txt,beta.pdf");
    row("not a name", R"({"parentId":null,"name":{"$ne":"folder"}})", "", "Alpha.txt,beta.pdf");
    row("parent among", R"({"parentId":{"$in":["INNER",null]},"type":"file"})", "",
        "Alpha.txt,beta.pdf,deep.txt");
    row("text times without a bound", R"({"type":"dir","updatedAt":{"$gte":"","$lt":""}})", "",
        "folder,inner");
}

void TestServiceQuery::conditionsSelect()
{
    QFETCH(QByteArray, condition);
    QFETCH(QString, parameters);
    QFETCH(QString, expected);
    HttpClient::Parameters further{{QStringLiteral("order"), QStringLiteral("name")}};
    if (!parameters.isEmpty()) {
        further.append(
            {parameters.section(QLatin1Char('='), 0, 0), parameters.section(QLatin1Char('='), 1)});
    }
    QCOMPARE(m_fixture->names(where(condition), further).join(QLatin1Char(',')), expected);

    further.append({QStringLiteral("only_count"), QStringLiteral("true")});
    further.append(
        {QStringLiteral("where"), QString::fromUtf8(QJsonDocument(where(condition)).toJson())});
    const HttpAnswer count =
        m_fixture->client.get(ServiceFixture::projectPath(QStringLiteral("documents")), further);
    QCOMPARE(count.object().value(QStringLiteral("count")).toInt(-1),
             expected.split(QLatin1Char(','), Qt::SkipEmptyParts).size());
}

void TestServiceQuery::spansOfTimeSelect()
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const auto span = [](const QDateTime &from, const QDateTime &to) {
        return QJsonObject{{QStringLiteral("parentId"), QJsonValue()},
                           {QStringLiteral("type"), QStringLiteral("dir")},
                           {QStringLiteral("updatedAt"),
                            QJsonObject{{QStringLiteral("$gte"), from.toString(Qt::ISODateWithMs)},
                                        {QStringLiteral("$lt"), to.toString(Qt::ISODateWithMs)}}}};
    };
    QCOMPARE(m_fixture->names(span(now.addDays(-1), now.addDays(1))).size(), 1);
    QCOMPARE(m_fixture->names(span(now.addDays(-2), now.addDays(-1))).size(), 0);
    const QDateTime exact = QDateTime::fromString(
        m_fixture->document(m_folder).value(QStringLiteral("updatedAt")).toString(),
        Qt::ISODateWithMs);
    QCOMPARE(m_fixture->names(span(exact, exact.addMSecs(1))).size(), 1);
    QCOMPARE(m_fixture->names(span(exact.addMSecs(-1), exact)).size(), 0);
}

void TestServiceQuery::sortsOrder_data()
{
    QTest::addColumn<QString>("order");
    QTest::addColumn<QString>("expected");
    QTest::newRow("name") << QStringLiteral("name") << QStringLiteral("Alpha.txt,beta.pdf,folder");
    QTest::newRow("name, descending")
        << QStringLiteral("-name") << QStringLiteral("folder,beta.pdf,Alpha.txt");
    QTest::newRow("folders first, then the newest")
        << QStringLiteral("type order -updatedAt") << QStringLiteral("folder,beta.pdf,Alpha.txt");
    QTest::newRow("without an order") << QString() << QStringLiteral("folder,beta.pdf,Alpha.txt");
    QTest::newRow("newest first") << QStringLiteral("-createdAt")
                                  << QStringLiteral("beta.pdf,Alpha.txt,folder");
    QTest::newRow("size") << QStringLiteral("-file.fileSize")
                          << QStringLiteral("beta.pdf,Alpha.txt,folder");
    QTest::newRow("two keys") << QStringLiteral("category -name")
                              << QStringLiteral("folder,Alpha.txt,beta.pdf");
    QTest::newRow("the same key again")
        << QStringLiteral("-name name") << QStringLiteral("folder,beta.pdf,Alpha.txt");
}

void TestServiceQuery::sortsOrder()
{
    QFETCH(QString, order);
    QFETCH(QString, expected);
    const QStringList names =
        m_fixture->names(ServiceFixture::below(QString()), {{QStringLiteral("order"), order}});
    QCOMPARE(names.join(QLatin1Char(',')), expected);
}

void TestServiceQuery::anAddressFullOfSortKeysIsServed()
{
    const QString path =
        ServiceFixture::projectPath(QStringLiteral("documents?select=name&order=-name"));
    const HttpAnswer answer = m_fixture->client.get(path + QStringLiteral("+_id").repeated(2020));
    QCOMPARE(answer.status, 200);
    const HttpClient::Parameters sorted{{QStringLiteral("order"), QStringLiteral("-name")}};
    QCOMPARE(answer.array().at(0).toObject().value(QStringLiteral("name")).toString(),
             m_fixture->names({}, sorted).first());
}

void TestServiceQuery::pagesNeitherLoseNorRepeat_data()
{
    QTest::addColumn<QString>("order");
    for (const char *order : {"type order -updatedAt", "name", "-name", "updatedAt", "-updatedAt",
                              "-createdAt", "fileSize", "category", "remark -category"})
        QTest::newRow(order) << QString::fromLatin1(order);
}

void TestServiceQuery::pagesNeitherLoseNorRepeat()
{
    QFETCH(QString, order);
    const HttpClient::Parameters sorted{{QStringLiteral("order"), order},
                                        {QStringLiteral("select"), QStringLiteral("name")}};
    QStringList paged;
    for (int skip = 0; skip < 1100; skip += 70) {
        paged += idsOf(m_thousand->list(
            ServiceFixture::below(QString()),
            sorted
                + HttpClient::Parameters{{QStringLiteral("limit"), QStringLiteral("70")},
                                         {QStringLiteral("skip"), QString::number(skip)}}));
    }
    QCOMPARE(paged.size(), 1000);
    QCOMPARE(paged, idsOf(m_thousand->list(ServiceFixture::below(QString()), sorted)));
    QCOMPARE(QSet<QString>(paged.begin(), paged.end()), QSet<QString>(m_ids.begin(), m_ids.end()));
}

void TestServiceQuery::selectionsLimitTheFields()
{
    const auto keys = [this](const QString &select, bool linked) {
        HttpClient::Parameters parameters{{QStringLiteral("select"), select}};
        if (linked)
            parameters.append({QStringLiteral("linkedEntity"), QStringLiteral("true")});
        const QJsonObject condition{{QStringLiteral("name"), QStringLiteral("Alpha.txt")}};
        return m_fixture->list(condition, parameters)
            .at(0)
            .toObject()
            .keys()
            .join(QLatin1Char(' '));
    };
    QCOMPARE(keys(QStringLiteral("name"), false), QStringLiteral("_id name"));
    QCOMPARE(
        keys(QStringLiteral("parentId name type suffix fileType fileSize fileId updatedAt"), false),
        QStringLiteral("_id file fileId fileSize name parentId suffix type updatedAt"));
    QVERIFY(!keys(QStringLiteral("-entities"), false).contains(QStringLiteral("entity")));
    QVERIFY(keys(QStringLiteral("-entities"), true).contains(QStringLiteral("entity")));
    QVERIFY(keys(QString(), false).contains(QStringLiteral("entity")));
}

void TestServiceQuery::whatTheLanguageDoesNotHaveIsRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    const auto row = [](const char *title, const char *name, const char *value) {
        QTest::newRow(title) << QString::fromLatin1(name) << QString::fromLatin1(value);
    };
    row("no JSON", "where", "{");
    row("an array", "where", "[]");
    row("unknown field", "where", R"({"colour":"red"})");
    row("SQL for a field", "where", R"({"name = name --":"x"})");
    row("unknown operator", "where", R"({"name":{"$where":"1"}})");
    row("number for a name", "where", R"({"name":5})");
    row("text for a size", "where", R"({"fileSize":"5"})");
    row("boolean for a folder", "where", R"({"parentId":true})");
    row("no date", "where", R"({"updatedAt":{"$gte":"yesterday"}})");
    row("no array", "where", R"({"updatedBy":{"$in":"local"}})");
    row("pattern that cannot be read", "where", R"({"name":{"$regex":"("}})");
    row("pattern that is no text", "where", R"({"name":{"$regex":5}})");
    row("pattern on a size", "where", R"({"fileSize":{"$regex":"5"}})");
    row("options without a pattern", "where", R"({"name":{"$options":"i"}})");
    row("unknown sort", "order", "colour");
    row("SQL for a sort", "order", "name;DROP");
    row("limit without a number", "limit", "many");
    row("skip without a number", "skip", "1.5");
    row("negative skip", "skip", "-1");
    row("neither true nor false", "deep", "yes");
    row("record type without a number", "recordType", "x");
    row("huge record type", "recordType", "4294967297");
}

void TestServiceQuery::whatTheLanguageDoesNotHaveIsRefused()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    const HttpAnswer answer = m_fixture->client.get(
        ServiceFixture::projectPath(QStringLiteral("documents")), {{name, value}});
    QCOMPARE(answer.status, 400);
    QVERIFY(!answer.errorText().isEmpty());
}

void TestServiceQuery::anExpressionWithoutEndIsRefusedSoon()
{
    ServiceFixture fixture;
    fixture.makeFolder(QString(200, QLatin1Char('a')) + QLatin1Char('!'));
    const QJsonObject catastrophic{
        {QStringLiteral("name"),
         QJsonObject{{QStringLiteral("$regex"), QStringLiteral("^(a+)+$")}}}};
    const QJsonObject nested{{QStringLiteral("name"),
                              QJsonObject{{QStringLiteral("$regex"),
                                           QStringLiteral("(*LIMIT_MATCH=999999999)^(a|aa)+$")}}}};
    for (const QJsonObject &condition : {catastrophic, nested}) {
        QElapsedTimer clock;
        clock.start();
        const HttpAnswer answer = fixture.client.get(
            ServiceFixture::projectPath(QStringLiteral("documents")),
            {{QStringLiteral("where"), QString::fromUtf8(QJsonDocument(condition).toJson())}});
        // PostgreSQL reads the first one without going back, and refuses what begins the other one.
        if (!TestDatabase::isPostgres()) {
            QCOMPARE(answer.status, 400);
            QVERIFY2(answer.errorText().contains(QStringLiteral("too long")),
                     qUtf8Printable(answer.errorText()));
        }
        QVERIFY(clock.elapsed() < 5000);
    }
}

void TestServiceQuery::expressionsFindWhatTheySay_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<bool>("isFound");
    QTest::newRow("anchored") << QStringLiteral("^R&D") << true;
    QTest::newRow("per cent") << QStringLiteral("100%") << true;
    QTest::newRow("escaped plus") << QStringLiteral("\\+") << true;
    QTest::newRow("Chinese") << QStringLiteral("图.") << true;
    QTest::newRow("placeholder") << QStringLiteral("%3") << false;
    QTest::newRow("quote") << QStringLiteral("'") << false;
}

void TestServiceQuery::expressionsFindWhatTheySay()
{
    QFETCH(QString, pattern);
    QFETCH(bool, isFound);
    ServiceFixture fixture;
    QVERIFY(!fixture.makeFolder(QStringLiteral("R&D 100% #1 + 图纸.dwg")).isEmpty());
    const QJsonObject condition{{QStringLiteral("parentId"), QJsonValue()},
                                {QStringLiteral("name"),
                                 QJsonObject{{QStringLiteral("$regex"), pattern},
                                             {QStringLiteral("$options"), QStringLiteral("i")}}}};
    QCOMPARE(fixture.list(condition).size(), isFound ? 1 : 0);
}

void TestServiceQuery::ordersPutNewOnesToTheEnd()
{
    ServiceFixture fixture;
    const QString a = fixture.makeFolder(QStringLiteral("a"));
    const QString b = fixture.makeFolder(QStringLiteral("b"));
    const auto position = [](const QString &id, int order) {
        return QJsonObject{{QStringLiteral("_id"), id}, {QStringLiteral("order"), order}};
    };
    const HttpAnswer answer = fixture.client.putArray(QStringLiteral("document-service/documents"),
                                                      QJsonArray{position(a, 1), position(b, 0)});
    QCOMPARE(answer.status, 200);
    QCOMPARE(fixture.names(ServiceFixture::below(QString())).join(QString()), QStringLiteral("ba"));
    const QString c = fixture.makeFolder(QStringLiteral("c"));
    QCOMPARE(fixture.document(c).value(QStringLiteral("order")).toInt(), 2);
    QCOMPARE(fixture.names(ServiceFixture::below(QString())).join(QString()),
             QStringLiteral("bac"));
}

QTEST_GUILESS_MAIN(TestServiceQuery)
#include "tst_service_query.moc"
