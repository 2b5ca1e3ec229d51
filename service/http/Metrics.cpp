#include <service/http/Metrics.h>

#include <service/http/HttpServer.h>

#include <algorithm>

namespace service {

namespace {

// What clients write as a method must not become the name of a series.
constexpr std::array<const char *, 6> MethodNames{"GET", "HEAD", "POST", "PUT", "DELETE", "other"};
constexpr std::array<const char *, 6> ClassNames{"none", "1xx", "2xx", "3xx", "4xx", "5xx"};
constexpr std::array<qint64, 11> BoundsMs{5, 10, 25, 50, 100, 250, 500, 1000, 2500, 5000, 10000};

size_t methodIndex(const QByteArray &method)
{
    const auto *const last = MethodNames.end() - 1;
    const auto *const found =
        std::find_if(MethodNames.begin(), last, [&](const char *name) { return method == name; });
    return static_cast<size_t>(found - MethodNames.begin());
}

void appendHead(QByteArray &text, const char *name, const char *type, const char *help)
{
    text += QByteArray("# HELP ") + name + ' ' + help + "\n# TYPE " + name + ' ' + type + '\n';
}

} // namespace

void Metrics::count(const ServedRequest &request)
{
    const auto statusClass = static_cast<size_t>(std::clamp(request.status / 100, 0, 5));
    ++m_requests.at(methodIndex(request.method)).at(statusClass);
    const auto *const bound =
        std::lower_bound(BoundsMs.begin(), BoundsMs.end(), request.milliseconds);
    ++m_durations.at(static_cast<size_t>(bound - BoundsMs.begin()));
    m_milliseconds += request.milliseconds;
    m_received += request.received;
    m_sent += request.bytes;
}

void Metrics::append(QByteArray &text, const char *name, const char *type, const char *help,
                     qint64 value)
{
    appendHead(text, name, type, help);
    text += QByteArray(name) + ' ' + QByteArray::number(value) + '\n';
}

QByteArray Metrics::text() const
{
    QByteArray text;
    appendRequests(text);
    appendDurations(text);
    append(text, "vell_request_body_bytes_total", "counter", "Bytes of bodies received.",
           m_received);
    append(text, "vell_response_body_bytes_total", "counter", "Bytes of bodies of responses.",
           m_sent);
    append(text, "vell_uploads_total", "counter", "Contents that were uploaded completely.",
           m_uploads);
    append(text, "vell_upload_chunks_total", "counter", "Chunks of uploads that were answered.",
           m_chunks);
    return text;
}

void Metrics::appendRequests(QByteArray &text) const
{
    appendHead(text, "vell_requests_total", "counter",
               "Requests by method and class of the status; none: without a response.");
    for (size_t method = 0; method < Methods; ++method) {
        for (size_t status = 0; status < StatusClasses; ++status) {
            if (const qint64 count = m_requests.at(method).at(status)) {
                text += QByteArray("vell_requests_total{method=\"") + MethodNames.at(method)
                    + "\",status=\"" + ClassNames.at(status) + "\"} " + QByteArray::number(count)
                    + '\n';
            }
        }
    }
}

void Metrics::appendDurations(QByteArray &text) const
{
    const QByteArray name = QByteArrayLiteral("vell_request_duration_seconds");
    appendHead(text, name.constData(), "histogram",
               "Time from the head of a request to its response.");
    qint64 count = 0;
    for (size_t i = 0; i < Bounds; ++i) {
        count += m_durations.at(i);
        const QByteArray bound = i < BoundsMs.size()
            ? QByteArray::number(static_cast<double>(BoundsMs.at(i)) / 1000)
            : QByteArrayLiteral("+Inf");
        text += name + "_bucket{le=\"" + bound + "\"} " + QByteArray::number(count) + '\n';
    }
    text += name + "_sum " + QByteArray::number(static_cast<double>(m_milliseconds) / 1000) + '\n';
    text += name + "_count " + QByteArray::number(count) + '\n';
}

} // namespace service
