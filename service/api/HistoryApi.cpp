#include <service/api/JsonInput.h>
#include <service/api/JsonList.h>
#include <service/api/Routes.h>
#include <service/api/Session.h>
#include <service/http/HttpMessages.h>
#include <service/http/Router.h>
#include <service/records/DocumentFields.h>
#include <service/records/DocumentJson.h>
#include <service/records/Names.h>
#include <service/records/Versions.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

HttpResponse listVersions(HttpRequest &request, Session &session)
{
    const QString order = request.parameter(QLatin1String("order"));
    const bool isAscending = order == QLatin1String("createdAt");
    if (!order.isEmpty() && !isAscending && order != QLatin1String("-createdAt"))
        throw HttpError(400, QStringLiteral("Versions are ordered by createdAt or -createdAt."));
    const Document document = session.readable(request.captures.at(0));
    JsonList list;
    const QList<Version> versions = Versions(session.database).list(document.id, isAscending);
    for (const Version &version : versions)
        list.append(versionToJson(version));
    return list.response();
}

void requireEditableVersion(HttpRequest &request, Session &session)
{
    const QString id = request.captures.at(0);
    const std::optional<Version> version = Versions(session.database).find(id);
    if (!version)
        throw HttpError(404, QStringLiteral("There is no version %1.").arg(id.left(60)));
    session.access.require(session.documents.require(version->documentId), Action::Edit);
}

HttpResponse putVersion(HttpRequest &request, Session &session)
{
    const QJsonDocument body = readJson(request);
    const JsonInput input(body.object(), {"remark"});
    const QString remark = input.requiredText("remark");
    requireShortText(remark, QStringLiteral("The remark"), MaxRemarkBytes);

    Transaction transaction(session.database);
    requireEditableVersion(request, session);
    Versions versions(session.database);
    const QString id = request.captures.at(0);
    versions.setRemark(id, remark);
    const QJsonObject object = versionToJson(*versions.find(id));
    transaction.commit();
    return HttpResponse::json(object);
}

} // namespace

void addHistoryRoutes(Router &router)
{
    router.add("GET", "document-service/documents/*/histories", listVersions);
    router.add("PUT", "document-service/documents/histories/*", putVersion, requireEditableVersion);
}

} // namespace service
