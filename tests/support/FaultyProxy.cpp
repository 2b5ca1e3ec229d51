#include "FaultyProxy.h"

#include "HttpHead.h"

#include <QHostAddress>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTimer>

namespace {

constexpr qint64 WindowBytes = qint64(256) * 1024;

//! Returns the number in the file name "MD5-NUMBER" in the header of a form's first part.
int chunkNumber(const QByteArray &formStart)
{
    static const QRegularExpression name("filename=\"[0-9a-f]*-([0-9]+)\"");
    const QRegularExpressionMatch match = name.match(QString::fromLatin1(formStart));
    return match.hasMatch() ? match.captured(1).toInt() : -1;
}

} // namespace

int ProxiedRequest::acknowledgedChunks() const
{
    if (chunk < 0 || status != 200 || !isAnswered)
        return 0;
    return QJsonDocument::fromJson(answer).object().value(QLatin1String("savedChunk")).toInt();
}

//! One connection of the client and the one to the service that belongs to it.
class FaultyProxy::Link : public QObject
{
public:
    Link(FaultyProxy *proxy, QTcpSocket *client);

private:
    using Kind = ProxyFault::Kind;
    using Point = ProxyFault::Point;

    void takeRequest();
    bool takeHead();
    void passBody();
    void takeAnswer();
    void passAnswer();
    void passHalf();
    void endAnswer();
    void settle();
    bool isStruck(Point point);
    void strike();
    void proceed();
    void end();
    ProxiedRequest &request() { return m_proxy->m_requests[m_number]; }

    FaultyProxy *m_proxy;
    QTcpSocket *m_client;
    QTcpSocket *m_service;
    std::optional<ProxyFault> m_fault;
    bool m_isHeld = false;
    int m_number = -1; //!< of the request in progress; -1 between two requests
    QByteArray m_request; //!< what has arrived and has not been passed on
    qint64 m_bodyBytes = 0;
    qint64 m_passedBytes = 0; //!< of the body
    QByteArray m_answer;
    int m_answerHead = 0; //!< its length; 0 until the response has arrived
    bool m_isAnswered = false;
};

FaultyProxy::Link::Link(FaultyProxy *proxy, QTcpSocket *client)
    : QObject(proxy), m_proxy(proxy), m_client(client), m_service(new QTcpSocket(this))
{
    client->setParent(this);
    client->setReadBufferSize(WindowBytes);
    for (QTcpSocket *socket : {m_client, m_service})
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(client, &QTcpSocket::readyRead, this, &Link::takeRequest);
    connect(client, &QTcpSocket::disconnected, this, &Link::end);
    connect(m_service, &QTcpSocket::connected, this, &Link::takeRequest);
    connect(m_service, &QTcpSocket::bytesWritten, this, &Link::takeRequest);
    connect(m_service, &QTcpSocket::readyRead, this, &Link::takeAnswer);
    connect(m_service, &QTcpSocket::disconnected, this, &Link::end);
    connect(m_service, &QTcpSocket::errorOccurred, this, &Link::end);
    m_service->connectToHost(QHostAddress(QHostAddress::LocalHost), proxy->m_servicePort);
}

void FaultyProxy::Link::takeRequest()
{
    // The rest is left in the client's socket, so that the client notices a slow service.
    while (!m_isHeld && m_service->state() == QAbstractSocket::ConnectedState
           && m_service->bytesToWrite() < WindowBytes && m_client->bytesAvailable() > 0) {
        m_request += m_client->read(WindowBytes);
        if (m_number < 0 && !takeHead())
            continue;
        passBody();
    }
}

bool FaultyProxy::Link::takeHead()
{
    const int headEnd = HttpHead::sizeIn(m_request);
    if (headEnd < 0)
        return false;
    const HttpHead head(m_request.left(headEnd));
    ProxiedRequest request;
    request.verb = head.words.value(0);
    request.target = head.words.value(1);
    if (request.verb == "POST" && request.target == "/base-service/largefiles") {
        const int partEnd = m_request.indexOf("\r\n\r\n", headEnd);
        if (partEnd < 0)
            return false;
        request.chunk = chunkNumber(m_request.mid(headEnd, partEnd - headEnd));
    }
    m_bodyBytes = head.headers.value("content-length").toLongLong();
    m_passedBytes = -headEnd;
    m_answer.clear();
    m_answerHead = 0;
    m_isAnswered = false;
    m_fault = m_proxy->takeFault(request);
    m_number = m_proxy->m_requests.size();
    m_proxy->m_requests.append(request);
    Q_EMIT m_proxy->requestStarted(request);
    return true;
}

void FaultyProxy::Link::passBody()
{
    if (isStruck(Point::BeforeRequest)
        || (m_passedBytes >= m_bodyBytes / 2 && isStruck(Point::MidRequest)))
        return;
    m_service->write(m_request);
    m_passedBytes += m_request.size();
    m_request.clear();
    if (request().chunk >= 0)
        Q_EMIT m_proxy->chunkPassed(request().chunk, qMax<qint64>(0, m_passedBytes));
    settle();
}

