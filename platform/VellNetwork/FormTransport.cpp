#include "FormTransport.h"

#include "reply/HttpReply.h"

#include <QHttpMultiPart>

#include <utility>

namespace {

QByteArray allBytes(QIODevice *device)
{
    if (device->isSequential())
        return device->readAll();
    // Allocates exactly the necessary memory; readAll() takes up to twice as much.
    QByteArray bytes(int(device->size()), Qt::Uninitialized);
    bytes.truncate(int(qMax(qint64(0), device->read(bytes.data(), bytes.size()))));
    return bytes;
}

//! The first QNetworkAccessManager of a process registers types; Qt warns if another thread does so at the same time.
QObject *afterTypeRegistration(QObject *parent)
{
    static const bool isRegistered = [] {
        const QNetworkAccessManager first;
        return true;
    }();
    Q_UNUSED(isRegistered)
    return parent;
}

} // namespace

FormTransport::FormTransport(QObject *parent) : QNetworkAccessManager(afterTypeRegistration(parent))
{}

QNetworkReply *FormTransport::post(const QNetworkRequest &request, QHttpMultiPart *body)
{
    m_isStreaming = body->findChild<QIODevice *>() != nullptr;
    QNetworkReply *reply = QNetworkAccessManager::post(request, body);
    body->setParent(reply);
    return reply;
}

QNetworkReply *FormTransport::createRequest(Operation operation, const QNetworkRequest &request,
                                            QIODevice *outgoingData)
{
    RequestBody body = m_isStreaming && !outgoingData->isSequential()
        ? RequestBody::streamed(outgoingData)
        : RequestBody::inMemory(allBytes(outgoingData));
    return new HttpReply(operation, "POST", request, std::move(body), Caller::GoesOn, this);
}
