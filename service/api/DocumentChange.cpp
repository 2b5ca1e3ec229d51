#include <service/api/DocumentChange.h>

#include <service/api/JsonInput.h>
#include <service/api/Session.h>
#include <service/records/DocumentTree.h>
#include <service/records/Files.h>
#include <service/records/Links.h>
#include <service/records/Names.h>
#include <service/records/Versions.h>

namespace service {

namespace {

constexpr int MaxWordBytes = 255;
constexpr int MaxRemarkBytes = 10000;

struct TextField
{
    const char *key;
    QString Document::*member;
    int maxBytes;
};

constexpr TextField TextFields[] = {
    {"remark", &Document::remark, MaxRemarkBytes},
    {"category", &Document::category, MaxWordBytes},
    {"hostId", &Document::hostId, MaxWordBytes},
    {"pwd", &Document::pwd, MaxWordBytes},
    {"previewId", &Document::previewId, MaxWordBytes},
};

void requirePresent(const Document &document)
{
    if (document.recycle != Document::Present)
        throw HttpError(409, QStringLiteral("%1 is in the recycle bin.").arg(document.name));
}

void moveTo(Document &document, const QString &folderId, Session &session)
{
    if (document.parentId == folderId)
        return;
    session.access.require(document.projectId, Action::Upload);
    if (!folderId.isEmpty()) {
        session.documents.requireTarget(folderId, document.projectId);
        if (DocumentTree(session.database).isAtOrBelow(folderId, document.id)) {
            throw HttpError(409,
                            QStringLiteral("%1 cannot be moved into itself.").arg(document.name));
        }
    }
    document.parentId = folderId;
}

void changeFields(Document &document, const JsonInput &input, Session &session)
{
    if (input.has("name")) {
        document.name = input.requiredText("name");
        requireValidName(document.name);
    }
    for (const TextField &field : TextFields) {
        if (!input.has(field.key))
            continue;
        document.*field.member = input.text(field.key);
        requireShortText(document.*field.member, QString::fromLatin1(field.key), field.maxBytes);
    }
    if (input.has("hostType"))
        document.hostType = input.integer("hostType");
    if (input.has("order"))
        document.order = input.integer("order");
    if (input.has("type") && input.text("type") != document.type)
        throw HttpError(400, QStringLiteral("The type of a document cannot be changed."));
    if (input.has("parentId"))
        moveTo(document, input.text("parentId"), session);
}

void changeContent(Document &document, const QString &fileId, Session &session)
{
    if (document.isFolder())
        throw HttpError(400, QStringLiteral("A folder has no file."));
    const std::optional<StoredFile> file = Files(session.database).find(fileId);
    if (!file)
        throw HttpError(400, QStringLiteral("There is no file \"%1\".").arg(fileId.left(60)));
    document.fileId = file->id;
    document.size = file->size;
    Versions(session.database).add(document, session.user().id);
}

} // namespace

void changeDocument(Document &document, const QJsonObject &body, Session &session)
{
    const JsonInput input(body,
                          {"name", "remark", "category", "hostId", "hostType", "pwd", "previewId",
                           "order", "type", "parentId", "links", "file"});
    session.access.require(document, Action::Edit);
    requirePresent(document);
    if (body.isEmpty())
        return;
    changeFields(document, input, session);
    if (input.has("file"))
        changeContent(document, input.text("file"), session);
    session.documents.update(document);
    if (input.has("links"))
        Links(session.database).replace(document.id, input.array("links"));
}

int changeOrder(const QJsonArray &body, Session &session)
{
    for (const QJsonValue &entry : body) {
        if (!entry.isObject())
            throw HttpError(400,
                            QStringLiteral("Every element must be an object with _id and order."));
        const JsonInput input(entry.toObject(), {"_id", "order"});
        const Document document = session.readable(input.requiredText("_id"));
        session.access.require(document, Action::Edit);
        requirePresent(document);
        session.documents.setOrder(document.id, input.integer("order"));
    }
    return body.size();
}

int moveDocuments(const QJsonObject &body, Session &session)
{
    const JsonInput input(body, {"documentIds", "parentId"});
    const QStringList ids = input.texts("documentIds");
    if (!input.has("parentId"))
        throw HttpError(400, QStringLiteral("\"parentId\" must be there: a folder's id, or null."));
    const QString folderId = input.text("parentId");
    for (const QString &id : ids) {
        Document document = session.readable(id);
        session.access.require(document, Action::Edit);
        requirePresent(document);
        moveTo(document, folderId, session);
        session.documents.update(document);
    }
    return ids.size();
}

} // namespace service
