#pragma once

#include "Certificates.h"
#include "ServerProgram.h"

//! \brief nginx in front of a service, configured as by its users: what is not set here is nginx's default.
class Nginx
{
public:
    struct Settings
    {
        quint16 servicePort = 0; //!< on loopback, of the service that it passes requests to
        Certificates::Pair certificate; //!< it speaks https when this is set
        bool isHttp2 = false; //!< offered beside HTTP/1.1; only with a certificate
        QByteArray http; //!< more directives of the http block
        QByteArray location; //!< more directives of the one location
    };

    //! \return false when it did not start; on the same port each time
    bool start(const Settings &settings);
    void kill() { m_program.kill(); }

    //! Scheme, host "127.0.0.1" and port, with a slash at the end.
    QString baseApi() const;
    quint16 port() const { return m_port; }

private:
    ServerProgram m_program;
    quint16 m_port = 0;
    bool m_isEncrypted = false;
};
