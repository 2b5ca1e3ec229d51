#include <document_service/ServiceRequest.h>

#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

namespace VellDocService {

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
