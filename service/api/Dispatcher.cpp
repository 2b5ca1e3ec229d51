#include <service/api/Dispatcher.h>

#include <service/api/Routes.h>
#include <service/api/ServiceContext.h>
#include <service/api/Session.h>
#include <service/records/Users.h>

#include <QElapsedTimer>
#include <QThread>

namespace service {

namespace {

constexpr int StallStepMs = 20;

//! Waits \a ms, or for ever when that is 0; ends early when the service stops or the client has gone.
void stall(qint64 ms, const ServiceContext &context, const ReplyControl &reply)
{
    QElapsedTimer clock;
    clock.start();
    while (!context.isStopping && !reply.isPeerGone() && (ms == 0 || !clock.hasExpired(ms)))
        QThread::msleep(StallStepMs);
}

//! What a fault does before the work; an answer means that no work is to be done.
std::optional<HttpResponse> misbehaveBefore(const FaultRule &rule, HttpRequest &request,
                                            ReplyControl &reply, const ServiceContext &context)
{
    switch (rule.kind) {
    case FaultRule::Kind::Status:
        return HttpResponse::error(static_cast<int>(rule.value),
                                   QStringLiteral("The service was told to refuse this request."));
    case FaultRule::Kind::NoRoom:
        return HttpResponse::error(507, QStringLiteral("The service has no room left."));
    case FaultRule::Kind::DropAfter:
        request.body->dropAfter(rule.value);
        if (rule.value == 0)
            throw ConnectionLost();
        break;
    case FaultRule::Kind::Stall:
        stall(rule.value, context, reply);
        throw ConnectionLost();
    case FaultRule::Kind::LoseReply:
    case FaultRule::Kind::Slow:
    case FaultRule::Kind::CutReply:
    case FaultRule::Kind::ForgetChunk:
        break;
    }
    return std::nullopt;
}

void misbehaveAfter(const FaultRule &rule, ReplyControl &reply, const ServiceContext &context)
{
    if (rule.kind == FaultRule::Kind::Slow)
        stall(rule.value, context, reply);
    else if (rule.kind == FaultRule::Kind::LoseReply)
        throw ConnectionLost();
    else if (rule.kind == FaultRule::Kind::CutReply)
        reply.cutReplyAfter(rule.value);
}

//! The code in a share's address opens it, so it does not belong into a log.
QString loggablePath(const HttpRequest &request)
{
    if (request.segments.value(0) == QLatin1String("share"))
        return QStringLiteral("/share/***");
    return request.path();
}

HttpResponse noRoom(const std::exception &error)
{
    qWarning("vell-service: %s", error.what());
    return HttpResponse::error(507, QStringLiteral("The service has no room left."));
}

} // namespace

Dispatcher::Dispatcher(ServiceContext &context) : m_context(context)
{
    addAccountRoutes(m_router);
    addFileRoutes(m_router);
    addLargeFileRoutes(m_router);
    addMarkRoutes(m_router);
    addShareRoutes(m_router);
    addHistoryRoutes(m_router);
    addProjectRoutes(m_router);
    addDocumentRoutes(m_router);
}

HttpResponse Dispatcher::handle(HttpRequest &request, ReplyControl &reply, ServedRequest &served)
{
    served.path = loggablePath(request);
    try {
        return answer(request, reply, served);
    } catch (const MethodNotAllowed &error) {
        HttpResponse response =
            HttpResponse::error(405, QStringLiteral("This path does not take that verb."));
        response.addHeader("Allow", error.allowed());
        return response;
    } catch (const StorageError &error) {
        if (error.isFull())
            return noRoom(error);
        throw;
    } catch (const DatabaseError &error) {
        if (error.isFull())
            return noRoom(error);
        throw;
    }
}

HttpResponse Dispatcher::answer(HttpRequest &request, ReplyControl &reply, ServedRequest &served)
{
    const std::optional<FaultRule> fault = m_context.faults.strike(request.verb, request.path());
    if (fault) {
        if (const auto refusal = misbehaveBefore(*fault, request, reply, m_context))
            return *refusal;
    }
    const Router::Route &route = m_router.find(request);
    const User user = route.isPublic ? User() : authenticate(request);
    served.user = user.name;
    Session session(m_context, user, fault);
    HttpResponse response = route.handler(request, session);
    if (fault)
        misbehaveAfter(*fault, reply, m_context);
    return response;
}

User Dispatcher::authenticate(const HttpRequest &request)
{
    Users users(m_context.database);
    if (!users.haveTokens())
        return {QStringLiteral("local"), QStringLiteral("local"), true};
    const QByteArray header = request.header("authorization");
    if (!header.toLower().startsWith("bearer "))
        throw HttpError(401, QStringLiteral("An access token is needed."));
    const std::optional<User> user = users.findByToken(QString::fromUtf8(header.mid(7).trimmed()));
    if (!user)
        throw HttpError(401, QStringLiteral("The access token is unknown."));
    return *user;
}

} // namespace service
