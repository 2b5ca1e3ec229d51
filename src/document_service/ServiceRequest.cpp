#include <document_service/ServiceRequest.h>

#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

namespace VellDocService {

namespace {

// Strings that are mostly equal in neighbouring documents of a list, half of them, are stored only once.
void shareTexts(const VellDocument &from, VellDocument &to)
{
    constexpr QString VellDocument::*Common[] = {
        &VellDocument::parentId, &VellDocument::projectId, &VellDocument::hostId,
        &VellDocument::category, &VellDocument::type,      &VellDocument::status,
        &VellDocument::suffix,   &VellDocument::createdBy, &VellDocument::updatedBy,
    };
    for (QString VellDocument::*const field : Common) {
        if (to.*field == from.*field)
            to.*field = from.*field;
    }
}

} // namespace

QString serviceUrl(const QString &pathTemplate)
{
    return VellBaseApi::GetInstance().getBaseApi() + QLatin1String("document-service/")
        + pathTemplate;
}

QString projectUrl(const QString &pathTemplate)
{
    return serviceUrl(pathTemplate).arg(projectId());
}

QString projectId()
{
    return GetSoftCache()->currentProjectId();
}

QJsonValue idOrNull(const QString &id)
{
    return id.isEmpty() ? QJsonValue() : QJsonValue(id);
}

void ServiceReply::appendTo(QList<VellDocument> &documents,
                            void (*read)(const QJsonObject &, VellDocument &)) const
{
    const QList<QJsonObject> objects = objectList();
    documents.reserve(documents.size() + objects.size());
    for (const QJsonObject &object : objects) {
        documents.append(VellDocument());
        read(object, documents.last());
        if (documents.size() > 1)
            shareTexts(documents.at(documents.size() - 2), documents.last());
    }
}

ServiceReply get(const QString &url)
{
    return ServiceReply(NetworkManager::instance()->get(url));
}

ServiceReply postJson(const QString &url, const QJsonObject &body)
{
    return ServiceReply(NetworkManager::instance()->postJson(url, body));
}

ServiceReply putJson(const QString &url, const QJsonObject &body)
{
    return ServiceReply(NetworkManager::instance()->putJson(url, body));
}

ServiceReply putJson(const QString &url, const QJsonArray &body)
{
    return ServiceReply(NetworkManager::instance()->putJson(url, body));
}

ServiceReply deleteResource(const QString &url)
{
    return ServiceReply(NetworkManager::instance()->deleteResource(url));
}

} // namespace VellDocService
