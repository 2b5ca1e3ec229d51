#include <service/api/OriginCheck.h>

#include <service/http/HttpMessages.h>
#include <service/http/Loopback.h>

namespace service {

namespace {

//! Returns the host in "host:port" or "[address]:port".
QString hostName(const QByteArray &host)
{
    if (host.startsWith('['))
        return QString::fromLatin1(host.mid(1, host.indexOf(']') - 1));
    return QString::fromLatin1(host).section(QLatin1Char(':'), 0, 0);
}

} // namespace

void requireLocalOrigin(const HttpRequest &request)
{
    const QByteArray host = request.host.toLower();
    if (!isLoopback(request.clientAddress())) {
        throw HttpError(403,
                        QStringLiteral("While there are no users, the service answers to clients "
                                       "of this machine only."));
    }
    if (!host.isEmpty() && !isLoopback(hostName(host))) {
        throw HttpError(403,
                        QStringLiteral("While there are no users, the service answers to loopback "
                                       "addresses only, not to %1.")
                            .arg(QString::fromLatin1(host.left(60))));
    }
    const QByteArray site = request.header("sec-fetch-site").toLower();
    const bool isOtherSite = site == "cross-site" || site == "same-site";
    const bool isOtherOrigin = request.headers.contains("origin")
        && request.header("origin").toLower() != request.scheme + "://" + host;
    if (isOtherSite || isOtherOrigin) {
        throw HttpError(403,
                        QStringLiteral("While there are no users, the service takes no requests "
                                       "from pages of other sites."));
    }
}

} // namespace service
