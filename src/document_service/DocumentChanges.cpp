#include <document_model/DocumentJson.h>
#include <document_service/ServiceRequest.h>
#include <document_service/VellDocService.h>

#include <VellPublicFun/VellPub.h>

namespace VellDocService {

bool createDocFolder(VellDocument &doc)
{
    const ServiceReply reply = postJson(projectUrl(QStringLiteral("projects/%1/documents")),
                                        {
                                            {QStringLiteral("parentId"), idOrNull(doc.parentId)},
                                            {QStringLiteral("name"), doc.name},
                                            {QStringLiteral("type"), doc.type},
                                            {QStringLiteral("category"), doc.category},
                                        });
    VellPubDoc::jsonToDocObject(reply.object(), doc);
    return reply.isSuccessful();
}

bool changeDocOrder(const QMap<QString, int> &orders)
{
    QJsonArray body;
    for (auto it = orders.cbegin(); it != orders.cend(); ++it)
        body.append(
            QJsonObject{{QStringLiteral("_id"), it.key()}, {QStringLiteral("order"), it.value()}});
    return putJson(serviceUrl(QStringLiteral("documents")), body).isSuccessful();
}

bool moveToFolder(const QStringList &ids, const QString &folderId)
{
    return putJson(serviceUrl(QStringLiteral("documents")),
                   QJsonObject{
                       {QStringLiteral("documentIds"), QJsonArray::fromStringList(ids)},
                       {QStringLiteral("parentId"), idOrNull(folderId)},
                   })
        .isSuccessful();
}

void deleteDoc(const QString &id, bool &ok)
{
    ok = deleteResource(serviceUrl(QStringLiteral("documents/%1")).arg(id)).isSuccessful();
}

bool emptyRecycled(const QString &category)
{
    return deleteResource(serviceUrl(QStringLiteral("documents?hostId=%1&category=%2"))
                              .arg(projectId())
                              .arg(category))
        .isSuccessful();
}

bool uploadRecycleDoc(const QString &id)
{
    return get(serviceUrl(QStringLiteral("documents/%1/restore")).arg(id))
        .object()
        .value(QLatin1String("hasSameDoc"))
        .toBool();
}

bool updateDoc(VellDocument &doc)
{
    if (doc.codeList.isEmpty())
        return false;
    QJsonObject body;
    if (doc.codeList.contains(VellDocumentChange::EntityLinks))
        body.insert(QStringLiteral("links"), VellPub::linksEntityToJsonArray(doc.entity));
    const ServiceReply reply =
        putJson(serviceUrl(QStringLiteral("documents/%1?expand=true")).arg(doc._id), body);
    VellPubDoc::jsonToDocObject(reply.object(), doc);
    return reply.isSuccessful();
}

} // namespace VellDocService
