#include "UploadRun.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <vector>

// Uploads of large files on loopback, to a server that only discards. Every upload is a process of its own.

namespace {

constexpr qint64 MiB = 1024 * 1024;
constexpr qint64 ChunkBytes = 4 * MiB;
constexpr int LongestRunMs = 300'000;

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void runOrDie(QProcess &process)
{
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    if (!process.waitForFinished(LongestRunMs) || process.exitCode() != 0)
        qFatal("%s failed: %s", qPrintable(process.program()), qPrintable(process.errorString()));
}

//! The discarding server and the files to upload, for all benchmarks of a run.
class Site
{
public:
    static Site &instance();

    //! A file of so many bytes, all different or none on the disk.
    QString realFile(qint64 bytes);
    QString sparseFile(qint64 bytes);

    QJsonObject upload(const QString &how, const QString &file);
    //! Ends the program unless the server has had each chunk of the file once. \return the connections that it took
    int requireAllChunks(const QString &file);

private:
    Site();
    ~Site();
    //! What the server has seen since the last call.
    QJsonObject stats();
    QString path(const char *kind, qint64 bytes) const;

    QTemporaryDir m_folder;
    QProcess m_server;
    QString m_url;
};

Site::Site()
{
    m_server.start(QStringLiteral(VELL_UPLOAD_SERVER), QStringList());
    m_server.waitForReadyRead();
    m_url = QString::fromLatin1(m_server.readLine()).trimmed();
    if (m_url.isEmpty())
        qFatal("The server does not start.");
}

Site::~Site()
{
    m_server.kill();
    m_server.waitForFinished();
}

Site &Site::instance()
{
    static Site site;
    return site;
}

QString Site::path(const char *kind, qint64 bytes) const
{
    return m_folder.filePath(QStringLiteral("%1-%2.bin").arg(QLatin1String(kind)).arg(bytes));
}

QString Site::realFile(qint64 bytes)
{
    QFile file(path("real", bytes));
    if (file.exists())
        return file.fileName();
    QByteArray block(MiB, 'v');
    bool isWritten = file.open(QIODevice::WriteOnly);
    for (qint64 written = 0; isWritten && written < bytes; written += block.size()) {
        qToBigEndian<qint64>(written, block.data());
        isWritten = file.write(block) == block.size();
    }
    if (!isWritten)
        qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
    return file.fileName();
}

QString Site::sparseFile(qint64 bytes)
{
    QFile file(path("sparse", bytes));
    if (!file.open(QIODevice::WriteOnly) || !file.resize(bytes))
        qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
    return file.fileName();
}

QJsonObject Site::upload(const QString &how, const QString &file)
{
    QProcess run;
    run.start(QStringLiteral(VELL_UPLOAD_RUN), {how, m_url, file});
    runOrDie(run);
    return QJsonDocument::fromJson(run.readAllStandardOutput()).object();
}

QJsonObject Site::stats()
{
    QProcess run;
    run.start(QStringLiteral("curl"),
              {QStringLiteral("--silent"), m_url + QStringLiteral("stats")});
    runOrDie(run);
    return QJsonDocument::fromJson(run.readAllStandardOutput()).object();
}

int Site::requireAllChunks(const QString &file)
{
    const qint64 chunks = (QFileInfo(file).size() + ChunkBytes - 1) / ChunkBytes;
    const QJsonObject seen = stats();
    if (seen.value(QLatin1String("chunks")).toInt() != chunks)
        qFatal("Of %lld chunks the server has had %d.", chunks,
               seen.value(QLatin1String("chunks")).toInt());
    return seen.value(QLatin1String("connections")).toInt();
}

// The job, and MD5 plus libcurl alone in turn, so that both meet the same machine. The time is the job's;
// `ratio` is that of the job to the bare variant.
void uploadBesideBare(benchmark::State &state)
{
    Site &site = Site::instance();
    const QString file = site.realFile(state.range(0) * MiB);
    std::vector<double> job;
    std::vector<double> bare;
    std::vector<double> md5;
    int connections = 0;
    for (auto _ : state) {
        job.push_back(
            site.upload(QStringLiteral("job"), file).value(QLatin1String("seconds")).toDouble());
        connections = qMax(connections, site.requireAllChunks(file));
        const QJsonObject result = site.upload(QStringLiteral("bare"), file);
        bare.push_back(result.value(QLatin1String("seconds")).toDouble());
        md5.push_back(result.value(QLatin1String("md5_seconds")).toDouble());
        site.requireAllChunks(file);
        state.SetIterationTime(job.back());
    }
    state.counters["job_s"] = median(job);
    state.counters["bare_s"] = median(bare);
    state.counters["ratio"] = median(job) / median(bare);
    state.counters["md5_s"] = median(md5);
    state.counters["connections"] = connections;
    state.SetBytesProcessed(state.iterations() * state.range(0) * MiB);
}

// By how much the peak of the process's memory grows from the call to the end.
void uploadMemory(benchmark::State &state)
{
    Site &site = Site::instance();
    const QString file = site.sparseFile(state.range(0) * MiB);
    double growth = 0;
    for (auto _ : state) {
        const QJsonObject result = site.upload(QStringLiteral("job"), file);
        site.requireAllChunks(file);
        growth = qMax(growth, result.value(QLatin1String("growth_kib")).toDouble() / 1024);
        state.SetIterationTime(result.value(QLatin1String("seconds")).toDouble());
    }
    state.counters["growth_MiB"] = growth;
}

// How long the job's thread is kept from its events, seen by a timer of 1 ms, and how long a thread without any work
// is at the same time (`control`): that much is the machine.
void uploadEvents(benchmark::State &state)
{
    Site &site = Site::instance();
    const QString file = site.realFile(state.range(0) * MiB);
    for (auto _ : state) {
        const QJsonObject result = site.upload(QStringLiteral("watched-job"), file);
        site.requireAllChunks(file);
        for (const char *phase : {"hashing", "hashing_control", "sending", "sending_control"}) {
            const QJsonObject seen = result.value(QLatin1String(phase)).toObject();
            for (const char *figure : {"p999_ms", "max_ms"}) {
                auto &counter = state.counters[std::string(phase) + '_' + figure];
                counter = qMax<double>(counter, seen.value(QLatin1String(figure)).toDouble());
            }
        }
        state.SetIterationTime(result.value(QLatin1String("seconds")).toDouble());
    }
}

} // namespace

BENCHMARK(uploadBesideBare)
    ->Arg(512)
    ->Iterations(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(uploadMemory)
    ->Arg(64)
    ->Arg(2048)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(uploadEvents)->Arg(2048)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
