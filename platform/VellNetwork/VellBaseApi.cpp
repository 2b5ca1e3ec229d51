#include <VellNetwork/VellBaseApi.h>

#include <VellNetwork/RequestContext.h>

#include <QMutexLocker>

VellBaseApi &VellBaseApi::GetInstance()
{
    static VellBaseApi instance;
    return instance;
}

QString VellBaseApi::getBaseApi() const
{
    if (const RequestContext *const context = RequestContext::current())
        return context->settings().baseApi;
    const QMutexLocker lock(&m_mutex);
    return m_baseApi;
}

void VellBaseApi::setBaseApi(const QString &baseApi)
{
    const QMutexLocker lock(&m_mutex);
    m_baseApi = baseApi;
    if (!m_baseApi.isEmpty() && !m_baseApi.endsWith(QLatin1Char('/')))
        m_baseApi += QLatin1Char('/');
}
