#include "HttpReply.h"

#include "RedirectRule.h"
#include "RequestTrace.h"

#include "../RequestContextPrivate.h"
#include "../engine/TransferEngine.h"

#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/NetworkSettings.h>

#include <QHttpMultiPart>
#include <QPointer>
#include <QTimerEvent>

#include <cstring>
#include <utility>

namespace {

// The time-out is counted in ticks, so that a thread that did not process events for longer than the whole
// time-out loses only one tick.
constexpr int TicksOfTimeout = 4;

// How much may be unread by a client that reads while the response arrives, before the connection is paused.
constexpr qint64 ReadAheadBytes = qint64(4) * 1048576;
// How much is stored for a client that reads nothing before the end.
constexpr qint64 MostKeptBytes = qint64(1024) * 1048576;

QList<QByteArray> headerLines(const QNetworkRequest &request, bool hasBody)
{
    QList<QByteArray> lines;
    const QList<QByteArray> names = request.rawHeaderList();
    for (const QByteArray &name : names) {
        if (hasBody || name.toLower() != "content-type")
            lines.append(name + ": " + request.rawHeader(name));
    }
    // libcurl would add that of a web form.
    if (hasBody && !request.hasRawHeader("Content-Type"))
        lines.append(QByteArrayLiteral("Content-Type:"));
    if (!request.hasRawHeader("User-Agent"))
        lines.append(QByteArrayLiteral("User-Agent: VellNetwork"));
    return lines;
}

bool isNamed(const QPair<QByteArray, QByteArray> &field, const char *name)
{
    return field.first.compare(name, Qt::CaseInsensitive) == 0;
}

} // namespace

HttpReply::HttpReply(QNetworkAccessManager::Operation operation, const QByteArray &method,
                     const QNetworkRequest &request, RequestBody body, Caller caller,
                     QObject *parent)
    : QNetworkReply(parent), m_context(RequestContext::Private::current()), m_body(std::move(body)),
      m_caller(caller), m_method(method)
{
    setOperation(operation);
    setRequest(request);
    setUrl(request.url());
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    m_age.start();
    const std::chrono::milliseconds timeout = NetworkSettings::instance().stallTimeout();
    if (request.url().isEmpty()) {
        failLater(FailureText::badAddress());
        return;
    }
    if (m_context && !m_context->add(this)) {
        failLater(FailureText::cancelled());
        return;
    }
    if (timeout.count() > 0)
        m_timer.start(int(qMax(timeout / TicksOfTimeout, std::chrono::milliseconds(1)).count()),
                      this);
    start();
}

HttpReply::~HttpReply()
{
    if (m_context)
        m_context->remove(this);
    if (m_transfer)
        TransferEngine::instance().cancel(m_transfer);
}

void HttpReply::start()
{
    m_sentBytes = 0;
    TransferRequest transfer;
    transfer.method = m_method;
    transfer.url = url();
    transfer.body = m_body.bytes();
    transfer.streamedBytes = m_body.streamedBytes();
    transfer.headers = headerLines(request(), m_body.bytes() || m_body.isStreamed());
    transfer.connection = connectionOptions();
    transfer.caller = m_caller;
    m_transfer = std::make_shared<Transfer>(std::move(transfer), this);
    feed(m_body.isStreamed() ? Transfer::OutboxBlocks : 0);
    TransferEngine::instance().start(m_transfer);
}

ConnectionOptions HttpReply::connectionOptions() const
{
    RequestSettings settings;
    ConnectionOptions options;
    if (m_context) {
        settings = m_context->settings;
        const std::lock_guard<std::mutex> lock(m_context->mutex);
        options.sentPerSecond = m_context->sentPerSecond;
        options.receivedPerSecond = m_context->receivedPerSecond;
    } else {
        const NetworkSettings &common = NetworkSettings::instance();
        settings.caCertificates = common.caCertificates();
        settings.clientCertificate = common.clientCertificate();
        settings.proxy = common.proxy();
    }
    options.caCertificates = settings.caCertificates;
    options.clientCertificate = settings.clientCertificate.certificate;
    options.clientKey = settings.clientCertificate.key;
    options.clientKeyPassword = settings.clientCertificate.password;
    options.proxy = settings.proxy;
    return options;
}

void HttpReply::drive()
{
    if (m_transfer)
        TransferEngine::instance().drive(m_transfer.get());
}

QByteArray HttpReply::takeAll()
{
    m_data.remove(0, int(std::exchange(m_dataOffset, 0)));
    return std::exchange(m_data, {});
}

void HttpReply::abort()
{
    if (isFinished())
        return;
    const QPointer<HttpReply> self(this);
    fail(FailureText::cancelled());
    if (self)
        QNetworkReply::close();
}

