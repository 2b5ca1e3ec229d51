#include <service/api/Exchange.h>

#include <service/api/ErrorResponse.h>
#include <service/api/OriginCheck.h>
#include <service/api/RequestState.h>
#include <service/api/ServiceContext.h>
#include <service/records/Users.h>

namespace service {

namespace {

constexpr qint64 MaxBodyBytes =
    Q_INT64_C(1024) * 1024; //!< of a request whose body is not a file's content

} // namespace

Exchange::Exchange(ServiceContext &context, const Router &router, HttpRequest &request)
    : m_context(context), m_router(router), m_request(request), m_body(context)
{}

Exchange::~Exchange() = default;

std::optional<HttpResponse> Exchange::begin()
{
    const DatabaseUse use(m_context.database);
    const std::optional<FaultRule> fault =
        m_context.faults.strike(m_request.method, m_request.path());
    if (fault) {
        if (auto response = misbehave(*fault))
            return response;
    }
    m_route = m_router.findMonitor(m_request);
    const User user = m_route ? User() : findRoute();
    if (m_route->check) {
        RequestState state(
            m_context, user,
            fault); // not m_state: it caches roles, which may change while the body arrives
        m_route->check(m_request, state);
    }
    m_state = std::make_unique<RequestState>(m_context, user, fault);
    if (m_route->uploader) {
        m_sink = m_route->uploader(m_request, *m_state);
    } else if (m_request.bodyLength > MaxBodyBytes) {
        throw HttpError(
            413, QStringLiteral("The body is larger than the %1 bytes allowed.").arg(MaxBodyBytes));
    }
    return std::nullopt;
}

User Exchange::findRoute()
{
    if (!m_context.hasUsers)
        m_context.hasUsers = Users(m_context.database).isTokenNeeded();
    const bool isOpen = !m_context.hasUsers;
    if (isOpen)
        requireLocalOrigin(m_request);
    m_route = &m_router.find(m_request);
    User user;
    if (isOpen)
        user = User::local();
    else if (!m_route->isPublic)
        user = authenticate();
    m_userName = m_route->isPublic ? QString() : user.name;
    return user;
}

std::optional<HttpResponse> Exchange::misbehave(const FaultRule &rule)
{
    m_misbehaviour.isRequested = true;
    switch (rule.kind) {
    case FaultRule::Kind::Status:
        return HttpResponse::error(static_cast<int>(rule.value),
                                   QStringLiteral("The service was told to refuse this request."));
    case FaultRule::Kind::NoRoom:
        return HttpResponse::error(507, QStringLiteral("The service has no room left."));
    case FaultRule::Kind::Stall:
        m_misbehaviour.delayMs = rule.value > 0 ? rule.value : -1;
        m_misbehaviour.isReplyLost = true;
        return HttpResponse();
    case FaultRule::Kind::DropAfter:
        m_misbehaviour.dropAfterBytes = rule.value;
        break;
    case FaultRule::Kind::LoseReply:
        m_misbehaviour.isReplyLost = true;
        break;
    case FaultRule::Kind::Slow:
        m_misbehaviour.delayMs = rule.value;
        break;
    case FaultRule::Kind::CutReply:
        m_misbehaviour.cutAfterBytes = rule.value;
        break;
    case FaultRule::Kind::ForgetChunk:
        break;
    }
    return std::nullopt;
}

User Exchange::authenticate()
{
    const QByteArray header = m_request.header("authorization");
    if (!header.toLower().startsWith("bearer "))
        throw HttpError(401, QStringLiteral("An access token is needed."));
    const std::optional<User> user =
        Users(m_context.database).findByToken(QString::fromUtf8(header.mid(7).trimmed()));
    if (!user)
        throw HttpError(401, QStringLiteral("The access token is unknown."));
    return *user;
}

void Exchange::takeBody(const char *data, qint64 length)
{
    const DatabaseUse use(m_context.database);
    if (m_sink) {
        m_sink->write(data, length);
        return;
    }
    m_body.append(data, length);
}

HttpResponse Exchange::finish()
{
    const DatabaseUse use(m_context.database);
    if (m_sink)
        return m_sink->finish();
    m_request.body = m_body.take();
    return m_route->handler(m_request, *m_state);
}

HttpResponse Exchange::failure(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const std::exception &known) {
        return errorResponse(known);
    }
}

} // namespace service
