#include <service/ServiceWorld.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QTest>

//! Each user's marks on documents.
class TestServiceMarks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void marksBelongToTheirUser();
    void frequentAndFavouriteShowInTheDocument_data();
    void frequentAndFavouriteShowInTheDocument();
    void listsAreLimitedToMarks();
    void recordsOfOneDocumentAreFound();
    void aDownloadIsRemembered();

private:
    HttpAnswer mark(const QString &id, int type, bool value)
    {
        return m_world->client.put(ServiceWorld::documentPath(id, "/records"),
                                   {{"type", type}, {"value", value}});
    }
    QJsonArray records(const QJsonObject &where)
    {
        return m_world->client
            .get(
                "document-service/documents/records",
                {{"where", QString::fromUtf8(QJsonDocument(where).toJson(QJsonDocument::Compact))}})
            .array();
    }

    std::unique_ptr<ServiceWorld> m_world;
    QString m_anna;
    QString m_ben;
};

void TestServiceMarks::init()
{
    m_world = std::make_unique<ServiceWorld>();
    m_anna = m_world->service->addUser("anna");
    m_ben = m_world->service->addUser("ben");
    QVERIFY(m_world->service->addProject("p1", QString()));
    for (const char *name : {"anna", "ben"}) {
        QVERIFY(m_world->service->setRole("p1", QString::fromLatin1(name), "editor"));
    }
    m_world->client.setToken(m_anna);
}

void TestServiceMarks::marksBelongToTheirUser()
{
    const QString id = m_world->makeFile("a.txt");
    QCOMPARE(mark(id, 3, true).status, 200);
    QCOMPARE(m_world->document(id).value("favorite"), QJsonValue(true));
    m_world->client.setToken(m_ben);
    QCOMPARE(m_world->document(id).value("favorite"), QJsonValue(false));
    QCOMPARE(records({{"documentId", id}}).size(), 0);
    m_world->client.setToken(m_anna);
    QCOMPARE(mark(id, 3, false).status, 200);
    QCOMPARE(m_world->document(id).value("favorite"), QJsonValue(false));
    QCOMPARE(mark(id, 3, false).status, 200);
}

void TestServiceMarks::frequentAndFavouriteShowInTheDocument_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("isShown");
    QTest::newRow("frequent") << 1 << true;
    QTest::newRow("recent") << 2 << false;
    QTest::newRow("favourite") << 3 << true;
    QTest::newRow("a client's own") << 17 << false;
}

void TestServiceMarks::frequentAndFavouriteShowInTheDocument()
{
    QFETCH(int, type);
    QFETCH(bool, isShown);
    const QString id = m_world->makeFile("a.txt");
    QCOMPARE(mark(id, type, true).status, 200);
    QCOMPARE(m_world->document(id).value("favorite"), QJsonValue(isShown));
}

void TestServiceMarks::listsAreLimitedToMarks()
{
    const QString frequent = m_world->makeFile("frequent");
    const QString favourite = m_world->makeFile("favourite");
    m_world->makeFile("neither");
    mark(frequent, 1, true);
    mark(favourite, 3, true);
    QCOMPARE(m_world->names({}, {{"frequent", "true"}}), QStringList{"frequent"});
    QCOMPARE(m_world->names({}, {{"recordType", "3"}}), QStringList{"favourite"});
    QCOMPARE(m_world->names({}, {{"recordType", "9"}}), QStringList());
    m_world->client.setToken(m_ben);
    QCOMPARE(m_world->names({}, {{"recordType", "3"}}), QStringList());
}

void TestServiceMarks::recordsOfOneDocumentAreFound()
{
    const QString id = m_world->makeFile("a.txt");
    mark(id, 3, true);
    mark(id, 2, true);
    const QJsonArray found = records({{"documentId", id}, {"type", 3}});
    QCOMPARE(found.size(), 1);
    QCOMPARE(found.at(0).toObject().value("type").toInt(), 3);
    QCOMPARE(found.at(0).toObject().value("documentId").toString(), id);
    QCOMPARE(records({{"documentId", id}}).size(), 2);
    QCOMPARE(records({{"type", 2}}).size(), 1);
    QCOMPARE(records({{"documentId", id}, {"type", 1}}).size(), 0);
}

void TestServiceMarks::aDownloadIsRemembered()
{
    const QString id = m_world->makeFile("a.txt");
    QVERIFY(m_world->document(id).value("downloadTime").isNull());
    const QString fileId = m_world->document(id).value("fileId").toString();
    QCOMPARE(m_world->client.get(QString("base-service/files/") + fileId).status, 200);
    QVERIFY(m_world->document(id).value("downloadTime").isString());
    m_world->client.setToken(m_ben);
    QVERIFY(m_world->document(id).value("downloadTime").isNull());
}

QTEST_GUILESS_MAIN(TestServiceMarks)
#include "tst_service_marks.moc"
