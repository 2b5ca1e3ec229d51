#pragma once

#include <QElapsedTimer>
#include <QTimer>

//! \brief How long the thread is not free: between two ticks of a timer of 1 ms, painting included.
class Ticks
{
public:
    struct Gap
    {
        double ms = 0;
        double computingMs = 0; //!< the most that the thread has computed between two ticks
    };

    Ticks();

    void start();

    //! \return the longest since start()
    Gap stop();

private:
    void tick();

    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_cpuNs = 0;
    qint64 m_longestNs = 0;
    qint64 m_mostCpuNs = 0;
};
