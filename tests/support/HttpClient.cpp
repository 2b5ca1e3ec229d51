#include <support/HttpClient.h>

#include <QEventLoop>
#include <QJsonDocument>
#include <QNetworkRequest>
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
    return object().value(QStringLiteral("error")).toString();
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
    QNetworkRequest request(QUrl::fromEncoded((m_baseApi + path).toUtf8(), QUrl::StrictMode));
    request.setRawHeader("Content-Type", "application/json");
    if (!m_token.isEmpty())
        request.setRawHeader("Authorization", "Bearer " + m_token.toUtf8());
    for (auto it = headers.begin(); it != headers.end(); ++it)
        request.setRawHeader(it.key(), it.value());

    QEventLoop loop;
    // As a custom verb HEAD would wait for the body that its length announces.
    QNetworkReply *const reply =
        verb == "HEAD" ? m_manager.head(request) : m_manager.sendCustomRequest(request, verb, body);
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(TimeoutMs, reply, &QNetworkReply::abort);
    if (!reply->isFinished())
        loop.exec();

    HttpAnswer answer;
    answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    answer.body = reply->readAll();
    answer.error = reply->error();
    for (const auto &header : reply->rawHeaderPairs())
        answer.headers.insert(header.first.toLower(), header.second);
    // Qt takes an answer for whole when the connection is reset at the wrong moment.
    const qint64 length = answer.headers.value("content-length").toLongLong();
    if (answer.error == QNetworkReply::NoError && verb != "HEAD" && answer.body.size() < length)
        answer.error = QNetworkReply::RemoteHostClosedError;
    delete reply;
    return answer;
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
