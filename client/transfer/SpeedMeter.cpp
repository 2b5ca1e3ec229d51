#include <transfer/SpeedMeter.h>

#include <cmath>

void SpeedMeter::update()
{
    constexpr double MemorySeconds = 4;
    constexpr double MsPerSecond = 1000;
    const double seconds = double(m_clock.restart()) / MsPerSecond;
    if (seconds <= 0)
        return;
    const double share = 1 - std::exp(-seconds / MemorySeconds);
    m_speed += share * (double(m_bytes) / seconds - m_speed);
    m_bytes = 0;
}
