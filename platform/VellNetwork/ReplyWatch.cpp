#include "ReplyWatch.h"

#include "RequestTrace.h"
#include "UploadBody.h"

#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace {

// The time-out is counted in ticks, so that a thread that was busy elsewhere for longer than the whole
// time-out, and could not see anything move, loses only one of them.
constexpr int TicksOfTimeout = 4;

constexpr qint64 LongestErrorBody = 65536;

int defaultPort(const QUrl &url)
{
    return url.scheme() == QLatin1String("https") ? 443 : 80;
}

// The redirects after which the same request, body included, goes to the new address.
bool repeatsElsewhere(int status)
{
    return status == 307 || status == 308;
}

bool sameServer(const QUrl &a, const QUrl &b)
{
    return a.host() == b.host() && a.port(defaultPort(a)) == b.port(defaultPort(b));
}

} // namespace

ReplyWatch::ReplyWatch(QNetworkReply *reply, UploadBody *body)
    : QObject(reply), m_reply(reply), m_body(body), m_operation(reply->operation()),
      m_url(reply->url())
{
    m_age.start();
    connect(reply, &QNetworkReply::finished, this, &ReplyWatch::conclude);
    connect(reply, &QNetworkReply::redirected, this, &ReplyWatch::judgeRedirect);
    connect(reply, &QNetworkReply::uploadProgress, this, &ReplyWatch::moved);
    connect(reply, &QNetworkReply::downloadProgress, this, [this](qint64 receivedBytes) {
        m_receivedBytes = receivedBytes;
        moved();
    });
    connect(reply, &QNetworkReply::readyRead, this, &ReplyWatch::moved);
    connect(reply, &QNetworkReply::metaDataChanged, this, [this] {
        m_headArrived = true;
        moved();
    });
    connect(reply, &QNetworkReply::encrypted, this, &ReplyWatch::moved);
    if (body) {
        connect(body, &UploadBody::moved, this, &ReplyWatch::moved);
        connect(body, &UploadBody::broken, this, [this] {
            end(QNetworkReply::UnknownNetworkError, tr("The file could not be read to its end"));
        });
        // Qt takes up the body before it tells about the redirect, and keeps the status of one that it
        // has followed.
        body->setResendRule([this] {
            return std::exchange(m_headArrived, false) && repeatsElsewhere(replyStatus(m_reply));
        });
        connect(body, &UploadBody::resendRefused, this, [this] {
            condemn(QNetworkReply::RemoteHostClosedError,
                    tr("The connection was closed before the answer came"));
        });
    }

    connect(&m_timer, &QTimer::timeout, this, &ReplyWatch::tick);
    const std::chrono::milliseconds timeout = NetworkSettings::instance().stallTimeout();
    m_timer.setInterval(qMax(timeout / TicksOfTimeout, std::chrono::milliseconds(1)));
    if (timeout.count() > 0 && !reply->isFinished())
        m_timer.start();
}

ReplyWatch *ReplyWatch::of(const QNetworkReply *reply)
{
    return reply->findChild<ReplyWatch *>(QString(), Qt::FindDirectChildrenOnly);
}

void ReplyWatch::conclude()
{
    m_timer.stop();
    if (replyError(m_reply) == QNetworkReply::NoError && isCutShort())
        condemn(QNetworkReply::RemoteHostClosedError,
                tr("The connection was closed in the middle of the answer"));
    else if (replyError(m_reply) == QNetworkReply::UnknownNetworkError && isLostWhileSending())
        condemn(QNetworkReply::RemoteHostClosedError,
                tr("The connection was closed before the answer came"));
    trace();
    const QNetworkReply::NetworkError error = replyError(m_reply);
    // Only the client itself cancels.
    if (error == QNetworkReply::NoError || error == QNetworkReply::OperationCanceledError)
        return;
    NetworkFailure failure;
    failure.error = error;
    failure.httpStatus = replyStatus(m_reply);
    failure.message = message();
    failure.url = m_reply->url().adjusted(QUrl::RemoveUserInfo);
    Q_EMIT NetworkManager::instance()->requestFailed(failure);
}

