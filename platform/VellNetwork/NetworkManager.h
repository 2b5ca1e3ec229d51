#pragma once

#include <VellNetwork/NetworkFailure.h>
#include <VellNetwork/vellnetwork_export.h>

#include <QByteArray>
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
//! redirect ends with QNetworkReply::InsecureRedirectError.
//!
//! A change whose connection is lost before its answer is never repeated, because the service may have
//! made it; it ends with QNetworkReply::RemoteHostClosedError. So that this is rare, a change goes over a
//! kept-alive connection only while the server cannot be about to close it; else over a new one. A GET is
//! repeated once when a kept-alive connection turns out to be closed. An answer that ends before its announced
//! length is a failure, QNetworkReply::RemoteHostClosedError too.
//!
//! Errors have the numbers that QNetworkAccessManager gives them. An answer with a status that it does not count
//! as an error though it is no success (a 304, for example) ends with QNetworkReply::ProtocolFailure.
//!
//! The requests run on an I/O thread of this library, so that they go on while the thread of the caller is
//! busy. A small request to a server that has just answered is sent by the thread of the caller, and its response is waited
//! for there for at most 2 ms; then the I/O thread goes on with it, also if the caller does not wait. What a client reads while it arrives is held back at the connection when the client does not keep up
//! (QNetworkReply::setReadBufferSize() sets how much waits with the reply; up to 4 MiB more are on the way); what nobody reads before
//! QNetworkReply::finished() is kept, up to 1 GiB, above which the reply ends with
//! QNetworkReply::UnknownContentError.
//!
//! The logging category `vell.network` prints one line for each request that has ended, once its debug
//! messages are switched on; tokens and passwords are left out.
//!
//! One object for the process; it may be used from any thread that runs an event loop while it
//! waits. All requests of the process, those of AsyncNetManager included, share one pool of kept-alive
//! connections, at most 32 to one server; further requests wait for a free one.
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

    //! Asks for the rest of a content, from byte \a offset on.
    //! \param entityTag the `ETag` that came with the bytes before it. If the content has another one by now, all of it comes,
    //!        with the status 200 instead of 206. Empty for whatever content there is.
    QNetworkReply *getFrom(const QString &url, qint64 offset, const QByteArray &entityTag = {});

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
