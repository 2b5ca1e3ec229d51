#pragma once

#include <VellNetwork/NetworkFailure.h>
#include <VellNetwork/vellnetwork_export.h>

#include <QObject>
#include <QString>

class QJsonArray;
class QJsonObject;
class QNetworkReply;

//! \brief Sends the requests that the caller waits for with a NetworkEventLoop.
//!
//! Addresses are unencoded text: everything that a URL cannot carry is percent-encoded here, so
//! that the service receives each value unchanged. `%`, `#` and `+` are data; `?`, `&` and `=`
//! separate the parameters, except inside the JSON object behind `where=`, which is data as a whole.
//!
//! Only `http` and `https` addresses are asked, and none whose path holds a "." or ".." segment, which
//! would be resolved on the way to another address than the caller wrote; any other address ends with
//! QNetworkReply::ProtocolUnknownError.
//!
//! Every request carries the access token of NetworkSettings and ends with QNetworkReply::TimeoutError
//! when nothing moves for NetworkSettings::stallTimeout().
//!
//! Redirects are followed only to addresses that are no less safe: never from `https` to `http`, never to
//! another host or port while an access token is sent. Nor are they when a 301 or 302 would turn a
//! change (POST, PUT, DELETE) into a GET, whose success would say nothing about the change. A refused
//! redirect ends with QNetworkReply::InsecureRedirectError. About one redirected request with a body in
//! 400 ends with QNetworkReply::UnknownNetworkError although the service has answered: Qt loses the
//! answer. Set the address that the service redirects to, rather than count on redirects.
//!
//! A change whose connection is lost before its answer is never repeated silently, because the
//! service may have made it; it ends with QNetworkReply::RemoteHostClosedError. A GET is repeated a few
//! times by Qt before it ends so.
//!
//! An answer with a status other than 2xx that Qt itself does not count as an error (a 304, for example)
//! ends with QNetworkReply::ProtocolFailure.
//!
//! The logging category `vell.network` prints one line for each request that has ended, once its debug
//! messages are switched on; tokens and passwords are left out.
//!
//! One object for the process; it may be used from any thread that runs an event loop while it
//! waits. The requests of one thread, those of AsyncNetManager included, share their connections.
class VELLNETWORK_EXPORT NetworkManager : public QObject
{
    Q_OBJECT

public:
    static NetworkManager *instance();

    //! Each sends its request at once and returns the reply, never null, with the calling thread
    //! as its thread. The caller (as a rule the NetworkEventLoop that it builds) owns the reply.
    //! Bodies are sent as compact UTF-8 JSON.
    QNetworkReply *get(const QString &url);
    QNetworkReply *postJson(const QString &url, const QJsonObject &body);
    QNetworkReply *putJson(const QString &url, const QJsonObject &body);
    QNetworkReply *putJson(const QString &url, const QJsonArray &body);
    QNetworkReply *deleteResource(const QString &url);

Q_SIGNALS:
    //! A request of this process has failed, whichever class sent it: no answer, or a status other
    //! than 2xx. The one place to learn why a call failed that can only say that it did.
    //!
    //! Emitted on the thread of the request, before its waiting caller goes on. Requests that the
    //! client itself aborted are not reported.
    void requestFailed(const NetworkFailure &failure);

private:
    NetworkManager();
};
