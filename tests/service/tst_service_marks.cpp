#include <service/ServiceFixture.h>

#include <QJsonDocument>
#include <QtTest>

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
        return m_fixture->client.put(
            ServiceFixture::documentPath(id, QStringLiteral("/records")),
            {{QStringLiteral("type"), type}, {QStringLiteral("value"), value}});
    }
    QJsonArray records(const QJsonObject &where)
    {
        return m_fixture->client
            .get(QStringLiteral("document-service/documents/records"),
                 {{QStringLiteral("where"),
                   QString::fromUtf8(QJsonDocument(where).toJson(QJsonDocument::Compact))}})
            .array();
    }

    std::unique_ptr<ServiceFixture> m_fixture;
    QString m_anna;
    QString m_ben;
};

void TestServiceMarks::init()
{
    m_fixture = std::make_unique<ServiceFixture>();
    m_anna = m_fixture->service->addUser(QStringLiteral("anna"));
    m_ben = m_fixture->service->addUser(QStringLiteral("ben"));
    QVERIFY(m_fixture->service->addProject(QStringLiteral("p1"), QString()));
    for (const char *name : {"anna", "ben"}) {
        QVERIFY(m_fixture->service->setRole(QStringLiteral("p1"), QString::fromLatin1(name),
                                            QStringLiteral("editor")));
    }
    m_fixture->client.setToken(m_anna);
}

void TestServiceMarks::marksBelongToTheirUser()
{
    const QString id = m_fixture->makeFile(QStringLiteral("a.txt"));
    QCOMPARE(mark(id, 3, true).status, 200);
    QCOMPARE(m_fixture->document(id).value(QStringLiteral("favorite")), QJsonValue(true));
    m_fixture->client.setToken(m_ben);
    QCOMPARE(m_fixture->document(id).value(QStringLiteral("favorite")), QJsonValue(false));
    QCOMPARE(records({{QStringLiteral("documentId"), id}}).size(), 0);
    m_fixture->client.setToken(m_anna);
    QCOMPARE(mark(id, 3, false).status, 200);
    QCOMPARE(m_fixture->document(id).value(QStringLiteral("favorite")), QJsonValue(false));
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
    const QString id = m_fixture->makeFile(QStringLiteral("a.txt"));
    QCOMPARE(mark(id, type, true).status, 200);
    QCOMPARE(m_fixture->document(id).value(QStringLiteral("favorite")), QJsonValue(isShown));
}

void TestServiceMarks::listsAreLimitedToMarks()
{
    const QString frequent = m_fixture->makeFile(QStringLiteral("frequent"));
    const QString favourite = m_fixture->makeFile(QStringLiteral("favourite"));
    m_fixture->makeFile(QStringLiteral("neither"));
    mark(frequent, 1, true);
    mark(favourite, 3, true);
    QCOMPARE(m_fixture->names({}, {{QStringLiteral("frequent"), QStringLiteral("true")}}),
             QStringList{QStringLiteral("frequent")});
    QCOMPARE(m_fixture->names({}, {{QStringLiteral("recordType"), QStringLiteral("3")}}),
             QStringList{QStringLiteral("favourite")});
    QCOMPARE(m_fixture->names({}, {{QStringLiteral("recordType"), QStringLiteral("9")}}),
             QStringList());
    m_fixture->client.setToken(m_ben);
    QCOMPARE(m_fixture->names({}, {{QStringLiteral("recordType"), QStringLiteral("3")}}),
             QStringList());
}

void TestServiceMarks::recordsOfOneDocumentAreFound()
{
    const QString id = m_fixture->makeFile(QStringLiteral("a.txt"));
    mark(id, 3, true);
    mark(id, 2, true);
    const QJsonArray found =
        records({{QStringLiteral("documentId"), id}, {QStringLiteral("type"), 3}});
    QCOMPARE(found.size(), 1);
    QCOMPARE(found.at(0).toObject().value(QStringLiteral("type")).toInt(), 3);
    QCOMPARE(found.at(0).toObject().value(QStringLiteral("documentId")).toString(), id);
    QCOMPARE(records({{QStringLiteral("documentId"), id}}).size(), 2);
    QCOMPARE(records({{QStringLiteral("type"), 2}}).size(), 1);
    QCOMPARE(records({{QStringLiteral("documentId"), id}, {QStringLiteral("type"), 1}}).size(), 0);
}

void TestServiceMarks::aDownloadIsRemembered()
{
    const QString id = m_fixture->makeFile(QStringLiteral("a.txt"));
    QVERIFY(m_fixture->document(id).value(QStringLiteral("downloadTime")).isNull());
    const QString fileId = m_fixture->document(id).value(QStringLiteral("fileId")).toString();
    QCOMPARE(m_fixture->client.get(QStringLiteral("base-service/files/") + fileId).status, 200);
    QVERIFY(m_fixture->document(id).value(QStringLiteral("downloadTime")).isString());
    m_fixture->client.setToken(m_ben);
    QVERIFY(m_fixture->document(id).value(QStringLiteral("downloadTime")).isNull());
}

QTEST_GUILESS_MAIN(TestServiceMarks)
#include "tst_service_marks.moc"
