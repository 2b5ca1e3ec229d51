#include "DocumentTexts.h"

#include <document_model/DocumentJson.h>

#include <QJsonArray>
#include <QJsonDocument>

#include <benchmark/benchmark.h>

// The mapping of JSON objects to records, beside what parsing their text has cost before.
namespace {

constexpr int Records = 50'000;

template <RecordShape shape>
void parse(benchmark::State &state)
{
    const QByteArray text = documentList(Records, shape);
    for ([[maybe_unused]] auto unused : state) {
        QJsonDocument document = QJsonDocument::fromJson(text);
        benchmark::DoNotOptimize(document);
        state.PauseTiming();
        document = QJsonDocument();
        state.ResumeTiming();
    }
}

template <RecordShape shape>
void map(benchmark::State &state)
{
    const QJsonDocument document = QJsonDocument::fromJson(documentList(Records, shape));
    const QJsonArray array = document.array();
    for ([[maybe_unused]] auto unused : state) {
        QList<VellDocument> list;
        list.reserve(array.size());
        for (const QJsonValue &element : array) {
            list.append(VellDocument());
            VellPubDoc::jsonToDocObject(element.toObject(), list.last());
        }
        benchmark::DoNotOptimize(list);
        state.PauseTiming();
        list = QList<VellDocument>();
        state.ResumeTiming();
    }
}

} // namespace

BENCHMARK_TEMPLATE(parse, RecordShape::Short)->Name("short/plain")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(map, RecordShape::Short)->Name("short/map")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(parse, RecordShape::Full)->Name("full/plain")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(map, RecordShape::Full)->Name("full/map")->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
