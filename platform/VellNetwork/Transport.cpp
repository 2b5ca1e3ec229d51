#include "Transport.h"

#include "ReplyWatch.h"
#include "RequestUrl.h"
#include "UploadBody.h"

#include <VellNetwork/NetworkSettings.h>

#include <QHttpMultiPart>
#include <QNetworkRequest>
#include <QThreadStorage>

namespace {

Q_GLOBAL_STATIC(QThreadStorage<Transport *>, transports)

QNetworkRequest requestFor(const QString &address)
{
    QNetworkRequest request(requestUrl(address));
    // Qt 5's HTTP/2 stops in the middle of large uploads.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::UserVerifiedRedirectPolicy);
    // A token that was read from a file often has a line break behind it.
    const QByteArray token = NetworkSettings::instance().accessToken().simplified().toUtf8();
    if (!token.isEmpty())
        request.setRawHeader("Authorization", "Bearer " + token);
    return request;
}

} // namespace

Transport &Transport::ofThisThread()
{
    if (!transports->hasLocalData())
        transports->setLocalData(new Transport);
    return *transports->localData();
}

QNetworkReply *Transport::send(Verb verb, const QString &address, const QJsonDocument &body)
{
    QNetworkRequest request = requestFor(address);
    switch (verb) {
    case Verb::Get:
        return QNetworkAccessManager::get(request);
    case Verb::Delete:
        // As a custom request, because only those and POST and PUT have a body, here an empty one,
        // that keeps Qt from repeating them.
        return sendCustomRequest(request, "DELETE", QByteArray());
    case Verb::Post:
    case Verb::Put:
        break;
    }
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    const QByteArray json = body.toJson(QJsonDocument::Compact);
    return verb == Verb::Post ? QNetworkAccessManager::post(request, json) : put(request, json);
}

QNetworkReply *Transport::post(const QString &address, QHttpMultiPart *body)
{
    const QNetworkRequest request = requestFor(address);
    if (!body)
        return QNetworkAccessManager::post(request, QByteArray());
    QNetworkReply *reply = QNetworkAccessManager::post(request, body);
    body->setParent(reply);
    return reply;
}

QNetworkReply *Transport::createRequest(Operation operation, const QNetworkRequest &request,
                                        QIODevice *outgoingData)
{
    // A sequential source has no size to count on; Qt collects it in memory by itself.
    UploadBody *body =
        outgoingData && !outgoingData->isSequential() ? new UploadBody(outgoingData) : nullptr;
    QNetworkReply *reply =
        QNetworkAccessManager::createRequest(operation, request, body ? body : outgoingData);
    if (body)
        body->setParent(reply);
    new ReplyWatch(reply, body);
    return reply;
}