void HttpReply::close()
{
    abort();
    QNetworkReply::close();
}

qint64 HttpReply::bytesAvailable() const
{
    return QNetworkReply::bytesAvailable() + m_data.size() - m_dataOffset;
}

void HttpReply::setReadBufferSize(qint64 bytes)
{
    QNetworkReply::setReadBufferSize(bytes);
    if (std::exchange(m_isDataLeft, false))
        QMetaObject::invokeMethod(this, &HttpReply::takeNews, Qt::QueuedConnection);
}

bool HttpReply::event(QEvent *event)
{
    if (event->type() != Transfer::newsType())
        return QNetworkReply::event(event);
    takeNews();
    return true;
}

qint64 HttpReply::readData(char *data, qint64 maxSize)
{
    const qint64 count = qMin(maxSize, m_data.size() - m_dataOffset);
    if (count <= 0)
        return isFinished() ? -1 : 0;
    std::memcpy(data, m_data.constData() + m_dataOffset, size_t(count));
    m_dataOffset += count;
    if (m_dataOffset == m_data.size())
        takeAll();
    m_isReadBeforeTheEnd = true;
    if (std::exchange(m_isDataLeft, false))
        QMetaObject::invokeMethod(this, &HttpReply::takeNews, Qt::QueuedConnection);
    return count;
}

qint64 HttpReply::room() const
{
    qint64 most = readBufferSize();
    if (most == 0)
        most = m_isReadBeforeTheEnd ? ReadAheadBytes : MostKeptBytes + 1;
    return qMax(qint64(0), most - (m_data.size() - m_dataOffset));
}

void HttpReply::takeNews()
{
    if (!m_transfer)
        return;
    const QPointer<HttpReply> self(this);
    const std::shared_ptr<Transfer> transfer = m_transfer;
    const auto isOver = [&] { return !self || m_transfer != transfer; };
    const Transfer::News news = transfer->take(room());
    m_isDataLeft = news.hasMoreData;
    if (news.wantedBlocks > 0)
        feed(news.wantedBlocks);
    if (isOver())
        return;
    if (news.sentBytes != m_sentBytes)
        reportProgress(news.sentBytes);
    if (!isOver() && news.head)
        readHead(*news.head);
    if (!isOver() && !news.data.isEmpty())
        addData(news.data);
    if (!isOver() && news.end)
        finishTransfer(*news.end);
}

void HttpReply::reportProgress(qint64 sentBytes)
{
    m_sentBytes = sentBytes;
    Q_EMIT uploadProgress(sentBytes, m_body.size());
}

void HttpReply::readHead(const ResponseHead &head)
{
    m_head = head;
    m_redirectTarget.clear();
    m_receivedBytes = 0;
    m_totalBytes = -1;
    bool isDecompressed = false;
    for (const auto &field : head.fields) {
        if (isNamed(field, "location") && RedirectRule::isRedirect(head.status))
            m_redirectTarget = m_transfer->request().url.resolved(QUrl::fromEncoded(field.second));
        else if (isNamed(field, "content-encoding"))
            isDecompressed = true;
        else if (isNamed(field, "content-length"))
            m_totalBytes = field.second.toLongLong();
    }
    if (!m_redirectTarget.isEmpty())
        return;
    if (isDecompressed)
        m_totalBytes = -1;
    setAttribute(QNetworkRequest::HttpStatusCodeAttribute, head.status);
    setAttribute(QNetworkRequest::HttpReasonPhraseAttribute, QString::fromLatin1(head.reason));
    setAttribute(QNetworkRequest::ConnectionEncryptedAttribute,
                 url().scheme() == QLatin1String("https"));
    for (const auto &field : head.fields) {
        // Like Qt: of the decompressed body.
        if (isDecompressed && isNamed(field, "content-length"))
            continue;
        const QByteArray before = rawHeader(field.first);
        const char *separator = isNamed(field, "set-cookie") ? "\n" : ", ";
        setRawHeader(field.first,
                     before.isNull() ? field.second : before + separator + field.second);
    }
    Q_EMIT metaDataChanged();
}

void HttpReply::addData(const QByteArray &data)
{
    if (!m_redirectTarget.isEmpty())
        return;
    m_data.remove(0, int(std::exchange(m_dataOffset, 0)));
    if (m_data.isEmpty())
        m_data = data;
    else
        m_data += data;
    m_receivedBytes += data.size();
    if (m_data.size() > MostKeptBytes) {
        fail(FailureText::tooLargeToKeep());
        return;
    }
    const QPointer<HttpReply> self(this);
    Q_EMIT readyRead();
    if (self && !isFinished())
        Q_EMIT downloadProgress(m_receivedBytes, m_totalBytes);
}

