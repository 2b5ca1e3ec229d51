#include <service/ServiceWorld.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QTest>

//! Shares: what everybody may see who has the code.
class TestServiceShares : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void aShareListsItsDocuments();
    void foldersCanBeBrowsed();
    void longFoldersHavePages();
    void downloadsNeedPermission();
    void nothingElseCanBeReached();
    void anExpiredShareIsGone();
    void anUnknownCodeIsNotFound();
    void deletedDocumentsAreNotShown();
    void aShareEndsWithItsMakersRole();
    void namesAreNoMarkup();
    void anAnonymousShareEndsWithTheFirstUser();
    void sharesAreListedAndRevoked();
    void othersSharesAreForEditors();
    void sharesWithoutSenseAreRefused_data();
    void sharesWithoutSenseAreRefused();
    void deletedDocumentsAreNotShared();

private:
    QString share(const QStringList &ids, bool allowDownload, const QDateTime &expiry = {})
    {
        QJsonObject body{{"hostId", "p1"},
                         {"documentIds", QJsonArray::fromStringList(ids)},
                         {"allowDownload", allowDownload}};
        if (expiry.isValid())
            body.insert("expiredAt", expiry.toUTC().toString(Qt::ISODateWithMs));
        return m_world->client.post("document-service/documents/shares", body)
            .object()
            .value("code")
            .toString();
    }
    HttpAnswer visit(const QString &rest)
    {
        return HttpClient(m_world->service->baseApi()).get(QString("share/") + rest);
    }

    QJsonArray listShares()
    {
        return m_world->client.get("document-service/documents/shares", {{"hostId", "p1"}}).array();
    }
    HttpAnswer revoke(const QJsonObject &entry)
    {
        return m_world->client.remove(QString("document-service/documents/shares/")
                                      + entry.value("_id").toString());
    }

    std::unique_ptr<ServiceWorld> m_world;
    QString m_folder;
    QString m_inside;
    QString m_file;
    QString m_private;
};

void TestServiceShares::init()
{
    m_world = std::make_unique<ServiceWorld>();
    m_world->client.setToken(m_world->service->addUser("anna"));
    QVERIFY(m_world->service->addProject("p1", QString()));
    QVERIFY(m_world->service->setRole("p1", "anna", "owner"));
    m_folder = m_world->makeFolder("Folder");
    m_inside = m_world->makeFile("inside 图.txt", m_folder, "inside");
    m_file = m_world->makeFile("file.txt", {}, "the file");
    m_private = m_world->makeFile("private.txt", {}, "private");
}

void TestServiceShares::aShareListsItsDocuments()
{
    const QString code = share({m_folder, m_file}, true);
    QVERIFY(code.size() >= 22);
    const HttpAnswer page = visit(code);
    QCOMPARE(page.status, 200);
    QVERIFY(page.headers.value("content-type").startsWith("text/html"));
    QCOMPARE(page.headers.value("referrer-policy"), QByteArray("no-referrer"));
    QVERIFY(page.body.contains("Folder"));
    QVERIFY(page.body.contains("file.txt"));
    QVERIFY(!page.body.contains("private"));
}

void TestServiceShares::foldersCanBeBrowsed()
{
    const QString code = share({m_folder}, true);
    const QString path = code + QString("/folders/") + m_folder;
    QVERIFY(visit(code).body.contains("/share/" + path.toUtf8()));
    const HttpAnswer page = visit(path);
    QCOMPARE(page.status, 200);
    QVERIFY(page.body.contains(QString("inside 图.txt").toUtf8()));
    const HttpAnswer download = visit(code + QString("/files/") + m_inside);
    QCOMPARE(download.body, QByteArray("inside"));
    QCOMPARE(download.headers.value("content-disposition"),
             QByteArray("attachment; filename*=UTF-8''inside%20%E5%9B%BE.txt"));
}