void ReplyWatch::moved()
{
    m_idleTicks = 0;
    if (m_timer.isActive())
        m_timer.start();
}

void ReplyWatch::tick()
{
    if (++m_idleTicks >= TicksOfTimeout)
        end(QNetworkReply::TimeoutError, tr("Nothing was sent or received for too long"));
}

void ReplyWatch::judgeRedirect(const QUrl &target)
{
    moved();
    const QString reason = refusal(target);
    if (!reason.isEmpty()) {
        end(QNetworkReply::InsecureRedirectError, reason);
        return;
    }
    m_url = target;
    m_operation = m_reply->operation();
    Q_EMIT m_reply->redirectAllowed();
    // Qt connects the signal to its own slot once more for each hop, and would send the next request
    // twice and lose its answer.
    disconnect(m_reply, &QNetworkReply::redirectAllowed, m_reply, nullptr);
}

QString ReplyWatch::refusal(const QUrl &target) const
{
    if (m_url.scheme() == QLatin1String("https") && target.scheme() != QLatin1String("https"))
        return tr("The service redirected to an address that is not encrypted");
    if (m_reply->request().hasRawHeader("Authorization") && !sameServer(m_url, target))
        return tr("The service redirected to another server, which must not get the access token");
    // A 303 says that the change has been made, and where to read what came of it.
    if (m_reply->operation() != m_operation && replyStatus(m_reply) != 303)
        return tr("The service redirected a change, which would not be made there");
    return {};
}

// Qt takes an answer for whole when the connection is reset at the wrong moment.
bool ReplyWatch::isCutShort() const
{
    // Gone where Qt has decompressed the body.
    const QByteArray length = m_reply->rawHeader("Content-Length");
    return !length.isEmpty() && m_receivedBytes < length.toLongLong();
}

// A closed connection is an unknown error to Qt when writing finds it, and not reading.
bool ReplyWatch::isLostWhileSending() const
{
    return m_verdict == QNetworkReply::NoError && m_body && m_body->pos() > 0
        && replyStatus(m_reply) == 0;
}

void ReplyWatch::condemn(QNetworkReply::NetworkError error, const QString &reason)
{
    m_verdict = error;
    m_reason = reason;
}

void ReplyWatch::end(QNetworkReply::NetworkError error, const QString &reason)
{
    if (m_reply->isFinished())
        return;
    condemn(error, reason);
    m_reply->abort();
}

QString ReplyWatch::message() const
{
    QString text = serviceMessage();
    if (!text.isEmpty())
        return text;
    if (!m_reason.isEmpty())
        return m_reason;
    // Qt's own words for a status hold the whole address, a password included.
    const int status = replyStatus(m_reply);
    if (status >= 300) {
        const auto phrase =
            m_reply->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString();
        return tr("The service answered %1 %2").arg(status).arg(phrase).trimmed();
    }
    return m_reply->errorString();
}

QString ReplyWatch::serviceMessage() const
{
    const qint64 size = m_reply->isOpen() ? m_reply->bytesAvailable() : 0;
    if (size == 0 || size > LongestErrorBody)
        return {};
    const QJsonDocument body = QJsonDocument::fromJson(m_reply->peek(size));
    return body.object().value(QLatin1String("error")).toString();
}

void ReplyWatch::trace() const
{
    RequestTrace line;
    line.reply = m_reply;
    line.error = replyError(m_reply);
    // Qt tells nothing of the progress of a small body.
    line.sentBytes = m_body ? m_body->pos() : 0;
    line.milliseconds = m_age.elapsed();
    line.write();
}

QNetworkReply::NetworkError replyError(const QNetworkReply *reply)
{
    const ReplyWatch *watch = ReplyWatch::of(reply);
    if (watch && watch->verdict() != QNetworkReply::NoError)
        return watch->verdict();
    if (reply->error() != QNetworkReply::NoError)
        return reply->error();
    return replyStatus(reply) / 100 == 2 ? QNetworkReply::NoError : QNetworkReply::ProtocolFailure;
}

int replyStatus(const QNetworkReply *reply)
{
    return reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}
