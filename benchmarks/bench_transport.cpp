#include <servers/Nginx.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <map>
#include <vector>

// The library beside libcurl alone, without a web server, behind nginx, and behind nginx with TLS. All are processes of
// their own on loopback.
//
// VELL_PROGRAMS names another folder with the measured programs, VELL_LAUNCHER a program that starts them: of a
// build for Windows, under Wine. VELL_BASELINE names a transport_run of another build, which is then measured in turn
// with this one ("baseline_ms").

namespace {

constexpr int LongestRunMs = 600'000;
constexpr qint64 UploadBytes = qint64(512) * 1024 * 1024;
constexpr int Files = 2000;
constexpr int FileBytes = 10 * 1024;
constexpr int Entries = 50'000;

enum Way { Direct, BehindNginx, BehindTls };
const char *const wayNames[] = {"direct", "nginx", "tls"};

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

QByteArray run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(LongestRunMs) || process.exitCode() != 0)
        qFatal("%s %s failed", qPrintable(program), qPrintable(arguments.join(QLatin1Char(' '))));
    return process.readAllStandardOutput();
}

//! The measured program \a name, as this build or the environment has it.
QByteArray runMeasured(const QString &name, const QStringList &arguments)
{
    const QString folder = qEnvironmentVariable("VELL_PROGRAMS", QStringLiteral(VELL_PROGRAMS));
    QStringList command =
        qEnvironmentVariable("VELL_LAUNCHER").split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QString program = folder + QLatin1Char('/') + name;
    if (QFile::exists(program + QLatin1String(".exe")))
        program += QLatin1String(".exe");
    command += program;
    command += arguments;
    return run(command.takeFirst(), command);
}

QJsonObject objectOf(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).object();
}

//! A server program that prints its address, and nginx before it, plain and with TLS.
class Site
{
public:
    Site(const QString &program, const QStringList &arguments, Certificates &certificates)
    {
        m_server.start(program, arguments);
        m_server.waitForReadyRead();
        m_url = QString::fromLatin1(m_server.readLine()).trimmed().section(QLatin1Char(' '), -1);
        Nginx::Settings settings;
        settings.servicePort = quint16(QUrl(m_url).port());
        settings.http = "client_max_body_size 0;";
        bool isStarted = m_plain.start(settings);
        settings.certificate = certificates.forServer(QStringLiteral("IP:127.0.0.1"));
        isStarted = m_encrypted.start(settings) && isStarted;
        if (!isStarted)
            qFatal("The servers do not start.");
    }

    ~Site()
    {
        m_server.kill();
        m_server.waitForFinished();
    }

    QString url(Way way) const
    {
        if (way == Direct)
            return m_url.endsWith(QLatin1Char('/')) ? m_url : m_url + QLatin1Char('/');
        return way == BehindNginx ? m_plain.baseApi() : m_encrypted.baseApi();
    }

private:
    QProcess m_server;
    QString m_url;
    Nginx m_plain;
    Nginx m_encrypted;
};

//! What all benchmarks of a run share.
struct World
{
    World()
        : service(QStringLiteral(VELL_SERVICE),
                  {QStringLiteral("--data"), folder.filePath(QStringLiteral("data"))},
                  certificates),
          discarding(QStringLiteral(VELL_UPLOAD_SERVER), {}, certificates)
    {
        qputenv("HOME", QFile::encodeName(folder.path()));
        qputenv("VELLDOC_CACERT", QFile::encodeName(certificates.authority()));
    }

    static World &instance()
    {
        static World world;
        return world;
    }

    QTemporaryDir folder;
    Certificates certificates;
    Site service;
    Site discarding;
};

void compare(benchmark::State &state, const char *what, int count)
{
    World &world = World::instance();
    const auto way = static_cast<Way>(state.range(0));
    state.SetLabel(wayNames[way]);
    const QString baseline = qEnvironmentVariable("VELL_BASELINE");
    const QStringList arguments{QString::fromLatin1(what), world.service.url(way),
                                QString::number(count), world.certificates.authority()};
    std::vector<double> library;
    std::vector<double> curl;
    std::vector<double> before;
    for (auto _ : state) {
        const QJsonObject result =
            objectOf(runMeasured(QStringLiteral("transport_run"), arguments));
        library.push_back(result.value(QLatin1String("library_ms")).toDouble());
        curl.push_back(result.value(QLatin1String("curl_ms")).toDouble());
        if (!baseline.isEmpty() && way != BehindTls)
            before.push_back(
                objectOf(run(baseline, arguments)).value(QLatin1String("library_ms")).toDouble());
        state.SetIterationTime(library.back() / 1000);
    }
    state.counters["library_ms"] = median(library);
    state.counters["curl_ms"] = median(curl);
    state.counters["ratio"] = median(library) / median(curl);
    if (!before.empty())
        state.counters["baseline_ms"] = median(before);
}

