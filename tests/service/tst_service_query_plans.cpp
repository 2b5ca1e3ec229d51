#include <service/ServiceWorld.h>
#include <service/storage/RegexFunction.h>

#include <QMutex>
#include <QRegularExpression>
#include <QTest>

#include <sqlite3.h>

namespace {

QMutex lock;
QStringList statements; // those that SQLite has begun, in this program

int note(unsigned, void *, void *statement, void *text)
{
    const QString sql = QString::fromUtf8(sqlite3_sql(static_cast<sqlite3_stmt *>(statement)));
    const bool isOfTrigger = static_cast<const char *>(text)[0] == '-';
    const QMutexLocker locker(&lock);
    if (!isOfTrigger && !statements.contains(sql))
        statements.append(sql);
    return 0;
}

int watch(sqlite3 *connection, const char **, const void *)
{
    return sqlite3_trace_v2(connection, SQLITE_TRACE_STMT, note, nullptr);
}

QStringList takeStatements()
{
    const QMutexLocker locker(&lock);
    QStringList taken;
    taken.swap(statements);
    return taken;
}

} // namespace

//! How SQLite runs the statements of each request. The figures for its planner are those of a million documents, whatever is there.
class TestServiceQueryPlans : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void noLargeTableIsRead_data();
    void noLargeTableIsRead();
    void cleanupTestCase();

private:
    //! Replaces the words for identifiers.
    QString filled(QString text) const;
    //! What the plan of a statement reads as a whole; empty for no large table.
    static QString wholeTable(sqlite3 *database, const QString &statement);

    std::unique_ptr<ServiceWorld> m_world;
    QMap<QString, QString> m_ids;
};

void TestServiceQueryPlans::initTestCase()
{
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(watch));
    m_world = std::make_unique<ServiceWorld>();
    QVERIFY(m_world->isStarted);
    m_world->client.setToken(m_world->addMember("anna", "owner"));
    m_ids["FOLDER"] = m_world->makeFolder("folder");
    m_ids["OTHER"] = m_world->makeFolder("other");
    m_ids["GONE"] = m_world->makeFolder("gone", m_ids["OTHER"]);
    m_ids["FILE"] = m_world->makeFile("a.txt", m_ids["FOLDER"]);
    m_ids["CONTENT"] = m_world->upload("content");
    m_ids["USER"] = m_world->document(m_ids["FILE"]).value("createdBy").toString();
    for (const QString &id : qAsConst(m_ids))
        QVERIFY(!id.isEmpty());
}

void TestServiceQueryPlans::cleanupTestCase()
{
    sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(watch));
}

QString TestServiceQueryPlans::filled(QString text) const
{
    for (auto it = m_ids.begin(); it != m_ids.end(); ++it)
        text.replace(it.key(), it.value());
    return text;
}

