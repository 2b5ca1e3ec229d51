#include <service/api/DocumentChange.h>
#include <service/api/JsonInput.h>
#include <service/api/JsonList.h>
#include <service/api/RequestState.h>
#include <service/api/Routes.h>
#include <service/http/HttpMessages.h>
#include <service/http/Router.h>
#include <service/records/DocumentJson.h>
#include <service/records/DocumentQuery.h>
#include <service/records/Links.h>
#include <service/records/Marks.h>
#include <service/records/Names.h>
#include <service/records/Versions.h>
#include <service/storage/Statement.h>

#include <limits>

namespace service {

namespace {

DocumentQuery readQuery(const HttpRequest &request)
{
    DocumentQuery query;
    query.projectId = request.captures.at(0);
    query.where = jsonParameter(request, QLatin1String("where"));
    query.category = request.parameter(QLatin1String("category"));
    query.isDeep = request.flag(QLatin1String("deep"));
    const qint64 recordType = numberParameter(request, QLatin1String("recordType"), 0);
    if (recordType > std::numeric_limits<int>::max())
        throw HttpError(400, QStringLiteral("The parameter recordType is too large."));
    if (recordType > 0)
        query.markTypes.append(static_cast<int>(recordType));
    if (request.flag(QLatin1String("frequent")))
        query.markTypes.append(Marks::Frequent);
    query.order = request.parameter(QLatin1String("order"));
    query.limit = numberParameter(request, QLatin1String("limit"), 0);
    query.skip = numberParameter(request, QLatin1String("skip"), 0);
    if (query.limit > JsonList::MaxEntries) {
        throw HttpError(400, QStringLiteral("The limit is at most %1.").arg(JsonList::MaxEntries));
    }
    if (query.limit <= 0)
        query.limit = JsonList::MaxEntries + 1; // that there are more is an error
    if (query.skip < 0)
        throw HttpError(400, QStringLiteral("The parameter skip is negative."));
    // Has no effect: a name in the condition is always compared as a whole.
    request.flag(QLatin1String("words"));
    return query;
}

HttpResponse listDocuments(HttpRequest &request, RequestState &state)
{
    const DocumentQuery query = readQuery(request);
    state.access.require(query.projectId, Action::Read);
    DocumentLister lister(state.database, state.user().id);
    if (request.flag(QLatin1String("only_count"))) {
        return HttpResponse::json(QJsonObject{{QStringLiteral("count"), lister.count(query)}});
    }
    const bool isLinked =
        request.flag(QLatin1String("linkedEntity")) || request.flag(QLatin1String("expand"));
    const DocumentSelection selection =
        parseSelection(request.parameter(QLatin1String("select")), isLinked);
    JsonList list;
    lister.list(query, [&](const Document &document) {
        list.append(documentToJson(document, selection, state.access));
    });
    return list.response();
}

HttpResponse entityDocuments(HttpRequest &request, RequestState &state)
{
    const QString projectId = request.captures.at(0);
    state.access.require(projectId, Action::Read);
    DocumentLister lister(state.database, state.user().id);
    JsonList list;
    lister.linkedTo(projectId, request.captures.at(1), [&](const Document &document) {
        list.append(documentToJson(document, {}, state.access));
    });
    return list.response();
}

//! Returns whether the user is allowed to do it, by the same check as for the request itself.
HttpResponse auth(HttpRequest &request, RequestState &state)
{
    const QString projectId = request.captures.at(0);
    const QString resourceId = request.parameter(QLatin1String("rId"));
    Action action = Action::Read;
    if (!actionFromKey(request.parameter(QLatin1String("key")), &action)) {
        throw HttpError(400,
                        QStringLiteral("There is no right called \"%1\".")
                            .arg(request.parameter(QLatin1String("key")).left(60)));
    }
    state.access.require(projectId, Action::Read);
    bool isAllowed = state.access.may(projectId, action);
    if (!resourceId.isEmpty()) {
        const std::optional<Document> document = state.documents.find(resourceId);
        if (!document || document->projectId != projectId)
            throw HttpError(
                404, QStringLiteral("The project has no document %1.").arg(resourceId.left(60)));
        isAllowed = state.access.may(*document, action);
    }
    const QString value = isAllowed ? QStringLiteral("true") : QStringLiteral("false");
    return HttpResponse::json(QJsonObject{{QStringLiteral("value"), value}});
}

HttpResponse users(HttpRequest &request, RequestState &state)
{
    const QString projectId = request.captures.at(0);
    state.access.require(projectId, Action::Read);
    QList<Member> members = Projects(state.database).members(projectId);
    if (state.user().isLocal)
        members = {{state.user().id, state.user().name, Role::Owner}};
    JsonList list;
    for (const Member &member : qAsConst(members)) {
        list.append(QJsonObject{{QStringLiteral("_id"), member.userId},
                                {QStringLiteral("name"), member.userName},
                                {QStringLiteral("role"), roleName(member.role)}});
    }
    return list.response();
}

Document readNewDocument(const JsonInput &input, const QString &projectId)
{
    Document document;
    document.projectId = projectId;
    document.name = input.requiredText("name");
    requireValidName(document.name);
    document.type = input.requiredText("type");
    if (document.type != QLatin1String("dir") && document.type != QLatin1String("file"))
        throw HttpError(400, QStringLiteral("The type must be \"dir\" or \"file\"."));
    document.parentId = input.text("parentId");
    document.fileId = input.text("file");
    document.hostId = projectId;
    readPlainFields(document, input, DocumentField::Created);
    if (document.isFolder() && !document.fileId.isEmpty())
        throw HttpError(400, QStringLiteral("A folder has no file."));
    if (!document.isFolder() && document.fileId.isEmpty())
        throw HttpError(400, QStringLiteral("A document of the type \"file\" needs a \"file\"."));
    return document;
}

void requireUpload(HttpRequest &request, RequestState &state)
{
    state.access.require(request.captures.at(0), Action::Upload);
}

HttpResponse createDocument(HttpRequest &request, RequestState &state)
{
    requireUpload(request, state);
    const QString projectId = request.captures.at(0);
    const QJsonDocument body = readJson(request);
    if (!body.isObject())
        throw HttpError(400, QStringLiteral("The body must be a JSON object."));
    const JsonInput input(body.object(), requestKeys(DocumentField::Created));
    Document document = readNewDocument(input, projectId);

    Transaction transaction(state.database);
    if (state.user().isLocal)
        Projects(state.database).ensure(projectId);
    if (!document.parentId.isEmpty())
        state.documents.requireTarget(document.parentId, projectId);
    if (!document.isFolder())
        document.size = state.contents.requireForDocument(document.fileId).size;
    state.documents.insert(document);
    if (!document.isFolder())
        Versions(state.database).add(document, state.user().id);
    if (input.has("links"))
        Links(state.database).replace(document.id, input.array("links"));
    transaction.commit();
    return HttpResponse::json(
        documentToJson(state.documents.require(document.id), {}, state.access));
}

} // namespace

void addProjectRoutes(Router &router)
{
    router.add("GET", "document-service/projects/*/documents", listDocuments);
    router.add("POST", "document-service/projects/*/documents", createDocument, requireUpload);
    router.add("GET", "document-service/projects/*/auth", auth);
    router.add("GET", "document-service/projects/*/users", users);
    router.add("GET", "document-service/projects/*/entities/*/documents", entityDocuments);
}

} // namespace service
