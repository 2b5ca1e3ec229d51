#include <VellNetwork/AsyncNetManager.h>

#include "Transport.h"
#include "reply/HttpReply.h"

#include <QHttpMultiPart>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

AsyncNetManager::AsyncNetManager(QObject *parent) : QObject(parent)
{
    qRegisterMetaType<QNetworkReply::NetworkError>();
}

AsyncNetManager::~AsyncNetManager()
{
    pause();
}

void AsyncNetManager::get(const QString &url)
{
    watch(Transport::ofThisThread().send(Caller::GoesOn, Transport::Method::Get, url));
}

void AsyncNetManager::post(const QString &url, QHttpMultiPart *body)
{
    watch(Transport::ofThisThread().post(url, body));
}

void AsyncNetManager::post(const QString &url, QJsonObject &body)
{
    watch(Transport::ofThisThread().send(Caller::GoesOn, Transport::Method::Post, url,
                                         QJsonDocument(body)));
}

void AsyncNetManager::put(const QString &url, QJsonObject &body)
{
    watch(Transport::ofThisThread().send(Caller::GoesOn, Transport::Method::Put, url,
                                         QJsonDocument(body)));
}

void AsyncNetManager::pause()
{
    const QList<QPointer<QNetworkReply>> replies = std::exchange(m_replies, {});
    for (const QPointer<QNetworkReply> &reply : replies) {
        if (!reply)
            continue;
        // Before abort(), which emits finished().
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
}

void AsyncNetManager::watch(QNetworkReply *reply)
{
    m_replies.append(reply);
    connect(reply, &QNetworkReply::uploadProgress, this, &AsyncNetManager::uploadProgress);
    connect(reply, &QNetworkReply::finished, this, [this, reply] { finish(reply); });
}

void AsyncNetManager::finish(QNetworkReply *reply)
{
    m_replies.removeOne(reply);
    reply->deleteLater();
    const QNetworkReply::NetworkError code = reply->error();
    if (code == QNetworkReply::NoError) {
        Q_EMIT netComplete(qobject_cast<HttpReply *>(reply)->takeAll());
        return;
    }
    const QPointer<AsyncNetManager> self(this);
    Q_EMIT error(code);
    if (self)
        Q_EMIT error(int(code));
}
