#include <service/api/FileDownload.h>
#include <service/api/JsonInput.h>
#include <service/api/JsonList.h>
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

constexpr int EntriesOnPage = 500;
constexpr qint64 MaxPages = 1'000'000;

QString endText(const Share &share)
{
    return share.expiredAt ? timeText(*share.expiredAt) : QString();
}

void requireShareAnywhere(HttpRequest &, Session &session)
{
    session.access.requireAnywhere(Action::Share);
}

HttpResponse createShare(HttpRequest &request, Session &session)
{
    const QJsonDocument body = readJson(request);
    const JsonInput input(body.object(), {"hostId", "documentIds", "expiredAt", "allowDownload"});
    Share share;
    share.projectId = input.requiredText("hostId");
    share.createdBy = session.user().id;
    share.allowsDownload = input.has("allowDownload") && input.boolean("allowDownload");
    if (!input.text("expiredAt").isEmpty()) {
        share.expiredAt = parseTime(input.text("expiredAt"), QStringLiteral("expiredAt"));
        if (*share.expiredAt <= nowMs())
            throw HttpError(400, QStringLiteral("The share would have ended already."));
    }
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
    return HttpResponse::json(QJsonObject{{QStringLiteral("code"), code},
                                          {QStringLiteral("path"), QStringLiteral("share/") + code},
                                          {QStringLiteral("expiredAt"), endText(share)}});
}

QJsonObject toJson(const Share &share, const QList<Document> &documents)
{
    QJsonArray entries;
    for (const Document &document : documents) {
        entries.append(QJsonObject{{QStringLiteral("_id"), document.id},
                                   {QStringLiteral("name"), document.name},
                                   {QStringLiteral("type"), document.type}});
    }
    return {{QStringLiteral("_id"), share.id},
            {QStringLiteral("hostId"), share.projectId},
            {QStringLiteral("documents"), entries},
            {QStringLiteral("allowDownload"), share.allowsDownload},
            {QStringLiteral("expiredAt"), endText(share)},
            {QStringLiteral("createdAt"), timeText(share.createdAt)},
            {QStringLiteral("createdBy"), share.createdBy}};
}

//! Own ones; all of a project to who may edit others' documents in it.
HttpResponse listShares(HttpRequest &request, Session &session)
{
    const QString projectId = request.parameter(QLatin1String("hostId"));
    session.access.require(projectId, Action::Read);
    const bool seesAll = session.access.may(projectId, Action::Edit);
    Shares shares(session.database);
    JsonList result;
    const QList<Share> list = shares.list(projectId, seesAll ? QString() : session.user().id);
    for (const Share &share : list)
        result.append(toJson(share, shares.documents(share)));
    return result.response();
}

HttpResponse revokeShare(HttpRequest &request, Session &session)
{
    const QString id = request.captures.at(0);
    Transaction transaction(session.database);
    Shares shares(session.database);
    const std::optional<Share> share = shares.find(id);
    const bool isAllowed = share
        && (share->createdBy == session.user().id
            || session.access.may(share->projectId, Action::Edit));
    if (!isAllowed) {
        throw HttpError(404,
                        QStringLiteral("There is no share %1 that you may end.").arg(id.left(60)));
    }
    shares.remove(id);
    transaction.commit();
    return HttpResponse::json(QJsonObject{{QStringLiteral("_id"), id}});
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

//! What was shared while there were no users ends with the first one, like everything else that anybody could do.
bool mayStillShare(const Share &share, Database &database)
{
    const User local = User::local();
    if (share.createdBy == local.id)
        return !Users(database).haveTokens();
    const User creator{share.createdBy, QString(), false};
    return roleAllows(Projects(database).roleIn(share.projectId, creator), Action::Share);
}

Share requireShare(const HttpRequest &request, Session &session)
{
    const std::optional<Share> share = Shares(session.database).findByCode(request.captures.at(0));
    if (!share) {
        throw ShareRefusal{404, QStringLiteral("No such share"),
                           QStringLiteral("There is no share with this code. "
                                          "Please check the address you were given.")};
    }
    const bool isExpired = share->expiredAt && *share->expiredAt <= nowMs();
    if (isExpired || !mayStillShare(*share, session.database)) {
        throw ShareRefusal{410, QStringLiteral("This share has ended"),
                           QStringLiteral("The documents are no longer shared. "
                                          "Please ask for a new address.")};
    }
    return *share;
}

Document requireShared(const Share &share, const QString &id, Session &session)
{
    const std::optional<Document> document = Shares(session.database).findDocument(share, id);
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

SharePage pageOf(const HttpRequest &request, const Share &share, const QString &path)
{
    SharePage page;
    page.basePath = basePath(request);
    page.path = path;
    page.allowsDownload = share.allowsDownload;
    const qint64 number = numberParameter(request, QLatin1String("page"), 1);
    if (number < 1 || number > MaxPages) {
        throw ShareRefusal{404, QStringLiteral("No such page"),
                           QStringLiteral("The share has no page with this number.")};
    }
    page.number = static_cast<int>(number);
    return page;
}

int skipBefore(const SharePage &page)
{
    return (page.number - 1) * EntriesOnPage;
}

//! \param documents one more than the page shows if there is a next one
HttpResponse listPage(SharePage page, QList<Document> documents)
{
    page.hasNext = documents.size() > EntriesOnPage;
    if (page.hasNext)
        documents.removeLast();
    page.documents = documents;
    return HttpResponse::html(shareListPage(page));
}

HttpResponse showShare(HttpRequest &request, Session &session, const Share &share)
{
    SharePage page = pageOf(request, share, basePath(request));
    page.title = QStringLiteral("Shared documents");
    return listPage(page,
                    Shares(session.database).documents(share, EntriesOnPage + 1, skipBefore(page)));
}

HttpResponse showFolder(HttpRequest &request, Session &session, const Share &share)
{
    const Document folder = requireShared(share, request.captures.at(1), session);
    SharePage page =
        pageOf(request, share, basePath(request) + QStringLiteral("/folders/") + folder.id);
    page.title = folder.name;
    return listPage(page,
                    Shares(session.database).children(folder, EntriesOnPage + 1, skipBefore(page)));
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
    session.contents.requireHeld(*file);
    return downloadResponse(request, *file, session.context.contents, document.name);
}

} // namespace

void addShareRoutes(Router &router)
{
    router.add("POST", "document-service/documents/shares", createShare, requireShareAnywhere);
    router.add("GET", "document-service/documents/shares", listShares);
    router.add("DELETE", "document-service/documents/shares/*", revokeShare);
    router.addPublic("GET", "share/*", page(showShare));
    router.addPublic("GET", "share/*/folders/*", page(showFolder));
    router.addPublic("GET", "share/*/files/*", page(downloadShared));
}

} // namespace service