void TestServiceQueryPlans::noLargeTableIsRead_data()
{
    QTest::addColumn<QByteArray>("verb");
    QTest::addColumn<QString>("path");
    QTest::addColumn<HttpClient::Parameters>("parameters");
    QTest::addColumn<QString>("body");
    const QString list = ServiceWorld::projectPath("documents");
    const QString file = ServiceWorld::documentPath("FILE");
    const QString documents = "document-service/documents";
    const auto get = [](const char *name, const QString &path,
                        const HttpClient::Parameters &parameters = {}) {
        QTest::newRow(name) << QByteArray("GET") << path << parameters << QString();
    };
    const auto change = [](const char *name, const char *verb, const QString &path,
                           const QString &body = {}) {
        QTest::newRow(name) << QByteArray(verb) << path << HttpClient::Parameters() << body;
    };
    const QPair<QString, QString> inFolder{"where", R"({"parentId":"FOLDER"})"};
    for (const char *order : {"", "type name", "-type name", "type -name", "type updatedAt",
                              "type -createdAt", "type fileSize", "name", "-updatedAt"}) {
        for (const char *skip : {"0", "100"}) {
            get(qPrintable(QString("page by \"%1\" from %2").arg(order, skip)), list,
                {inFolder, {"order", order}, {"limit", "100"}, {"skip", skip}});
        }
    }
    get("count", list, {inFolder, {"only_count", "true"}});
    get("name", list, {{"where", R"({"parentId":"FOLDER","name":"a"})"}, {"only_count", "true"}});
    get("top", list, {{"where", R"({"parentId":null})"}, {"order", "type name"}, {"limit", "100"}});
    get("category", list, {inFolder, {"category", "c"}, {"order", "type name"}, {"limit", "9"}});
    get("recycle bin", list, {{"category", "recycle"}, {"order", "-updatedAt"}, {"limit", "9"}});
    get("marked", list, {{"deep", "true"}, {"recordType", "2"}, {"limit", "100"}});
    get("own", list,
        {{"deep", "true"},
         {"where", R"({"createdBy":"USER"})"},
         {"order", "-createdAt"},
         {"limit", "9"}});
    get("search below", list,
        {{"deep", "true"},
         {"where", R"({"parentId":"FOLDER","name":{"$regex":"a"}})"},
         {"limit", "9"}});
    get("linked", ServiceWorld::projectPath("entities/entity/documents"));
    get("document", file);
    get("document with its path", "documents/FILE", {{"info", "true"}});
    get("folder with its path", "documents/FOLDER", {{"info", "true"}});
    get("versions", file + "/histories");
    get("marks", documents + "/records", {{"where", R"({"type":2})"}});
    get("marks of one", documents + "/records", {{"where", R"({"documentId":"FILE"})"}});
    get("all marks", documents + "/records");
    get("content", "base-service/files/CONTENT");
    get("MD5", "base-service/md5/9a0364b9e99bb480dd25e1f0284c8555/info");
    get("upload", "base-service/largefiles/md5/9a0364b9e99bb480dd25e1f0284c8555");
    get("who", "base-service/me");
    get("right", ServiceWorld::projectPath("auth"), {{"key", "edit"}, {"rId", "FILE"}});
    get("shares", documents + "/shares", {{"hostId", "p1"}});
    change("create", "POST", list, R"({"type":"dir","name":"b","parentId":"FOLDER"})");
    change("create file", "POST", list,
           R"({"type":"file","name":"b.txt","parentId":"FOLDER","file":"CONTENT"})");
    change("rename", "PUT", file, R"({"name":"c.txt"})");
    change("link", "PUT", file, R"({"links":[{"kind":"part","ids":["entity"]}]})");
    change("version", "PUT", file, R"({"file":"CONTENT"})");
    change("move", "PUT", documents, R"({"documentIds":["FILE"],"parentId":"OTHER"})");
    change("order", "PUT", documents, R"([{"_id":"FILE","order":2}])");
    change("mark", "PUT", file + "/records", R"({"type":2,"value":true})");
    change("unmark", "PUT", file + "/records", R"({"type":2,"value":false})");
    change("share", "POST", documents + "/shares", R"({"hostId":"p1","documentIds":["FILE"]})");
    change("delete", "DELETE", ServiceWorld::documentPath("GONE"));
    change("restore", "GET", ServiceWorld::documentPath("GONE", "restore"));
    change("delete again", "DELETE", ServiceWorld::documentPath("GONE"));
    change("empty the bin", "DELETE", documents + "?hostId=p1");
}

QString TestServiceQueryPlans::wholeTable(sqlite3 *database, const QString &statement)
{
    // Tables and the names that statements give them. Others are small.
    static const QRegularExpression whole(
        "^SCAN (document|version|file|file_uploader|mark|download|link|large_file|d|c|v|f|m|l)\\b");
    const QByteArray sql = "EXPLAIN QUERY PLAN " + statement.toUtf8();
    sqlite3_stmt *plan = nullptr;
    if (sqlite3_prepare_v2(database, sql.constData(), -1, &plan, nullptr) != SQLITE_OK)
        return QString::fromUtf8(sqlite3_errmsg(database));
    QString found;
    while (found.isEmpty() && sqlite3_step(plan) == SQLITE_ROW) {
        const QString step =
            QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(plan, 3)));
        if (whole.match(step).hasMatch())
            found = step;
    }
    sqlite3_finalize(plan);
    return found;
}

void TestServiceQueryPlans::noLargeTableIsRead()
{
    QFETCH(QByteArray, verb);
    QFETCH(QString, path);
    QFETCH(HttpClient::Parameters, parameters);
    QFETCH(QString, body);
    for (auto &parameter : parameters)
        parameter.second = filled(parameter.second);
    takeStatements();
    const HttpAnswer answer = m_world->client.send(
        verb, filled(path) + (parameters.isEmpty() ? QString() : HttpClient::encoded(parameters)),
        filled(body).toUtf8(), {{"Content-Type", "application/json"}});
    const QStringList sent = takeStatements();
    QVERIFY2(answer.status == 200 || answer.status == 404, answer.body.constData());
    QVERIFY(!sent.isEmpty());
    sqlite3 *database = nullptr;
    const QByteArray records = (m_world->dataDir() + "/records.sqlite").toUtf8();
    QCOMPARE(sqlite3_open(records.constData(), &database), SQLITE_OK);
    service::registerRegexFunction(database);
    sqlite3_exec(database, "CREATE TEMP TABLE doomed (id TEXT PRIMARY KEY)", nullptr, nullptr,
                 nullptr);
    static const QRegularExpression isQuery("^(SELECT|INSERT|UPDATE|DELETE|WITH)");
    QStringList faults;
    for (const QString &statement : sent.filter(isQuery)) {
        const QString fault = wholeTable(database, statement);
        if (!fault.isEmpty())
            faults.append(fault + ": " + statement);
    }
    sqlite3_close(database);
    QVERIFY2(faults.isEmpty(), qUtf8Printable(faults.join('\n')));
}

QTEST_GUILESS_MAIN(TestServiceQueryPlans)
#include "tst_service_query_plans.moc"
