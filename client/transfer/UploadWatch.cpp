#include <transfer/UploadWatch.h>

#include <async_ops/VellUploadLimits.h>

#include <VellNetwork/NetworkSettings.h>

#include <algorithm>

namespace {

using namespace std::chrono_literals;

constexpr int MostRepeats = 8;
constexpr std::chrono::milliseconds WithoutTimeout = 30s;

//! Longer than the time-out of the transport, which normally ends a request.
std::chrono::milliseconds giveUpTime()
{
    const std::chrono::milliseconds timeout = NetworkSettings::instance().stallTimeout();
    return timeout > 0ms ? timeout + timeout / 4 : WithoutTimeout;
}

} // namespace

UploadWatch::UploadWatch(std::function<void()> end) : m_end(std::move(end))
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(giveUpTime());
    QObject::connect(&m_timer, &QTimer::timeout, m_end);
}

void UploadWatch::noteBytes(qint64 sentBytes)
{
    using VellUploadLimits::ChunkBytes;
    m_timer.start();
    // Within a request the number grows.
    if (sentBytes <= m_lastBytes)
        ++m_repeats;
    else if (sentBytes > m_mostBytes + ChunkBytes / 2)
        m_repeats = 0;
    m_lastBytes = sentBytes;
    // In steps, so that only a whole new chunk is progress.
    if (sentBytes > m_mostBytes + ChunkBytes / 2)
        m_mostBytes = sentBytes;
    if (m_repeats > MostRepeats)
        m_end();
}
