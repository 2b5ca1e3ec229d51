#include "Watchdog.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int BeatMs = 50;
constexpr int LongestMs = 10'000;

qint64 nowMs()
{
    return QDeadlineTimer::current().deadline();
}

} // namespace

Watchdog::Watchdog() : m_lastMs(nowMs())
{
    QObject::connect(&m_beat, &QTimer::timeout, [this] {
        const qint64 now = nowMs();
        m_longestMs = std::max(m_longestMs.load(), int(now - m_lastMs));
        m_lastMs = now;
    });
    m_beat.start(BeatMs);
    m_thread = std::thread([this] { watch(); });
}

Watchdog::~Watchdog()
{
    stop();
}

void Watchdog::stop()
{
    m_isEnding = true;
    if (m_thread.joinable())
        m_thread.join();
}

void Watchdog::watch()
{
    while (!m_isEnding) {
        std::this_thread::sleep_for(std::chrono::milliseconds(BeatMs));
        if (nowMs() - m_lastMs < LongestMs)
            continue;
        std::fprintf(stderr, "HANG: the event loop has not run for 10 s, at: %s\n", m_note.load());
        std::abort();
    }
}
