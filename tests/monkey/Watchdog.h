#pragma once

#include <QTimer>

#include <atomic>
#include <thread>

//! \brief Ends the program, with a core, when the event loop of the thread that made it has not run for ten seconds.
class Watchdog
{
public:
    Watchdog();
    ~Watchdog();
    Q_DISABLE_COPY(Watchdog)

    //! What the thread is at, for the message. \param text must stay
    void note(const char *text) { m_note = text; }

    //! Watches no longer.
    void stop();

    //! The longest time between two turns of the loop so far, in milliseconds.
    int longestMs() const { return m_longestMs; }

private:
    void watch();

    QTimer m_beat;
    std::atomic<qint64> m_lastMs{0};
    std::atomic<int> m_longestMs{0};
    std::atomic<const char *> m_note{""};
    std::atomic<bool> m_isEnding{false};
    std::thread m_thread;
};
