#include <async_ops/AsyncGetRecent.h>

#include <document_model/DocumentJson.h>

#include <VellNetwork/AsyncNetManager.h>
#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QJsonArray>
#include <QJsonDocument>

AsyncGetRecent::AsyncGetRecent(QObject *parent)
    : QObject(parent), netManager(new AsyncNetManager(this))
{
    connect(netManager, &AsyncNetManager::netComplete, this, &AsyncGetRecent::getComplete);
    connect(netManager, QOverload<int>::of(&AsyncNetManager::error), this, &AsyncGetRecent::error);
}

AsyncGetRecent::~AsyncGetRecent()
{
    delete netManager;
    netManager = nullptr;
}

void AsyncGetRecent::getRecentDocs(const QString &, const QString &category)
{
    const QString path = QStringLiteral("document-service/projects/%1/documents?where="
                                        R"({"type":"file","createdBy":"%2"})"
                                        "&category=%3&order=-createdAt&limit=50&linkedEntity=true")
                             .arg(GetSoftCache()->currentProjectId())
                             .arg(GetSoftCache()->currentUserId())
                             .arg(category);
    netManager->get(VellBaseApi::GetInstance().getBaseApi() + path);
}

void AsyncGetRecent::getComplete(const QByteArray &content)
{
    VellDocumentList documents;
    const QJsonArray array = QJsonDocument::fromJson(content).array();
    for (const QJsonValue &element : array) {
        const QJsonObject object = element.toObject();
        VellDocument document;
        VellPubDoc::jsonToDocObject(object, document);
        if (document.documentId.isEmpty())
            document.documentId = object.value(QLatin1String("_id")).toString();
        documents.append(document);
    }
    Q_EMIT getRecentDocsFinish(documents);
}
