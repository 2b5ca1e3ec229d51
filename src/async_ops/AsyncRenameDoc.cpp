#include <async_ops/AsyncRenameDoc.h>

#include <async_ops/DocumentReply.h>

#include <VellNetwork/AsyncNetManager.h>
#include <VellNetwork/VellBaseApi.h>

AsyncRenameDoc::AsyncRenameDoc(QObject *parent)
    : QObject(parent), netManager(new AsyncNetManager(this))
{
    connect(netManager, &AsyncNetManager::netComplete, this, &AsyncRenameDoc::updateComplete);
    connect(netManager, QOverload<int>::of(&AsyncNetManager::error), this, &AsyncRenameDoc::error);
}

AsyncRenameDoc::~AsyncRenameDoc()
{
    delete netManager;
    netManager = nullptr;
}

void AsyncRenameDoc::renameDoc(const QString &id, const QString &name)
{
    QJsonObject body{{QStringLiteral("name"), name}};
    netManager->put(VellBaseApi::GetInstance().getBaseApi() + QLatin1String("document-service/")
                        + QStringLiteral("documents/%1").arg(id),
                    body);
}

void AsyncRenameDoc::updateComplete(const QByteArray &content)
{
    Q_EMIT renameDocFinish(documentOfReply(content));
}
