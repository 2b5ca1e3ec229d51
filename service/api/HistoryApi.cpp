#include <service/api/JsonInput.h>
#include <service/api/JsonList.h>
#include <service/api/RequestState.h>
#include <service/api/Routes.h>
#include <service/http/HttpMessages.h>
#include <service/http/Router.h>
#include <service/records/DocumentFields.h>
#include <service/records/DocumentJson.h>
#include <service/records/Names.h>
#include <service/records/Versions.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

HttpResponse listVersions(HttpRequest &request, RequestState &state)
{
    const QString order = request.parameter(QLatin1String("order"));
    const bool isAscending = order == QLatin1String("createdAt");
    if (!order.isEmpty() && !isAscending && order != QLatin1String("-createdAt"))
        throw HttpError(400, QStringLiteral("Versions are ordered by createdAt or -createdAt."));
    const Document document = state.readable(request.captures.at(0));
    JsonList list;
    const QList<Version> versions = Versions(state.database).list(document.id, isAscending);
    for (const Version &version : versions)
        list.append(versionToJson(version));
    return list.response();
}

Version requireVersion(HttpRequest &request, RequestState &state)
{
    const QString id = request.captures.at(0);
    const std::optional<Version> version = Versions(state.database).find(id);
    if (!version)
        throw HttpError(404, QStringLiteral("There is no version %1.").arg(id.left(60)));
    return *version;
}

void requireEditableVersion(HttpRequest &request, RequestState &state)
{
    const Version version = requireVersion(request, state);
    state.access.require(state.documents.require(version.documentId), Action::Edit);
}

HttpResponse putVersion(HttpRequest &request, RequestState &state)
{
    const QJsonDocument body = readJson(request);
    const JsonInput input(body.object(), {"remark"});
    const QString remark = input.requiredText("remark");
    requireShortText(remark, QStringLiteral("The remark"), MaxRemarkBytes);

    Transaction transaction(state.database);
    requireEditableVersion(request, state);
    Versions versions(state.database);
    const QString id = request.captures.at(0);
    versions.setRemark(id, remark);
    const QJsonObject object = versionToJson(*versions.find(id));
    transaction.commit();
    return HttpResponse::json(object);
}

HttpResponse deleteVersion(HttpRequest &request, RequestState &state)
{
    Transaction transaction(state.database);
    const Version version = requireVersion(request, state);
    state.access.require(state.documents.require(version.documentId), Action::Purge);
    Versions versions(state.database);
    if (versions.isCurrent(version)) {
        throw HttpError(409,
                        QStringLiteral("The current version of %1 cannot be deleted; make another "
                                       "version current first, or delete the document.")
                            .arg(version.name));
    }
    versions.remove(version.id);
    transaction.commit();
    return HttpResponse::json(QJsonObject{{QStringLiteral("_id"), version.id}});
}

} // namespace

void addHistoryRoutes(Router &router)
{
    router.add("GET", "document-service/documents/*/histories", listVersions);
    router.add("PUT", "document-service/documents/histories/*", putVersion, requireEditableVersion);
    router.add("DELETE", "document-service/documents/histories/*", deleteVersion);
}

} // namespace service
