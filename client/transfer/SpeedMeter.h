#pragma once

#include <QElapsedTimer>
#include <QtGlobal>

//! \brief Measures the speed of the last seconds, in bytes per second.
class SpeedMeter
{
public:
    SpeedMeter() { m_clock.start(); }

    void add(qint64 bytes) { m_bytes += bytes; }
    //! Includes the bytes that have been added since the last call.
    void update();
    qint64 bytesPerSecond() const { return qint64(m_speed); }

private:
    QElapsedTimer m_clock;
    qint64 m_bytes = 0;
    double m_speed = 0;
};