void FaultyProxy::Link::takeAnswer()
{
    if (m_number < 0 || m_isHeld || m_isAnswered)
        return;
    m_answer += m_service->readAll();
    const int headEnd = HttpHead::sizeIn(m_answer);
    if (headEnd < 0)
        return;
    const HttpHead head(m_answer.left(headEnd));
    if (m_answer.size() < headEnd + head.contentLength())
        return;
    m_answerHead = headEnd;
    request().status = head.status();
    request().answer = m_answer.mid(headEnd);
    passAnswer();
}

void FaultyProxy::Link::passAnswer()
{
    if (isStruck(Point::BeforeAnswer))
        return;
    if (m_fault && m_fault->point == Point::MidAnswer) {
        const int half = m_answerHead + (m_answer.size() - m_answerHead) / 2;
        m_client->write(m_answer.left(half));
        m_answer.remove(0, half);
        if (isStruck(Point::MidAnswer))
            return;
    }
    endAnswer();
}

void FaultyProxy::Link::passHalf()
{
    const QByteArray body = request().answer.left(request().answer.size() / 2);
    m_client->write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: "
                    + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    m_isAnswered = true;
    settle();
}

void FaultyProxy::Link::endAnswer()
{
    m_client->write(m_answer);
    request().isAnswered = true;
    m_isAnswered = true;
    settle();
}

//! A service may respond before it has the whole body; the rest belongs to the same request.
void FaultyProxy::Link::settle()
{
    if (m_isAnswered && m_passedBytes >= m_bodyBytes)
        m_number = -1;
}

bool FaultyProxy::Link::isStruck(Point point)
{
    if (m_isHeld)
        return true;
    if (!m_fault || m_fault->point != point)
        return false;
    strike();
    return true;
}

void FaultyProxy::Link::strike()
{
    m_isHeld = m_fault->kind == Kind::Stall || m_fault->kind == Kind::Delay;
    if (m_fault->kind == Kind::Drop)
        end();
    else if (m_fault->kind == Kind::Delay)
        QTimer::singleShot(m_fault->delayMs, this, &Link::proceed);
    else if (m_fault->kind == Kind::HalfAnswer)
        passHalf();
    m_fault.reset();
}

void FaultyProxy::Link::proceed()
{
    m_isHeld = false;
    if (m_answerHead > 0) {
        endAnswer();
        return;
    }
    passBody();
    takeRequest();
}

void FaultyProxy::Link::end()
{
    disconnect(m_client, nullptr, this, nullptr);
    disconnect(m_service, nullptr, this, nullptr);
    m_service->abort();
    // Data that was written to the client still arrives.
    m_client->disconnectFromHost();
    if (m_client->state() == QAbstractSocket::UnconnectedState)
        deleteLater();
    else
        connect(m_client, &QTcpSocket::disconnected, this, &QObject::deleteLater);
}

FaultyProxy::FaultyProxy(quint16 servicePort) : m_servicePort(servicePort)
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *client = m_server.nextPendingConnection())
            new Link(this, client);
    });
    if (!m_server.listen(QHostAddress::LocalHost))
        qFatal("No port on loopback: %s", qPrintable(m_server.errorString()));
}

FaultyProxy::~FaultyProxy() = default;

QString FaultyProxy::baseApi() const
{
    return QString("http://127.0.0.1:%1/").arg(m_server.serverPort());
}

void FaultyProxy::strikeChunk(int chunk, const ProxyFault &fault)
{
    m_fault = fault;
    m_faultyChunk = chunk;
    m_faultyTarget.clear();
}

void FaultyProxy::strikeTarget(const QByteArray &target, const ProxyFault &fault)
{
    m_fault = fault;
    m_faultyChunk = -1;
    m_faultyTarget = target;
}

QList<int> FaultyProxy::sentChunks() const
{
    QList<int> chunks;
    for (const ProxiedRequest &request : m_requests) {
        if (request.chunk >= 0)
            chunks.append(request.chunk);
    }
    return chunks;
}

QList<int> FaultyProxy::resentChunks() const
{
    QList<int> chunks;
    int acknowledged = 0;
    for (const ProxiedRequest &request : m_requests) {
        if (request.chunk >= 0 && request.chunk < acknowledged)
            chunks.append(request.chunk);
        acknowledged = qMax(acknowledged, request.acknowledgedChunks());
    }
    return chunks;
}

std::optional<ProxyFault> FaultyProxy::takeFault(const ProxiedRequest &request)
{
    const bool fits = m_faultyTarget.isEmpty() ? request.chunk == m_faultyChunk
                                               : request.target.startsWith(m_faultyTarget);
    if (!fits)
        return std::nullopt;
    return std::exchange(m_fault, std::nullopt);
}
