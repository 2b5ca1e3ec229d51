#include "Fuzzing.h"

#include <async_ops/AsyncCreateDocument.h>
#include <support/ScriptedServer.h>

#include <VellNetwork/NetworkSettings.h>
#include <VellNetwork/VellBaseApi.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryFile>

#include <memory>

// A whole upload against a store whose answers, and a client whose calls, are the input: it never crashes, finishes at
// most once unless it is resumed, and sends and emits nothing after its deletion.
namespace {

constexpr int MostRequests = 12;

class Upload
{
public:
    Upload(const uint8_t *data, size_t size) : m_input(data, size)
    {
        m_server.setHandler([this](const ScriptedRequest &) { return nextReply(); });
        VellBaseApi::GetInstance().setBaseApi(m_server.baseApi());
        require(m_file.open() && m_file.write("content") == 7 && m_file.flush(), "a local file");
    }

    void run()
    {
        VellDocument doc;
        doc.name = QStringLiteral("a.bin");
        doc.filePath = m_file.fileName();
        // The record's size decides whether it goes in chunks; the bytes are those that can be read.
        doc.fileSize = m_input.ConsumeBool() ? 10'485'761 : 7;
        auto *job = new AsyncCreateDocument;
        m_job.reset(job);
        watch();
        if (m_input.ConsumeBool())
            job->createDocument(QString(), doc);
        else
            job->updateDocument(QString(), doc);
        settle();
        m_job.reset();
        m_isDeleted = true;
        const int sent = m_server.requests().size();
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        // What was on its way may still arrive: one request, and one for each time that the job began again.
        require(m_server.requests().size() <= sent + 1 + m_resumptions,
                "nothing is sent after the deletion");
        require(m_resumptions > 0 || m_finishes <= 1, "one finish");
    }

private:
    void watch()
    {
        const AsyncCreateDocument *job = m_job.get();
        QObject::connect(job, &AsyncCreateDocument::createDocumentFinish, job,
                         [this](const VellDocument &) {
                             ++m_finishes;
                             emitted();
                         });
        QObject::connect(job, &AsyncCreateDocument::uploadProgress, job, [this] { emitted(); });
        QObject::connect(job, &AsyncCreateDocument::error, job, [this] { emitted(); });
        QObject::connect(job, &AsyncCreateDocument::finishUpload, job, [this] { emitted(); });
    }

    void emitted()
    {
        m_idle.restart();
        require(!m_isDeleted, "no signal after the deletion");
        act();
    }

    //! What the client does now: mostly nothing.
    void act()
    {
        if (!m_job || m_input.remaining_bytes() == 0)
            return;
        switch (m_input.ConsumeIntegralInRange(0, 15)) {
        case 0:
            m_job->pause(true);
            break;
        case 1:
            ++m_resumptions;
            m_job->pause(false);
            break;
        case 2:
            m_job->cancel();
            break;
        case 3:
            m_isDeleted = true;
            m_job.reset();
            break;
        default:
            break;
        }
    }

    ScriptedReply nextReply()
    {
        m_idle.restart();
        const bool isBeyond = m_server.requests().size() > MostRequests;
        act();
        const int kind = m_input.ConsumeIntegralInRange(0, 9);
        if (isBeyond || kind == 0)
            return ScriptedReply::endingAs(ScriptedReply::Ending::Dropped);
        if (kind == 1)
            return ScriptedReply::endingAs(ScriptedReply::Ending::Truncated);
        if (kind == 2)
            return ScriptedReply::json(
                QByteArray::fromStdString(m_input.ConsumeRandomLengthString(64)));
        const int status = kind == 3 ? 500 : 200;
        const QByteArray counters =
            "\"savedChunk\":" + QByteArray::number(m_input.ConsumeIntegralInRange(-1, 4))
            + ",\"totalChunk\":" + QByteArray::number(m_input.ConsumeIntegralInRange(-1, 4));
        const QByteArray id = m_input.ConsumeBool() ? "\"_id\":\"r1\"," : "";
        const QByteArray file =
            m_input.ConsumeBool() ? "\"fsFileId\":\"c1\",\"files\":[\"c1\"]," : "";
        return ScriptedReply::json('{' + id + file + counters + '}', status);
    }

    //! Runs events until nothing has moved for a while.
    void settle()
    {
        m_idle.restart();
        while (m_job && m_idle.elapsed() < 15 && m_server.requests().size() <= MostRequests)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents,
                                            2);
    }

    FuzzedDataProvider m_input;
    ScriptedServer m_server;
    QTemporaryFile m_file;
    std::unique_ptr<AsyncCreateDocument> m_job;
    QElapsedTimer m_idle;
    int m_finishes = 0;
    int m_resumptions = 0;
    bool m_isDeleted = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz_upload";
    static char *argv[] = {name, nullptr};
    static QCoreApplication application(argc, argv);
    NetworkSettings::instance().setStallTimeout(std::chrono::milliseconds(500));
    Upload(data, size).run();
    return 0;
}
