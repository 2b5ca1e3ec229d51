#include "ProxyChoice.h"

#include <VellNetwork/NetworkSettings.h>

#include <QHostAddress>
#include <QNetworkProxy>

namespace {

#ifdef Q_OS_WIN
constexpr bool MaySystemTakeLong = true;
#else
constexpr bool MaySystemTakeLong = false; // only environment variables are read
#endif

bool isLoopback(const QString &host)
{
    if (host == QLatin1String("localhost") || host.endsWith(QLatin1String(".localhost")))
        return true;
    return QHostAddress(host).isLoopback();
}

QByteArray addressOf(const QNetworkProxy &proxy)
{
    QUrl address;
    switch (proxy.type()) {
    case QNetworkProxy::HttpProxy:
    case QNetworkProxy::HttpCachingProxy:
        address.setScheme(QStringLiteral("http"));
        break;
    case QNetworkProxy::Socks5Proxy:
        address.setScheme(QStringLiteral("socks5h"));
        break;
    default:
        return {};
    }
    address.setHost(proxy.hostName());
    address.setPort(proxy.port());
    address.setUserName(proxy.user());
    address.setPassword(proxy.password());
    return address.toEncoded();
}

QByteArray systemProxyFor(const QUrl &url)
{
    const QList<QNetworkProxy> proxies =
        QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url));
    return proxies.isEmpty() ? QByteArray() : addressOf(proxies.first());
}

} // namespace

QByteArray proxyFor(const QUrl &url, const QString &setting)
{
    if (setting == NetworkSettings::noProxy() || isLoopback(url.host()))
        return {};
    return setting.isEmpty() ? systemProxyFor(url) : setting.toUtf8();
}

bool isProxyAtHand(const QUrl &url, const QString &setting)
{
    return !MaySystemTakeLong || !setting.isEmpty() || isLoopback(url.host());
}
