#include <document_service/VellDocumentData.h>
#include <support/ScriptedServer.h>

#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

// While a method waits, the client's events call the same object again.
class TestFacadeReentrancy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void clearWhileAFetchWaits();
    void aSecondFetchInsideTheFirst();
    void clearWhileAListWaits();
    void aListInsideAListOfTheSameCaller();
    void theCallersListMayChangeWhileItIsDeleted();
    void clearInsideAMove();
    void clearWhileANameIsSearched();
    void manyLevelsDeep();

private:
    //! Runs \a action as the client's own event, once, while request number \a index is being answered.
    void meanwhile(int index, const std::function<void()> &action)
    {
        auto context = std::make_shared<QObject>();
        connect(m_server.get(), &ScriptedServer::requestReceived, context.get(), [=]() mutable {
            if (m_server->requests().size() != index + 1 || !context)
                return;
            QTimer::singleShot(0, this, action);
            context->deleteLater();
            context.reset();
        });
    }

    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<VellDocumentData> m_data;
};

void TestFacadeReentrancy::init()
{
    m_server = std::make_unique<ScriptedServer>();
    m_data = std::make_unique<VellDocumentData>();
    VellBaseApi::GetInstance().setBaseApi(m_server->baseApi());
    GetSoftCache()->setCurrentProjectId("p1");
    m_server->setHandler([](const ScriptedRequest &request) {
        const QByteArray path = request.target.split('?').first();
        ScriptedReply reply = path.endsWith("/documents")
            ? ScriptedReply::json(R"([{"_id":"d1","name":"a"},{"_id":"d2","name":"b"}])")
            : ScriptedReply::json(R"({"_id":")" + path.split('/').last() + R"(","name":"x"})");
        reply.delayMs = 20;
        return reply;
    });
}

void TestFacadeReentrancy::clearWhileAFetchWaits()
{
    meanwhile(0, [this] { m_data->clear(); });
    VellDocument doc;
    m_data->getDoc("d1", doc, false);
    QCOMPARE(doc.name, QString("x"));
    QCOMPARE(m_data->getFolderName("d1"), QString("x"));
}

void TestFacadeReentrancy::aSecondFetchInsideTheFirst()
{
    VellDocument inner;
    meanwhile(0, [&] { m_data->getDoc("d2", inner, true); });
    VellDocument outer;
    m_data->getDoc("d1", outer, true);
    QCOMPARE(outer._id, QString("d1"));
    QTRY_COMPARE(inner._id, QString("d2"));
    QCOMPARE(m_data->getFolderName("d1"), QString("x"));
    QCOMPARE(m_data->getFolderName("d2"), QString("x"));
}

void TestFacadeReentrancy::clearWhileAListWaits()
{
    meanwhile(0, [this] { m_data->clear(); });
    QList<VellDocument> list;
    m_data->getDocuments(VellDocumentConditon(), list);
    QCOMPARE(list.size(), 2);
    QCOMPARE(m_data->getFolderName("d2"), QString("b"));
}

void TestFacadeReentrancy::aListInsideAListOfTheSameCaller()
{
    QList<VellDocument> list;
    meanwhile(0, [&] {
        list.clear();
        m_data->getDocumentsRange(list, 0, 2, VellDocumentConditon(), VellDocumentSort());
    });
    m_data->getDocuments(VellDocumentConditon(), list);
    QCOMPARE(m_server->requests().size(), 2);
    QCOMPARE(list.size(), 4);
    QCOMPARE(m_data->getFolderName("d1"), QString("a"));
}

void TestFacadeReentrancy::theCallersListMayChangeWhileItIsDeleted()
{
    QStringList ids{"d1", "d2", "d3"};
    meanwhile(0, [&] { ids.clear(); });
    QVERIFY(m_data->deleteDoc(ids));
    QCOMPARE(m_server->requests().size(), 3);
}

void TestFacadeReentrancy::clearInsideAMove()
{
    QStringList ids{"d1", "d2"};
    meanwhile(1, [&] {
        m_data->clear();
        ids.clear();
    });
    QVERIFY(m_data->moveToFolder(ids, QString()));
    QCOMPARE(m_server->requests().size(), 3);
    QCOMPARE(m_data->getFolderName("d2"), QString("x"));
}

// The search goes on with the documents that were cached when it began.
void TestFacadeReentrancy::clearWhileANameIsSearched()
{
    for (const char *name : {"a(2).dwg", "a(3).dwg"}) {
        VellDocument doc;
        doc._id = doc.name = QString::fromLatin1(name);
        doc.type = "file";
        m_data->addDocToCache(doc);
    }
    m_server->enqueue(ScriptedReply::json(R"([{"_id":"d1","name":"a.dwg"}])"));
    m_server->enqueue(ScriptedReply::json("[]"));
    meanwhile(0, [this] { m_data->clear(); });
    QString existingId;
    QCOMPARE(m_data->getValidDocName(QString(), "a.dwg", existingId, QString(), {}),
             QString("a(4).dwg"));
    QCOMPARE(existingId, QString("d1"));
    QCOMPARE(m_server->requests().size(), 2);
}

void TestFacadeReentrancy::manyLevelsDeep()
{
    constexpr int Levels = 20;
    int started = 0;
    int finished = 0;
    std::function<void()> fetchOneMore = [&] {
        if (started == Levels)
            return;
        const QString id = QString::number(started++);
        QTimer::singleShot(0, this, fetchOneMore);
        VellDocument doc;
        m_data->getDoc(id, doc, false);
        if (doc._id == id)
            ++finished;
    };
    fetchOneMore();
    QTRY_COMPARE(finished, Levels);
    for (int i = 0; i < Levels; ++i)
        QCOMPARE(m_data->getFolderName(QString::number(i)), QString("x"));
}

QTEST_GUILESS_MAIN(TestFacadeReentrancy)
#include "tst_facade_reentrancy.moc"
