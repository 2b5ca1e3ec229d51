#pragma once

#include <service/ReferenceService.h>
#include <service/faults/FaultPlan.h>
#include <service/storage/ContentStore.h>
#include <service/storage/Database.h>
#include <service/storage/KeyedLocks.h>

#include <atomic>

namespace service {

//! \brief What all requests of one service share.
struct ServiceContext
{
    explicit ServiceContext(const ServiceOptions &serviceOptions)
        : options(serviceOptions),
          database(serviceOptions.dataDir + QStringLiteral("/records.sqlite")),
          contents(serviceOptions.dataDir, serviceOptions.storeQuotaBytes)
    {}

    const ServiceOptions options;
    Database database;
    ContentStore contents;
    FaultPlan faults;
    KeyedLocks uploadLocks; //!< by MD5
    std::atomic<bool> isStopping{false};
};

} // namespace service
