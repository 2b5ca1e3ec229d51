#include <document_model/DocumentConversions.h>

#include <benchmark/benchmark.h>

namespace {

enum class Order {
    ByFolder, // as uploaded, one folder after the other
    Spread, // neighbours never in the same folder: the worst for the processor's caches
};

// Two levels of folders and the files in them, the files first.
QList<VellDocument> flatList(int records, int folders, Order order)
{
    QList<VellDocument> docs;
    docs.reserve(records);
    for (int i = 0; i < records - folders; ++i) {
        const int folder = order == Order::ByFolder ? i / (records / folders) : i % folders;
        VellDocument file;
        file._id = QStringLiteral("file-%1").arg(i);
        file.parentId = QStringLiteral("folder-%1").arg(folder);
        file.name = QStringLiteral("图纸 %1.dwg").arg(i);
        file.type = QStringLiteral("file");
        docs.append(file);
    }
    for (int i = 0; i < folders; ++i) {
        VellDocument folder;
        folder._id = QStringLiteral("folder-%1").arg(i);
        folder.parentId = i < 20 ? QString() : QStringLiteral("folder-%1").arg(i % 20);
        folder.name = folder._id;
        docs.append(folder);
    }
    return docs;
}

// What makeDocListTree() replaces: the whole list is read again for every record.
void attachByScan(VellDocument &parent, const QList<VellDocument> &records)
{
    for (const VellDocument &record : records) {
        if (record.parentId == parent._id)
            parent.children.append(record);
    }
    for (VellDocument &child : parent.children)
        attachByScan(child, records);
}

void makeTreeByScan(QList<VellDocument> &docs)
{
    QList<VellDocument> roots;
    for (const VellDocument &record : qAsConst(docs)) {
        if (record.parentId.isEmpty())
            roots.append(record);
    }
    for (VellDocument &root : roots)
        attachByScan(root, docs);
    docs = roots;
}

template <void (*MakeTree)(QList<VellDocument> &), Order order>
void measureTree(benchmark::State &state)
{
    const int records = static_cast<int>(state.range(0));
    const QList<VellDocument> flat = flatList(records, records / 100, order);
    for (auto _ : state) {
        QList<VellDocument> docs = flat;
        MakeTree(docs);
        benchmark::DoNotOptimize(docs);
    }
    state.SetItemsProcessed(state.iterations() * records);
}

} // namespace

BENCHMARK_TEMPLATE(measureTree, VellPubDoc::makeDocListTree, Order::ByFolder)
    ->Name("tree/by-folder")
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(200000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(measureTree, VellPubDoc::makeDocListTree, Order::Spread)
    ->Name("tree/spread")
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(200000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(measureTree, makeTreeByScan, Order::ByFolder)
    ->Name("tree/plain")
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
