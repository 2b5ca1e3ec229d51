#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QNetworkReply>
#include <QString>
#include <QUrl>

//! \brief Why a request failed.
//!
//! \since 0.1
//! \sa NetworkManager::requestFailed(), RequestContext::failure()
struct NetworkFailure
{
    //! Reasons for which a client can give advice; NetworkFailure::message says the same in words.
    enum class Reason {
        Other, //!< none of the following; see NetworkFailure::error
        NameNotFound, //!< the host name does not resolve
        ConnectionRefused, //!< nothing listens at the address
        ConnectionLost, //!< closed before the whole response arrived
        TimedOut, //!< nothing was sent or received for NetworkSettings::stallTimeout()
        CertificateUntrusted, //!< the server's certificate is signed by an unknown authority
        CertificateSelfSigned, //!< the server's certificate
        CertificateExpired, //!< the server's certificate has expired or is not valid yet
        CertificateWrongHost, //!< the server's certificate is for another host name
        ClientCertificateNeeded, //!< the server requires a client certificate and got none that it accepts
        ClientCertificateUnreadable, //!< the file, the key or the password is wrong
        NoTls, //!< the server does not support TLS, or no version that the client accepts
        ProxyNotFound, //!< the host name of the proxy does not resolve
        ProxyUnreachable, //!< nothing listens at the address of the proxy
        ProxyLoginNeeded, //!< the proxy requires a user name and a password, or rejects those it got
        ProxyRefused, //!< the proxy does not forward the request
        RedirectRefused, //!< see NetworkManager
        BodyTooLarge, //!< a server refuses bodies of this size
        GatewayFailed, //!< a server in front of the service cannot reach it
    };

    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    int httpStatus = 0; //!< 0 if no response arrived
    QString
        message; //!< the service's message ("error" in its JSON body), otherwise the transport's
    QUrl url; //!< without user name and password
    Reason reason = Reason::Other;
    QByteArray method; //!< the request method, for example "GET"
};
Q_DECLARE_METATYPE(NetworkFailure)
