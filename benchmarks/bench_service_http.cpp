#include "HttpLoad.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <memory>
#include <sys/socket.h>
#include <vector>

// What a client sees of one or several builds of the service, in turns so that they meet the same machine:
//   bench_service_http [--rounds N] VELL_SERVICE...
// Requests in a second, the 99th percentile of their times and the service's processor time for each at 1, 8 and 64
// connections; 1 GiB up and down. Each figure is the median of the rounds. On a busy machine compare processor times.

namespace {

using Clock = std::chrono::steady_clock;

constexpr qint64 LargeBytes = Q_INT64_C(1024) * 1024 * 1024;
constexpr std::chrono::milliseconds LoadTime{1500};

struct Load
{
    double perSecond = 0;
    double p99Ms = 0;
    qint64 requests = 0;
};

Load measureLoad(quint16 port, int connections, const QByteArray &request)
{
    HttpLoad load = runLoad(port, connections, LoadTime, [&request] { return request; });
    if (load.failures > 0)
        qFatal("unexpected: %s", load.failure.left(200).constData());
    std::sort(load.timesMs.begin(), load.timesMs.end());
    return {static_cast<double>(load.timesMs.size()) / load.seconds,
            load.timesMs.at(load.timesMs.size() * 99 / 100),
            static_cast<qint64>(load.timesMs.size())};
}

//! A service on a data folder of its own.
class Service
{
public:
    explicit Service(const QString &program)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(program,
                        {QStringLiteral("--data"), m_folder.filePath(QStringLiteral("d"))});
        if (!m_process.waitForReadyRead(20000))
            qFatal("%s does not start", qUtf8Printable(program));
        const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
        m_port = static_cast<quint16>(QUrl(line.section(QLatin1Char(' '), -1)).port(0));
        for (int i = 0; i < 50; ++i)
            addFolder(i);
    }
    ~Service()
    {
        m_process.terminate();
        m_process.waitForFinished(20000);
    }

    quint16 port() const { return m_port; }

    //! The seconds of processor time that the process has used.
    double processorTime() const
    {
        clockid_t clock = 0;
        timespec time = {};
        ::clock_getcpuclockid(static_cast<pid_t>(m_process.processId()), &clock);
        ::clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    }

    //! Sends 1 GiB that depends on \a seed. \return MiB in a second; \a id gets what the service calls it
    double upload(int seed, QByteArray *id)
    {
        const QByteArray head = "--B\r\nContent-Disposition: form-data; name=\"file\"; "
                                "filename=\"f\"\r\n\r\n";
        const QByteArray tail = "\r\n--B--\r\n";
        QByteArray block(1024 * 1024, 'a');
        HttpCaller caller(m_port);
        const Clock::time_point begin = Clock::now();
        caller.ask("POST /base-service/files HTTP/1.1\r\nHost: localhost\r\nContent-Type: "
                   "multipart/form-data; boundary=B\r\nContent-Length: "
                   + QByteArray::number(LargeBytes + head.size() + tail.size()) + "\r\n\r\n"
                   + head);
        for (qint64 sent = 0; sent < LargeBytes; sent += block.size()) {
            const QByteArray mark = QByteArray::number(sent + seed);
            std::copy(mark.begin(), mark.end(), block.begin());
            caller.sendAll(block.constData(), block.size());
        }
        caller.sendAll(tail.constData(), tail.size());
        const QByteArray answer = caller.answer();
        const std::chrono::duration<double> time = Clock::now() - begin;
        const int start = answer.indexOf("\"files\":[\"") + 10;
        *id = answer.mid(start, answer.indexOf('"', start) - start);
        return 1024 / time.count();
    }

