#include <service/api/Routes.h>
#include <service/api/Session.h>
#include <service/http/HttpMessages.h>
#include <service/http/Router.h>

namespace service {

namespace {

HttpResponse me(HttpRequest &, Session &session)
{
    QJsonArray projects;
    const QList<Membership> memberships = Users(session.database).projectsOf(session.user());
    for (const Membership &membership : memberships) {
        projects.append(QJsonObject{{QStringLiteral("_id"), membership.projectId},
                                    {QStringLiteral("name"), membership.projectName},
                                    {QStringLiteral("role"), roleName(membership.role)}});
    }
    return HttpResponse::json(QJsonObject{{QStringLiteral("_id"), session.user().id},
                                          {QStringLiteral("name"), session.user().name},
                                          {QStringLiteral("projects"), projects}});
}

} // namespace

void addAccountRoutes(Router &router)
{
    router.add("GET", "base-service/me", me);
}

} // namespace service
