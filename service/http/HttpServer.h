#pragma once

#include <service/http/RequestHandler.h>

#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace service {

//! What the log says about one request once its response is ready.
struct ServedRequest
{
    QString client;
    QString user;
    QByteArray verb;
    QString path; //!< safe to be logged; empty if it could not be read
    int status = 0; //!< 0 without a response
    qint64 bytes = 0;
    qint64 milliseconds = 0;
};

//! \brief Bounds that keep slow, idle and silent clients from holding anything.
struct HttpLimits
{
    qint64 maxBodyBytes = Q_INT64_C(64) * 1024 * 1024 * 1024;
    std::chrono::milliseconds idle{60'000}; //!< between two requests
    std::chrono::milliseconds head{20'000}; //!< from the first byte of a head to its last
    //! In each such period a body or a response moves by progressBytes, or to its end.
    std::chrono::milliseconds progress{30'000};
    qint64 progressBytes = Q_INT64_C(16) * 1024;
    std::chrono::milliseconds stopping{
        5'000}; //!< how long stop() waits for responses that are under way
    int maxConnections = 16'000; //!< above it the connection that has been idle longest ends
    qint64 unreadBytes =
        Q_INT64_C(64) * 1024 * 1024; //!< of responses in memory that wait for their clients
    qint64 unreadDiskBytes =
        Q_INT64_C(1024) * 1024 * 1024; //!< of those above it, in temporary files
};

//! \brief HTTP/1.1 on a TCP port.
//!
//! Two threads wait for all connections; a bounded pool does the work of those that are ready. A connection that is
//! idle or slow holds no thread and no buffer.
class HttpServer
{
public:
    struct Settings
    {
        QString address;
        quint16 port = 0; //!< 0 for any free one
        QString temporaryFolder; //!< for responses that their clients are slow to read
        HttpLimits limits;
        //! Makes the work for a request; called on a thread of the pool, several at once. The request outlives it.
        std::function<std::unique_ptr<RequestHandler>(HttpRequest &)> handler;
        std::function<QString(const HttpRequest &)> loggedPath; //!< the path without secrets
        std::function<void(const ServedRequest &)> logger; //!< called on several threads at once
    };

    explicit HttpServer(Settings settings);
    ~HttpServer();

    //! Binds and serves; false with the reason in \a error when the address cannot be had.
    bool start(QString *error);

    //! Ends idle connections and requests whose bodies are still coming, and returns when the responses that are under
    //! way have been sent or HttpLimits::stopping is over.
    void stop();

    quint16 port() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace service
