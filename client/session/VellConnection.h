#pragma once

#include <VellNetwork/RequestContext.h>
#include <operations/VellError.h>

#include <QString>

//! \brief The address of a service, the user's token, and the network settings of a session.
//!
//! \since 0.1
//! \sa VellSession::open(), NetworkSettings
struct VELLCLIENT_EXPORT VellConnection
{
    QString address; //!< `http://HOST:PORT/` or `https://...`, with a path if the service has one
    QString accessToken; //!< empty for a service without users
    QString caCertificates; //!< see NetworkSettings::setCaCertificates()
    ClientCertificate clientCertificate; //!< see NetworkSettings::setClientCertificate()
    QString proxy; //!< see NetworkSettings::setProxy()

    //! Checks the address without a request. Returns VellError::Kind::BadAddress, with a sentence that says what is missing, or no
    //! error if the address is valid.
    VellError problem() const;

    //! Returns the settings for the requests of an operation.
    //! \sa RequestContext
    RequestSettings requestSettings() const;
};
