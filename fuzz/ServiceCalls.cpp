#include "ServiceCalls.h"

#include "Fuzzing.h"

#include <service/storage/Statement.h>

#include <QJsonDocument>

using namespace service;

ServiceCalls::ServiceCalls()
    : m_application(m_argumentCount, m_arguments), m_context(m_folder.path(), {}, 0, 1000),
      m_dispatcher(m_context)
{
    m_context.folder.make();
    m_context.database.open();
    m_context.contents.open();
    execute(m_context.database, QStringLiteral("PRAGMA synchronous = OFF"));
}

HttpResponse ServiceCalls::call(const QByteArray &method, const QByteArray &target,
                                const QByteArray &body, const QByteArray &contentType)
{
    HttpRequest request;
    request.method = method;
    request.target = target;
    request.headers = {{"host", "localhost"}, {"content-type", contentType}};
    request.host = "localhost";
    request.client = QStringLiteral("127.0.0.1:1");
    request.bodyLength = body.size();
    parseTarget(request);
    const auto handler = m_dispatcher.handlerFor(request);
    HttpResponse response;
    try {
        const auto early = handler->begin();
        if (!early)
            handler->takeBody(body.constData(), body.size());
        response = early ? *early : handler->finish();
    } catch (...) {
        response = handler->failure(std::current_exception());
    }
    require(response.status >= 200 && response.status < 500, "no failure of the service");
    require(!QJsonDocument::fromJson(response.body).isNull(), "a response in JSON");
    return response;
}

QByteArray ServiceCalls::make(const QByteArray &method, const QByteArray &target,
                              const QByteArray &body)
{
    const HttpResponse response = call(method, target, body);
    require(response.status == 200, "what is made for the test");
    return QJsonDocument::fromJson(response.body)
        .object()
        .value(QStringLiteral("_id"))
        .toString()
        .toLatin1();
}

void ServiceCalls::clear()
{
    execute(m_context.database, QStringLiteral("DELETE FROM document"));
    execute(m_context.database, QStringLiteral("DELETE FROM share"));
}
