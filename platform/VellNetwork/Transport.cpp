#include "Transport.h"

#include "FormTransport.h"
#include "RequestUrl.h"
#include "engine/TransferEngine.h"
#include "reply/HttpReply.h"

#include <VellNetwork/NetworkSettings.h>

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

} // namespace

Transport &Transport::ofThisThread()
{
    if (!transports->hasLocalData())
        transports->setLocalData(new Transport);
    return *transports->localData();
}

Transport::~Transport()
{
    TransferEngine::leaveThread();
}

QNetworkReply *Transport::send(Caller caller, Method method, const QString &address,
                               const QJsonDocument &body)
{
    QNetworkRequest request = requestFor(address);
    switch (method) {
    case Method::Get:
        return new HttpReply(QNetworkAccessManager::GetOperation, "GET", request, {}, caller, this);
    case Method::Delete:
        return new HttpReply(QNetworkAccessManager::DeleteOperation, "DELETE", request, {}, caller,
                             this);
    case Method::Post:
    case Method::Put:
        break;
    }
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    RequestBody json = RequestBody::inMemory(body.toJson(QJsonDocument::Compact));
    if (method == Method::Post)
        return new HttpReply(QNetworkAccessManager::PostOperation, "POST", request, std::move(json),
                             caller, this);
    return new HttpReply(QNetworkAccessManager::PutOperation, "PUT", request, std::move(json),
                         caller, this);
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
    return new HttpReply(QNetworkAccessManager::GetOperation, "GET", request, {}, Caller::GoesOn,
                         this);
}

QNetworkReply *Transport::post(const QString &address, QHttpMultiPart *body)
{
    const QNetworkRequest request = requestFor(address);
    if (!body)
        return new HttpReply(QNetworkAccessManager::PostOperation, "POST", request,
                             RequestBody::inMemory(QByteArray()), Caller::GoesOn, this);
    if (!m_forms)
        m_forms = new FormTransport(this);
    return m_forms->post(request, body);
}
