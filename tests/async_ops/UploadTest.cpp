#include "UploadTest.h"

#include <QTest>
#include <QTimer>

void UploadTest::init()
{
    m_job.reset();
    m_slow.clear();
    m_slowMs = SlowMs;
    m_instead.clear();
    m_store = ChunkStore();
    m_world = std::make_unique<UploadWorld>();
    m_job = std::make_unique<AsyncCreateDocument>();
    m_spies = std::make_unique<JobSpies>(m_job.get());
    m_world->server.setHandler([this](const ScriptedRequest &request) {
        const int index = m_world->server.requests().size() - 1;
        ScriptedReply reply = m_instead.contains(index) ? m_instead.value(index)
            : request.target == "/base-service/files" ? ScriptedReply::json("{\"files\":[\"c1\"]}")
                                                      : m_store.answer(request);
        if (m_slow.contains(index))
            reply.delayMs = m_slowMs;
        return reply;
    });
}

void UploadTest::start(const VellDocument &doc, bool isCreate)
{
    if (isCreate)
        m_job->createDocument(QString(), doc);
    else
        m_job->updateDocument(QString(), doc);
}

void UploadTest::whenRequested(int index, const std::function<void()> &action)
{
    connect(&m_world->server, &ScriptedServer::requestReceived, this, [=] {
        if (m_world->server.requests().size() == index + 1)
            QTimer::singleShot(0, this, action);
    });
}

void UploadTest::settles(int requests)
{
    QTRY_COMPARE_WITH_TIMEOUT(m_world->server.requests().size(), requests, WaitMs);
    QTest::qWait(SlowMs + 100);
    QCOMPARE(m_world->server.requests().size(), requests);
}
