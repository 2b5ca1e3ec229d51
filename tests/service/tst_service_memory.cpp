#include <service/RawClient.h>
#include <service/ServiceWorld.h>
#include <support/ServiceProcess.h>

#include <QFile>
#include <QIODevice>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

//! What the program needs for its work has a bound, whatever clients do and however many there are.
class TestServiceMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void largeListsDoNotAddUpOverConnections();
    void unreadListsHaveABound();
    void keysThatOccurTwiceCostNothing();
    void unknownFieldsAreNotKept();
    void halfBodiesHaveABound();
    void fewLongListsAreMadeAtTheSameTime();
    void longListsAreRefused();

private:
    //! Of the program's own, without the mapped database, which its connections share.
    qint64 bytesNow() const;
    quint16 port() const { return static_cast<quint16>(QUrl(m_process->baseApi()).port()); }

    const QTemporaryDir m_folder;
    std::unique_ptr<ServiceProcess> m_process;
    const QString m_path = ServiceWorld::projectPath("documents");
};

namespace {

constexpr qint64 MiB = 1024 * 1024;

} // namespace

qint64 TestServiceMemory::bytesNow() const
{
    QFile status(QString("/proc/%1/status").arg(m_process->processId()));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QRegularExpression line("RssAnon:\\s+(\\d+) kB");
    return line.match(QString::fromLatin1(status.readAll())).captured(1).toLongLong() * 1024;
}

//! Makes further documents like the one that was made by a request, without a request for each.
static bool multiply(const QString &dataFolder, int first, int last)
{
    bool isDone = false;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "multiply");
        database.setDatabaseName(dataFolder + "/records.sqlite");
        if (!database.open())
            return false;
        QSqlQuery query(database);
        query.exec("PRAGMA table_info(document)");
        QStringList columns;
        while (query.next())
            columns.append(query.value(1).toString());
        const QString names = columns.join(QLatin1Char(','));
        columns.replace(columns.indexOf("id"), "printf('%024x', n)");
        isDone = query.exec(QString("WITH RECURSIVE number (n) AS (SELECT %1 UNION ALL "
                                    "SELECT n + 1 FROM number WHERE n < %2) "
                                    "INSERT INTO document (%3) SELECT %4 FROM number, document "
                                    "WHERE id NOT LIKE '0000000000%'")
                                .arg(first)
                                .arg(last)
                                .arg(names, columns.join(QLatin1Char(','))));
    }
    QSqlDatabase::removeDatabase("multiply");
    return isDone;
}

//! A list of 13 MiB, and one that is too long.
void TestServiceMemory::initTestCase()
{
    m_process = std::make_unique<ServiceProcess>(m_folder.path());
    QVERIFY(m_process->start());
    HttpClient maker(m_process->baseApi());
    const HttpAnswer answer = maker.post(
        m_path, {{"name", "large"}, {"type", "dir"}, {"remark", QString(10000, QLatin1Char('r'))}});
    QVERIFY2(answer.isSuccess(), qPrintable(answer.errorText()));
    QCOMPARE(m_process->terminate(), 0);
    QVERIFY(multiply(m_folder.path(), 1, 1200));
    QVERIFY(m_process->start());
}

void TestServiceMemory::largeListsDoNotAddUpOverConnections()
{
    const qint64 before = bytesNow();
    for (int i = 0; i < 24; ++i) {
        HttpClient client(m_process->baseApi());
        QVERIFY(client.get(m_path).body.size() > 12 * MiB);
    }
    const qint64 growth = bytesNow() - before;
    QVERIFY2(growth < 96 * MiB, qPrintable(QString::number(growth)));
}

void TestServiceMemory::unreadListsHaveABound()
{
    const qint64 before = bytesNow();
    std::vector<std::unique_ptr<RawClient>> clients;
    for (int i = 0; i < 40; ++i) {
        clients.push_back(std::make_unique<RawClient>(port()));
        clients.back()->socket.setReadBufferSize(1000);
        clients.back()->send(RawClient::request("GET", '/' + m_path.toLatin1()));
    }
    HttpClient honest(m_process->baseApi());
    QVERIFY(honest.get(m_path).body.size() > 12 * MiB); // made after all of theirs
    const qint64 growth = bytesNow() - before;
    QVERIFY2(growth < 512 * MiB, qPrintable(QString::number(growth)));
    clients.front()->socket.setReadBufferSize(0);
    QVERIFY(clients.front()->next().body.size() > 12 * MiB);
}

