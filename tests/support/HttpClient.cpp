#include <support/HttpClient.h>
#include <support/HttpHead.h>

#include <QEventLoop>
#include <QJsonDocument>
#include <QTimer>
#include <QUrl>

namespace {

constexpr int TimeoutMs = 60000;
const char *const boundary = "------------------------test-boundary";

QByteArray formBody(const QList<QPair<QString, QByteArray>> &fields)
{
    QByteArray body;
    for (const auto &field : fields) {
        const QString name = field.first.section(QLatin1Char('/'), 0, 0);
        const QString fileName = field.first.section(QLatin1Char('/'), 1);
        body += QByteArrayLiteral("--") + boundary + "\r\nContent-Disposition: form-data; name=\""
            + name.toUtf8() + '"';
        if (!fileName.isEmpty())
            body += "; filename=\"" + fileName.toUtf8()
                + "\"\r\nContent-Type: application/octet-stream";
        body += "\r\n\r\n" + field.second + "\r\n";
    }
    return body + "--" + boundary + "--\r\n";
}

} // namespace

QJsonObject HttpAnswer::object() const
{
    return QJsonDocument::fromJson(body).object();
}

QJsonArray HttpAnswer::array() const
{
    return QJsonDocument::fromJson(body).array();
}

QString HttpAnswer::errorText() const
{
    return object().value("error").toString();
}

HttpClient::HttpClient(const QString &baseApi) : m_baseApi(baseApi) {}

HttpAnswer HttpClient::get(const QString &path, const Parameters &parameters)
{
    return send("GET", path + encoded(parameters));
}

HttpAnswer HttpClient::post(const QString &path, const QJsonObject &body)
{
    return send("POST", path, QJsonDocument(body).toJson());
}

HttpAnswer HttpClient::put(const QString &path, const QJsonObject &body)
{
    return send("PUT", path, QJsonDocument(body).toJson());
}

HttpAnswer HttpClient::putArray(const QString &path, const QJsonArray &body)
{
    return send("PUT", path, QJsonDocument(body).toJson());
}

HttpAnswer HttpClient::remove(const QString &path, const Parameters &parameters)
{
    return send("DELETE", path + encoded(parameters));
}

HttpAnswer HttpClient::postForm(const QString &path,
                                const QList<QPair<QString, QByteArray>> &fields)
{
    return send("POST", path, formBody(fields),
                {{"Content-Type", QByteArrayLiteral("multipart/form-data; boundary=") + boundary}});
}

HttpAnswer HttpClient::send(const QByteArray &verb, const QString &path, const QByteArray &body,
                            const Headers &headers)
{
    const QUrl url = QUrl::fromEncoded((m_baseApi + path).toUtf8(), QUrl::StrictMode);
    QEventLoop
        loop; // before the connection: it creates the event dispatcher of a thread that is not Qt's
    if (!connectTo(url))
        return {};
    Headers all{{"Content-Type", "application/json"}};
    if (!m_token.isEmpty())
        all.insert("Authorization", "Bearer " + m_token.toUtf8());
    for (auto it = headers.begin(); it != headers.end(); ++it)
        all.insert(it.key(), it.value());
    QByteArray request = verb + ' ' + url.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority)
        + " HTTP/1.1\r\nHost: " + url.authority().toUtf8() + "\r\n";
    for (auto it = all.begin(); it != all.end(); ++it)
        request += it.key() + ": " + it.value() + "\r\n";
    if (!body.isEmpty() || (verb != "GET" && verb != "HEAD"))
        request += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";

    HttpAnswer answer;
    int length = -1; // of the body
    const auto take = [&] {
        answer.body += m_socket.readAll();
        const int end = length < 0 ? HttpHead::sizeIn(answer.body) : -1;
        if (end >= 0) {
            const HttpHead head(answer.body.left(end));
            answer.body.remove(0, end);
            answer.status = head.status();
            answer.headers = head.headers;
            const bool hasBody = verb != "HEAD" && answer.status != 304;
            length = hasBody ? head.contentLength() : 0;
        }
        answer.isWhole = length >= 0 && answer.body.size() >= length;
        if (answer.isWhole)
            loop.quit();
    };
    QObject::connect(&m_socket, &QTcpSocket::readyRead, &loop, take);
    QObject::connect(&m_socket, &QTcpSocket::disconnected, &loop, &QEventLoop::quit);
    QTimer::singleShot(TimeoutMs, &loop, &QEventLoop::quit);
    m_socket.write(request + "\r\n"
                   + body); // in one piece, so that the body does not wait for the head
    if (m_socket.state() == QAbstractSocket::ConnectedState)
        loop.exec();
    if (!answer.isWhole || answer.headers.value("connection").toLower() == "close")
        m_socket.abort();
    return answer;
}

bool HttpClient::connectTo(const QUrl &url)
{
    if (m_socket.state() == QAbstractSocket::ConnectedState)
        m_socket.waitForReadyRead(0); // detects that the service has closed the connection
    if (m_socket.state() == QAbstractSocket::ConnectedState && m_server == url.authority())
        return true;
    m_socket.abort();
    m_server = url.authority();
    m_socket.connectToHost(url.host(), static_cast<quint16>(url.port(80)));
    if (!m_socket.waitForConnected(TimeoutMs))
        return false;
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    return true;
}

QString HttpClient::encoded(const Parameters &parameters)
{
    QStringList pieces;
    for (const auto &parameter : parameters) {
        pieces.append(QString::fromLatin1(QUrl::toPercentEncoding(parameter.first))
                      + QLatin1Char('=')
                      + QString::fromLatin1(QUrl::toPercentEncoding(parameter.second)));
    }
    return pieces.isEmpty() ? QString() : QLatin1Char('?') + pieces.join(QLatin1Char('&'));
}
