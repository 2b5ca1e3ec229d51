#pragma once

#include <QElapsedTimer>
#include <QtGlobal>

//! \brief How many bytes a second have moved lately.
class SpeedMeter
{
public:
    SpeedMeter() { m_clock.start(); }

    void add(qint64 bytes) { m_bytes += bytes; }
    //! Takes in what has been added since the last call.
    void update();
    qint64 bytesPerSecond() const { return qint64(m_speed); }

private:
    QElapsedTimer m_clock;
    qint64 m_bytes = 0;
    double m_speed = 0;
};
