#include <service/http/ExchangeRecorder.h>

#include <service/http/HttpMessages.h>

#include <QJsonDocument>
#include <QUuid>

namespace service {

namespace {

constexpr int MaxBodyBytes = 256 * 1024;

//! Returns the text of a body; empty for one that is not recorded.
QJsonValue bodyText(const QByteArray &body)
{
    return body.size() > MaxBodyBytes ? QJsonValue() : QJsonValue(QString::fromUtf8(body));
}

QJsonObject headersOf(const HttpResponse &response)
{
    QJsonObject headers;
    for (const auto &header : response.headers)
        headers.insert(QString::fromLatin1(header.first.toLower()),
                       QString::fromLatin1(header.second));
    return headers;
}

} // namespace

ExchangeRecorder::ExchangeRecorder()
{
    const QString folder = qEnvironmentVariable("VELL_RECORD_EXCHANGES");
    if (folder.isEmpty())
        return;
    m_file.setFileName(folder + QLatin1Char('/')
                       + QUuid::createUuid().toString(QUuid::WithoutBraces)
                       + QStringLiteral(".jsonl"));
    m_isActive = m_file.open(QIODevice::WriteOnly);
    if (!m_isActive)
        qWarning("vell-service: %s cannot be written", qUtf8Printable(m_file.fileName()));
}

void ExchangeRecorder::keepBody(const HttpRequest &request, const char *data, qint64 length,
                                QByteArray *kept)
{
    const bool isJson = request.header("content-type").startsWith("application/json");
    if (isJson && request.bodyLength <= MaxBodyBytes)
        kept->append(data, static_cast<int>(length));
}

void ExchangeRecorder::record(const HttpRequest &request, const QByteArray &requestBody,
                              const HttpResponse &response, bool isFault)
{
    if (request.isOutside)
        return;
    QJsonObject line{
        {QStringLiteral("method"),
         request.isHead ? QStringLiteral("HEAD") : QString::fromLatin1(request.method)},
        {QStringLiteral("target"), QString::fromLatin1(request.target)},
        {QStringLiteral("requestType"), QString::fromLatin1(request.header("content-type"))},
        {QStringLiteral("requestBody"), bodyText(requestBody)},
        {QStringLiteral("status"), response.status},
        {QStringLiteral("headers"), headersOf(response)},
        {QStringLiteral("isFault"), isFault},
    };
    if (response.status != 304)
        line.insert(QStringLiteral("responseType"), QString::fromLatin1(response.contentType));
    if (!request.isHead && response.file.path.isEmpty())
        line.insert(QStringLiteral("responseBody"), bodyText(response.body));
    const QByteArray bytes = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
    const std::lock_guard<std::mutex> lock(m_lock);
    m_file.write(bytes);
    m_file.flush(); // tests kill services
}

} // namespace service
