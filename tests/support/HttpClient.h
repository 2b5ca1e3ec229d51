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

//! What came back for one request.
struct HttpAnswer
{
    int status = 0; //!< 0 without an answer
    QByteArray body;
    QMap<QByteArray, QByteArray> headers; //!< names in lower case
    bool isWhole = false; //!< the body has as many bytes as its head says

    //! A whole answer with a 2xx status.
    bool isSuccess() const { return isWhole && status >= 200 && status < 300; }
    QJsonObject object() const;
    QJsonArray array() const;
    QString errorText() const; //!< of the key "error"
};

//! \brief A plain HTTP client that waits for each answer while events run, and ends by itself after a minute.
//!
//! Sends bytes as they are told: paths are percent-encoded by the caller or through encoded(). Keeps its connection, and
//! sends nothing twice.
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

    //! Any verb, bytes and headers.
    HttpAnswer send(const QByteArray &verb, const QString &path, const QByteArray &body = {},
                    const Headers &headers = {});

    //! A form-data body with these fields; a name that is followed by a "/" and a file name is a file.
    HttpAnswer postForm(const QString &path, const QList<QPair<QString, QByteArray>> &fields);

    //! "?name=value&…", everything percent-encoded that is not a letter or digit.
    static QString encoded(const Parameters &parameters);

private:
    bool connectTo(const QUrl &url);

    QString m_baseApi;
    QString m_token;
    QString m_server; //!< host and port that the socket is connected to
    QTcpSocket m_socket;
};
