#pragma once

#include <service/http/ExchangeRecorder.h>
#include <service/http/HttpServer.h>
#include <service/http/WorkerPool.h>

#include <atomic>
#include <utility>

namespace service {

//! \brief The objects that all connections of a server share.
struct ServerContext
{
    static constexpr int Workers = 16;

    explicit ServerContext(HttpServer::Settings serverSettings)
        : settings(std::move(serverSettings)), workers(Workers)
    {}

    const HttpServer::Settings settings;
    ExchangeRecorder recorder;
    std::atomic<bool> isDraining{false}; //!< connections end after their responses
    std::atomic<bool> isStopping{false};
    std::atomic<qint64> unreadBytes{0}; //!< of responses in memory that wait for their clients
    std::atomic<qint64> unreadDiskBytes{0}; //!< of those in temporary files
    WorkerPool workers; //!< last, so that its jobs end before the other members are destroyed
};

} // namespace service
