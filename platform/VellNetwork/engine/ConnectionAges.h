#pragma once

#include <QByteArray>
#include <QHash>

#include <chrono>

//! \brief How long the kept-alive connections have been idle, by their local port.
//!
//! A server that closes a connection at the moment when a change is sent over it leaves the client without
//! a way to learn whether the change was made. So changes go only over connections that no ordinary server is about
//! to close.
class ConnectionAges
{
public:
    using Clock = std::chrono::steady_clock;

    //! A response has ended on the connection. \param keepAlive its Keep-Alive field, empty when it has none
    void setUsed(int localPort, const QByteArray &keepAlive);

    //! Whether a change may be sent over the connection. True for one that setUsed() does not know.
    bool isSafe(int localPort) const;

private:
    QHash<int, Clock::time_point> m_safeUntil;
};
