#pragma once

#include <VellNetwork/vellnetwork_export.h>

#include <QByteArray>
#include <QList>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QString>

class QHttpMultiPart;
class QJsonObject;

//! \brief Sends requests without waiting, and reports their outcome by signals.
//!
//! Addresses, token, redirects, time-outs and error codes are those of NetworkManager. Several requests may be in flight; each
//! ends with its own signals. All managers share their connections.
//!
//! If the manager is deleted, also in a slot that is connected to one of its signals, requests in flight are dropped without a
//! signal. Belongs to the thread that created it.
//!
//! \since 0.1
//! \sa NetworkManager
class VELLNETWORK_EXPORT AsyncNetManager : public QObject
{
    Q_OBJECT

public:
    explicit AsyncNetManager(QObject *parent = nullptr);
    ~AsyncNetManager() override;

    //! Sends a GET request to \a url, which is not percent-encoded.
    void get(const QString &url);
    //! Sends the form \a body. Takes ownership of \a body and deletes it once the request has ended.
    void post(const QString &url, QHttpMultiPart *body);
    //! Sends \a body, which is not changed, as compact JSON.
    void post(const QString &url, QJsonObject &body);
    //! \copydoc post(const QString &, QJsonObject &)
    void put(const QString &url, QJsonObject &body);

    //! Aborts all requests in flight. No signals are emitted for them.
    void pause();

Q_SIGNALS:
    //! A response with a 2xx status has arrived. \a content is its body.
    void netComplete(const QByteArray &content);

    //! The number of bytes of the request's body that have been sent, including the multipart overhead, and the total.
    void uploadProgress(qint64 bytesSent, qint64 bytesTotal);

    //! The request has ended without a response with a 2xx status. Both signals are emitted once, in this order.
    //! QNetworkReply::TimeoutError means that nothing was sent or received for NetworkSettings::stallTimeout().
    void error(QNetworkReply::NetworkError code);
    void error(int code);

private:
    void watch(QNetworkReply *reply);
    void finish(QNetworkReply *reply);

    QList<QPointer<QNetworkReply>> m_replies;
};
