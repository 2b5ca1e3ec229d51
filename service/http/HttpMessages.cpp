#include <service/http/HttpMessages.h>

#include <QJsonDocument>

namespace service {

namespace {

bool isHexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

QString decoded(const QByteArray &encoded)
{
    for (int at = encoded.indexOf('%'); at >= 0; at = encoded.indexOf('%', at + 1)) {
        if (at + 2 >= encoded.size() || !isHexDigit(encoded.at(at + 1))
            || !isHexDigit(encoded.at(at + 2)))
            throw HttpError(400, QStringLiteral("The address has a \"%\" that encodes nothing."));
    }
    const QByteArray bytes = QByteArray::fromPercentEncoding(encoded);
    QString text = QString::fromUtf8(bytes);
    if (text.toUtf8() != bytes)
        throw HttpError(400, QStringLiteral("The address is not valid UTF-8."));
    return text;
}

QString decodedParameter(QByteArray encoded)
{
    return decoded(encoded.replace('+', ' '));
}

} // namespace

HttpError::HttpError(int status, const QString &sentence)
    : std::runtime_error(sentence.toStdString()), m_status(status)
{}

QString HttpRequest::path() const
{
    return QLatin1Char('/') + segments.join(QLatin1Char('/'));
}

QString HttpRequest::publicBase() const
{
    if (host.isEmpty())
        return {};
    return QString::fromLatin1(scheme + "://" + host) + prefix;
}

QString HttpRequest::clientAddress() const
{
    if (client.startsWith(QLatin1Char('[')))
        return client.mid(1, client.indexOf(QLatin1Char(']')) - 1);
    return client.count(QLatin1Char(':')) == 1 ? client.section(QLatin1Char(':'), 0, 0) : client;
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

HttpResponse HttpResponse::error(const HttpError &error)
{
    return HttpResponse::error(error.status(), QString::fromUtf8(error.what()));
}

void parseTarget(HttpRequest &request)
{
    const int queryStart = request.target.indexOf('?');
    const QByteArray path = queryStart < 0 ? request.target : request.target.left(queryStart);
    // Split before decoding, so that an encoded slash stays part of its segment.
    const QList<QByteArray> pieces = path.split('/');
    for (int i = 1; i < pieces.size(); ++i)
        request.segments.append(decoded(pieces.at(i)));
    if (queryStart < 0)
        return;
    const QList<QByteArray> parameters = request.target.mid(queryStart + 1).split('&');
    for (const QByteArray &parameter : parameters) {
        const int equals = parameter.indexOf('=');
        const QString name = decodedParameter(equals < 0 ? parameter : parameter.left(equals));
        const QString value = equals < 0 ? QString() : decodedParameter(parameter.mid(equals + 1));
        if (!name.isEmpty())
            request.query.insert(name, value);
    }
}

} // namespace service
