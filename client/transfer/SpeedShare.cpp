#include <transfer/SpeedShare.h>

#include <VellNetwork/RequestContext.h>

#include <algorithm>

void SpeedShare::setLimits(qint64 sentPerSecond, qint64 receivedPerSecond)
{
    m_limits[int(VellTransferDirection::Upload)] = sentPerSecond;
    m_limits[int(VellTransferDirection::Download)] = receivedPerSecond;
}

void SpeedShare::setRunning(VellTransferDirection direction, int count)
{
    m_running[int(direction)] = count;
}

void SpeedShare::apply() const
{
    RequestContext::current()->setSpeedLimits(share(VellTransferDirection::Upload),
                                              share(VellTransferDirection::Download));
}

qint64 SpeedShare::share(VellTransferDirection direction) const
{
    const qint64 limit = m_limits[int(direction)];
    if (limit <= 0)
        return 0;
    const int running = m_running[int(direction)];
    return std::max(limit / std::max(running, 1), qint64(1));
}
