#include "HttpLoad.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>
#include <ctime>

// Sends the requests of a file again and again and prints what it has seen as JSON:
//   http_load PORT CONNECTIONS SECONDS FILE
// In the file each request follows a line with its number of bytes.

namespace {

std::vector<QByteArray> readRequests(const char *name)
{
    QFile file(QString::fromLocal8Bit(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", name);
    std::vector<QByteArray> requests;
    while (!file.atEnd())
        requests.push_back(file.read(file.readLine().trimmed().toInt()));
    if (requests.empty())
        qFatal("%s has no requests", name);
    return requests;
}

double quantile(const std::vector<double> &sorted, double part)
{
    if (sorted.empty())
        return 0;
    return sorted.at(static_cast<size_t>(static_cast<double>(sorted.size() - 1) * part));
}

QJsonObject figuresOf(const HttpLoad &load, bool ofChanges)
{
    std::vector<double> times;
    for (size_t i = 0; i < load.timesMs.size(); ++i) {
        if (load.isChange.at(i) == ofChanges)
            times.push_back(load.timesMs.at(i));
    }
    std::sort(times.begin(), times.end());
    return {{QStringLiteral("per_second"), static_cast<double>(times.size()) / load.seconds},
            {QStringLiteral("p50_ms"), quantile(times, 0.5)},
            {QStringLiteral("p99_ms"), quantile(times, 0.99)}};
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 5) {
        std::fprintf(stderr, "http_load PORT CONNECTIONS SECONDS FILE\n");
        return 2;
    }
    const std::vector<QByteArray> requests = readRequests(argv[4]);
    const std::clock_t before = std::clock();
    size_t next = 0;
    const HttpLoad load = runLoad(
        QByteArray(argv[1]).toUShort(), QByteArray(argv[2]).toInt(),
        std::chrono::milliseconds(static_cast<qint64>(QByteArray(argv[3]).toDouble() * 1000)),
        [&] { return requests[next++ % requests.size()]; });
    const QJsonObject result{{QStringLiteral("seconds"), load.seconds},
                             {QStringLiteral("requests"), static_cast<qint64>(load.timesMs.size())},
                             {QStringLiteral("failures"), load.failures},
                             {QStringLiteral("failure"), QString::fromUtf8(load.failure.left(300))},
                             {QStringLiteral("reads"), figuresOf(load, false)},
                             {QStringLiteral("changes"), figuresOf(load, true)},
                             {QStringLiteral("processor_s"),
                              static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC}};
    std::printf("%s\n", QJsonDocument(result).toJson(QJsonDocument::Compact).constData());
    return 0;
}
