#include "ScriptedServer.h"

#include "HttpHead.h"

#include <QHostAddress>
#include <QPointer>
#include <QTcpSocket>
#include <QTimer>
#include <QUrl>

QString ScriptedRequest::decodedTarget() const
{
    return QString::fromUtf8(QByteArray::fromPercentEncoding(target));
}

ScriptedReply ScriptedReply::json(const QByteArray &body, int status)
{
    ScriptedReply reply;
    reply.status = status;
    reply.body = body;
    reply.headers.insert("Content-Type", "application/json");
    return reply;
}

ScriptedReply ScriptedReply::endingAs(Ending how)
{
    ScriptedReply reply = json("{\"answer\":42}");
    reply.ending = how;
    return reply;
}

//! A connection: reads requests and writes the responses in the same order.
class ScriptedServer::Connection : public QObject
{
public:
    Connection(ScriptedServer *server, QTcpSocket *socket, int number);

private:
    enum class State { Head, Body, ChunkSize, Chunk, ChunkEnd, Trailer, Answering };

    void read();
    void take();
    bool takeHead();
    bool takeBody();
    bool takeLine(QByteArray *line);
    bool takeChunkPart();
    void startBody();
    void answer();
    void send(const ScriptedReply &reply);
    void sendBody(const QByteArray &body, const ScriptedReply &reply);
    void nextRequest();

    ScriptedServer *m_server;
    QTcpSocket *m_socket;
    int m_number;
    State m_state = State::Head;
    QByteArray m_input;
    qint64 m_missing = 0;
    ScriptedRequest m_request;
    QTimer m_slow;
    // QTRY_… sleeps for 10 ms if there is no event, which is often the case between the pieces of a large body.
    // While a body arrives, there is always an event.
    QTimer m_awake;
};

ScriptedServer::Connection::Connection(ScriptedServer *server, QTcpSocket *socket, int number)
    : QObject(server), m_server(server), m_socket(socket), m_number(number)
{
    socket->setParent(this);
    // Head and body of a response are written separately.
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    if (server->m_slowMs == 0) {
        connect(socket, &QTcpSocket::readyRead, this, &Connection::read);
        return;
    }
    socket->setReadBufferSize(server->m_slowBytes);
    connect(&m_slow, &QTimer::timeout, this, &Connection::read);
    m_slow.start(server->m_slowMs);
}

void ScriptedServer::Connection::read()
{
    m_input += m_socket->readAll();
    take();
}

void ScriptedServer::Connection::take()
{
    const QPointer<Connection> self(this);
    bool more = true;
    while (self && more) {
        switch (m_state) {
        case State::Head:
            more = takeHead();
            break;
        case State::Body:
        case State::Chunk:
            more = takeBody();
            break;
        case State::ChunkSize:
        case State::ChunkEnd:
        case State::Trailer:
            more = takeChunkPart();
            break;
        case State::Answering:
            more = false;
            break;
        }
    }
}

bool ScriptedServer::Connection::takeHead()
{
    const int size = HttpHead::sizeIn(m_input);
    if (size < 0)
        return false;
    m_request = ScriptedRequest();
    m_request.connection = m_number;
    m_request.head = m_input.left(size - 4);
    m_input.remove(0, size);
    const HttpHead head(m_request.head);
    m_request.verb = head.words.value(0);
    m_request.target = head.words.value(1);
    m_request.headers = head.headers;
    startBody();
    return true;
}

void ScriptedServer::Connection::startBody()
{
    if (m_request.headers.value("transfer-encoding").toLower() == "chunked") {
        m_state = State::ChunkSize;
        return;
    }
    m_state = State::Body;
    m_missing = m_request.headers.value("content-length").toLongLong();
    m_request.body.reserve(int(m_missing));
}

bool ScriptedServer::Connection::takeBody()
{
    const int count = int(qMin<qint64>(m_missing, m_input.size()));
    m_request.body += m_input.left(count);
    m_input.remove(0, count);
    m_missing -= count;
    if (m_missing > 0) {
        if (!m_awake.isActive() && !m_slow.isActive())
            m_awake.start(0);
        return false;
    }
    m_awake.stop();
    if (m_state == State::Chunk)
        m_state = State::ChunkEnd;
    else
        answer();
    return true;
}

