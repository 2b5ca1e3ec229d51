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

//! \brief Ends a request with an HTTP status and a sentence for the user.
class HttpError : public std::runtime_error
{
public:
    HttpError(int status, const QString &sentence);
    int status() const { return m_status; }

private:
    int m_status = 0;
};

//! \brief A request, percent-decoded.
struct HttpRequest
{
    QByteArray method; //!< the request method; "GET" also for "HEAD", see isHead
    bool isHead =
        false; //!< only the head of the response is sent; the request must not change anything
    QByteArray
        target; //!< path and query as they were sent, without the path that the service is served below
    QStringList segments; //!< the path, split at its slashes
    QMap<QString, QString> query; //!< the last value of a parameter that occurs several times
    QMap<QByteArray, QByteArray> headers; //!< names in lower case; repeated ones joined by ", "
    QString client; //!< address and port
    QByteArray scheme = QByteArrayLiteral("http"); //!< of the address that the client uses
    QByteArray host; //!< the same with the port, as in the header Host; empty without it
    QString
        prefix; //!< the path of the base address that the client uses, "/documents"; empty for none
    bool isOutside = false; //!< the path is not below that of the service
    bool isForwardedByOthers = false; //!< a proxy that is not trusted has passed it on
    QStringList captures; //!< the values of the route's placeholders
    qint64 bodyLength = 0;
    QByteArray body; //!< for routes whose handler needs the whole body

    //! Returns the decoded path with a leading slash.
    QString path() const;
    //! Returns the base address that the client uses, without a slash at the end; empty without a host.
    QString publicBase() const;
    //! Returns the address of the client without port and brackets.
    QString clientAddress() const;
    QByteArray header(const char *lowerCaseName) const;
    //! Returns true if a parameter has the value "true". \throws HttpError 400 for values other than "true" and "false"
    bool flag(QLatin1String parameter) const;
    QString parameter(QLatin1String name) const { return query.value(name); }
};

//! A part of a file as the body of a response.
struct FileBody
{
    QString path;
    qint64 offset = 0;
    qint64 length = 0;
};

//! \brief A response.
struct HttpResponse
{
    int status = 200;
    QByteArray contentType = QByteArrayLiteral("application/json; charset=utf-8");
    QByteArray body;
    FileBody file; //!< used instead of body if its path is not empty
    QList<QPair<QByteArray, QByteArray>> headers;

    void addHeader(const QByteArray &name, const QByteArray &value)
    {
        headers.append({name, value});
    }
    //! Returns the length of the body, in memory or in a file.
    qint64 bodyLength() const { return file.path.isEmpty() ? body.size() : file.length; }

    static HttpResponse json(const QJsonObject &object, int status = 200);
    static HttpResponse json(const QJsonArray &array);
    static HttpResponse html(const QString &page, int status = 200);
    //! {"error": sentence}
    static HttpResponse error(int status, const QString &sentence);
    static HttpResponse error(const HttpError &error);
};

//! Parses request.target and sets the segments and the query. A "+" in the query is a space.
//! \throws HttpError 400 for a percent sign without two hexadecimal digits and for text that is not UTF-8
void parseTarget(HttpRequest &request);

} // namespace service
