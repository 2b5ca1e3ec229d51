#include "DocumentTexts.h"

#include <document_service/VellDocService.h>
#include <document_service/VellDocumentData.h>
#include <support/ScriptedServer.h>

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/VellBaseApi.h>

#include <QCoreApplication>
#include <QThread>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <memory>

// What the facade costs on top of the request functions, those on top of a bare request, and answers from the cache.
namespace {

QString id(int number)
{
    return QStringLiteral("%1").arg(number, 24, 16, QLatin1Char('0'));
}

//! Answers every request with the same body, on a thread of its own: a thread that waits for a response runs the
//! transfer itself first, and processes no events meanwhile.
class OneAnswer
{
public:
    explicit OneAnswer(const QByteArray &body)
    {
        m_context.moveToThread(&m_thread);
        m_thread.start();
        inThread([this, body] {
            m_server = std::make_unique<ScriptedServer>();
            m_server->setHandler([this, body](const ScriptedRequest &) {
                QTimer::singleShot(0, m_server.get(), [this] { m_server->clearRequests(); });
                return ScriptedReply::json(body);
            });
        });
        VellBaseApi::GetInstance().setBaseApi(m_server->baseApi());
    }
    ~OneAnswer()
    {
        inThread([this] { m_server.reset(); });
        m_thread.quit();
        m_thread.wait();
    }
    Q_DISABLE_COPY(OneAnswer)

private:
    template <typename Function>
    void inThread(Function function)
    {
        QMetaObject::invokeMethod(&m_context, function, Qt::BlockingQueuedConnection);
    }

    QThread m_thread;
    QObject m_context;
    std::unique_ptr<ScriptedServer> m_server;
};

void requestFunction(benchmark::State &state)
{
    const OneAnswer server(documentList(int(state.range(0)), RecordShape::Short));
    for ([[maybe_unused]] auto unused : state) {
        QList<VellDocument> list;
        VellDocService::getDocuments(VellDocumentConditon(), list);
        benchmark::DoNotOptimize(list);
    }
}

// Every second one finds an empty cache, every other one replaces what it holds.
void facade(benchmark::State &state)
{
    const OneAnswer server(documentList(int(state.range(0)), RecordShape::Short));
    VellDocumentData data;
    bool isFilled = false;
    for ([[maybe_unused]] auto unused : state) {
        QList<VellDocument> list;
        data.getDocuments(VellDocumentConditon(), list);
        benchmark::DoNotOptimize(list);
        isFilled = !isFilled;
        if (!isFilled)
            data.clear();
    }
}

QByteArray oneDocument()
{
    const QByteArray list = documentList(1, RecordShape::Short);
    return list.mid(1, list.size() - 2);
}

void bareRequest(benchmark::State &state)
{
    const OneAnswer server(oneDocument());
    const QString url = VellBaseApi::GetInstance().getBaseApi()
        + QStringLiteral("document-service/documents/d1?expand=true");
    for ([[maybe_unused]] auto unused : state) {
        NetworkEventLoop loop(NetworkManager::instance()->get(url));
        loop.exec();
        benchmark::DoNotOptimize(loop.isSuccessful());
    }
}

void getDoc(benchmark::State &state)
{
    const OneAnswer server(oneDocument());
    VellDocumentData data;
    VellDocument document;
    for ([[maybe_unused]] auto unused : state) {
        data.getDoc(QStringLiteral("d1"), document, false);
        benchmark::DoNotOptimize(document);
    }
}

void cachedDocument(benchmark::State &state)
{
    const int documents = int(state.range(0));
    VellDocumentData data;
    QStringList ids;
    for (int i = 0; i < documents; ++i) {
        VellDocument document;
        document._id = id(i);
        document.name = QStringLiteral("plan %1").arg(i);
        data.addDocToCache(document);
        ids.append(document._id);
    }
    VellDocument document;
    int next = 0;
    for ([[maybe_unused]] auto unused : state) {
        next = (next + 7919) % documents; // all over the cache
        data.getDoc(ids.at(next), document, true);
        benchmark::DoNotOptimize(document);
    }
}

} // namespace

BENCHMARK(requestFunction)->Name("list/plain")->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(facade)->Name("list/facade")->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(bareRequest)->Name("document/plain")->Unit(benchmark::kMicrosecond);
BENCHMARK(getDoc)->Name("document/getDoc")->Unit(benchmark::kMicrosecond);
BENCHMARK(cachedDocument)->Name("document/cached")->Arg(1000)->Arg(10000)->Arg(100000);

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
