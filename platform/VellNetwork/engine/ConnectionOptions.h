#pragma once

#include <QString>

//! \brief The options of a connection: trusted authorities, client certificate, proxy, limits of the speed.
struct ConnectionOptions
{
    QString caCertificates; //!< a PEM file; empty for those of the system
    QString clientCertificate;
    QString clientKey;
    QString clientKeyPassword;
    QString proxy; //!< see NetworkSettings::setProxy()
    qint64 sentPerSecond = 0; //!< bytes, at most; 0 for no limit
    qint64 receivedPerSecond = 0;
};
