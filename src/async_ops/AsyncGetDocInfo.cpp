#include <async_ops/AsyncGetDocInfo.h>

#include <async_ops/DocumentReply.h>

#include <VellNetwork/AsyncNetManager.h>
#include <VellNetwork/VellBaseApi.h>

AsyncGetDocInfo::AsyncGetDocInfo(QObject *parent)
    : QObject(parent), netManager(new AsyncNetManager(this))
{
    connect(netManager, SIGNAL(netComplete(const QByteArray &)), this,
            SLOT(getComplete(const QByteArray &)));
    connect(netManager, SIGNAL(error(int)), this, SIGNAL(error(int)));
}

AsyncGetDocInfo::~AsyncGetDocInfo()
{
    disconnect(netManager, SIGNAL(netComplete(const QByteArray &)), this,
               SLOT(getComplete(const QByteArray &)));
    disconnect(netManager, SIGNAL(error(int)), this, SIGNAL(error(int)));
    delete netManager;
    netManager = nullptr;
}

void AsyncGetDocInfo::getDocInfo(const QString &id)
{
    // Directly below the base address, not below document-service.
    netManager->get(VellBaseApi::GetInstance().getBaseApi()
                    + QStringLiteral("documents/%1?info=true&pwd=true").arg(id));
}

void AsyncGetDocInfo::getComplete(const QByteArray &content)
{
    Q_EMIT getDocInfoFinish(documentOfReply(content));
}
