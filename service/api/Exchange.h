#pragma once

#include <service/api/BodyBuffer.h>
#include <service/http/RequestHandler.h>
#include <service/http/Router.h>

#include <memory>
#include <optional>

struct FaultRule;

namespace service {

class Session;
struct ServiceContext;
struct User;

//! \brief The work for one request to the service.
class Exchange final : public RequestHandler
{
public:
    //! \a request outlives the object.
    Exchange(ServiceContext &context, const Router &router, HttpRequest &request);
    ~Exchange() override;
    Exchange(const Exchange &) = delete;
    Exchange &operator=(const Exchange &) = delete;

    std::optional<HttpResponse> begin() override;
    void takeBody(const char *data, qint64 length) override;
    HttpResponse finish() override;
    HttpResponse failure(const std::exception_ptr &error) override;

private:
    //! A response means that no work is to be done.
    std::optional<HttpResponse> misbehave(const FaultRule &rule);
    User authenticate();

    ServiceContext &m_context;
    const Router &m_router;
    HttpRequest &m_request;
    const Router::Route *m_route = nullptr;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<BodySink> m_sink; //!< uses the session, so it goes first
    BodyBuffer m_body; //!< of a route that takes it whole
};

} // namespace service