void createDocFolder(benchmark::State &state)
{
    compare(state, "folders", 300);
}

void getDoc(benchmark::State &state)
{
    compare(state, "document", 1000);
}

// The service gets a top level of 50,000 folders for it.
void getDocuments(benchmark::State &state)
{
    static const bool isFilled = [] {
        run(QStringLiteral(VELL_PROGRAMS "/bare_requests"),
            {World::instance().service.url(Direct), QStringLiteral("folders"),
             QString::number(Entries)});
        return true;
    }();
    Q_UNUSED(isFilled)
    compare(state, "list", 3);
}

//! A file in which no two blocks are equal.
QString largeFile()
{
    QFile file(World::instance().folder.filePath(QStringLiteral("large.bin")));
    if (file.exists())
        return file.fileName();
    QByteArray block(65536, 'v');
    bool isWritten = file.open(QIODevice::WriteOnly);
    for (qint64 written = 0; isWritten && written < UploadBytes; written += block.size()) {
        block.replace(0, 16, QByteArray::number(written).rightJustified(16, '0'));
        isWritten = file.write(block) == block.size();
    }
    if (!isWritten)
        qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
    return file.fileName();
}

// The job, and MD5 plus the same forms by libcurl alone; to a server that only discards.
void upload(benchmark::State &state)
{
    World &world = World::instance();
    const auto way = static_cast<Way>(state.range(0));
    state.SetLabel(wayNames[way]);
    std::map<QString, std::vector<double>> seconds;
    for (auto _ : state) {
        for (const QString &how : {QStringLiteral("job"), QStringLiteral("bare")}) {
            const QByteArray result = runMeasured(
                QStringLiteral("upload_run"),
                {how, world.discarding.url(way), largeFile(), world.certificates.authority()});
            seconds[how].push_back(objectOf(result).value(QLatin1String("seconds")).toDouble());
        }
        state.SetIterationTime(seconds[QStringLiteral("job")].back());
    }
    const double job = median(seconds[QStringLiteral("job")]);
    const double bare = median(seconds[QStringLiteral("bare")]);
    state.counters["job_s"] = job;
    state.counters["curl_s"] = bare;
    state.counters["ratio"] = job / bare;
}

//! Files that the service has never seen. \return their folder
QString newFiles()
{
    static int number = 0;
    QString folder = World::instance().folder.filePath(QStringLiteral("files %1").arg(++number));
    QDir().mkpath(folder);
    QByteArray content(FileBytes, 'v');
    for (int i = 0; i < Files; ++i) {
        content.replace(0, 32, QByteArray::number(number * Files + i).leftJustified(32));
        QFile file(folder + QStringLiteral("/file %1.txt").arg(i));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
    }
    return folder;
}

// All three ways in turn; the ratio is that to the way without a web server.
void putFiles(benchmark::State &state)
{
    World &world = World::instance();
    std::vector<double> seconds[3];
    for (auto _ : state) {
        for (const Way way : {Direct, BehindNginx, BehindTls}) {
            const QString folder = newFiles();
            const auto start = std::chrono::steady_clock::now();
            runMeasured(QStringLiteral("velldoc"),
                        {QStringLiteral("--url"), world.service.url(way), QStringLiteral("put"),
                         folder, QStringLiteral("/")});
            seconds[way].push_back(
                std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        }
        state.SetIterationTime(seconds[BehindNginx].back());
    }
    const double direct = median(seconds[Direct]);
    state.counters["direct_s"] = direct;
    state.counters["nginx_s"] = median(seconds[BehindNginx]);
    state.counters["tls_s"] = median(seconds[BehindTls]);
    state.counters["nginx_ratio"] = median(seconds[BehindNginx]) / direct;
    state.counters["tls_ratio"] = median(seconds[BehindTls]) / direct;
}

void allWays(benchmark::internal::Benchmark *definition)
{
    definition->Arg(Direct)
        ->Arg(BehindNginx)
        ->Arg(BehindTls)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK(createDocFolder)->Apply(allWays)->Iterations(5);
BENCHMARK(getDoc)->Apply(allWays)->Iterations(5);
BENCHMARK(upload)->Apply(allWays)->Iterations(5);
BENCHMARK(putFiles)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(getDocuments)->Apply(allWays)->Iterations(3);

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
