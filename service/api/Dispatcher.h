#pragma once

#include <service/http/HttpServer.h>
#include <service/http/Router.h>

namespace service {

struct ServiceContext;
struct User;

//! \brief From a request to its answer: who asks, whether the service is to misbehave, which endpoint.
class Dispatcher
{
public:
    explicit Dispatcher(ServiceContext &context);

    //! What HttpServer::Handler asks for; called on several threads at once.
    HttpResponse handle(HttpRequest &request, ReplyControl &reply, ServedRequest &served);

private:
    HttpResponse answer(HttpRequest &request, ReplyControl &reply, ServedRequest &served);
    User authenticate(const HttpRequest &request);

    ServiceContext &m_context;
    Router m_router;
};

} // namespace service
