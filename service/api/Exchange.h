#pragma once

#include <service/api/BodyBuffer.h>
#include <service/http/RequestHandler.h>
#include <service/http/Router.h>

#include <memory>
#include <optional>

struct FaultRule;

namespace service {

class RequestState;
struct ServiceContext;
struct User;

//! \brief Processes one request to the service.
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
    //! Returns a response if the request is not to be processed.
    std::optional<HttpResponse> misbehave(const FaultRule &rule);
    //! Sets the route. \return the user; an empty one for a public route of a service with users
    User findRoute();
    User authenticate();

    ServiceContext &m_context;
    const Router &m_router;
    HttpRequest &m_request;
    const Router::Route *m_route = nullptr;
    std::unique_ptr<RequestState> m_state;
    std::unique_ptr<BodySink> m_sink; //!< uses m_state, and must be destroyed before it
    BodyBuffer m_body; //!< for routes whose handler needs the whole body
};

} // namespace service
