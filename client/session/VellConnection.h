#pragma once

#include <VellNetwork/RequestContext.h>
#include <operations/VellError.h>

#include <QString>

//! \brief How a session reaches its service, and as whom.
struct VELLCLIENT_EXPORT VellConnection
{
    QString
        address; //!< `http://HOST:PORT/` or `https://...`, with a path where the service has one
    QString accessToken; //!< empty for a service without users
    QString caCertificates; //!< see NetworkSettings, as for the next two
    ClientCertificate clientCertificate;
    QString proxy;

    //! What is wrong with the address: BadAddress, with a sentence that says what is missing; no error if it can be used.
    VellError problem() const;

    RequestSettings requestSettings() const;
};