void TestServiceShares::longFoldersHavePages()
{
    const QString folder = m_world->makeFolder("Long");
    for (int i = 1; i <= 501; ++i)
        QVERIFY(!m_world->makeFolder(QString("entry %1").arg(i, 3, 10, QLatin1Char('0')), folder)
                     .isEmpty());
    const QString path = share({folder}, true) + QString("/folders/") + folder;
    const QByteArray first = visit(path).body;
    QCOMPARE(first.count("entry "), 500);
    QVERIFY(first.contains("/share/" + path.toUtf8() + "?page=2\">Next page"));
    QVERIFY(!first.contains("Previous page"));
    const QByteArray second = visit(path + QString("?page=2")).body;
    QCOMPARE(second.count("entry "), 1);
    QVERIFY(second.contains("?page=1\">Previous page"));
    QVERIFY(!second.contains("Next page"));
    QCOMPARE(visit(path + QString("?page=0")).status, 404);
    QCOMPARE(visit(path + QString("?page=x")).status, 400);
}

void TestServiceShares::downloadsNeedPermission()
{
    const QString code = share({m_file}, false);
    QVERIFY(!visit(code).body.contains("/files/"));
    QCOMPARE(visit(code + QString("/files/") + m_file).status, 403);
    const QString open = share({m_file}, true);
    QVERIFY(visit(open).body.contains("/files/"));
    QCOMPARE(visit(open + QString("/files/") + m_file).body, QByteArray("the file"));
}

void TestServiceShares::nothingElseCanBeReached()
{
    const QString code = share({m_folder}, true);
    QVERIFY(!share({m_file, m_private}, true).isEmpty()); // with another code
    QCOMPARE(visit(code + QString("/files/") + m_private).status, 404);
    QCOMPARE(visit(code + QString("/files/") + m_file).status, 404);
    QCOMPARE(visit(code + QString("/folders/") + m_private).status, 404);
    QCOMPARE(visit(code + QString("/files/") + m_folder).status, 404);
}

void TestServiceShares::anExpiredShareIsGone()
{
    const QString later = share({m_file}, true, QDateTime::currentDateTimeUtc().addSecs(3600));
    QCOMPARE(visit(later).status, 200);
    const QString soon = share({m_file}, true, QDateTime::currentDateTimeUtc().addMSecs(200));
    QTRY_COMPARE(visit(soon).status, 410);
    QVERIFY(visit(soon).body.contains("no longer shared"));
    QCOMPARE(visit(soon + QString("/files/") + m_file).status, 410);
}

void TestServiceShares::anUnknownCodeIsNotFound()
{
    const HttpAnswer page = visit("0123456789abcdef0123456789abcdef");
    QCOMPARE(page.status, 404);
    QVERIFY(page.headers.value("content-type").startsWith("text/html"));
    QVERIFY(page.body.contains("no share with this code"));
}

void TestServiceShares::deletedDocumentsAreNotShown()
{
    const QString code = share({m_folder}, true);
    m_world->client.remove(ServiceWorld::documentPath(m_folder));
    QVERIFY(!visit(code).body.contains("Folder"));
    QCOMPARE(visit(code + QString("/files/") + m_inside).status, 404);
}

void TestServiceShares::aShareEndsWithItsMakersRole()
{
    const QString code = share({m_file}, true);
    QVERIFY(m_world->service->setRole("p1", "anna", "viewer"));
    QCOMPARE(visit(code).status, 410);
}

void TestServiceShares::namesAreNoMarkup()
{
    const QString id = m_world->makeFolder("<script>alert(1)<x> \"%1\" & ");
    const HttpAnswer page = visit(share({id}, true));
    QVERIFY(!page.body.contains("<script>"));
    QVERIFY(page.body.contains("&lt;script&gt;alert(1)&lt;x&gt; &quot;%1&quot; &amp; "));
    QVERIFY(page.headers.value("content-security-policy").startsWith("default-src 'none'"));
}

void TestServiceShares::anAnonymousShareEndsWithTheFirstUser()
{
    m_world = std::make_unique<ServiceWorld>();
    const QString code = share({m_world->makeFile("open.txt")}, true);
    QCOMPARE(visit(code).status, 200);
    QVERIFY(!m_world->service->addUser("anna").isEmpty());
    QCOMPARE(visit(code).status, 410);
}

