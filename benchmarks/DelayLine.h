#pragma once

#include <QThread>

//! \brief A way to a server that takes time: what goes in comes out later, in both directions, as fast as before.
//!
//! Runs on a thread of its own.
class DelayLine
{
public:
    //! \param serverPort on loopback
    //! \param delayMs of each direction, half of the round trip
    DelayLine(quint16 serverPort, int delayMs);
    ~DelayLine();
    Q_DISABLE_COPY(DelayLine)

    quint16 port() const { return m_port; }

private:
    QThread m_thread;
    quint16 m_port = 0;
};
