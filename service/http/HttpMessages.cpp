#include <service/http/HttpMessages.h>

#include <QJsonDocument>

namespace service {

namespace {

QString decoded(const QByteArray &encoded)
{
    const QByteArray bytes = QByteArray::fromPercentEncoding(encoded);
    QString text = QString::fromUtf8(bytes);
    if (text.toUtf8() != bytes)
        throw HttpError(400, QStringLiteral("The address is not valid UTF-8."));
    return text;
}

} // namespace

HttpError::HttpError(int status, const QString &sentence)
    : std::runtime_error(sentence.toStdString()), m_status(status)
{}

QString HttpRequest::path() const
{
    return QLatin1Char('/') + segments.join(QLatin1Char('/'));
}

QByteArray HttpRequest::header(const char *lowerCaseName) const
{
    return headers.value(lowerCaseName);
}

bool HttpRequest::flag(QLatin1String parameter) const
{
    const auto found = query.constFind(parameter);
    if (found == query.constEnd() || found.value() == QLatin1String("false"))
        return false;
    if (found.value() != QLatin1String("true"))
        throw HttpError(400, QStringLiteral("%1 must be true or false.").arg(parameter));
    return true;
}

HttpResponse HttpResponse::json(const QJsonObject &object, int status)
{
    HttpResponse response;
    response.status = status;
    response.body = QJsonDocument(object).toJson(QJsonDocument::Compact);
    return response;
}

HttpResponse HttpResponse::json(const QJsonArray &array)
{
    HttpResponse response;
    response.body = QJsonDocument(array).toJson(QJsonDocument::Compact);
    return response;
}

HttpResponse HttpResponse::html(const QString &page, int status)
{
    HttpResponse response;
    response.status = status;
    response.contentType = QByteArrayLiteral("text/html; charset=utf-8");
    response.body = page.toUtf8();
    return response;
}

HttpResponse HttpResponse::error(int status, const QString &sentence)
{
    return json(QJsonObject{{QStringLiteral("error"), sentence}}, status);
}

void parseTarget(const QByteArray &target, HttpRequest &request)
{
    const int queryStart = target.indexOf('?');
    const QByteArray path = queryStart < 0 ? target : target.left(queryStart);
    // Segments are split first, so that an encoded slash stays part of its segment.
    const QList<QByteArray> pieces = path.split('/');
    for (int i = 1; i < pieces.size(); ++i)
        request.segments.append(decoded(pieces.at(i)));
    if (queryStart < 0)
        return;
    const QList<QByteArray> parameters = target.mid(queryStart + 1).split('&');
    for (const QByteArray &parameter : parameters) {
        const int equals = parameter.indexOf('=');
        const QString name = decoded(equals < 0 ? parameter : parameter.left(equals));
        // "+" is data here, not a blank: Qt clients leave it as it is.
        const QString value = equals < 0 ? QString() : decoded(parameter.mid(equals + 1));
        if (!name.isEmpty())
            request.query.insert(name, value);
    }
}

} // namespace service
