#pragma once

#include <QByteArray>
#include <QHash>

#include <chrono>

//! \brief Stores how long kept-alive connections have been idle, by their local port.
//!
//! If a server closes a connection while a change is being sent, the client cannot find out whether the change was made. Therefore
//! changes use only connections that no common server is about to close.
class ConnectionAges
{
public:
    using Clock = std::chrono::steady_clock;

    //! A response has ended on the connection. \param keepAlive its Keep-Alive field; empty if it has none
    void setUsed(int localPort, const QByteArray &keepAlive);

    //! Returns true if a change may be sent over the connection, also if setUsed() was never called for it.
    bool isSafe(int localPort) const;

private:
    QHash<int, Clock::time_point> m_safeUntil;
};
