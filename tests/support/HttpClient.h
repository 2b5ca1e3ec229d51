#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QTcpSocket>
#include <QUrl>

//! The response to one request.
struct HttpAnswer
{
    int status = 0; //!< 0 if there was no response
    QByteArray body;
    QMap<QByteArray, QByteArray> headers; //!< names in lower case
    bool isWhole = false; //!< the body has as many bytes as its head says

    //! Returns true for a complete response with a 2xx status.
    bool isSuccess() const { return isWhole && status >= 200 && status < 300; }
    QJsonObject object() const;
    QJsonArray array() const;
    QString errorText() const; //!< the value of "error" in the body
};

//! \brief A simple HTTP client that waits for each response, at most a minute, and processes events meanwhile.
//!
//! Sends bytes unchanged: the caller encodes paths, or calls encoded(). Keeps its connection, and never repeats a request.
class HttpClient
{
public:
    using Parameters = QList<QPair<QString, QString>>;
    using Headers = QMap<QByteArray, QByteArray>;

    explicit HttpClient(const QString &baseApi);

    //! Sent as `Authorization: Bearer` from now on; empty for none.
    void setToken(const QString &token) { m_token = token; }
    void setBaseApi(const QString &baseApi) { m_baseApi = baseApi; }

    HttpAnswer get(const QString &path, const Parameters &parameters = {});
    HttpAnswer post(const QString &path, const QJsonObject &body);
    HttpAnswer put(const QString &path, const QJsonObject &body);
    HttpAnswer putArray(const QString &path, const QJsonArray &body);
    HttpAnswer remove(const QString &path, const Parameters &parameters = {});

    //! Sends any method, bytes and headers.
    HttpAnswer send(const QByteArray &verb, const QString &path, const QByteArray &body = {},
                    const Headers &headers = {});

    //! Sends a form-data body with these fields; a name with a "/" and a file name is a file.
    HttpAnswer postForm(const QString &path, const QList<QPair<QString, QByteArray>> &fields);

    //! Returns "?name=value&…", in which all characters except letters and digits are percent-encoded.
    static QString encoded(const Parameters &parameters);

private:
    bool connectTo(const QUrl &url);

    QString m_baseApi;
    QString m_token;
    QString m_server; //!< host and port that the socket is connected to
    QTcpSocket m_socket;
};
