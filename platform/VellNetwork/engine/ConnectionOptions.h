#pragma once

#include <QString>

//! \brief How a connection is made and used: whom it trusts, what it shows of itself, which way it goes, how fast.
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
