#pragma once

#include <service/http/BodyReader.h>

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
    QByteArray verb; //!< "HEAD" has become "GET"
    QStringList segments; //!< the path between its slashes
    QMap<QString, QString> query; //!< of a parameter that occurs twice the last
    QMap<QByteArray, QByteArray> headers; //!< names in lower case
    QString client; //!< address and port
    QStringList captures; //!< what the route's placeholders stand for
    BodyReader *body = nullptr;

    //! The path as it may be logged and compared: decoded, with a leading slash.
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

    static HttpResponse json(const QJsonObject &object, int status = 200);
    static HttpResponse json(const QJsonArray &array);
    static HttpResponse html(const QString &page, int status = 200);
    //! {"error": sentence}
    static HttpResponse error(int status, const QString &sentence);
};

//! Splits a request's target into segments and query. \throws HttpError 400 for text that is not
//! UTF-8
void parseTarget(const QByteArray &target, HttpRequest &request);

} // namespace service
