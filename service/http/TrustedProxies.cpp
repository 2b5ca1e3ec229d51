#include <service/http/TrustedProxies.h>

#include <service/http/HttpMessages.h>

#include <QRegularExpression>

#include <boost/asio/ip/address.hpp>

#include <algorithm>
#include <optional>

namespace service {

namespace {

using boost::asio::ip::address_v6;

constexpr int AddressBits = 128;
constexpr int PrefixOfV4 = 96;

std::optional<address_v6> parseAddress(const QString &text)
{
    boost::system::error_code error;
    const auto address = boost::asio::ip::make_address(text.toStdString(), error);
    if (error)
        return std::nullopt;
    return address.is_v6()
        ? address.to_v6()
        : boost::asio::ip::make_address_v6(boost::asio::ip::v4_mapped, address.to_v4());
}

bool isWhole(const char *pattern, const QByteArray &text)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(QLatin1String(pattern)))
        .match(QString::fromLatin1(text))
        .hasMatch();
}

QList<QByteArray> splitOutsideQuotes(const QByteArray &text, char separator)
{
    QList<QByteArray> pieces{QByteArray()};
    bool isQuoted = false;
    for (const char c : text) {
        if (c == '"')
            isQuoted = !isQuoted;
        if (c == separator && !isQuoted)
            pieces.append(QByteArray());
        else
            pieces.last() += c;
    }
    for (QByteArray &piece : pieces)
        piece = piece.trimmed();
    return pieces;
}

//! The value of a parameter of one element of `Forwarded`; empty if there is none.
QByteArray parameter(const QByteArray &element, const QByteArray &name)
{
    const QList<QByteArray> pairs = splitOutsideQuotes(element, ';');
    for (const QByteArray &pair : pairs) {
        const int equals = pair.indexOf('=');
        if (pair.left(equals).trimmed().toLower() != name)
            continue;
        const QByteArray value = pair.mid(equals + 1).trimmed();
        return value.startsWith('"') && value.endsWith('"') ? value.mid(1, value.size() - 2)
                                                            : value;
    }
    return {};
}

void setScheme(HttpRequest &request, const QByteArray &scheme)
{
    if (scheme.toLower() == "http" || scheme.toLower() == "https")
        request.scheme = scheme.toLower();
}

void setHost(HttpRequest &request, const QByteArray &host)
{
    if (isWhole("[A-Za-z0-9.:\\[\\]_-]{1,255}", host))
        request.host = host;
}

void setPrefix(HttpRequest &request, QByteArray prefix)
{
    while (prefix.endsWith('/'))
        prefix.chop(1);
    if (isWhole("(/[A-Za-z0-9._~-]+){1,20}", prefix))
        request.prefix = QString::fromLatin1(prefix);
}

//! The value that the proxy \a steps back has added; some proxies keep one value only.
QByteArray valueAt(const QByteArray &list, int steps)
{
    const QList<QByteArray> values = splitOutsideQuotes(list, ',');
    return values.at(std::max(0, values.size() - std::max(steps, 1)));
}

} // namespace

bool TrustedProxies::add(const QString &text)
{
    const QString address = text.section(QLatin1Char('/'), 0, 0);
    const auto parsed = parseAddress(address);
    if (!parsed)
        return false;
    const bool isV4 = !address.contains(QLatin1Char(':'));
    Network network{parsed->to_bytes(), AddressBits};
    if (text.contains(QLatin1Char('/'))) {
        bool isNumber = false;
        const int bits = text.section(QLatin1Char('/'), 1).toInt(&isNumber);
        network.bits = isV4 ? bits + PrefixOfV4 : bits;
        if (!isNumber || bits < 0 || network.bits > AddressBits)
            return false;
    }
    m_networks.push_back(network);
    return true;
}

bool TrustedProxies::isTrusted(const QString &address) const
{
    const auto parsed = parseAddress(address);
    if (!parsed)
        return false;
    const auto bytes = parsed->to_bytes();
    return std::any_of(m_networks.begin(), m_networks.end(), [&](const Network &network) {
        for (int bit = 0; bit < network.bits; ++bit) {
            const auto index = static_cast<size_t>(bit / 8);
            if (((bytes.at(index) ^ network.bytes.at(index)) & (0x80 >> (bit % 8))) != 0)
                return false;
        }
        return true;
    });
}

void TrustedProxies::apply(HttpRequest &request) const
{
    request.host = request.header("host");
    const bool isForwarded = request.headers.contains("forwarded");
    if (!isTrusted(request.clientAddress())) {
        request.isForwardedByOthers = isForwarded || request.headers.contains("x-forwarded-for")
            || request.headers.contains("via");
        return;
    }
    if (isForwarded)
        applyForwarded(request);
    else
        applyOlderHeaders(request);
    setPrefix(request, request.header("x-forwarded-prefix"));
}

void TrustedProxies::applyForwarded(HttpRequest &request) const
{
    const QList<QByteArray> elements = splitOutsideQuotes(request.header("forwarded"), ',');
    QList<QByteArray> names;
    for (const QByteArray &element : elements)
        names.append(parameter(element, "for"));
    int steps = 0;
    request.client = clientIn(names, request.client, &steps);
    const QByteArray element = elements.at(elements.size() - std::max(steps, 1));
    setScheme(request, parameter(element, "proto"));
    setHost(request, parameter(element, "host"));
}

void TrustedProxies::applyOlderHeaders(HttpRequest &request) const
{
    int steps = 0;
    if (request.headers.contains("x-forwarded-for")) {
        request.client = clientIn(splitOutsideQuotes(request.header("x-forwarded-for"), ','),
                                  request.client, &steps);
    }
    setScheme(request, valueAt(request.header("x-forwarded-proto"), steps));
    setHost(request, valueAt(request.header("x-forwarded-host"), steps));
}

QString TrustedProxies::clientIn(const QList<QByteArray> &names, const QString &peer,
                                 int *steps) const
{
    HttpRequest current;
    current.client = peer;
    while (*steps < names.size() && isTrusted(current.clientAddress())) {
        ++*steps;
        current.client = QString::fromLatin1(names.at(names.size() - *steps));
        if (!parseAddress(current.clientAddress()))
            current.client = QStringLiteral("unknown"); // a name that a proxy has made up
    }
    return current.client;
}

} // namespace service