void TestServiceMemory::fewLongListsAreMadeAtTheSameTime()
{
    QCOMPARE(m_process->terminate(), 0);
    QVERIFY(multiply(m_folder.path(), 1201, 1800));
    QVERIFY(m_process->start());
    const qint64 before = bytesNow();
    std::vector<std::unique_ptr<RawClient>> clients;
    for (int i = 0; i < 16; ++i) {
        clients.push_back(std::make_unique<RawClient>(port()));
        clients.back()->send(RawClient::request("GET", '/' + m_path.toLatin1()));
    }
    int made = 0;
    for (const auto &client : clients) {
        const RawResponse answer = client->next(true, 60000);
        QVERIFY(answer.status == 200 || answer.status == 503);
        QCOMPARE(answer.status == 200, answer.body.size() > 16 * MiB);
        made += answer.status == 200 ? 1 : 0;
    }
    QVERIFY(made >= 1);
    QVERIFY2(bytesNow() - before < 640 * MiB, qPrintable(QString::number(bytesNow() - before)));
}

void TestServiceMemory::longListsAreRefused()
{
    HttpClient client(m_process->baseApi());
    const HttpAnswer tooMany = client.get(m_path, {{"limit", "100001"}});
    QCOMPARE(tooMany.status, 400);
    QCOMPARE(m_process->terminate(), 0);
    QVERIFY(multiply(m_folder.path(), 1801, 9500));
    QVERIFY(m_process->start());
    client.setBaseApi(m_process->baseApi());
    const HttpAnswer tooLong = client.get(m_path);
    QCOMPARE(tooLong.status, 400);
    QVERIFY2(tooLong.errorText().contains("in pages"), tooLong.body.constData());
    QCOMPARE(client.get(m_path, {{"limit", "500"}}).array().size(), 500);
}

void TestServiceMemory::keysThatOccurTwiceCostNothing()
{
    QByteArray text = "{\"name\":\"x\"";
    const QByteArray value = ",\"name\":[\"" + QByteArray(1000, 'x') + "\"]";
    while (text.size() < 900000)
        text += value;
    text += '}';
    HttpClient client(m_process->baseApi());
    // First until every worker has memory of its own; then a leak would be 51 MiB.
    qint64 before = 0;
    for (int round = 0; round < 2; ++round) {
        before = bytesNow();
        for (int i = 0; i < 60; ++i)
            QCOMPARE(client.send("POST", m_path, text).status, 400);
    }
    const qint64 growth = bytesNow() - before;
    QVERIFY2(growth < 24 * MiB, qPrintable(QString::number(growth)));
}

void TestServiceMemory::unknownFieldsAreNotKept()
{
    QList<QPair<QString, QByteArray>> fields;
    for (int i = 0; i < 1000; ++i)
        fields.append({QString("field%1").arg(i), QByteArray(4000, 'x')});
    HttpClient client(m_process->baseApi());
    const qint64 before = bytesNow();
    for (int i = 0; i < 20; ++i) {
        QCOMPARE(client.postForm("base-service/largefiles", fields).status, 400);
        QCOMPARE(client.postForm("base-service/files", fields).status, 400);
    }
    fields.append({"more", QByteArray(500000, 'x')});
    QCOMPARE(client.postForm("base-service/largefiles", fields).status, 413);
    const qint64 growth = bytesNow() - before;
    QVERIFY2(growth < 24 * MiB, qPrintable(QString::number(growth)));
}

void TestServiceMemory::halfBodiesHaveABound()
{
    const qint64 before = bytesNow();
    std::vector<std::unique_ptr<RawClient>> clients;
    const QByteArray half = '[' + QByteArray(900000, ' ');
    for (int i = 0; i < 300; ++i) {
        clients.push_back(std::make_unique<RawClient>(port()));
        clients.back()->send("PUT /document-service/documents HTTP/1.1\r\nHost: localhost\r\n"
                             "Content-Length: 1000000\r\n\r\n"
                             + half);
    }
    HttpClient honest(m_process->baseApi());
    QCOMPARE(honest.get("base-service/me").status, 200);
    const qint64 growth = bytesNow() - before;
    QVERIFY2(growth < 128 * MiB, qPrintable(QString::number(growth)));
    clients.front()->send(QByteArray(1000000 - half.size() - 1, ' ') + ']');
    QCOMPARE(clients.front()->next().status, 200);
    clients.back()->send(QByteArray(1000000 - half.size() - 1, ' ') + ']');
    QCOMPARE(clients.back()->next().status, 200);
}

QTEST_GUILESS_MAIN(TestServiceMemory)
#include "tst_service_memory.moc"
