#include <service/api/DocumentChange.h>

#include <service/api/JsonInput.h>
#include <service/api/RequestState.h>
#include <service/records/DocumentTree.h>
#include <service/records/Links.h>
#include <service/records/Names.h>
#include <service/records/Versions.h>

namespace service {

namespace {

void requirePresent(const Document &document)
{
    if (document.recycle != Document::Present)
        throw HttpError(409, QStringLiteral("%1 is in the recycle bin.").arg(document.name));
}

void moveTo(Document &document, const QString &folderId, RequestState &state)
{
    if (document.parentId == folderId)
        return;
    state.access.require(document.projectId, Action::Upload);
    if (!folderId.isEmpty()) {
        state.documents.requireTarget(folderId, document.projectId);
        if (DocumentTree(state.database).isAtOrBelow(folderId, document.id)) {
            throw HttpError(409,
                            QStringLiteral("%1 cannot be moved into itself.").arg(document.name));
        }
    }
    document.parentId = folderId;
}

void changeFields(Document &document, const JsonInput &input, RequestState &state)
{
    if (input.has("name")) {
        document.name = input.requiredText("name");
        requireValidName(document.name);
    }
    readPlainFields(document, input, DocumentField::Changed);
    if (input.has("type") && input.text("type") != document.type)
        throw HttpError(400, QStringLiteral("The type of a document cannot be changed."));
    if (input.has("parentId"))
        moveTo(document, input.text("parentId"), state);
}

void changeContent(Document &document, const QString &fileId, RequestState &state)
{
    if (document.isFolder())
        throw HttpError(400, QStringLiteral("A folder has no file."));
    const StoredFile file = state.contents.requireForDocument(fileId);
    document.fileId = file.id;
    document.size = file.size;
    Versions(state.database).add(document, state.user().id);
}

} // namespace

void readPlainFields(Document &document, const JsonInput &input, DocumentField::Use use)
{
    for (const DocumentField &field : documentFields()) {
        if (!field.may(use | DocumentField::Plain) || !input.has(field.key))
            continue;
        if (field.kind == DocumentField::Kind::Number) {
            field.setValue(document, input.integer(field.key));
        } else {
            const QString text = input.text(field.key);
            requireShortText(text, QLatin1String(field.key), field.maxBytes);
            field.setValue(document, text);
        }
    }
}

void changeDocument(Document &document, const QJsonObject &body, RequestState &state)
{
    const JsonInput input(body, requestKeys(DocumentField::Changed));
    state.access.require(document, Action::Edit);
    requirePresent(document);
    if (body.isEmpty())
        return;
    changeFields(document, input, state);
    if (input.has("file"))
        changeContent(document, input.text("file"), state);
    state.documents.update(document);
    if (input.has("links"))
        Links(state.database).replace(document.id, input.array("links"));
}

int changeOrder(const QJsonArray &body, RequestState &state)
{
    for (const QJsonValue &entry : body) {
        if (!entry.isObject())
            throw HttpError(400,
                            QStringLiteral("Every element must be an object with _id and order."));
        const JsonInput input(entry.toObject(), {"_id", "order"});
        const Document document = state.readable(input.requiredText("_id"));
        state.access.require(document, Action::Edit);
        requirePresent(document);
        state.documents.setOrder(document.id, input.integer("order"));
    }
    return body.size();
}

int moveDocuments(const QJsonObject &body, RequestState &state)
{
    const JsonInput input(body, {"documentIds", "parentId"});
    const QStringList ids = input.texts("documentIds");
    if (!input.has("parentId"))
        throw HttpError(400, QStringLiteral("\"parentId\" must be there: a folder's id, or null."));
    const QString folderId = input.text("parentId");
    for (const QString &id : ids) {
        Document document = state.readable(id);
        state.access.require(document, Action::Edit);
        requirePresent(document);
        moveTo(document, folderId, state);
        state.documents.update(document);
    }
    return ids.size();
}

} // namespace service
