#include <VellNetwork/NetworkSettings.h>

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
    const QMutexLocker lock(&m_mutex);
    return m_accessToken;
}

void NetworkSettings::setAccessToken(const QString &token)
{
    const QMutexLocker lock(&m_mutex);
    m_accessToken = token;
}
