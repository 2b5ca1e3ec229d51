#include <service/api/FileDownload.h>
#include <service/api/JsonInput.h>
#include <service/api/Routes.h>
#include <service/api/Session.h>
#include <service/api/SharePage.h>
#include <service/http/HttpMessages.h>
#include <service/http/Router.h>
#include <service/records/Files.h>
#include <service/records/Shares.h>
#include <service/records/Times.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

HttpResponse createShare(HttpRequest &request, Session &session)
{
    const QJsonDocument body = readJson(request);
    const JsonInput input(body.object(), {"hostId", "documentIds", "expiredAt", "allowDownload"});
    Share share;
    share.projectId = input.requiredText("hostId");
    share.createdBy = session.user().id;
    share.allowsDownload = input.has("allowDownload") && input.boolean("allowDownload");
    if (!input.text("expiredAt").isEmpty())
        share.expiredAt = parseTime(input.text("expiredAt"), QStringLiteral("expiredAt"));
    const QStringList ids = input.texts("documentIds");
    if (ids.isEmpty())
        throw HttpError(400, QStringLiteral("\"documentIds\" names no document."));
    session.access.require(share.projectId, Action::Share);

    Transaction transaction(session.database);
    for (const QString &id : ids) {
        const std::optional<Document> document = session.documents.find(id);
        if (!document || document->projectId != share.projectId)
            throw HttpError(404,
                            QStringLiteral("The project has no document %1.").arg(id.left(60)));
        if (document->recycle != Document::Present)
            throw HttpError(409, QStringLiteral("%1 is in the recycle bin.").arg(document->name));
    }
    const QString code = Shares(session.database).insert(share, ids);
    transaction.commit();
    return HttpResponse::json(
        QJsonObject{{QStringLiteral("code"), code},
                    {QStringLiteral("path"), QStringLiteral("share/") + code},
                    {QStringLiteral("expiredAt"), timeText(share.expiredAt)}});
}

//! A page with a status, for a share that cannot be shown.
struct ShareRefusal
{
    int status = 404;
    QString title;
    QString sentence;
};

HttpResponse guarded(HttpResponse page)
{
    // The address holds the code: it goes to no other site, and no cache keeps the page.
    page.addHeader("Referrer-Policy", "no-referrer");
    page.addHeader("Cache-Control", "no-store");
    page.addHeader("Content-Security-Policy", "default-src 'none'; style-src 'unsafe-inline'");
    return page;
}

Share requireShare(const HttpRequest &request, Session &session)
{
    const std::optional<Share> share = Shares(session.database).findByCode(request.captures.at(0));
    if (!share) {
        throw ShareRefusal{404, QStringLiteral("No such share"),
                           QStringLiteral("There is no share with this code. "
                                          "Please check the address you were given.")};
    }
    const bool isExpired = share->expiredAt != 0 && share->expiredAt <= nowMs();
    const User creator{share->createdBy, QString(), share->createdBy == QLatin1String("local")};
    const Role role = Users(session.database).roleIn(share->projectId, creator);
    if (isExpired || !roleAllows(role, Action::Share)) {
        throw ShareRefusal{410, QStringLiteral("This share has ended"),
                           QStringLiteral("The documents are no longer shared. "
                                          "Please ask for a new address.")};
    }
    return *share;
}

Document requireShared(const Share &share, const QString &id, Session &session)
{
    const std::optional<Document> document = Shares(session.database).find(share, id);
    if (!document) {
        throw ShareRefusal{404, QStringLiteral("Not shared"),
                           QStringLiteral("This document is not part of the share, "
                                          "or it was deleted.")};
    }
    return *document;
}

using PageFunction = HttpResponse (*)(HttpRequest &, Session &, const Share &);

Router::Handler page(PageFunction function)
{
    return [function](HttpRequest &request, Session &session) {
        try {
            return guarded(function(request, session, requireShare(request, session)));
        } catch (const ShareRefusal &refusal) {
            return guarded(HttpResponse::html(shareMessagePage(refusal.title, refusal.sentence),
                                              refusal.status));
        }
    };
}

QString basePath(const HttpRequest &request)
{
    return QStringLiteral("/share/") + request.captures.at(0);
}

HttpResponse showShare(HttpRequest &request, Session &session, const Share &share)
{
    return HttpResponse::html(
        shareListPage({QStringLiteral("Shared documents"), basePath(request), share.allowsDownload,
                       Shares(session.database).documents(share)}));
}

HttpResponse showFolder(HttpRequest &request, Session &session, const Share &share)
{
    const Document folder = requireShared(share, request.captures.at(1), session);
    return HttpResponse::html(shareListPage({folder.name, basePath(request), share.allowsDownload,
                                             Shares(session.database).children(folder)}));
}

HttpResponse downloadShared(HttpRequest &request, Session &session, const Share &share)
{
    const Document document = requireShared(share, request.captures.at(1), session);
    if (!share.allowsDownload) {
        throw ShareRefusal{403, QStringLiteral("No downloads"),
                           QStringLiteral("This share is for looking only.")};
    }
    const std::optional<StoredFile> file = Files(session.database).find(document.fileId);
    if (!file) {
        throw ShareRefusal{404, QStringLiteral("No file"),
                           QStringLiteral("A folder cannot be downloaded; open it instead.")};
    }
    return downloadResponse(request, *file, session.context.contents, document.name);
}

} // namespace

void addShareRoutes(Router &router)
{
    router.add("POST", "document-service/documents/shares", createShare);
    router.addPublic("GET", "share/*", page(showShare));
    router.addPublic("GET", "share/*/folders/*", page(showFolder));
    router.addPublic("GET", "share/*/files/*", page(downloadShared));
}

} // namespace service
