#pragma once

#include <service/http/RequestHandler.h>
#include <service/http/Router.h>

#include <memory>

namespace service {

struct ServiceContext;

//! \brief Creates the handler of a request: authentication, faults, and the endpoint.
class Dispatcher
{
public:
    explicit Dispatcher(ServiceContext &context);

    //! For HttpServer::Settings::handler; called on several threads at once.
    std::unique_ptr<RequestHandler> handlerFor(HttpRequest &request) const;

    //! Returns the path of a request without the code of a share.
    static QString loggedPath(const HttpRequest &request);

    //! Returns the routes of all endpoints.
    const Router &router() const { return m_router; }

private:
    ServiceContext &m_context;
    Router m_router;
};

} // namespace service
