#include <QCoreApplication>
#include <QHostAddress>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>

#include <cstdio>

// The file store's side of an upload that takes every chunk and forgets it at once, so that a benchmark
// measures the client. GET /stats tells what has come since the last time it was asked.

namespace {

constexpr qint64 BlockBytes = 1024 * 1024;
constexpr int TailBytes = 2048; // the form's fields stand behind the chunk

struct Stats
{
    int connections = 0; // that have carried a chunk
    int chunks = 0;
};

class Connection : public QObject
{
public:
    Connection(QTcpSocket *socket, Stats *stats);

private:
    void read();
    bool readHead();
    void answer();
    QJsonObject answerBody();
    int field(const char *name) const;

    QTcpSocket *m_socket;
    Stats *m_stats;
    QByteArray m_block;
    QByteArray m_head;
    QByteArray m_tail;
    qint64 m_missing = -1; // of the body; -1 while the head has not come
    bool m_isCounted = false;
};

Connection::Connection(QTcpSocket *socket, Stats *stats)
    : QObject(socket), m_socket(socket), m_stats(stats), m_block(BlockBytes, Qt::Uninitialized)
{
    socket->setReadBufferSize(BlockBytes);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(socket, &QTcpSocket::readyRead, this, &Connection::read);
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
}

void Connection::read()
{
    while (m_socket->bytesAvailable() > 0) {
        if (m_missing < 0 && !readHead())
            continue;
        const qint64 wanted = qMin(BlockBytes, m_missing);
        const int count = static_cast<int>(m_socket->read(m_block.data(), wanted));
        m_missing -= count;
        m_tail = (m_tail + QByteArray::fromRawData(m_block.constData(), count).right(TailBytes))
                     .right(TailBytes);
        if (m_missing == 0)
            answer();
    }
}

bool Connection::readHead()
{
    const QByteArray line = m_socket->readLine();
    m_head += line;
    if (line != "\r\n")
        return false;
    static const QRegularExpression length(QStringLiteral("content-length: *([0-9]+)"),
                                           QRegularExpression::CaseInsensitiveOption);
    m_missing = length.match(QString::fromLatin1(m_head)).captured(1).toLongLong();
    if (m_missing == 0)
        answer();
    return m_missing > 0;
}

int Connection::field(const char *name) const
{
    const QRegularExpression value(
        QStringLiteral("name=\"%1\"\r\n\r\n([0-9]+)").arg(QLatin1String(name)));
    // With the length, because a chunk may hold zeros, at which the text would end otherwise.
    const QString text = QString::fromLatin1(m_tail.constData(), m_tail.size());
    return value.match(text).captured(1).toInt();
}

QJsonObject Connection::answerBody()
{
    if (m_head.startsWith("GET /stats")) {
        const Stats stats = std::exchange(*m_stats, Stats());
        return {{QStringLiteral("connections"), stats.connections},
                {QStringLiteral("chunks"), stats.chunks}};
    }
    if (m_head.startsWith("GET /base-service"))
        return {}; // there never is a record
    if (!m_head.startsWith("POST /base-service/largefiles"))
        return {{QStringLiteral("_id"), QStringLiteral("d1")}};
    m_stats->connections += std::exchange(m_isCounted, true) ? 0 : 1;
    m_stats->chunks += 1;
    return {{QStringLiteral("savedChunk"), field("savedChunk") + 1},
            {QStringLiteral("totalChunk"), field("totalChunk")},
            {QStringLiteral("fsFileId"), QStringLiteral("f1")}};
}

void Connection::answer()
{
    const QByteArray body = QJsonDocument(answerBody()).toJson(QJsonDocument::Compact);
    const bool isRecord = m_head.startsWith("GET /base-service"); // there never is one
    m_socket->write("HTTP/1.1 " + QByteArray(isRecord ? "404 Not Found" : "200 OK")
                    + "\r\nContent-Type: application/json\r\nContent-Length: "
                    + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    m_head.clear();
    m_tail.clear();
    m_missing = -1;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QTcpServer server;
    Stats stats;
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
        while (QTcpSocket *socket = server.nextPendingConnection())
            new Connection(socket, &stats);
    });
    if (!server.listen(QHostAddress::LocalHost)) {
        std::fprintf(stderr, "No port on loopback: %s\n", qPrintable(server.errorString()));
        return 1;
    }
    std::printf("http://127.0.0.1:%d/\n", server.serverPort());
    std::fflush(stdout);
    return QCoreApplication::exec();
}
