#pragma once

#include <transfer/VellTransfer.h>

#include <atomic>

//! \brief Divides the speed limits among the transfers that run. Thread-safe.
class SpeedShare
{
public:
    void setLimits(qint64 sentPerSecond, qint64 receivedPerSecond);
    void setRunning(VellTransferDirection direction, int count);

    //! Gives the next request of the context of the calling thread its share.
    void apply() const;

    //! In bytes per second; 0 for no limit.
    qint64 share(VellTransferDirection direction) const;

private:
    std::atomic<qint64> m_limits[2] = {{0}, {0}}; // by direction
    std::atomic<int> m_running[2] = {{0}, {0}};
};
