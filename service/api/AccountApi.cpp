#include <service/api/Routes.h>
#include <service/api/Session.h>
#include <service/http/HttpMessages.h>
#include <service/http/Router.h>

namespace service {

namespace {

HttpResponse me(HttpRequest &, Session &session)
{
    QJsonArray projects;
    const QList<Membership> memberships = Projects(session.database).of(session.user());
    for (const Membership &membership : memberships) {
        projects.append(QJsonObject{{QStringLiteral("_id"), membership.projectId},
                                    {QStringLiteral("name"), membership.projectName},
                                    {QStringLiteral("role"), roleName(membership.role)}});
    }
    return HttpResponse::json(QJsonObject{{QStringLiteral("_id"), session.user().id},
                                          {QStringLiteral("name"), session.user().name},
                                          {QStringLiteral("projects"), projects}});
}

//! The present token is void from now on: the new one is told this one time.
HttpResponse renewToken(HttpRequest &, Session &session)
{
    const QString token = Users(session.database).renewToken(session.user());
    return HttpResponse::json(QJsonObject{{QStringLiteral("token"), token}});
}

HttpResponse revokeToken(HttpRequest &, Session &session)
{
    Users(session.database).revokeToken(session.user());
    return HttpResponse::json(QJsonObject{{QStringLiteral("_id"), session.user().id}});
}

} // namespace

void addAccountRoutes(Router &router)
{
    router.add("GET", "base-service/me", me);
    router.add("POST", "base-service/me/token", renewToken);
    router.add("DELETE", "base-service/me/token", revokeToken);
}

} // namespace service
