#include <service/RawClient.h>
#include <support/HttpHead.h>

#include <QElapsedTimer>

namespace {

constexpr int ConnectMs = 10000;

} // namespace

RawClient::RawClient(quint16 port)
{
    socket.connectToHost("127.0.0.1", port);
    if (!socket.waitForConnected(ConnectMs))
        qWarning("no connection: %s", qUtf8Printable(socket.errorString()));
}

void RawClient::send(const QByteArray &bytes)
{
    socket.write(bytes);
    while (socket.bytesToWrite() > 0 && socket.waitForBytesWritten(ConnectMs)) {}
}

QByteArray RawClient::exchange(const QByteArray &bytes, int quietMs)
{
    send(bytes);
    QByteArray answer;
    if (socket.bytesAvailable() > 0 || socket.waitForReadyRead(ConnectMs)) {
        do
            answer += socket.readAll();
        while (socket.waitForReadyRead(quietMs));
    }
    return answer + socket.readAll();
}

bool RawClient::readToEnd(QByteArray *bytes, int timeoutMs)
{
    QElapsedTimer clock;
    clock.start();
    while (socket.state() == QAbstractSocket::ConnectedState && !clock.hasExpired(timeoutMs)) {
        socket.waitForReadyRead(50);
        *bytes += socket.readAll();
    }
    *bytes += socket.readAll();
    return socket.state() != QAbstractSocket::ConnectedState;
}

RawResponse RawClient::next(bool hasBody, int timeoutMs)
{
    RawResponse response;
    int end = -1;
    while ((end = HttpHead::sizeIn(m_in)) < 0) {
        if (socket.bytesAvailable() == 0 && !socket.waitForReadyRead(timeoutMs))
            return response;
        m_in += socket.readAll();
    }
    const HttpHead head(m_in.left(end));
    m_in.remove(0, end);
    response.headers = head.headers;
    const int length = hasBody ? head.contentLength() : 0;
    while (m_in.size() < length && socket.waitForReadyRead(timeoutMs))
        m_in += socket.readAll();
    response.body = m_in.left(length);
    m_in.remove(0, length);
    response.status = head.status();
    return response;
}

QByteArray RawClient::request(const QByteArray &verb, const QByteArray &target,
                              const QByteArray &headers, const QByteArray &body)
{
    QByteArray text = verb + ' ' + target + " HTTP/1.1\r\nHost: localhost\r\n" + headers;
    if (!body.isEmpty())
        text += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    return text + "\r\n" + body;
}
