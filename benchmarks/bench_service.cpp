#include <service/ReferenceService.h>
#include <service/records/Access.h>
#include <service/records/DocumentJson.h>
#include <service/records/DocumentQuery.h>
#include <service/records/Documents.h>
#include <service/records/Files.h>
#include <service/storage/DataFolder.h>
#include <service/storage/Statement.h>

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

// What the service does for one request on a folder of 50,000 entries, from the question to the rows.

using namespace service;

namespace {

constexpr int Entries = 50000;
const QString user = QStringLiteral("local");
const QString project = QStringLiteral("p1");

//! The records of a data folder with one large folder.
class LargeFolder
{
public:
    LargeFolder() : m_data(m_folder.path()), m_database(m_data)
    {
        m_database.open();
        Transaction transaction(m_database);
        Projects(m_database).ensure(project);
        Documents documents(m_database, user);
        Document folder;
        folder.projectId = project;
        folder.type = QStringLiteral("dir");
        folder.name = QStringLiteral("large");
        documents.insert(folder);
        m_folderId = folder.id;
        const StoredFile file =
            Files(m_database).insert({QString(), QStringLiteral("md5"), QString(), 1, {}}, user);
        for (int i = 0; i < Entries; ++i) {
            Document entry = folder;
            entry.type = i % 10 == 0 ? QStringLiteral("dir") : QStringLiteral("file");
            entry.fileId = i % 10 == 0 ? QString() : file.id;
            entry.parentId = m_folderId;
            entry.category = QStringLiteral("c");
            entry.name =
                QStringLiteral("drawing %1.dwg").arg((i * 7919) % Entries, 6, 10, QLatin1Char('0'));
            documents.insert(entry);
        }
        transaction.commit();
    }

    Database &database() { return m_database; }
    DocumentQuery query() const
    {
        DocumentQuery query;
        query.projectId = project;
        query.where = {{QStringLiteral("parentId"), m_folderId}};
        return query;
    }

private:
    QTemporaryDir m_folder;
    const DataFolder m_data;
    Database m_database;
    QString m_folderId;
};

LargeFolder &largeFolder()
{
    static LargeFolder folder;
    return folder;
}

//! A page of 50 with all fields, as JSON.
void page(benchmark::State &state, const char *order)
{
    LargeFolder &folder = largeFolder();
    DocumentLister lister(folder.database(), user);
    DocumentQuery query = folder.query();
    query.order = QString::fromLatin1(order);
    query.limit = 50;
    query.skip = state.range(0);
    for (auto _ : state) {
        Access access(folder.database(), {user, user, true});
        int count = 0;
        lister.list(query, [&](const Document &document) {
            benchmark::DoNotOptimize(documentToJson(document, {}, access));
            ++count;
        });
        if (count != 50)
            state.SkipWithError("the page is not full");
    }
}

void count(benchmark::State &state, const char *category)
{
    LargeFolder &folder = largeFolder();
    DocumentLister lister(folder.database(), user);
    DocumentQuery query = folder.query();
    query.category = QString::fromLatin1(category);
    for (auto _ : state) {
        if (lister.count(query) != Entries)
            state.SkipWithError("the count is wrong");
    }
}

void find(benchmark::State &state, const QJsonValue &name, int expected)
{
    LargeFolder &folder = largeFolder();
    DocumentLister lister(folder.database(), user);
    DocumentQuery query = folder.query();
    query.where.insert(QStringLiteral("name"), name);
    query.limit = 50;
    for (auto _ : state) {
        int count = 0;
        lister.list(query, [&count](const Document &) { ++count; });
        if (count != expected)
            state.SkipWithError("the result is wrong");
    }
}

void pageByDefault(benchmark::State &state)
{
    page(state, "type order -updatedAt");
}
void pageByName(benchmark::State &state)
{
    page(state, "name");
}
void pageByNewest(benchmark::State &state)
{
    page(state, "-updatedAt");
}
void countAll(benchmark::State &state)
{
    count(state, "");
}
void countOneCategory(benchmark::State &state)
{
    count(state, "c");
}
void findExactName(benchmark::State &state)
{
    find(state, QStringLiteral("drawing 012345.dwg"), 1);
}
void findPattern(benchmark::State &state)
{
    find(state,
         QJsonObject{{QStringLiteral("$regex"), QStringLiteral("ING 01234\\d")},
                     {QStringLiteral("$options"), QStringLiteral("i")}},
         10);
}

BENCHMARK(pageByDefault)->Arg(0)->Arg(25000)->Arg(49950)->Unit(benchmark::kMillisecond);
BENCHMARK(pageByName)->Arg(0)->Arg(49950)->Unit(benchmark::kMillisecond);
BENCHMARK(pageByNewest)->Arg(0)->Arg(49950)->Unit(benchmark::kMillisecond);
BENCHMARK(countAll)->Unit(benchmark::kMillisecond);
BENCHMARK(countOneCategory)->Unit(benchmark::kMillisecond);
BENCHMARK(findExactName)->Unit(benchmark::kMillisecond);
BENCHMARK(findPattern)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
