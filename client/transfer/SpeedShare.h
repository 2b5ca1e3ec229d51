#pragma once

#include <transfer/VellTransfer.h>

#include <atomic>

//! \brief Divides the speed limits among the running transfers. Thread-safe.
class SpeedShare
{
public:
    void setLimits(qint64 sentPerSecond, qint64 receivedPerSecond);
    void setRunning(VellTransferDirection direction, int count);

    //! Sets the share of the next request of the calling thread's RequestContext.
    void apply() const;

    //! In bytes per second; 0 for no limit.
    qint64 share(VellTransferDirection direction) const;

private:
    std::atomic<qint64> m_limits[2] = {{0}, {0}}; // by direction
    std::atomic<int> m_running[2] = {{0}, {0}};
};
