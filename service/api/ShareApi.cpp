#include <service/api/FileDownload.h>
#include <service/api/JsonInput.h>
#include <service/api/JsonList.h>
#include <service/api/RequestState.h>
#include <service/api/Routes.h>
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

void requireShareAnywhere(HttpRequest &, RequestState &state)
{
    state.access.requireAnywhere(Action::Share);
}

HttpResponse createShare(HttpRequest &request, RequestState &state)
{
    const QJsonDocument body = readJson(request);
    const JsonInput input(body.object(), {"hostId", "documentIds", "expiredAt", "allowDownload"});
    Share share;
    share.projectId = input.requiredText("hostId");
    share.createdBy = state.user().id;
    share.allowsDownload = input.has("allowDownload") && input.boolean("allowDownload");
    if (!input.text("expiredAt").isEmpty()) {
        share.expiredAt = parseTime(input.text("expiredAt"), QStringLiteral("expiredAt"));
        if (*share.expiredAt <= state.database.nowMs())
            throw HttpError(400, QStringLiteral("The share would have ended already."));
    }
    const QStringList ids = input.texts("documentIds");
    if (ids.isEmpty())
        throw HttpError(400, QStringLiteral("\"documentIds\" names no document."));
    state.access.require(share.projectId, Action::Share);

    Transaction transaction(state.database);
    for (const QString &id : ids) {
        const std::optional<Document> document = state.documents.find(id);
        if (!document || document->projectId != share.projectId)
            throw HttpError(404,
                            QStringLiteral("The project has no document %1.").arg(id.left(60)));
        if (document->recycle != Document::Present)
            throw HttpError(409, QStringLiteral("%1 is in the recycle bin.").arg(document->name));
    }
    const QString code = Shares(state.database).insert(share, ids);
    transaction.commit();
    QJsonObject object{{QStringLiteral("code"), code},
                       {QStringLiteral("path"), QStringLiteral("share/") + code},
                       {QStringLiteral("expiredAt"), endText(share)}};
    const QString base = request.publicBase();
    if (!base.isEmpty())
        object.insert(QStringLiteral("url"), base + QStringLiteral("/share/") + code);
    return HttpResponse::json(object);
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

//! The user's own shares; all of a project for users who may edit documents of others in it.
HttpResponse listShares(HttpRequest &request, RequestState &state)
{
    const QString projectId = request.parameter(QLatin1String("hostId"));
    state.access.require(projectId, Action::Read);
    const bool seesAll = state.access.may(projectId, Action::Edit);
    Shares shares(state.database);
    JsonList result;
    const QString userId = seesAll ? QString() : state.user().id;
    const QHash<QString, QList<Document>> documents = shares.documentsOfList(projectId, userId);
    const QList<Share> list = shares.list(projectId, userId);
    for (const Share &share : list)
        result.append(toJson(share, documents.value(share.id)));
    return result.response();
}

HttpResponse revokeShare(HttpRequest &request, RequestState &state)
{
    const QString id = request.captures.at(0);
    Transaction transaction(state.database);
    Shares shares(state.database);
    const std::optional<Share> share = shares.find(id);
    const bool isAllowed = share
        && (share->createdBy == state.user().id
            || state.access.may(share->projectId, Action::Edit));
    if (!isAllowed) {
        throw HttpError(404,
                        QStringLiteral("There is no share %1 that you may end.").arg(id.left(60)));
    }
    shares.remove(id);
    transaction.commit();
    return HttpResponse::json(QJsonObject{{QStringLiteral("_id"), id}});
}

//! Returns a page with an error status, for a share that cannot be shown.
struct ShareRefusal
{
    int status = 404;
    QString title;
    QString sentence;
};

HttpResponse guarded(HttpResponse page)
{
    // The address contains the code: it must not be sent to other sites, and the page must not be cached.
    page.addHeader("Referrer-Policy", "no-referrer");
    page.addHeader("Cache-Control", "no-store");
    page.addHeader("Content-Security-Policy", "default-src 'none'; style-src 'unsafe-inline'");
    return page;
}

//! Shares that were created without users end when the first user is added, like everything that anybody could do before.
bool mayStillShare(const Share &share, Database &database)
{
    const User local = User::local();
    if (share.createdBy == local.id)
        return !Users(database).isTokenNeeded();
    const User creator{share.createdBy, QString(), false};
    return roleAllows(Projects(database).roleIn(share.projectId, creator), Action::Share);
}

Share requireShare(const HttpRequest &request, RequestState &state)
{
    const std::optional<Share> share = Shares(state.database).findByCode(request.captures.at(0));
    if (!share) {
        throw ShareRefusal{404, QStringLiteral("No such share"),
                           QStringLiteral("There is no share with this code. "
                                          "Please check the address you were given.")};
    }
    const bool isExpired = share->expiredAt && *share->expiredAt <= state.database.nowMs();
    if (isExpired || !mayStillShare(*share, state.database)) {
        throw ShareRefusal{410, QStringLiteral("This share has ended"),
                           QStringLiteral("The documents are no longer shared. "
                                          "Please ask for a new address.")};
    }
    return *share;
}

Document requireShared(const Share &share, const QString &id, RequestState &state)
{
    const std::optional<Document> document = Shares(state.database).findDocument(share, id);
    if (!document) {
        throw ShareRefusal{404, QStringLiteral("Not shared"),
                           QStringLiteral("This document is not part of the share, "
                                          "or it was deleted.")};
    }
    return *document;
}

using PageFunction = HttpResponse (*)(HttpRequest &, RequestState &, const Share &);

Router::Handler page(PageFunction function)
{
    return [function](HttpRequest &request, RequestState &state) {
        try {
            return guarded(function(request, state, requireShare(request, state)));
        } catch (const ShareRefusal &refusal) {
            return guarded(HttpResponse::html(shareMessagePage(refusal.title, refusal.sentence),
                                              refusal.status));
        }
    };
}

QString basePath(const HttpRequest &request)
{
    return request.prefix + QStringLiteral("/share/") + request.captures.at(0);
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

//! \param documents one more than the page shows if there is a next page
HttpResponse listPage(SharePage page, QList<Document> documents)
{
    page.hasNext = documents.size() > EntriesOnPage;
    if (page.hasNext)
        documents.removeLast();
    page.documents = documents;
    return HttpResponse::html(shareListPage(page));
}

HttpResponse showShare(HttpRequest &request, RequestState &state, const Share &share)
{
    SharePage page = pageOf(request, share, basePath(request));
    page.title = QStringLiteral("Shared documents");
    return listPage(page,
                    Shares(state.database).documents(share, EntriesOnPage + 1, skipBefore(page)));
}

HttpResponse showFolder(HttpRequest &request, RequestState &state, const Share &share)
{
    const Document folder = requireShared(share, request.captures.at(1), state);
    SharePage page =
        pageOf(request, share, basePath(request) + QStringLiteral("/folders/") + folder.id);
    page.title = folder.name;
    return listPage(page,
                    Shares(state.database).children(folder, EntriesOnPage + 1, skipBefore(page)));
}

HttpResponse downloadShared(HttpRequest &request, RequestState &state, const Share &share)
{
    const Document document = requireShared(share, request.captures.at(1), state);
    if (!share.allowsDownload) {
        throw ShareRefusal{403, QStringLiteral("No downloads"),
                           QStringLiteral("This share is for looking only.")};
    }
    const std::optional<StoredFile> file = Files(state.database).find(document.fileId);
    if (!file) {
        throw ShareRefusal{404, QStringLiteral("No file"),
                           QStringLiteral("A folder cannot be downloaded; open it instead.")};
    }
    state.contents.requireHeld(*file);
    return downloadResponse(request, *file, state.context.contents, document.name);
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