bool ScriptedServer::Connection::takeLine(QByteArray *line)
{
    const int end = m_input.indexOf("\r\n");
    if (end < 0)
        return false;
    *line = m_input.left(end);
    m_input.remove(0, end + 2);
    return true;
}

bool ScriptedServer::Connection::takeChunkPart()
{
    QByteArray line;
    if (!takeLine(&line))
        return false;
    if (m_state == State::ChunkEnd) {
        m_state = State::ChunkSize;
    } else if (m_state == State::ChunkSize) {
        m_missing = line.split(';').first().trimmed().toLongLong(nullptr, 16);
        m_state = m_missing == 0 ? State::Trailer : State::Chunk;
    } else if (line.isEmpty()) {
        answer();
    }
    return true;
}

void ScriptedServer::Connection::answer()
{
    m_state = State::Answering;
    m_server->m_requests.append(m_request);
    const QPointer<Connection> self(this);
    Q_EMIT m_server->requestReceived();
    if (!self)
        return;
    const ScriptedReply reply = m_server->nextReply(m_request);
    // The handler may have processed events, and the client may have disconnected.
    if (!self)
        return;
    if (reply.delayMs > 0)
        QTimer::singleShot(reply.delayMs, this, [this, reply] { send(reply); });
    else
        send(reply);
}

void ScriptedServer::Connection::send(const ScriptedReply &reply)
{
    if (reply.ending == ScriptedReply::Ending::Withheld)
        return;
    if (reply.ending == ScriptedReply::Ending::Dropped) {
        m_socket->disconnectFromHost();
        return;
    }
    const bool bodiless = reply.status == 204 || reply.status == 304;
    const QByteArray body = bodiless ? QByteArray() : reply.body;
    QMap<QByteArray, QByteArray> headers = reply.headers;
    if (!bodiless && !headers.contains("Content-Length"))
        headers.insert("Content-Length", QByteArray::number(body.size()));
    QByteArray head = "HTTP/1.1 " + QByteArray::number(reply.status) + " Scripted\r\n";
    for (auto header = headers.cbegin(); header != headers.cend(); ++header)
        head += header.key() + ": " + header.value() + "\r\n";
    m_socket->write(head + "\r\n");
    sendBody(body, reply);
}

void ScriptedServer::Connection::sendBody(const QByteArray &body, const ScriptedReply &reply)
{
    if (reply.ending == ScriptedReply::Ending::Truncated) {
        m_socket->write(body.left(body.size() / 2));
        m_socket->disconnectFromHost();
        return;
    }
    if (reply.pieces <= 1) {
        m_socket->write(body);
        nextRequest();
        return;
    }
    ScriptedReply rest = reply;
    --rest.pieces;
    const int count = body.size() / reply.pieces;
    m_socket->write(body.left(count));
    QTimer::singleShot(reply.pieceDelayMs, this,
                       [this, left = body.mid(count), rest] { sendBody(left, rest); });
}

void ScriptedServer::Connection::nextRequest()
{
    m_state = State::Head;
    // Not from here: this may run inside take().
    QTimer::singleShot(0, this, [this] { take(); });
}

ScriptedServer::ScriptedServer()
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server.nextPendingConnection())
            new Connection(this, socket, m_connectionCount++);
    });
    if (!m_server.listen(QHostAddress::LocalHost))
        qFatal("No port on loopback: %s", qPrintable(m_server.errorString()));
}

ScriptedServer::~ScriptedServer() = default;

QString ScriptedServer::baseApi() const
{
    return QString("http://127.0.0.1:%1/").arg(m_server.serverPort());
}

bool ScriptedServer::hasReusedItsConnection() const
{
    return m_connectionCount == 1;
}

void ScriptedServer::enqueue(const ScriptedReply &reply)
{
    m_script.enqueue(reply);
}

void ScriptedServer::setHandler(const Handler &handler)
{
    m_handler = handler;
}

void ScriptedServer::readSlowly(qint64 bytes, int ms)
{
    m_slowBytes = bytes;
    m_slowMs = ms;
}

ScriptedReply ScriptedServer::nextReply(const ScriptedRequest &request)
{
    if (!m_script.isEmpty())
        return m_script.dequeue();
    if (m_handler)
        return m_handler(request);
    return ScriptedReply::json("{\"error\":\"no reply in the script\"}", 404);
}
