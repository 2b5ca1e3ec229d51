#include <service/api/RequestState.h>
#include <service/api/Routes.h>
#include <service/http/HttpMessages.h>
#include <service/http/Router.h>

namespace service {

namespace {

HttpResponse me(HttpRequest &, RequestState &state)
{
    QJsonArray projects;
    const QList<Membership> memberships = Projects(state.database).of(state.user());
    for (const Membership &membership : memberships) {
        projects.append(QJsonObject{{QStringLiteral("_id"), membership.projectId},
                                    {QStringLiteral("name"), membership.projectName},
                                    {QStringLiteral("role"), roleName(membership.role)}});
    }
    return HttpResponse::json(QJsonObject{{QStringLiteral("_id"), state.user().id},
                                          {QStringLiteral("name"), state.user().name},
                                          {QStringLiteral("projects"), projects}});
}

//! The old token becomes invalid; the new one is returned only this once.
HttpResponse renewToken(HttpRequest &, RequestState &state)
{
    const QString token = Users(state.database).renewToken(state.user());
    return HttpResponse::json(QJsonObject{{QStringLiteral("token"), token}});
}

HttpResponse revokeToken(HttpRequest &, RequestState &state)
{
    Users(state.database).revokeToken(state.user());
    return HttpResponse::json(QJsonObject{{QStringLiteral("_id"), state.user().id}});
}

} // namespace

void addAccountRoutes(Router &router)
{
    router.add("GET", "base-service/me", me);
    router.add("POST", "base-service/me/token", renewToken);
    router.add("DELETE", "base-service/me/token", revokeToken);
}

} // namespace service
