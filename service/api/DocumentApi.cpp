#include <service/api/DocumentChange.h>
#include <service/api/JsonInput.h>
#include <service/api/Routes.h>
#include <service/api/Session.h>
#include <service/http/HttpMessages.h>
#include <service/http/Router.h>
#include <service/records/DocumentJson.h>
#include <service/records/DocumentTree.h>
#include <service/records/Versions.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

QJsonObject infoOf(const Document &document, Session &session)
{
    DocumentTree tree(session.database);
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
        info.insert(QStringLiteral("versionCount"), Versions(session.database).count(document.id));
    return info;
}

HttpResponse getDocument(HttpRequest &request, Session &session)
{
    const Document document = session.readable(request.captures.at(0));
    DocumentSelection selection = parseSelection(request.parameter(QLatin1String("select")),
                                                 request.flag(QLatin1String("linkedEntity"))
                                                     || request.flag(QLatin1String("expand")));
    selection.hasPwd = request.flag(QLatin1String("pwd"));
    if (selection.hasPwd)
        session.access.require(document, Action::Download);
    QJsonObject object = documentToJson(document, selection, session.access);
    if (request.flag(QLatin1String("info")))
        object.insert(QStringLiteral("info"), infoOf(document, session));
    return HttpResponse::json(object);
}

void requireEdit(HttpRequest &request, Session &session)
{
    session.access.require(session.readable(request.captures.at(0)), Action::Edit);
}

HttpResponse putDocument(HttpRequest &request, Session &session)
{
    const QJsonDocument body = readJson(request);
    if (!body.isObject())
        throw HttpError(400, QStringLiteral("The body must be a JSON object."));
    Transaction transaction(session.database);
    Document document = session.readable(request.captures.at(0));
    changeDocument(document, body.object(), session);
    transaction.commit();
    return HttpResponse::json(
        documentToJson(session.documents.require(document.id), {}, session.access));
}

void requireEditAnywhere(HttpRequest &, Session &session)
{
    session.access.requireAnywhere(Action::EditSelf);
}

//! An array sets positions, an object moves.
HttpResponse putDocuments(HttpRequest &request, Session &session)
{
    const QJsonDocument body = readJson(request);
    Transaction transaction(session.database);
    const int count =
        body.isArray() ? changeOrder(body.array(), session) : moveDocuments(body.object(), session);
    transaction.commit();
    return HttpResponse::json(QJsonObject{{QStringLiteral("count"), count}});
}

HttpResponse deleteDocument(HttpRequest &request, Session &session)
{
    Transaction transaction(session.database);
    const Document document = session.readable(request.captures.at(0));
    session.access.require(document, Action::Delete);
    // A second time changes nothing: the first answer may have been lost.
    if (document.recycle == Document::Present)
        DocumentTree(session.database).recycle(document, session.user().id);
    transaction.commit();
    return HttpResponse::json(QJsonObject{{QStringLiteral("_id"), document.id}});
}

HttpResponse emptyRecycleBin(HttpRequest &request, Session &session)
{
    const QString projectId = request.parameter(QLatin1String("hostId"));
    if (projectId.isEmpty())
        throw HttpError(400, QStringLiteral("The parameter hostId must name the project."));
    session.access.require(projectId, Action::Purge);
    QString category = request.parameter(QLatin1String("category"));
    if (category == QLatin1String("recycle"))
        category.clear();
    Transaction transaction(session.database);
    const int count = DocumentTree(session.database).purge(projectId, category);
    transaction.commit();
    return HttpResponse::json(QJsonObject{{QStringLiteral("count"), count}});
}

HttpResponse restoreDocument(HttpRequest &request, Session &session)
{
    Transaction transaction(session.database);
    const QString id = request.captures.at(0);
    const Document before = session.readable(id);
    session.access.require(before, Action::Delete);
    if (before.recycle == Document::BelowDeleted) {
        throw HttpError(
            409, QStringLiteral("%1 was deleted with its folder; restore that.").arg(before.name));
    }
    if (before.recycle == Document::Deleted)
        DocumentTree(session.database).restore(before, session.user().id);
    const Document after = session.documents.require(id);
    const bool isTaken = session.documents.isNameTaken(after, after.parentId);
    transaction.commit();
    QJsonObject object = documentToJson(after, {}, session.access);
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
    // Clients fetch a document's info from the bare base address.
    router.add("GET", "documents/*", getDocument);
}

} // namespace service
