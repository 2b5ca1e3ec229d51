#include <VellNetwork/NetworkSettings.h>

#include <VellNetwork/RequestContext.h>

#include <QMutexLocker>

NetworkSettings &NetworkSettings::instance()
{
    static NetworkSettings settings;
    return settings;
}

std::chrono::milliseconds NetworkSettings::stallTimeout() const
{
    const QMutexLocker lock(&m_mutex);
    return m_stallTimeout;
}

void NetworkSettings::setStallTimeout(std::chrono::milliseconds timeout)
{
    const QMutexLocker lock(&m_mutex);
    m_stallTimeout = timeout;
}

QString NetworkSettings::accessToken() const
{
    if (const RequestContext *const context = RequestContext::current())
        return context->settings().accessToken;
    const QMutexLocker lock(&m_mutex);
    return m_accessToken;
}

void NetworkSettings::setAccessToken(const QString &token)
{
    const QMutexLocker lock(&m_mutex);
    m_accessToken = token;
}

QString NetworkSettings::caCertificates() const
{
    if (const RequestContext *const context = RequestContext::current())
        return context->settings().caCertificates;
    const QMutexLocker lock(&m_mutex);
    return m_caCertificates;
}

void NetworkSettings::setCaCertificates(const QString &path)
{
    const QMutexLocker lock(&m_mutex);
    m_caCertificates = path;
}

ClientCertificate NetworkSettings::clientCertificate() const
{
    if (const RequestContext *const context = RequestContext::current())
        return context->settings().clientCertificate;
    const QMutexLocker lock(&m_mutex);
    return m_clientCertificate;
}

void NetworkSettings::setClientCertificate(const ClientCertificate &certificate)
{
    const QMutexLocker lock(&m_mutex);
    m_clientCertificate = certificate;
}

QString NetworkSettings::proxy() const
{
    if (const RequestContext *const context = RequestContext::current())
        return context->settings().proxy;
    const QMutexLocker lock(&m_mutex);
    return m_proxy;
}

void NetworkSettings::setProxy(const QString &address)
{
    const QMutexLocker lock(&m_mutex);
    m_proxy = address;
}

QString NetworkSettings::noProxy()
{
    return QStringLiteral("none");
}
