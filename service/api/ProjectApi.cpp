#include <service/api/JsonInput.h>
#include <service/api/Routes.h>
#include <service/api/Session.h>
#include <service/http/HttpMessages.h>
#include <service/http/Router.h>
#include <service/records/DocumentJson.h>
#include <service/records/DocumentQuery.h>
#include <service/records/Files.h>
#include <service/records/Links.h>
#include <service/records/Marks.h>
#include <service/records/Names.h>
#include <service/records/Versions.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

constexpr int MaxWordBytes = 255;
constexpr int MaxRemarkBytes = 10000;

DocumentQuery readQuery(const HttpRequest &request)
{
    DocumentQuery query;
    query.projectId = request.captures.at(0);
    query.where = jsonParameter(request, QLatin1String("where"));
    query.category = request.parameter(QLatin1String("category"));
    query.isDeep = request.flag(QLatin1String("deep"));
    const qint64 recordType = numberParameter(request, QLatin1String("recordType"), 0);
    if (recordType > 0)
        query.recordTypes.append(static_cast<int>(recordType));
    if (request.flag(QLatin1String("frequent")))
        query.recordTypes.append(Marks::Frequent);
    query.order = request.parameter(QLatin1String("order"));
    query.limit = numberParameter(request, QLatin1String("limit"), 0);
    query.skip = numberParameter(request, QLatin1String("skip"), 0);
    if (query.skip < 0)
        throw HttpError(400, QStringLiteral("The parameter skip is negative."));
    // Says nothing new: a name in the condition is compared as a whole anyway.
    request.flag(QLatin1String("words"));
    return query;
}

QJsonArray toJson(const QList<Document> &documents, const DocumentSelection &selection,
                  Access &access)
{
    QJsonArray array;
    for (const Document &document : documents)
        array.append(documentToJson(document, selection, access));
    return array;
}

HttpResponse listDocuments(HttpRequest &request, Session &session)
{
    const DocumentQuery query = readQuery(request);
    session.access.require(query.projectId, Action::Read);
    DocumentLister lister(session.database, session.user().id);
    if (request.flag(QLatin1String("only_count"))) {
        return HttpResponse::json(QJsonObject{{QStringLiteral("count"), lister.count(query)}});
    }
    const bool isLinked =
        request.flag(QLatin1String("linkedEntity")) || request.flag(QLatin1String("expand"));
    const DocumentSelection selection =
        parseSelection(request.parameter(QLatin1String("select")), isLinked);
    return HttpResponse::json(toJson(lister.list(query), selection, session.access));
}

HttpResponse entityDocuments(HttpRequest &request, Session &session)
{
    const QString projectId = request.captures.at(0);
    session.access.require(projectId, Action::Read);
    DocumentLister lister(session.database, session.user().id);
    return HttpResponse::json(
        toJson(lister.linkedTo(projectId, request.captures.at(1)), {}, session.access));
}

//! May I? The answer is what the service would then do.
HttpResponse auth(HttpRequest &request, Session &session)
{
    const QString projectId = request.captures.at(0);
    const QString resourceId = request.parameter(QLatin1String("rId"));
    Action action = Action::Read;
    if (!actionFromKey(request.parameter(QLatin1String("key")), &action)) {
        throw HttpError(400,
                        QStringLiteral("There is no right called \"%1\".")
                            .arg(request.parameter(QLatin1String("key")).left(60)));
    }
    session.access.require(projectId, Action::Read);
    bool isAllowed = session.access.may(projectId, action);
    if (!resourceId.isEmpty()) {
        const std::optional<Document> document = session.documents.find(resourceId);
        if (!document || document->projectId != projectId)
            throw HttpError(
                404, QStringLiteral("The project has no document %1.").arg(resourceId.left(60)));
        isAllowed = session.access.may(*document, action);
    }
    const QString value = isAllowed ? QStringLiteral("true") : QStringLiteral("false");
    return HttpResponse::json(QJsonObject{{QStringLiteral("value"), value}});
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
    document.category = input.text("category");
    document.hostId = input.has("hostId") ? input.text("hostId") : projectId;
    document.hostType = input.has("hostType") ? input.integer("hostType") : 0;
    document.remark = input.text("remark");
    document.fileId = input.text("file");
    requireShortText(document.category, QStringLiteral("The category"), MaxWordBytes);
    requireShortText(document.hostId, QStringLiteral("The hostId"), MaxWordBytes);
    requireShortText(document.remark, QStringLiteral("The remark"), MaxRemarkBytes);
    if (document.isFolder() && !document.fileId.isEmpty())
        throw HttpError(400, QStringLiteral("A folder has no file."));
    if (!document.isFolder() && document.fileId.isEmpty())
        throw HttpError(400, QStringLiteral("A document of the type \"file\" needs a \"file\"."));
    return document;
}

HttpResponse createDocument(HttpRequest &request, Session &session)
{
    const QString projectId = request.captures.at(0);
    session.access.require(projectId, Action::Upload);
    const QJsonDocument body = readJson(request);
    if (!body.isObject())
        throw HttpError(400, QStringLiteral("The body must be a JSON object."));
    const JsonInput input(
        body.object(),
        {"parentId", "name", "type", "category", "file", "hostId", "hostType", "remark", "links"});
    Document document = readNewDocument(input, projectId);

    Transaction transaction(session.database);
    if (session.user().isLocal)
        Users(session.database).ensureProject(projectId);
    if (!document.parentId.isEmpty())
        session.documents.requireTarget(document.parentId, projectId);
    if (!document.isFolder()) {
        const std::optional<StoredFile> file = Files(session.database).find(document.fileId);
        if (!file)
            throw HttpError(400,
                            QStringLiteral("There is no file %1.").arg(document.fileId.left(60)));
        document.size = file->size;
    }
    session.documents.insert(document);
    if (!document.isFolder())
        Versions(session.database).add(document, session.user().id);
    if (input.has("links"))
        Links(session.database).replace(document.id, input.array("links"));
    transaction.commit();
    return HttpResponse::json(
        documentToJson(session.documents.require(document.id), {}, session.access));
}

} // namespace

void addProjectRoutes(Router &router)
{
    router.add("GET", "document-service/projects/*/documents", listDocuments);
    router.add("POST", "document-service/projects/*/documents", createDocument);
    router.add("GET", "document-service/projects/*/auth", auth);
    router.add("GET", "document-service/projects/*/entities/*/documents", entityDocuments);
}

} // namespace service
