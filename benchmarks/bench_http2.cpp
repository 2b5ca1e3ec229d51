#include "CurlClient.h"
#include "DelayLine.h"

#include <servers/Nginx.h>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QUrl>

#include <benchmark/benchmark.h>
#include <memory>

// The same requests by libcurl with HTTP/1.1 and with HTTP/2, one after the other on one connection over TLS: to nginx and
// to HAProxy as they are configured by default, near (loopback) and far (a round trip of 20 ms). This is why the
// transport does not use HTTP/2.

namespace {

constexpr int OneWayMs = 10;
constexpr int Chunks = 8;
constexpr int ChunkBytes = 4 * 1024 * 1024;
constexpr int SmallRequests = 20;

enum Gateway { ByNginx, ByHaproxy };

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s: %s", qPrintable(path), qPrintable(file.errorString()));
    return file.readAll();
}

//! The discarding server behind nginx and HAProxy, both with HTTP/2, and the long ways to them.
class Site
{
public:
    static Site &instance()
    {
        static Site site;
        return site;
    }

    QString url(Gateway gateway, bool isFar) const
    {
        const quint16 port = gateway == ByNginx ? m_nginx.port() : m_haproxyPort;
        const quint16 farPort = m_lines[gateway]->port();
        return QStringLiteral("https://127.0.0.1:%1/").arg(isFar ? farPort : port);
    }
    QString authority() const { return m_certificates.authority(); }

private:
    Site();
    ~Site()
    {
        m_server.kill();
        m_server.waitForFinished();
    }

    Certificates m_certificates;
    QProcess m_server;
    Nginx m_nginx;
    ServerProgram m_haproxy;
    quint16 m_haproxyPort = ServerProgram::freePort();
    std::unique_ptr<DelayLine> m_lines[2];
};

Site::Site()
{
    m_server.start(QStringLiteral(VELL_UPLOAD_SERVER), {});
    m_server.waitForReadyRead();
    const QUrl url(QString::fromLatin1(m_server.readLine()).trimmed());
    Nginx::Settings settings;
    settings.servicePort = quint16(url.port());
    settings.certificate = m_certificates.forServer(QStringLiteral("IP:127.0.0.1"));
    settings.isHttp2 = true;
    settings.http = "client_max_body_size 0;";
    bool isStarted = m_nginx.start(settings);

    const QString both = m_haproxy.write(QStringLiteral("both.pem"),
                                         contentOf(settings.certificate.certificate)
                                             + contentOf(settings.certificate.key));
    const QString configuration = m_haproxy.write(
        QStringLiteral("haproxy.cfg"),
        "defaults\n  mode http\n  timeout connect 5s\n  timeout client 60s\n  timeout server 60s\n"
        "frontend f\n  bind 127.0.0.1:"
            + QByteArray::number(m_haproxyPort) + " ssl crt " + both.toUtf8()
            + " alpn h2,http/1.1\n  default_backend b\nbackend b\n  server s 127.0.0.1:"
            + QByteArray::number(url.port()) + "\n");
    isStarted = m_haproxy.start(QStringLiteral("/usr/sbin/haproxy"),
                                {QStringLiteral("-f"), configuration}, m_haproxyPort)
        && isStarted;
    if (!isStarted)
        qFatal("The servers do not start.");
    m_lines[ByNginx] = std::make_unique<DelayLine>(m_nginx.port(), OneWayMs);
    m_lines[ByHaproxy] = std::make_unique<DelayLine>(m_haproxyPort, OneWayMs);
}

void send(benchmark::State &state, const QByteArray &body, int count)
{
    const Site &site = Site::instance();
    const auto gateway = static_cast<Gateway>(state.range(0));
    const bool isFar = state.range(1) != 0;
    const bool isHttp2 = state.range(2) != 0;
    state.SetLabel(std::string(gateway == ByNginx ? "nginx" : "HAProxy")
                   + (isFar ? ", 20 ms away" : ", near") + (isHttp2 ? ", HTTP/2" : ", HTTP/1.1"));
    CurlClient client(site.url(gateway, isFar), site.authority(),
                      isHttp2 ? CurlClient::Version::Http2 : CurlClient::Version::Http11);
    client.post("base-service/largefiles", "text/plain", "x"); // opens the connection
    for (auto _ : state) {
        for (int i = 0; i < count; ++i)
            client.post("base-service/largefiles", "text/plain", body);
    }
    state.SetBytesProcessed(state.iterations() * count * body.size());
}

void chunks(benchmark::State &state)
{
    send(state, QByteArray(ChunkBytes, 'c'), Chunks);
}

void smallRequests(benchmark::State &state)
{
    send(state, "{}", SmallRequests);
}

void allWays(benchmark::internal::Benchmark *definition)
{
    definition->ArgsProduct({{ByNginx, ByHaproxy}, {0, 1}, {0, 1}})
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1)
        ->Repetitions(3)
        ->ReportAggregatesOnly(true);
}

} // namespace

BENCHMARK(chunks)->Apply(allWays);
BENCHMARK(smallRequests)->Apply(allWays);

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
