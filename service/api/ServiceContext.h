#pragma once

#include <service/faults/FaultPlan.h>
#include <service/http/Metrics.h>
#include <service/storage/ContentStore.h>
#include <service/storage/Database.h>

#include <atomic>
#include <functional>

namespace service {

//! \brief The objects that all requests of a service share.
struct ServiceContext
{
    ServiceContext(const QString &dataDir, const QString &databaseAddress, qint64 storeQuotaBytes,
                   int busyTimeoutMs, int maxConnections = 0)
        : folder(dataDir), database(folder, databaseAddress, busyTimeoutMs, maxConnections),
          contents(folder, storeQuotaBytes)
    {}

    const DataFolder folder;
    Database database;
    ContentStore contents;
    FaultPlan faults;
    Metrics metrics;
    QString metricsToken; //!< see ServiceOptions
    QString pathPrefix; //!< see ServiceOptions
    std::function<int()> openConnections; //!< set while the service is running
    std::atomic<bool> hasUsers{
        false}; //!< known to have some; a removed one counts, so that it stays true
    std::atomic<bool> isDraining{false}; //!< the service is about to be stopped
    std::atomic<qint64> heldBodyBytes{0}; //!< see BodyBuffer
};

} // namespace service
