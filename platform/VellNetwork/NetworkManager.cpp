#include <VellNetwork/NetworkManager.h>

#include "Transport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

NetworkManager::NetworkManager()
{
    qRegisterMetaType<NetworkFailure>();
}

NetworkManager *NetworkManager::instance()
{
    static NetworkManager manager;
    return &manager;
}

QNetworkReply *NetworkManager::get(const QString &url)
{
    return Transport::ofThisThread().send(Caller::Waits, Transport::Method::Get, url);
}

QNetworkReply *NetworkManager::postJson(const QString &url, const QJsonObject &body)
{
    return Transport::ofThisThread().send(Caller::Waits, Transport::Method::Post, url,
                                          QJsonDocument(body));
}

QNetworkReply *NetworkManager::putJson(const QString &url, const QJsonObject &body)
{
    return Transport::ofThisThread().send(Caller::Waits, Transport::Method::Put, url,
                                          QJsonDocument(body));
}

QNetworkReply *NetworkManager::putJson(const QString &url, const QJsonArray &body)
{
    return Transport::ofThisThread().send(Caller::Waits, Transport::Method::Put, url,
                                          QJsonDocument(body));
}

QNetworkReply *NetworkManager::deleteResource(const QString &url)
{
    return Transport::ofThisThread().send(Caller::Waits, Transport::Method::Delete, url);
}

QNetworkReply *NetworkManager::getFrom(const QString &url, qint64 offset,
                                       const QByteArray &entityTag)
{
    return Transport::ofThisThread().getFrom(url, offset, entityTag);
}
