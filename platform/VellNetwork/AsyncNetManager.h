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

//! \brief Sends requests that nobody waits for, and tells by signals how they ended.
//!
//! Addresses, token, redirects, time-outs and error codes are as in NetworkManager. Several requests may be in
//! flight; each ends with its own signals. All managers share their connections.
//!
//! Deleting the manager, also inside one of its own signals, drops what is in flight without a
//! signal.
class VELLNETWORK_EXPORT AsyncNetManager : public QObject
{
    Q_OBJECT

public:
    explicit AsyncNetManager(QObject *parent = nullptr);
    ~AsyncNetManager() override;

    void get(const QString &url);
    //! Takes ownership of \a body and deletes it once the request has ended.
    void post(const QString &url, QHttpMultiPart *body);
    void post(const QString &url, QJsonObject &body);
    void put(const QString &url, QJsonObject &body);

    //! Aborts what is in flight. Emits nothing, now or later, for these requests.
    void pause();

Q_SIGNALS:
    //! A 2xx reply has arrived; \a content is its whole body.
    void netComplete(const QByteArray &content);

    //! Bytes of the running request's body, framing included.
    void uploadProgress(qint64 bytesSent, qint64 bytesTotal);

    //! The request has ended without a 2xx reply. Both signals are emitted, in this order, once
    //! each; QNetworkReply::TimeoutError means that nothing moved for the time-out.
    void error(QNetworkReply::NetworkError code);
    void error(int code);

private:
    void watch(QNetworkReply *reply);
    void finish(QNetworkReply *reply);

    QList<QPointer<QNetworkReply>> m_replies;
};
