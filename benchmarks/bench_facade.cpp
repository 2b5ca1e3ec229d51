#include <document_service/VellDocService.h>
#include <document_service/VellDocumentData.h>
#include <support/ScriptedServer.h>

#include <VellNetwork/VellBaseApi.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <benchmark/benchmark.h>

// What the facade costs on top of the request functions, and what its cache answers cost.
namespace {

QString id(int number)
{
    return QStringLiteral("%1").arg(number, 24, 16, QLatin1Char('0'));
}

QByteArray listOf(int documents)
{
    QJsonArray list;
    for (int i = 0; i < documents; ++i) {
        list.append(QJsonObject{
            {QStringLiteral("_id"), id(i)},
            {QStringLiteral("name"), QStringLiteral("Level %1, plan.dwg").arg(i)},
            {QStringLiteral("parentId"), id(documents)},
            {QStringLiteral("projectId"), QStringLiteral("bridge")},
            {QStringLiteral("category"), QStringLiteral("model")},
            {QStringLiteral("type"), QStringLiteral("file")},
            {QStringLiteral("order"), i},
            {QStringLiteral("createdAt"), QStringLiteral("2020-05-31T08:00:00.000Z")},
            {QStringLiteral("updatedAt"), QStringLiteral("2020-05-31T08:00:00.000Z")},
            {QStringLiteral("createdBy"), id(1)},
            {QStringLiteral("file"),
             QJsonObject{{QStringLiteral("fileId"), id(i)},
                         {QStringLiteral("fileSize"), 1000000 + i},
                         {QStringLiteral("suffix"), QStringLiteral("dwg")}}},
        });
    }
    return QJsonDocument(list).toJson(QJsonDocument::Compact);
}

//! Answers every request with the same list.
class ListServer
{
public:
    explicit ListServer(int documents)
    {
        const QByteArray body = listOf(documents);
        m_server.setHandler([body](const ScriptedRequest &) { return ScriptedReply::json(body); });
        VellBaseApi::GetInstance().setBaseApi(m_server.baseApi());
    }
    void forget() { m_server.clearRequests(); }

private:
    ScriptedServer m_server;
};

void requestFunction(benchmark::State &state)
{
    ListServer server(int(state.range(0)));
    for (auto unused : state) {
        QList<VellDocument> list;
        VellDocService::getDocuments(VellDocumentConditon(), list);
        benchmark::DoNotOptimize(list);
        server.forget();
    }
}

// Every second one finds an empty cache, every other one replaces what it holds.
void facade(benchmark::State &state)
{
    ListServer server(int(state.range(0)));
    VellDocumentData data;
    bool isFilled = false;
    for (auto unused : state) {
        QList<VellDocument> list;
        data.getDocuments(VellDocumentConditon(), list);
        benchmark::DoNotOptimize(list);
        isFilled = !isFilled;
        if (!isFilled)
            data.clear();
        server.forget();
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
    for (auto unused : state) {
        next = (next + 7919) % documents; // all over the cache
        data.getDoc(ids.at(next), document, true);
        benchmark::DoNotOptimize(document);
    }
}

} // namespace

BENCHMARK(requestFunction)->Arg(10000)->Unit(benchmark::kMillisecond)->MinTime(3);
BENCHMARK(facade)->Arg(10000)->Unit(benchmark::kMillisecond)->MinTime(3);
BENCHMARK(cachedDocument)->Arg(1000)->Arg(10000)->Arg(100000);

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
