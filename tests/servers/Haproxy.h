#pragma once

#include "ServerProgram.h"

#include <QList>

//! \brief HAProxy in front of services, with the file that the package brings; only its addresses are changed.
class Haproxy
{
public:
    //! \param servicePorts of three services on loopback. \return false when it did not start
    bool start(const QList<quint16> &servicePorts);

    quint16 port() const { return m_port; }
    QString baseApi() const { return QString("http://127.0.0.1:%1/").arg(m_port); }

private:
    ServerProgram m_program;
    quint16 m_port = 0;
};
