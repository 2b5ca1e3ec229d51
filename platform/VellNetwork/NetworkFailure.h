#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QNetworkReply>
#include <QString>
#include <QUrl>

//! \brief Why a request failed, as far as the transport and the service said.
struct NetworkFailure
{
    //! What a client can give advice about; message says the same in words.
    enum class Reason {
        Other, //!< nothing of the following; error and httpStatus tell more
        NameNotFound, //!< the host name does not resolve
        ConnectionRefused, //!< nothing listens there
        ConnectionLost, //!< closed before the whole response came
        TimedOut,
        CertificateUntrusted, //!< of the server, as all with "Certificate": signed by an unknown authority
        CertificateSelfSigned,
        CertificateExpired, //!< or not valid yet
        CertificateWrongHost, //!< made for another host name
        ClientCertificateNeeded, //!< the server asks for one and got none that it accepts
        ClientCertificateUnreadable, //!< its file, its key or the password
        NoTls, //!< the server does not speak TLS, or no version that this side accepts
        ProxyNotFound, //!< its name does not resolve
        ProxyUnreachable, //!< nothing listens there
        ProxyLoginNeeded, //!< it asks for a user name and a password, or rejects the given ones
        ProxyRefused, //!< it does not let the request pass
        RedirectRefused,
        BodyTooLarge, //!< a server refuses bodies of this size
        GatewayFailed, //!< a server in front of the service cannot reach it
    };

    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    int httpStatus = 0; //!< 0 when no answer arrived
    QString message; //!< the service's own words ("error" of its JSON body), else the transport's
    QUrl url; //!< without user name and password
    Reason reason = Reason::Other;
    QByteArray method; //!< of the request, "GET" for example
};
Q_DECLARE_METATYPE(NetworkFailure)
