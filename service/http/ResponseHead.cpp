#include <service/http/ResponseHead.h>

#include <service/http/HttpMessages.h>

#include <boost/beast/http/status.hpp>

#include <array>
#include <ctime>

namespace service {

namespace {

constexpr std::chrono::seconds KeepAliveMargin{5};

QByteArray dateNow()
{
    thread_local std::time_t known = 0;
    thread_local QByteArray text;
    const std::time_t now = std::time(nullptr);
    if (now != known) {
        std::tm parts = {};
        gmtime_r(&now, &parts);
        std::array<char, 40> buffer{};
        const size_t size =
            std::strftime(buffer.data(), buffer.size(), "%a, %d %b %Y %H:%M:%S GMT", &parts);
        text = QByteArray(buffer.data(), static_cast<int>(size));
        known = now;
    }
    return text;
}

} // namespace

QByteArray responseHead(const HttpResponse &response,
                        std::optional<std::chrono::milliseconds> keepAlive)
{
    const auto reason = boost::beast::http::obsolete_reason(
        boost::beast::http::int_to_status(static_cast<unsigned>(response.status)));
    QByteArray head;
    head.reserve(512);
    head += "HTTP/1.1 " + QByteArray::number(response.status) + ' ';
    head.append(reason.data(), static_cast<int>(reason.size()));
    head += "\r\nDate: " + dateNow() + "\r\nX-Content-Type-Options: nosniff\r\n";
    for (const auto &header : response.headers)
        head += header.first + ": " + header.second + "\r\n";
    if (response.status != 304) {
        head += "Content-Type: " + response.contentType
            + "\r\nContent-Length: " + QByteArray::number(response.bodyLength()) + "\r\n";
    }
    if (!keepAlive)
        return head + "Connection: close\r\n\r\n";
    head += "Connection: keep-alive\r\n";
    // A little less, for requests that are on their way when the time expires.
    const auto announced =
        std::chrono::duration_cast<std::chrono::seconds>(*keepAlive) - KeepAliveMargin;
    if (announced.count() > 0)
        head += "Keep-Alive: timeout=" + QByteArray::number(qint64(announced.count())) + "\r\n";
    return head + "\r\n";
}

} // namespace service
