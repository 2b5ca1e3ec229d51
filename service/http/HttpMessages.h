#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QStringList>

#include <stdexcept>

namespace service {

//! \brief Ends a request with an HTTP status and one clear sentence for the person who reads it.
class HttpError : public std::runtime_error
{
public:
    HttpError(int status, const QString &sentence);
    int status() const { return m_status; }

private:
    int m_status = 0;
};

//! \brief A request, with everything that came percent-encoded decoded once.
struct HttpRequest
{
    QByteArray verb; //!< the request method; "GET" also for "HEAD", see isHead
    bool isHead = false; //!< only the head of the response is wanted; nothing may change
    QByteArray target; //!< path and query as they were sent
    QStringList segments; //!< the path, split at its slashes
    QMap<QString, QString> query; //!< of a parameter that occurs twice the last
    QMap<QByteArray, QByteArray> headers; //!< names in lower case; repeated ones joined by ", "
    QString client; //!< address and port
    QStringList captures; //!< what the route's placeholders stand for
    qint64 bodyLength = 0;
    QByteArray body; //!< of a route that takes its body whole

    //! The path as it may be compared: decoded, with a leading slash.
    QString path() const;
    QByteArray header(const char *lowerCaseName) const;
    //! Whether a parameter is there with the value "true". \throws HttpError 400 for anything but "true"
    //! and "false"
    bool flag(QLatin1String parameter) const;
    QString parameter(QLatin1String name) const { return query.value(name); }
};

//! A piece of a file as the body of a response.
struct FileBody
{
    QString path;
    qint64 offset = 0;
    qint64 length = 0;
};

//! \brief What is answered.
struct HttpResponse
{
    int status = 200;
    QByteArray contentType = QByteArrayLiteral("application/json; charset=utf-8");
    QByteArray body;
    FileBody file; //!< instead of body when its path is not empty
    QList<QPair<QByteArray, QByteArray>> headers;

    void addHeader(const QByteArray &name, const QByteArray &value)
    {
        headers.append({name, value});
    }
    //! Length of the body, wherever it comes from.
    qint64 bodyLength() const { return file.path.isEmpty() ? body.size() : file.length; }

    static HttpResponse json(const QJsonObject &object, int status = 200);
    static HttpResponse json(const QJsonArray &array);
    static HttpResponse html(const QString &page, int status = 200);
    //! {"error": sentence}
    static HttpResponse error(int status, const QString &sentence);
    static HttpResponse error(const HttpError &error);
};

//! Splits request.target into segments and query. A "+" in the query is a space.
//! \throws HttpError 400 for a percent sign without two hexadecimal digits and for text that is not UTF-8
void parseTarget(HttpRequest &request);

} // namespace service
