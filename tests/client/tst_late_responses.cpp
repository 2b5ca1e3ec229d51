#include "ClientWorld.h"

#include <VellNetwork/NetworkSettings.h>

#include <support/ScriptedServer.h>

#include <functional>
#include <memory>

using Request = std::function<VellOperation *(VellDocuments &)>;
Q_DECLARE_METATYPE(Request)

namespace {

constexpr auto Record = R"({"_id":"d1","name":"before","parentId":"f","type":"file","order":0})";

//! What a response has, whatever its type.
QStringList namesOf(VellOperation *operation)
{
    QStringList names;
    if (const auto *list = dynamic_cast<VellResult<QList<VellDocument>> *>(operation)) {
        for (const VellDocument &document : list->result())
            names.append(document.name);
    } else if (const auto *page = dynamic_cast<VellResult<VellPage> *>(operation)) {
        for (const VellDocument &document : page->result().documents)
            names.append(document.name);
    } else if (const auto *one = dynamic_cast<VellResult<VellDocument> *>(operation)) {
        names.append(one->result().name);
    } else if (const auto *found =
                   dynamic_cast<VellResult<std::optional<VellDocument>> *>(operation)) {
        names.append(found->result()->name);
    }
    return names;
}

} // namespace

// Responses that were requested before a change and arrive after it.
class TestLateResponses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void newerRecordIsKept_data();
    void newerRecordIsKept();
    void removedDocumentIsNotStoredAgain();
    void changeBeforeTheRequestIsReplaced();

private:
    VellDocument changed() const;

    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<VellSession> m_session;
    std::unique_ptr<VellDocuments> m_documents;
};

void TestLateResponses::init()
{
    m_server = std::make_unique<ScriptedServer>();
    m_server->setHandler([](const ScriptedRequest &request) {
        if (request.target.contains("base-service/me"))
            return ScriptedReply::json(R"({"_id":"u1","name":"Ann","projects":[]})");
        if (request.target.contains("only_count"))
            return ScriptedReply::json(R"({"count":1})");
        const bool isOne = request.target.contains("/d1");
        return ScriptedReply::json(isOne ? QByteArray(Record) : '[' + QByteArray(Record) + ']');
    });
    m_session = std::make_unique<VellSession>();
    m_documents = std::make_unique<VellDocuments>(m_session.get());
    VellConnection connection;
    connection.address = m_server->baseApi();
    connection.proxy = NetworkSettings::noProxy();
    QSignalSpy opened(m_session.get(), &VellSession::opened);
    m_session->open(connection);
    QVERIFY(opened.wait(WaitMs));
    m_session->openProject(QStringLiteral("p1"));
}

void TestLateResponses::cleanup()
{
    m_documents.reset();
    m_session.reset();
    m_server.reset();
}

VellDocument TestLateResponses::changed() const
{
    VellDocument document;
    document._id = QStringLiteral("d1");
    document.name = QStringLiteral("after");
    document.parentId = QStringLiteral("f");
    return document;
}

void TestLateResponses::newerRecordIsKept_data()
{
    QTest::addColumn<Request>("request");
    const auto row = [](const char *name, const Request &request) {
        QTest::newRow(name) << request;
    };
    row("list", [](VellDocuments &documents) { return documents.list({}); });
    row("page", [](VellDocuments &documents) { return documents.page({}, {}, 0, 10); });
    row("favorites", [](VellDocuments &documents) { return documents.favorites({}, {}); });
    row("recent", [](VellDocuments &documents) { return documents.recent({}); });
    row("document",
        [](VellDocuments &documents) { return documents.document(QStringLiteral("d1")); });
    row("find", [](VellDocuments &documents) {
        return documents.find(QStringLiteral("f"), QStringLiteral("before"));
    });
}

void TestLateResponses::newerRecordIsKept()
{
    QFETCH(Request, request);
    VellDocumentStore *const store = m_documents->store();
    connect(m_server.get(), &ScriptedServer::requestReceived, store,
            [&] { store->insert(changed()); });
    VellOperation *const operation = request(*m_documents);
    QStringList names;
    connect(operation, &VellOperation::finished, store, [&] { names = namesOf(operation); });
    const VellError error = waitForEnd(operation);
    QVERIFY2(!error, qPrintable(error.text));
    QCOMPARE(names, QStringList(QStringLiteral("after")));
    QCOMPARE(store->document(QStringLiteral("d1"))->name, QStringLiteral("after"));
}

void TestLateResponses::removedDocumentIsNotStoredAgain()
{
    VellDocumentStore *const store = m_documents->store();
    store->insert(changed());
    connect(m_server.get(), &ScriptedServer::requestReceived, store,
            [&] { store->remove({QStringLiteral("d1")}); });
    await(m_documents->list({}));
    QVERIFY(!store->document(QStringLiteral("d1")));
}

void TestLateResponses::changeBeforeTheRequestIsReplaced()
{
    VellDocumentStore *const store = m_documents->store();
    m_server->enqueue(ScriptedReply::endingAs(ScriptedReply::Ending::Withheld));
    QSignalSpy received(m_server.get(), &ScriptedServer::requestReceived);
    VellOperation *const earlier = m_documents->list({});
    QVERIFY(received.wait(WaitMs));
    store->insert(changed());
    await(m_documents->list({})); // the service has another name by now
    QCOMPARE(store->document(QStringLiteral("d1"))->name, QStringLiteral("before"));
    earlier->abort();
    QCOMPARE(waitForEnd(earlier).kind, VellError::Kind::Cancelled);
}

QTEST_GUILESS_MAIN(TestLateResponses)
#include "tst_late_responses.moc"
