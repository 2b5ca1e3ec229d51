#pragma once

#include <service/http/RequestHandler.h>
#include <service/http/Router.h>

#include <memory>

namespace service {

struct ServiceContext;

//! \brief Makes the work for a request: who asks, whether the service is to misbehave, which endpoint.
class Dispatcher
{
public:
    explicit Dispatcher(ServiceContext &context);

    //! What HttpServer::Settings::handler asks for; called on several threads at once.
    std::unique_ptr<RequestHandler> handlerFor(HttpRequest &request) const;

    //! The path of a request without what opens a share.
    static QString loggedPath(const HttpRequest &request);

    //! All endpoints.
    const Router &router() const { return m_router; }

private:
    ServiceContext &m_context;
    Router m_router;
};

} // namespace service