    double download(const QByteArray &id) const
    {
        const HttpCaller caller(m_port);
        const Clock::time_point begin = Clock::now();
        const QByteArray request =
            "GET /base-service/files/" + id + " HTTP/1.1\r\nHost: localhost\r\n\r\n";
        caller.sendAll(request.constData(), request.size());
        std::vector<char> block(1024 * 1024);
        for (qint64 read = 0; read < LargeBytes;) {
            const ssize_t count = ::recv(caller.socket(), block.data(), block.size(), 0);
            if (count <= 0)
                qFatal("the download broke off");
            read += count;
        }
        const std::chrono::duration<double> time = Clock::now() - begin;
        return 1024 / time.count();
    }

private:
    void addFolder(int number)
    {
        HttpCaller caller(m_port);
        const QByteArray body =
            "{\"type\":\"dir\",\"name\":\"folder " + QByteArray::number(number) + "\"}";
        caller.ask("POST /document-service/projects/p/documents HTTP/1.1\r\nHost: localhost\r\n"
                   "Content-Type: application/json\r\nContent-Length: "
                   + QByteArray::number(body.size()) + "\r\n\r\n" + body);
        caller.answer();
    }

    QTemporaryDir m_folder;
    QProcess m_process;
    quint16 m_port = 0;
};

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

//! Who comes first in a round has another machine than who comes next, so they take turns at that, too.
std::vector<size_t> order(size_t count, int round)
{
    std::vector<size_t> numbers;
    for (size_t i = 0; i < count; ++i)
        numbers.push_back((i + size_t(round)) % count);
    return numbers;
}

void compareLoad(const std::vector<std::unique_ptr<Service>> &services, int rounds,
                 const char *title, const QByteArray &target, int connections)
{
    const QByteArray request = "GET " + target + " HTTP/1.1\r\nHost: localhost\r\n\r\n";
    std::vector<std::vector<double>> rates(services.size());
    std::vector<std::vector<double>> tails(services.size());
    std::vector<std::vector<double>> costs(services.size());
    for (int round = 0; round < rounds; ++round) {
        for (const size_t i : order(services.size(), round)) {
            const double before = services[i]->processorTime();
            const Load load = measureLoad(services[i]->port(), connections, request);
            const double used = services[i]->processorTime() - before;
            rates[i].push_back(load.perSecond);
            tails[i].push_back(load.p99Ms);
            costs[i].push_back(1e6 * used / static_cast<double>(load.requests));
        }
    }
    std::printf("%-14s %3d connections:", title, connections);
    for (size_t i = 0; i < services.size(); ++i) {
        std::printf("  %8.0f/s p99 %7.2f ms, %6.1f us", median(rates[i]), median(tails[i]),
                    median(costs[i]));
    }
    std::printf("\n");
    std::fflush(stdout);
}

void compareTransfers(const std::vector<std::unique_ptr<Service>> &services, int rounds)
{
    using Figures = std::vector<std::vector<double>>;
    Figures up(services.size());
    Figures upCosts(services.size());
    Figures down(services.size());
    Figures downCosts(services.size());
    for (int round = 0; round < rounds; ++round) {
        for (const size_t i : order(services.size(), round)) {
            const double start = services[i]->processorTime();
            QByteArray id;
            up[i].push_back(services[i]->upload(round, &id));
            const double between = services[i]->processorTime();
            down[i].push_back(services[i]->download(id));
            upCosts[i].push_back(between - start);
            downCosts[i].push_back(services[i]->processorTime() - between);
        }
    }
    const auto print = [](const char *title, const Figures &rates, const Figures &costs) {
        std::printf("%s", title);
        for (size_t i = 0; i < rates.size(); ++i)
            std::printf("  %8.0f MiB/s, %5.2f s", median(rates[i]), median(costs[i]));
        std::printf("\n");
    };
    print("1 GiB up:  ", up, upCosts);
    print("1 GiB down:", down, downCosts);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QStringList programs = QCoreApplication::arguments().mid(1);
    int rounds = 5;
    if (programs.value(0) == QLatin1String("--rounds")) {
        rounds = std::max(1, programs.value(1).toInt());
        programs = programs.mid(2);
    }
    std::vector<std::unique_ptr<Service>> services;
    for (const QString &program : qAsConst(programs))
        services.push_back(std::make_unique<Service>(program));
    if (services.empty()) {
        std::fprintf(stderr, "bench_service_http [--rounds N] VELL_SERVICE...\n");
        return 2;
    }
    for (const int connections : {1, 8, 64})
        compareLoad(services, rounds, "who asks", "/base-service/me", connections);
    for (const int connections : {1, 8, 64})
        compareLoad(services, rounds, "list of 50", "/document-service/projects/p/documents",
                    connections);
    compareTransfers(services, rounds);
    return 0;
}
