#include "RedirectRule.h"

namespace {

constexpr int SeeOther = 303;
constexpr int TemporaryRedirect = 307;
constexpr int PermanentRedirect = 308;

bool isSameServer(const QUrl &a, const QUrl &b)
{
    const auto port = [](const QUrl &url) {
        return url.port(url.scheme() == QLatin1String("https") ? 443 : 80);
    };
    return a.host() == b.host() && port(a) == port(b);
}

} // namespace

bool RedirectRule::isRedirect(int status)
{
    return (status >= 301 && status <= SeeOther) || status == TemporaryRedirect
        || status == PermanentRedirect;
}

QByteArray RedirectRule::nextMethod(int status, const QByteArray &method)
{
    const bool isKept =
        status == TemporaryRedirect || status == PermanentRedirect || method == "HEAD";
    return isKept ? method : QByteArrayLiteral("GET");
}

QString RedirectRule::refusal(int status, const QByteArray &method, const QUrl &from,
                              const QUrl &to, bool hasToken)
{
    if (from.scheme() == QLatin1String("https") && to.scheme() != QLatin1String("https"))
        return tr("The service redirected to an address that is not encrypted");
    if (hasToken && !isSameServer(from, to))
        return tr(
            "The service redirected to another server, which must not receive the access token");
    // A 303 means that the change has been made, and has the address of its result.
    if (nextMethod(status, method) != method && status != SeeOther)
        return tr("The service redirected a change, which cannot be repeated at another address");
    return {};
}
