#include <service/api/JsonInput.h>
#include <service/api/JsonList.h>
#include <service/api/RequestState.h>
#include <service/api/Routes.h>
#include <service/http/HttpMessages.h>
#include <service/http/Router.h>
#include <service/records/Marks.h>
#include <service/records/Times.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

void requireReadable(HttpRequest &request, RequestState &state)
{
    state.readable(request.captures.at(0));
}

HttpResponse putMark(HttpRequest &request, RequestState &state)
{
    const QJsonDocument body = readJson(request);
    const JsonInput input(body.object(), {"type", "value"});
    const int type = input.integer("type");
    const bool isMarked = input.boolean("value");

    Transaction transaction(state.database);
    const Document document = state.readable(request.captures.at(0));
    Marks(state.database, state.user().id).set(document.id, type, isMarked);
    transaction.commit();
    return HttpResponse::json(QJsonObject{{QStringLiteral("documentId"), document.id},
                                          {QStringLiteral("type"), type},
                                          {QStringLiteral("value"), isMarked}});
}

HttpResponse listMarks(HttpRequest &request, RequestState &state)
{
    const JsonInput where(jsonParameter(request, QLatin1String("where")), {"documentId", "type"});
    const QString documentId = where.text("documentId");
    if (!documentId.isEmpty())
        state.readable(documentId);
    const std::optional<int> type =
        where.has("type") ? std::optional<int>(where.integer("type")) : std::nullopt;
    JsonList list;
    const QList<Mark> marks = Marks(state.database, state.user().id).list(documentId, type);
    for (const Mark &mark : marks) {
        list.append(QJsonObject{{QStringLiteral("documentId"), mark.documentId},
                                {QStringLiteral("type"), mark.type},
                                {QStringLiteral("userId"), state.user().id},
                                {QStringLiteral("createdAt"), timeText(mark.createdAt)}});
    }
    return list.response();
}

} // namespace

void addMarkRoutes(Router &router)
{
    router.add("PUT", "document-service/documents/*/records", putMark, requireReadable);
    // Before the route of one document, which would take "records" for an id.
    router.add("GET", "document-service/documents/records", listMarks);
}

} // namespace service
