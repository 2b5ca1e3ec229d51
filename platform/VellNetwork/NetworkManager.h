#pragma once

#include <VellNetwork/NetworkFailure.h>
#include <VellNetwork/vellnetwork_export.h>

#include <QByteArray>
#include <QObject>
#include <QString>

class QJsonArray;
class QJsonObject;
class QNetworkReply;

//! \brief Sends requests, whose replies the caller waits for with a NetworkEventLoop.
//!
//! \par Addresses
//! Addresses are text that is not percent-encoded: they are encoded here, so that the service receives each value unchanged. `%`,
//! `#` and `+` are data; `?`, `&` and `=` separate the parameters, except in the JSON object after `where=`, which is data as a
//! whole. Addresses must have the scheme `http` or `https`, and no "." or ".." segment in their path, because such a segment would
//! change the address on the way. Any other address ends with QNetworkReply::ProtocolUnknownError.
//!
//! \par Requests
//! Every request has the access token of NetworkSettings, and ends with QNetworkReply::TimeoutError if nothing is sent or received
//! for NetworkSettings::stallTimeout().
//!
//! \par Redirects
//! Redirects are followed only to addresses that are as safe: never from `https` to `http`, and never to another host or port
//! if an access token is sent. They are not followed if a 301 or 302 would turn a change (POST, PUT, DELETE) into a GET, whose
//! success would say nothing about the change. A refused redirect ends with QNetworkReply::InsecureRedirectError.
//!
//! \par Lost connections
//! A change whose connection is lost before the response arrives is never repeated, because the service may have made it; it ends
//! with QNetworkReply::RemoteHostClosedError. To make this rare, changes use a kept-alive connection only as long as the server is
//! not expected to close it, otherwise a new one. A GET is repeated once if a kept-alive connection turns out to be closed. A
//! response that ends before its announced length is a failure: QNetworkReply::RemoteHostClosedError.
//!
//! \par Errors
//! Errors have the codes of QNetworkAccessManager. A response with a status other than 2xx that QNetworkAccessManager does not
//! report as an error (for example 304) ends with QNetworkReply::ProtocolFailure.
//!
//! \par Reading
//! If a client reads while the response arrives, and does not keep up, the connection is slowed down.
//! QNetworkReply::setReadBufferSize() sets how much is buffered by the reply; up to 4 MiB more are buffered by the transport.
//! Data that is not read before QNetworkReply::finished() is kept, up to 1 GiB; above that the reply ends with
//! QNetworkReply::UnknownContentError.
//!
//! \par Threads
//! One object for the process. It may be used from any thread that runs an event loop while it waits. Requests run on an I/O thread
//! of the library, so that they continue while the thread of the caller is busy. A small request to a server that has just
//! responded is sent by the thread of the caller, which waits for the response for at most 2 ms; then the I/O thread takes over,
//! also if the caller does not wait. All requests of the process, including those of AsyncNetManager, share one pool of kept-alive
//! connections, with at most 32 to one server; further requests wait for a free one.
//!
//! \par Logging
//! If the debug messages of the logging category `vell.network` are enabled, it prints one line for each request that has ended,
//! without tokens and passwords.
//!
//! \since 0.1
//! \sa AsyncNetManager, NetworkSettings, VellBaseApi
class VELLNETWORK_EXPORT NetworkManager : public QObject
{
    Q_OBJECT

public:
    static NetworkManager *instance();

    //! \name Requests
    //! Each sends its request at once and returns the reply, which is never null and belongs to the calling thread. The caller
    //! takes ownership, normally by passing the reply to a NetworkEventLoop. Bodies are sent as compact JSON in UTF-8.
    //! @{
    QNetworkReply *get(const QString &url);
    QNetworkReply *postJson(const QString &url, const QJsonObject &body);
    QNetworkReply *putJson(const QString &url, const QJsonObject &body);
    QNetworkReply *putJson(const QString &url, const QJsonArray &body);
    QNetworkReply *deleteResource(const QString &url);

    //! Requests the rest of a content, from byte \a offset on.
    //! \param entityTag the `ETag` of the response with the bytes before it. If the content has changed since, the response has the
    //!        whole content and the status 200 instead of 206. Empty to accept any content.
    QNetworkReply *getFrom(const QString &url, qint64 offset, const QByteArray &entityTag = {});
    //! @}

Q_SIGNALS:
    //! A request of this process has failed, whichever class has sent it: there was no response, or its status was not 2xx. Reports
    //! the reason for functions that return only whether they succeeded.
    //!
    //! Emitted on the thread of the request, before the function that waits for it returns. Requests that were aborted by the
    //! client are not reported.
    //! \sa RequestContext::failure()
    void requestFailed(const NetworkFailure &failure);

private:
    NetworkManager();
};
