#include <VellNetwork/NetworkEventLoop.h>

#include "reply/HttpReply.h"

#include <QJsonArray>
#include <QJsonDocument>

NetworkEventLoop::NetworkEventLoop(QNetworkReply *reply, QObject *parent)
    : QEventLoop(parent), m_reply(reply)
{
    if (!reply)
        return;
    connect(reply, &QNetworkReply::uploadProgress, this, &NetworkEventLoop::uploadProgress);
    connect(reply, &QNetworkReply::finished, this, &NetworkEventLoop::finish);
    connect(reply, &QObject::destroyed, this, &NetworkEventLoop::finish);
}

NetworkEventLoop::~NetworkEventLoop()
{
    if (!m_reply)
        return;
    m_reply->disconnect(this);
    if (m_wait == Wait::Returned) {
        // Not deleteLater(): a slot that sends a thousand requests would keep all replies until it returns.
        delete m_reply;
        return;
    }
    // May be called in a slot of the reply.
    m_reply->abort();
    m_reply->deleteLater();
}

int NetworkEventLoop::exec(ProcessEventsFlags flags)
{
    if (isFinished()) {
        finish();
        return 0;
    }
    m_wait = Wait::Running;
    if (auto *reply = qobject_cast<HttpReply *>(m_reply))
        reply->drive();
    const int code = QEventLoop::exec(flags);
    m_wait = m_wait == Wait::Ended ? Wait::Returned : Wait::None;
    return code;
}

bool NetworkEventLoop::isFinished() const
{
    return !m_reply || m_reply->isFinished();
}

bool NetworkEventLoop::isSuccessful() const
{
    return isFinished() && error() == QNetworkReply::NoError;
}

QNetworkReply::NetworkError NetworkEventLoop::error() const
{
    if (!m_reply)
        return QNetworkReply::UnknownNetworkError;
    if (!m_reply->isFinished())
        return QNetworkReply::NoError;
    if (m_reply->error() != QNetworkReply::NoError)
        return m_reply->error();
    // For replies of other access managers.
    return httpStatus() / 100 == 2 ? QNetworkReply::NoError : QNetworkReply::ProtocolFailure;
}

int NetworkEventLoop::httpStatus() const
{
    return m_reply ? m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() : 0;
}

QByteArray NetworkEventLoop::content() const
{
    // An aborted reply is closed: reading it would print a warning.
    if (m_reply && m_reply->isFinished() && m_reply->isOpen() && m_reply->bytesAvailable() > 0) {
        auto *reply = qobject_cast<HttpReply *>(m_reply);
        m_content = reply ? reply->takeAll() : m_reply->readAll();
    }
    return m_content;
}

QJsonObject NetworkEventLoop::object() const
{
    return QJsonDocument::fromJson(content()).object();
}

QList<QJsonObject> NetworkEventLoop::objectList() const
{
    QList<QJsonObject> objects;
    const QJsonArray elements = QJsonDocument::fromJson(content()).array();
    for (const QJsonValue &element : elements) {
        if (element.isObject())
            objects.append(element.toObject());
    }
    return objects;
}

void NetworkEventLoop::finish()
{
    if (m_reported)
        return;
    m_reported = true;
    if (m_wait == Wait::Running)
        m_wait = Wait::Ended;
    const QPointer<NetworkEventLoop> self(this);
    if (!isSuccessful())
        Q_EMIT errorEmit(int(error()));
    if (self)
        exit();
}