void TestServiceShares::sharesAreListedAndRevoked()
{
    const QDateTime end = QDateTime::currentDateTimeUtc().addDays(1);
    const QString code = share({m_folder, m_file}, true, end);
    const QString other = share({m_file}, false);
    const QJsonArray shares = listShares();
    QCOMPARE(shares.size(), 2);
    const QJsonObject first = shares.at(1).toObject(); // the newest comes first
    QCOMPARE(first.value("expiredAt").toString(), end.toString(Qt::ISODateWithMs));
    QCOMPARE(first.value("allowDownload"), QJsonValue(true));
    QCOMPARE(first.value("hostId").toString(), QString("p1"));
    QCOMPARE(first.value("documents").toArray().size(), 2);
    QCOMPARE(first.value("documents").toArray().at(0).toObject().value("name").toString(),
             QString("Folder"));
    QVERIFY(!QJsonDocument(shares).toJson().contains(code.toUtf8()));

    QCOMPARE(revoke(first).status, 200);
    QCOMPARE(visit(code).status, 404);
    QCOMPARE(visit(other).status, 200);
    QCOMPARE(listShares().size(), 1);
    QCOMPARE(revoke(first).status, 404);
}

void TestServiceShares::othersSharesAreForEditors()
{
    QVERIFY(!share({m_file}, true).isEmpty());
    const QJsonObject annas = listShares().at(0).toObject();
    m_world->client.setToken(m_world->addMember("carl", "contributor"));
    QVERIFY(!share({m_file}, true).isEmpty());
    QCOMPARE(listShares().size(), 1); // the own one
    QCOMPARE(revoke(annas).status, 404);
    m_world->client.setToken(m_world->addMember("edith", "editor"));
    QCOMPARE(listShares().size(), 2);
    QCOMPARE(revoke(annas).status, 200);
    QCOMPARE(listShares().size(), 1);
}

void TestServiceShares::sharesWithoutSenseAreRefused_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QJsonValue>("value");
    QTest::addColumn<int>("status");
    QTest::newRow("no documents") << "documentIds" << QJsonValue(QJsonArray()) << 400;
    QTest::newRow("no array") << "documentIds" << QJsonValue("x") << 400;
    QTest::newRow("unknown document") << "documentIds" << QJsonValue(QJsonArray{"x"}) << 404;
    QTest::newRow("no project") << "hostId" << QJsonValue() << 400;
    QTest::newRow("unknown project") << "hostId" << QJsonValue("p9") << 404;
    QTest::newRow("no date") << "expiredAt" << QJsonValue("soon") << 400;
    QTest::newRow("the first moment of 1970")
        << "expiredAt" << QJsonValue("1970-01-01T00:00:00.000Z") << 400;
    QTest::newRow("a past date") << "expiredAt" << QJsonValue("2020-02-29T08:00:00.000Z") << 400;
    QTest::newRow("no boolean") << "allowDownload" << QJsonValue(1) << 400;
}

void TestServiceShares::sharesWithoutSenseAreRefused()
{
    QFETCH(QString, key);
    QFETCH(QJsonValue, value);
    QFETCH(int, status);
    QJsonObject body{{"hostId", "p1"}, {"documentIds", QJsonArray{m_file}}};
    body.insert(key, value);
    const HttpAnswer answer = m_world->client.post("document-service/documents/shares", body);
    QCOMPARE(answer.status, status);
    QVERIFY(!answer.errorText().isEmpty());
}

void TestServiceShares::deletedDocumentsAreNotShared()
{
    QCOMPARE(m_world->client.remove(ServiceWorld::documentPath(m_file)).status, 200);
    const HttpAnswer answer =
        m_world->client.post("document-service/documents/shares",
                             {{"hostId", "p1"}, {"documentIds", QJsonArray{m_file}}});
    QCOMPARE(answer.status, 409);
}

QTEST_GUILESS_MAIN(TestServiceShares)
#include "tst_service_shares.moc"