void HttpReply::feed(int blocks)
{
    for (int i = 0; i < blocks; ++i) {
        const QByteArray block = m_body.nextBlock();
        if (m_body.isBroken()) {
            failLater(FailureText::brokenBody());
            return;
        }
        if (block.isEmpty())
            return;
        m_transfer->supply(block);
    }
}

void HttpReply::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timer.timerId()) {
        QNetworkReply::timerEvent(event);
        return;
    }
    const quint64 activity = m_transfer ? m_transfer->activity() : 0;
    // Waiting for a connection is not a stall: the requests before it have their own time-outs.
    if (activity == 0)
        return;
    if (activity != m_activity || room() == 0) {
        m_activity = activity;
        m_idleTicks = 0;
    } else if (++m_idleTicks >= TicksOfTimeout) {
        fail(FailureText::timedOut());
    }
}

void HttpReply::finishTransfer(const TransferEnd &end)
{
    RequestFailure failure = FailureText::ofTransfer(end, m_transfer->request().url);
    if (failure.error == NoError && !m_redirectTarget.isEmpty()) {
        follow(m_redirectTarget);
        return;
    }
    const QPointer<HttpReply> self(this);
    if (failure.error == NoError) {
        failure = FailureText::ofResponse(m_head, m_data.mid(int(m_dataOffset)), end.isOverProxy);
        if (m_body.size() > 0 && m_sentBytes != m_body.size() && failure.error == NoError)
            reportProgress(m_body.size());
    }
    if (self && !isFinished())
        finish(failure);
}

void HttpReply::follow(const QUrl &target)
{
    const QString refusal = RedirectRule::refusal(m_head.status, m_method, url(), target,
                                                  request().hasRawHeader("Authorization"));
    const QString scheme = target.scheme();
    if (!refusal.isEmpty()) {
        finish(FailureText::refusedRedirect(refusal));
    } else if (scheme != QLatin1String("http") && scheme != QLatin1String("https")) {
        finish(FailureText::badAddress());
    } else if (++m_redirects > RedirectRule::MostRedirects) {
        finish(FailureText::tooManyRedirects());
    } else if (!m_body.restart()) {
        finish(FailureText::brokenBody());
    } else {
        const QByteArray before =
            std::exchange(m_method, RedirectRule::nextMethod(m_head.status, m_method));
        if (m_method != before)
            m_body = RequestBody();
        setUrl(target);
        start();
        Q_EMIT redirected(target);
    }
}

void HttpReply::failLater(const RequestFailure &failure)
{
    QMetaObject::invokeMethod(
        this, [this, failure] { fail(failure); }, Qt::QueuedConnection);
}

void HttpReply::fail(const RequestFailure &failure)
{
    if (m_transfer)
        TransferEngine::instance().cancel(m_transfer);
    finish(failure);
}

void HttpReply::finish(const RequestFailure &failure)
{
    if (isFinished())
        return;
    m_timer.stop();
    m_transfer.reset();
    // Before a slot sends the next request.
    m_body = RequestBody();
    qDeleteAll(findChildren<QHttpMultiPart *>(QString(), Qt::FindDirectChildrenOnly));
    setFinished(true);
    RequestTrace trace;
    trace.reply = this;
    trace.method = m_method;
    trace.error = failure.error;
    trace.sentBytes = m_sentBytes;
    trace.receivedBytes = m_receivedBytes;
    trace.milliseconds = m_age.elapsed();
    trace.write();
    const QPointer<HttpReply> self(this);
    if (failure.error != NoError) {
        setError(failure.error, failure.message);
        // The deprecated signal with the same meaning, for clients that use it.
        QMetaObject::invokeMethod(this, "error", Q_ARG(QNetworkReply::NetworkError, failure.error));
        if (self)
            Q_EMIT errorOccurred(failure.error);
        if (self)
            report(failure);
    }
    if (self)
        Q_EMIT readChannelFinished();
    if (self)
        Q_EMIT finished();
}

void HttpReply::report(const RequestFailure &failure)
{
    // Only the client itself can cancel.
    if (failure.error == OperationCanceledError)
        return;
    NetworkFailure report;
    report.error = failure.error;
    report.httpStatus = attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    report.message = failure.message;
    report.url = url().adjusted(QUrl::RemoveUserInfo);
    report.reason = failure.reason;
    report.method = m_method;
    if (m_context)
        m_context->setFailure(report);
    Q_EMIT NetworkManager::instance()->requestFailed(report);
}
