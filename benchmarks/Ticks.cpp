#include "Ticks.h"

#include <algorithm>
#include <ctime>

namespace {

qint64 cpuNs()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return qint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

} // namespace

Ticks::Ticks()
{
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, [this] { tick(); });
}

void Ticks::start()
{
    m_longestNs = 0;
    m_mostCpuNs = 0;
    m_clock.start();
    m_cpuNs = cpuNs();
    m_timer.start(1);
}

Ticks::Gap Ticks::stop()
{
    m_timer.stop();
    tick();
    return {double(m_longestNs) / 1e6, double(m_mostCpuNs) / 1e6};
}

void Ticks::tick()
{
    m_longestNs = std::max(m_longestNs, m_clock.nsecsElapsed());
    m_mostCpuNs = std::max(m_mostCpuNs, cpuNs() - m_cpuNs);
    m_clock.start();
    m_cpuNs = cpuNs();
}
