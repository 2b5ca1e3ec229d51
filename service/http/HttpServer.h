#pragma once

#include <service/http/RequestHandler.h>
#include <service/http/TrustedProxies.h>

#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace service {

//! The log entry of a request, when its response is ready.
struct ServedRequest
{
    QString client;
    QString user;
    QByteArray method;
    QString path; //!< without secrets; empty if it could not be parsed
    int status = 0; //!< 0 if there is no response
    qint64 bytes = 0; //!< of the body of the response
    qint64 received = 0; //!< of the body of the request
    qint64 milliseconds = 0;
};

//! \brief Limits for slow and idle clients.
struct HttpLimits
{
    qint64 maxBodyBytes = Q_INT64_C(64) * 1024 * 1024 * 1024;
    std::chrono::milliseconds idle{60'000}; //!< between two requests
    std::chrono::milliseconds head{20'000}; //!< from the first to the last byte of a head
    //! In each such period at least progressBytes of a body or a response must be transferred, or the rest of it.
    std::chrono::milliseconds progress{30'000};
    qint64 progressBytes = Q_INT64_C(16) * 1024;
    std::chrono::milliseconds stopping{5'000}; //!< how long stop() waits for responses in progress
    int maxConnections =
        16'000; //!< if there are more, the connection that has been idle longest is closed
    qint64 unreadBytes =
        Q_INT64_C(64) * 1024 * 1024; //!< of responses in memory that wait for their clients
    qint64 unreadDiskBytes =
        Q_INT64_C(1024) * 1024 * 1024; //!< of those above it, in temporary files
};

//! \brief HTTP/1.1 on a TCP port.
//!
//! Two threads wait for all connections; a thread pool of fixed size processes those that are ready. A connection that is idle or
//! slow uses no thread and no buffer.
class HttpServer
{
public:
    struct Settings
    {
        QString address;
        quint16 port = 0; //!< 0 for any free one
        QString temporaryFolder; //!< for responses to clients that read slowly
        HttpLimits limits;
        TrustedProxies proxies;
        //! Creates the handler of a request, which the request outlives. Called on several threads of the pool at once.
        std::function<std::unique_ptr<RequestHandler>(HttpRequest &)> handler;
        std::function<QString(const HttpRequest &)>
            loggedPath; //!< returns the path without secrets
        std::function<void(const ServedRequest &)> logger; //!< called on several threads at once
    };

    explicit HttpServer(Settings settings);
    ~HttpServer();

    //! Begins to accept connections. If the address is not available, returns false and sets \a error to the reason.
    bool start(QString *error);

    //! Goes on serving, but closes each connection after its response. stop() then waits for requests that are still arriving, too.
    void drain();

    //! Closes idle connections and those whose request is incomplete, and returns when the responses in progress have been sent or
    //! HttpLimits::stopping has expired.
    void stop();

    quint16 port() const;
    int connectionCount() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace service
