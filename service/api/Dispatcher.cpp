#include <service/api/Dispatcher.h>

#include <service/api/Exchange.h>
#include <service/api/Routes.h>
#include <service/api/ServiceContext.h>

namespace service {

Dispatcher::Dispatcher(ServiceContext &context) : m_context(context)
{
    addMonitorRoutes(m_router);
    addAccountRoutes(m_router);
    addFileRoutes(m_router);
    addLargeFileRoutes(m_router);
    addMarkRoutes(m_router);
    addShareRoutes(m_router);
    addHistoryRoutes(m_router);
    addProjectRoutes(m_router);
    addDocumentRoutes(m_router);
}

std::unique_ptr<RequestHandler> Dispatcher::handlerFor(HttpRequest &request) const
{
    const QStringList prefix = m_context.pathPrefix.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    request.isOutside = request.segments.mid(0, prefix.size()) != prefix;
    if (!request.isOutside) {
        request.segments = request.segments.mid(prefix.size());
        if (request.target.startsWith(m_context.pathPrefix.toLatin1()))
            request.target.remove(0, m_context.pathPrefix.size());
    }
    request.prefix += m_context.pathPrefix;
    return std::make_unique<Exchange>(m_context, m_router, request);
}

QString Dispatcher::loggedPath(const HttpRequest &request)
{
    if (request.segments.value(0) == QLatin1String("share"))
        return QStringLiteral("/share/***");
    return request.path();
}

} // namespace service
