#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <vector>

// velldoc as people run it, beside a program that only sends the same requests one after the other. Both are
// processes of their own and work on one service, a process, too, on loopback.

namespace {

constexpr int LongestRunMs = 300'000;
constexpr int Files = 2000;
constexpr int FileBytes = 10 * 1024;
constexpr int Entries = 10'000;

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

//! How long a process took, and what it printed.
struct Run
{
    double firstLineSeconds = 0; //!< from its start to the first line on its standard output
    double seconds = 0; //!< to its end
    QByteArray output;
};

Run run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    Run result;
    const Clock::time_point start = Clock::now();
    process.start(program, arguments);
    while (!process.canReadLine() && process.waitForReadyRead(LongestRunMs)) {}
    result.firstLineSeconds = secondsSince(start);
    const bool hasEnded =
        process.state() == QProcess::NotRunning || process.waitForFinished(LongestRunMs);
    result.seconds = secondsSince(start);
    if (!hasEnded || process.exitCode() != 0)
        qFatal("%s %s failed: %s", qPrintable(program),
               qPrintable(arguments.join(QLatin1Char(' '))),
               process.readAllStandardError().constData());
    result.output = process.readAllStandardOutput();
    return result;
}

//! A service with its log of requests, and the two programs that work on it.
class Site
{
public:
    static Site &instance();

    Run velldoc(const QStringList &arguments);
    Run bare(const QStringList &arguments);

    //! What the service has been asked since the last call, as "VERB PATH STATUS", sorted.
    QStringList takeRequests();

    //! 2,000 files that the service has never seen. \return their folder
    QString newFiles();
    QString newName() { return QStringLiteral("run-%1").arg(++m_lastName); }
    //! A folder with 10,000 entries, by its name on the service.
    QString largeFolder();

private:
    Site();
    ~Site();

    QTemporaryDir m_folder;
    QProcess m_service;
    QString m_url;
    QFile m_log;
    QString m_largeFolder;
    int m_lastName = 0;
};

Site::Site() : m_log(m_folder.filePath(QStringLiteral("requests.log")))
{
    // Nothing of the user's is touched or read.
    qputenv("HOME", QFile::encodeName(m_folder.path()));
    for (const char *const variable :
         {"VELLDOC_CONFIG", "VELLDOC_PROJECT", "VELLDOC_TOKEN", "XDG_CONFIG_HOME"})
        qunsetenv(variable);
    m_service.start(QStringLiteral(VELL_SERVICE),
                    {QStringLiteral("--data"), m_folder.filePath(QStringLiteral("data")),
                     QStringLiteral("--access-log"), m_log.fileName()});
    m_service.waitForReadyRead();
    m_url = QString::fromLatin1(m_service.readLine()).trimmed().section(QLatin1Char(' '), -1);
    if (!m_url.startsWith(QLatin1String("http")) || !m_log.open(QIODevice::ReadOnly))
        qFatal("The service does not start.");
}

Site::~Site()
{
    m_service.terminate();
    m_service.waitForFinished();
}

Site &Site::instance()
{
    static Site site;
    return site;
}

Run Site::velldoc(const QStringList &arguments)
{
    return run(QStringLiteral(VELLDOC), QStringList{QStringLiteral("--url"), m_url} + arguments);
}

Run Site::bare(const QStringList &arguments)
{
    return run(QStringLiteral(VELL_BARE_REQUESTS), QStringList{m_url} + arguments);
}

QStringList Site::takeRequests()
{
    static const QRegularExpression form(
        QStringLiteral("(?:GET|POST|PUT|DELETE) \\S+ \\d+(?= \\d+ \\d+ms$)"),
        QRegularExpression::MultilineOption);
    QStringList requests;
    for (auto it = form.globalMatch(QString::fromUtf8(m_log.readAll())); it.hasNext();)
        requests.append(it.next().captured());
    requests.sort();
    return requests;
}

QString Site::newFiles()
{
    QString folder = m_folder.filePath(newName());
    QDir().mkpath(folder);
    QByteArray content(FileBytes, 'v');
    for (int i = 0; i < Files; ++i) {
        content.replace(0, 32, (folder + QString::number(i)).toUtf8().right(32).leftJustified(32));
        QFile file(folder + QStringLiteral("/file %1.txt").arg(i));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
    }
    return folder;
}

QString Site::largeFolder()
{
    if (m_largeFolder.isEmpty()) {
        m_largeFolder = QStringLiteral("large");
        bare({QStringLiteral("fill"), m_largeFolder, QString::number(Entries)});
    }
    return m_largeFolder;
}

// Both from the start of the process to its end; the bare program's requests are compared with velldoc's.
void putFiles(benchmark::State &state)
{
    Site &site = Site::instance();
    std::vector<double> velldoc;
    std::vector<double> bare;
    for (auto _ : state) {
        site.takeRequests();
        const QString put = QStringLiteral("put");
        velldoc.push_back(
            site.velldoc({put, site.newFiles(), QLatin1Char('/') + site.newName()}).seconds);
        const QStringList requests = site.takeRequests();
        bare.push_back(site.bare({put, site.newFiles(), site.newName()}).seconds);
        if (requests.size() < 2 * Files || site.takeRequests() != requests)
            qFatal("velldoc and the bare program do not send the same requests.");
        state.SetIterationTime(velldoc.back());
    }
    state.counters["velldoc_s"] = median(velldoc);
    state.counters["bare_s"] = median(bare);
    state.counters["ratio"] = median(velldoc) / median(bare);
    state.SetItemsProcessed(state.iterations() * Files);
}

// velldoc from the start of its process to its first line. "request_s" is the one request that answers all
// entries, from the question to the last byte, on a connection that is open: no start of a process, no reading of
// what was answered. "startup_s" is what velldoc needs to say anything at all.
void listFolder(benchmark::State &state)
{
    Site &site = Site::instance();
    const QString folder = site.largeFolder();
    std::vector<double> names;
    std::vector<double> allNames;
    std::vector<double> table;
    std::vector<double> request;
    std::vector<double> startUp;
    for (auto _ : state) {
        const QString ls = QStringLiteral("ls");
        const Run plain = site.velldoc({ls, folder});
        if (plain.output.count('\n') != Entries)
            qFatal("velldoc has listed %d entries.", plain.output.count('\n'));
        names.push_back(plain.firstLineSeconds);
        allNames.push_back(plain.seconds);
        request.push_back(
            QJsonDocument::fromJson(site.bare({QStringLiteral("list"), folder}).output)
                .object()
                .value(QLatin1String("seconds"))
                .toDouble());
        table.push_back(site.velldoc({ls, QStringLiteral("-l"), folder}).firstLineSeconds);
        startUp.push_back(site.velldoc({QStringLiteral("help")}).firstLineSeconds);
        state.SetIterationTime(names.back());
    }
    state.counters["request_s"] = median(request);
    state.counters["startup_s"] = median(startUp);
    state.counters["ls_all_s"] = median(allNames);
    state.counters["ls_ratio"] = median(names) / median(request);
    state.counters["ls_l_s"] = median(table);
    state.counters["ls_l_ratio"] = median(table) / median(request);
}

} // namespace

BENCHMARK(putFiles)->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(listFolder)->Iterations(15)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
