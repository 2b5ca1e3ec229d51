#include "Transport.h"

#include "RequestUrl.h"
#include "reply/HttpReply.h"

#include <VellNetwork/NetworkSettings.h>

#include <QHttpMultiPart>
#include <QNetworkRequest>
#include <QThreadStorage>

#include <utility>

namespace {

Q_GLOBAL_STATIC(QThreadStorage<Transport *>, transports)

QNetworkRequest requestFor(const QString &address)
{
    QNetworkRequest request(requestUrl(address));
    // A token from a file often ends with a line break.
    const QByteArray token = NetworkSettings::instance().accessToken().simplified().toUtf8();
    if (!token.isEmpty())
        request.setRawHeader("Authorization", "Bearer " + token);
    return request;
}

QByteArray allBytes(QIODevice *device)
{
    if (device->isSequential())
        return device->readAll();
    // Allocates exactly the necessary memory; readAll() takes up to twice as much.
    QByteArray bytes(int(device->size()), Qt::Uninitialized);
    bytes.truncate(int(qMax(qint64(0), device->read(bytes.data(), bytes.size()))));
    return bytes;
}

} // namespace

Transport &Transport::ofThisThread()
{
    if (!transports->hasLocalData())
        transports->setLocalData(new Transport);
    return *transports->localData();
}

QNetworkReply *Transport::send(Caller caller, Method method, const QString &address,
                               const QJsonDocument &body)
{
    QNetworkRequest request = requestFor(address);
    switch (method) {
    case Method::Get:
        return new HttpReply(GetOperation, "GET", request, {}, caller, this);
    case Method::Delete:
        return new HttpReply(DeleteOperation, "DELETE", request, {}, caller, this);
    case Method::Post:
    case Method::Put:
        break;
    }
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    RequestBody json = RequestBody::inMemory(body.toJson(QJsonDocument::Compact));
    if (method == Method::Post)
        return new HttpReply(PostOperation, "POST", request, std::move(json), caller, this);
    return new HttpReply(PutOperation, "PUT", request, std::move(json), caller, this);
}

QNetworkReply *Transport::getFrom(const QString &address, qint64 offset,
                                  const QByteArray &entityTag)
{
    QNetworkRequest request = requestFor(address);
    request.setRawHeader("Range", "bytes=" + QByteArray::number(offset) + '-');
    if (!entityTag.isEmpty())
        request.setRawHeader("If-Range", entityTag);
    // A part of a compressed response could not be decompressed.
    request.setRawHeader("Accept-Encoding", "identity");
    return new HttpReply(GetOperation, "GET", request, {}, Caller::GoesOn, this);
}

QNetworkReply *Transport::post(const QString &address, QHttpMultiPart *body)
{
    const QNetworkRequest request = requestFor(address);
    if (!body)
        return new HttpReply(PostOperation, "POST", request, RequestBody::inMemory(QByteArray()),
                             Caller::GoesOn, this);
    m_isStreaming = body->findChild<QIODevice *>() != nullptr;
    QNetworkReply *reply = QNetworkAccessManager::post(request, body);
    body->setParent(reply);
    return reply;
}

QNetworkReply *Transport::createRequest(Operation operation, const QNetworkRequest &request,
                                        QIODevice *outgoingData)
{
    RequestBody body = m_isStreaming && !outgoingData->isSequential()
        ? RequestBody::streamed(outgoingData)
        : RequestBody::inMemory(allBytes(outgoingData));
    return new HttpReply(operation, "POST", request, std::move(body), Caller::GoesOn, this);
}
