#include <service/api/DocumentChange.h>
#include <service/api/JsonInput.h>
#include <service/api/RequestState.h>
#include <service/api/Routes.h>
#include <service/http/HttpMessages.h>
#include <service/http/Router.h>
#include <service/records/DocumentJson.h>
#include <service/records/DocumentTree.h>
#include <service/records/Versions.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

QJsonObject infoOf(const Document &document, RequestState &state)
{
    DocumentTree tree(state.database);
    QJsonArray path;
    const auto folders = tree.foldersAbove(document.id);
    for (const auto &folder : folders) {
        path.append(QJsonObject{{QStringLiteral("_id"), folder.first},
                                {QStringLiteral("name"), folder.second}});
    }
    QJsonObject info{{QStringLiteral("path"), path}};
    if (document.isFolder())
        info.insert(QStringLiteral("childCount"), tree.childCount(document.id));
    else
        info.insert(QStringLiteral("versionCount"), Versions(state.database).count(document.id));
    return info;
}

HttpResponse getDocument(HttpRequest &request, RequestState &state)
{
    const Document document = state.readable(request.captures.at(0));
    DocumentSelection selection = parseSelection(request.parameter(QLatin1String("select")),
                                                 request.flag(QLatin1String("linkedEntity"))
                                                     || request.flag(QLatin1String("expand")));
    selection.hasPwd = request.flag(QLatin1String("pwd"));
    if (selection.hasPwd)
        state.access.require(document, Action::Download);
    QJsonObject object = documentToJson(document, selection, state.access);
    if (request.flag(QLatin1String("info")))
        object.insert(QStringLiteral("info"), infoOf(document, state));
    return HttpResponse::json(object);
}

void requireEdit(HttpRequest &request, RequestState &state)
{
    state.access.require(state.readable(request.captures.at(0)), Action::Edit);
}

HttpResponse putDocument(HttpRequest &request, RequestState &state)
{
    const QJsonDocument body = readJson(request);
    if (!body.isObject())
        throw HttpError(400, QStringLiteral("The body must be a JSON object."));
    Transaction transaction(state.database);
    Document document = state.readable(request.captures.at(0));
    changeDocument(document, body.object(), state);
    transaction.commit();
    return HttpResponse::json(
        documentToJson(state.documents.require(document.id), {}, state.access));
}

void requireEditAnywhere(HttpRequest &, RequestState &state)
{
    state.access.requireAnywhere(Action::EditSelf);
}

//! An array sets positions, an object moves documents.
HttpResponse putDocuments(HttpRequest &request, RequestState &state)
{
    const QJsonDocument body = readJson(request);
    Transaction transaction(state.database);
    const int count =
        body.isArray() ? changeOrder(body.array(), state) : moveDocuments(body.object(), state);
    transaction.commit();
    return HttpResponse::json(QJsonObject{{QStringLiteral("count"), count}});
}

HttpResponse purgeDocument(const Document &document, RequestState &state)
{
    state.access.require(document, Action::Purge);
    if (document.recycle == Document::BelowDeleted) {
        throw HttpError(409,
                        QStringLiteral("%1 was deleted with its folder; delete that permanently.")
                            .arg(document.name));
    }
    if (document.recycle == Document::Present)
        throw HttpError(409, QStringLiteral("%1 is not in the recycle bin.").arg(document.name));
    const int count = DocumentTree(state.database).purge(document);
    return HttpResponse::json(
        QJsonObject{{QStringLiteral("_id"), document.id}, {QStringLiteral("count"), count}});
}

HttpResponse deleteDocument(HttpRequest &request, RequestState &state)
{
    Transaction transaction(state.database);
    const Document document = state.readable(request.captures.at(0));
    if (request.flag(QLatin1String("permanently"))) {
        const HttpResponse response = purgeDocument(document, state);
        transaction.commit();
        return response;
    }
    state.access.require(document, Action::Delete);
    // Deleting it again succeeds and changes nothing: the first response may have been lost.
    if (document.recycle == Document::Present)
        DocumentTree(state.database).recycle(document, state.user().id);
    transaction.commit();
    return HttpResponse::json(QJsonObject{{QStringLiteral("_id"), document.id}});
}

HttpResponse emptyRecycleBin(HttpRequest &request, RequestState &state)
{
    const QString projectId = request.parameter(QLatin1String("hostId"));
    if (projectId.isEmpty())
        throw HttpError(400, QStringLiteral("The parameter hostId must name the project."));
    state.access.require(projectId, Action::Purge);
    QString category = request.parameter(QLatin1String("category"));
    if (category == QLatin1String("recycle"))
        category.clear();
    Transaction transaction(state.database);
    const int count = DocumentTree(state.database).purge(projectId, category);
    transaction.commit();
    return HttpResponse::json(QJsonObject{{QStringLiteral("count"), count}});
}

HttpResponse restoreDocument(HttpRequest &request, RequestState &state)
{
    Transaction transaction(state.database);
    const QString id = request.captures.at(0);
    const Document before = state.readable(id);
    state.access.require(before, Action::Delete);
    if (before.recycle == Document::BelowDeleted) {
        throw HttpError(
            409, QStringLiteral("%1 was deleted with its folder; restore that.").arg(before.name));
    }
    if (before.recycle == Document::Deleted)
        DocumentTree(state.database).restore(before, state.user().id);
    const Document after = state.documents.require(id);
    const bool isTaken = state.documents.isNameTaken(after, after.parentId);
    transaction.commit();
    QJsonObject object = documentToJson(after, {}, state.access);
    object.insert(QStringLiteral("hasSameDoc"), isTaken);
    return HttpResponse::json(object);
}

} // namespace

void addDocumentRoutes(Router &router)
{
    router.add("PUT", "document-service/documents", putDocuments, requireEditAnywhere);
    router.add("DELETE", "document-service/documents", emptyRecycleBin);
    router.addChangingGet("document-service/documents/*/restore", restoreDocument);
    router.add("GET", "document-service/documents/*", getDocument);
    router.add("PUT", "document-service/documents/*", putDocument, requireEdit);
    router.add("DELETE", "document-service/documents/*", deleteDocument);
    // Clients request a document with its info below the base address itself.
    router.add("GET", "documents/*", getDocument);
}

} // namespace service
