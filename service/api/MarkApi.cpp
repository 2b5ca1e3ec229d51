#include <service/api/JsonInput.h>
#include <service/api/JsonList.h>
#include <service/api/Routes.h>
#include <service/api/Session.h>
#include <service/http/HttpMessages.h>
#include <service/http/Router.h>
#include <service/records/Marks.h>
#include <service/records/Times.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

void requireReadable(HttpRequest &request, Session &session)
{
    session.readable(request.captures.at(0));
}

HttpResponse putMark(HttpRequest &request, Session &session)
{
    const QJsonDocument body = readJson(request);
    const JsonInput input(body.object(), {"type", "value"});
    const int type = input.integer("type");
    const bool isMarked = input.boolean("value");

    Transaction transaction(session.database);
    const Document document = session.readable(request.captures.at(0));
    Marks(session.database, session.user().id).set(document.id, type, isMarked);
    transaction.commit();
    return HttpResponse::json(QJsonObject{{QStringLiteral("documentId"), document.id},
                                          {QStringLiteral("type"), type},
                                          {QStringLiteral("value"), isMarked}});
}

HttpResponse listMarks(HttpRequest &request, Session &session)
{
    const JsonInput where(jsonParameter(request, QLatin1String("where")), {"documentId", "type"});
    const QString documentId = where.text("documentId");
    if (!documentId.isEmpty())
        session.readable(documentId);
    const std::optional<int> type =
        where.has("type") ? std::optional<int>(where.integer("type")) : std::nullopt;
    JsonList list;
    const QList<Mark> marks = Marks(session.database, session.user().id).list(documentId, type);
    for (const Mark &mark : marks) {
        list.append(QJsonObject{{QStringLiteral("documentId"), mark.documentId},
                                {QStringLiteral("type"), mark.type},
                                {QStringLiteral("userId"), session.user().id},
                                {QStringLiteral("createdAt"), timeText(mark.createdAt)}});
    }
    return list.response();
}

} // namespace

void addMarkRoutes(Router &router)
{
    router.add("PUT", "document-service/documents/*/records", putMark, requireReadable);
    // Stands before the route of one document, whose id "records" would otherwise be.
    router.add("GET", "document-service/documents/records", listMarks);
}

} // namespace service
