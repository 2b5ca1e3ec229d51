#include <service/http/RequestHead.h>

#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/parser.hpp>

#include <algorithm>

namespace service {

namespace {

namespace http = boost::beast::http;
using Parser = http::request_parser<http::empty_body>;

constexpr int MaxLengthDigits = 18; // fits qint64

QByteArray bytesOf(boost::beast::string_view text)
{
    return {text.data(), static_cast<int>(text.size())};
}

HttpError invalid(const char *what)
{
    return {400, QStringLiteral("The request is not valid HTTP: %1.").arg(QLatin1String(what))};
}

//! Refuses what the parser accepts but other programs on the way may interpret differently.
void checkLines(std::string_view head)
{
    qsizetype fields = -1; // the first line is not a header field
    for (size_t start = 0; start + 2 < head.size(); ++fields) {
        const size_t end = head.find("\r\n", start);
        const std::string_view line = head.substr(start, end - start);
        if (line.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos)
            throw invalid("a line does not end with CR LF");
        if (fields >= 0 && (line.front() == ' ' || line.front() == '\t'))
            throw invalid("a header is continued on a second line");
        start = end + 2;
    }
    if (fields > HeadLimits::Fields) {
        throw HttpError(
            431, QStringLiteral("The request has more than %1 headers.").arg(HeadLimits::Fields));
    }
}

//! Headers that must occur only once, because programs may use the first or the last of them.
bool isSingle(const QByteArray &name)
{
    static const QList<QByteArray> names{"authorization", "content-length", "content-type",
                                         "expect",        "host",           "if-range",
                                         "origin",        "range"};
    return names.contains(name);
}

void readHeaders(const Parser::value_type &message, HttpRequest &request)
{
    for (const auto &field : message) {
        const QByteArray name = bytesOf(field.name_string()).toLower();
        const QByteArray value = bytesOf(field.value());
        const auto known = request.headers.find(name);
        if (known == request.headers.end())
            request.headers.insert(name, value);
        else if (isSingle(name))
            throw invalid("a header that may occur once occurs twice");
        else
            *known += ", " + value;
    }
}

bool isHost(const QByteArray &host)
{
    return !host.isEmpty() && std::all_of(host.begin(), host.end(), [](char c) {
        return c > ' ' && c < 0x7f
            && std::string_view("/?#@\\\"<>,").find(c) == std::string_view::npos;
    });
}

void requireHost(const Parser::value_type &message, const HttpRequest &request)
{
    const bool hasHost = request.headers.contains("host");
    if (hasHost ? !isHost(request.header("host")) : message.version() >= 11)
        throw invalid("the Host is missing or wrong");
}

//! Removes the host from an absolute address, as proxies get it; it takes precedence over the Host header.
void readTarget(const Parser::value_type &message, HttpRequest &request)
{
    request.target = bytesOf(message.target());
    if (request.target.size() > HeadLimits::TargetBytes)
        throw HttpError(414, QStringLiteral("The address of the request is too long."));
    const bool isText = std::all_of(request.target.begin(), request.target.end(),
                                    [](char c) { return c > ' ' && c < 0x7f && c != '#'; });
    if (!isText)
        throw invalid("the address is not percent-encoded");
    const QByteArray scheme = QByteArrayLiteral("http://");
    if (request.target.left(scheme.size()).toLower() == scheme) {
        const QByteArray rest = request.target.mid(scheme.size());
        const int path = rest.indexOf('/');
        request.headers["host"] = path < 0 ? rest : rest.left(path);
        request.target = path < 0 ? QByteArrayLiteral("/") : rest.mid(path);
    }
    if (!request.target.startsWith('/') && request.target != "*")
        throw invalid("the address is no path");
}

void readBodyLength(HttpRequest &request, qint64 maxBodyBytes)
{
    if (request.headers.contains("transfer-encoding"))
        throw HttpError(411, QStringLiteral("Send the body with a Content-Length, not in pieces."));
    const auto found = request.headers.constFind("content-length");
    if (found == request.headers.constEnd())
        return;
    const QByteArray &text = *found;
    if (text.isEmpty()
        || !std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }))
        throw invalid("the Content-Length is not a number");
    request.bodyLength = text.size() > MaxLengthDigits ? maxBodyBytes + 1 : text.toLongLong();
    if (request.bodyLength > maxBodyBytes) {
        throw HttpError(
            413, QStringLiteral("The body is larger than the %1 bytes allowed.").arg(maxBodyBytes));
    }
}

} // namespace

RequestHead parseRequestHead(std::string_view head, qint64 maxBodyBytes)
{
    checkLines(head);
    Parser parser;
    parser.header_limit(static_cast<std::uint32_t>(head.size()) + 1);
    parser.body_limit(boost::none); // the service has its own limit
    boost::beast::error_code error;
    parser.put(boost::asio::const_buffer(head.data(), head.size()), error);
    if (error && error != http::error::need_more)
        throw invalid(error.message().c_str());
    if (!parser.is_header_done())
        throw invalid("the head is incomplete");

    const Parser::value_type &message = parser.get();
    RequestHead result;
    HttpRequest &request = result.request;
    request.method = bytesOf(message.method_string());
    request.isHead = request.method == "HEAD";
    if (request.isHead)
        request.method = QByteArrayLiteral("GET");
    readHeaders(message, request);
    requireHost(message, request);
    readTarget(message, request);
    requireHost(message, request); // for an absolute address
    readBodyLength(request, maxBodyBytes);
    const QByteArray expected = request.header("expect").toLower();
    if (!expected.isEmpty() && expected != "100-continue")
        throw HttpError(417, QStringLiteral("The service knows no expectation but 100-continue."));
    result.expectsContinue =
        !expected.isEmpty() && message.version() >= 11 && request.bodyLength > 0;
    result.keepsAlive = message.keep_alive();
    parseTarget(request);
    return result;
}

HttpError headTooLong(std::string_view start)
{
    if (start.find("\r\n") == std::string_view::npos)
        return {414, QStringLiteral("The address of the request is too long.")};
    return {431, QStringLiteral("The headers of the request are too long.")};
}

} // namespace service
